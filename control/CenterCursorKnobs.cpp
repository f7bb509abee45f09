// The center and the cursor, each on a turning knob or on a nudge knob; one kind of the two is in use.
#include <cmath>

#include "control/Bandscope.h"
#include "control/KnobRescale.h"

namespace kv::control {

namespace {

constexpr double kNudge = 10.0;        // nudges to a grid division
constexpr double kBesideMover = 30.0;  // twips

// The knobs' ranges before there is a display range; different on purpose.
constexpr double kCenterEnd = 1500.0;  // MHz
constexpr double kCursorEnd = 1000.0;  // MHz
constexpr double kStartStep = 100.0;   // MHz

void setRange(turndial::tdKnob& knob, double end) {
    knob.dMinVal = 0.0;
    knob.dMaxVal = end;
    knob.dStep = kStartStep;
}

/// Half to even, as the conversion to a whole number does.
std::int16_t halfOf(std::int16_t divisions) {
    return static_cast<std::int16_t>(std::nearbyint(divisions / 2.0));
}

}  // namespace

std::wstring Bandscope::knobFormat() {
    if (sKnobFormat_.empty())
        sKnobFormat_ = L"##0.00000";
    return sKnobFormat_;
}

void Bandscope::SetCenterFreqKnob() {
    turndial::tdKnMover& mover = ui_.tdKnMovCenter;
    turndial::tdKnob& knob = ui_.tdKnCenter;
    const bool movers = look_.bUseMovers;
    mover.setVisible(movers && !isCollapsed());
    knob.setVisible(!movers && !isCollapsed());
    if (movers) {
        mover.setSCaption(L"Center Freq (MHz)");
        mover.bShowValue = true;
        mover.sFormat = knobFormat();
        mover.setDVal(range_.center);
        mover.Refresh();
        return;
    }
    knob.setSCaption(L"Center Freq");
    knob.iKnobStyle = 0;
    knob.bShowValue = true;
    knob.sFormat = knobFormat();
    setRange(knob, kCenterEnd);
    knob.bOption1 = true;
    knob.bOption2 = false;
    knob.bOption3 = false;
    knob.setDVal(range_.center);
    knob.Refresh();
}

void Bandscope::setUpCursorKnob() {
    turndial::tdKnMover& mover = ui_.tdKnMovCursor;
    turndial::tdKnob& knob = ui_.tdKnCursor;
    const bool movers = look_.bUseMovers;
    mover.setVisible(movers && !isCollapsed());
    knob.setVisible(!movers && !isCollapsed());
    if (movers) {
        mover.setSCaption(L"Cursor Freq (MHz)");
        mover.bShowValue = true;
        mover.sFormat = knobFormat();
        mover.Refresh();
        ui_.cmdCenterCursor.setLeft(mover.left() + mover.width() + kBesideMover);
        return;
    }
    knob.setSCaption(L"Cursor (MHz)");
    knob.iKnobStyle = 0;
    knob.bShowValue = true;
    setRange(knob, kCursorEnd);
    knob.bOption1 = true;
    knob.Refresh();
}

void Bandscope::rescaleKnobsToRange() {
    for (turndial::tdKnob* knob : {&ui_.tdKnCursor, &ui_.tdKnCenter}) {
        std::int16_t nSteps = halfOf(nGridX());
        ReScaleknob(*knob, DisplayMinFreq(), DisplayMaxFreq(), 0.0, nSteps);
    }
}

void Bandscope::resetKnobRanges() {
    const auto reset = [](turndial::tdKnob& knob, double end) {
        // Never under the user's hand.
        if (knob.bMouseDown())
            return;
        setRange(knob, end);
        knob.Refresh();
    };
    reset(ui_.tdKnCenter, kCenterEnd);
    reset(ui_.tdKnCursor, kCursorEnd);
}

void Bandscope::showCenter() {
    if (!(range_.maxFreq > range_.minFreq))
        return;
    const double center = channels::isUnsetFrequency(range_.center)
                              ? range_.minFreq + (range_.maxFreq - range_.minFreq) / 2.0
                              : range_.center;
    if (look_.bUseMovers)
        ui_.tdKnMovCenter.setDVal(center);
    else
        ui_.tdKnCenter.setDVal(center);
}

double Bandscope::CursorVal() const noexcept {
    return look_.bUseMovers ? ui_.tdKnMovCursor.dVal() : ui_.tdKnCursor.dVal();
}

void Bandscope::setCursorVal(double value) {
    if (!deriveRange() || !(value >= range_.minFreq && value <= range_.maxFreq))
        return;
    setShownCursor(value);
}

void Bandscope::setShownCursor(double value) {
    if (look_.bUseMovers)
        ui_.tdKnMovCursor.setDVal(value);
    else
        ui_.tdKnCursor.setDVal(value);
    std::int16_t flag = 100;
    reported(L"CursorVal", L"", flag, [&] { DrawCursorLine(value, look_.lCursorColor); });
}

void Bandscope::cmdCenterCursor_Click() {
    std::int16_t flag = 100;
    reported(L"cmdCenterCursor_Click", L"", flag, [&] {
        const double center = DisplayCenterFreq();
        DrawCursorLine(center, look_.lCursorColor);
        ui_.tdKnMovCursor.setDVal(center);
    });
}

void Bandscope::applyNewCenter(double value) {
    std::int16_t flag = 100;
    reported(L"SetNewCenter", L"", flag, [&] {
        setDisplayCenterFreq(value);
        flag = 200;
        DrawNewCenterFreq();
    });
}

// The center nudges against the sense of the cursor: turning up pulls the picture, not the center, to the right.
void Bandscope::tdKnMovCenter_ValueChanged(double d) {
    std::int16_t flag = 100;
    reported(L"tdKnMovCenter_ValueChanged", L"", flag, [&] {
        // Without a range there is no step to nudge by.
        if (d == 0.0 || !deriveRange())
            return;
        flag = 200;
        const double nudge = GridStepX() / kNudge;
        applyNewCenter(DisplayCenterFreq() + (d > 0.0 ? -nudge : nudge));
    });
}

void Bandscope::tdKnMovCenter_TurnEnd() {
    applyNewCenter(ui_.tdKnMovCenter.dVal());
    tellRangeChanged();
}

void Bandscope::tdKnMovCursor_ValueChanged(double d) {
    std::int16_t flag = 100;
    reported(L"tdKnMovCursor_ValueChanged", L"", flag, [&] {
        if (d == 0.0 || !deriveRange())
            return;
        flag = 200;
        const double nudge = GridStepX() / kNudge;
        const double from = ui_.tdKnMovCursor.dVal() > 0.0 ? ui_.tdKnMovCursor.dVal() : DisplayCenterFreq();
        setShownCursor(from + (d > 0.0 ? nudge : -nudge));
    });
}

void Bandscope::tellRangeChanged() {
    std::int16_t flag = 100;
    reported(L"ChgFreqRange", L"", flag, [&] { services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq()); });
}

}  // namespace kv::control
