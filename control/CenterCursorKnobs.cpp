// The center and the cursor, each on a turning knob or on a nudge knob; one kind of the two is in use.
#include <cmath>

#include "control/Bandscope.h"
#include "control/KnobRescale.h"

namespace kv::control {

namespace {

constexpr double kNudge = 10.0;        // nudges to a grid division
constexpr double kBesideMover = 30.0;  // twips

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
    knob.dMinVal = 0.0;
    knob.dMaxVal = 1500.0;
    knob.dStep = 100.0;
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
    knob.dMinVal = 0.0;
    knob.dMaxVal = 1000.0;
    knob.dStep = 100.0;
    knob.bOption1 = true;
    knob.Refresh();
}

void Bandscope::rescaleKnobsToRange() {
    for (turndial::tdKnob* knob : {&ui_.tdKnCursor, &ui_.tdKnCenter}) {
        std::int16_t nSteps = halfOf(nGridX());
        ReScaleknob(*knob, DisplayMinFreq(), DisplayMaxFreq(), 0.0, nSteps);
    }
}

double Bandscope::CursorVal() const noexcept {
    return look_.bUseMovers ? ui_.tdKnMovCursor.dVal() : ui_.tdKnCursor.dVal();
}

void Bandscope::setCursorVal(double value) {
    // The getters first: they make the range of channels that have not been drawn yet.
    const double minimum = DisplayMinFreq();
    const double maximum = DisplayMaxFreq();
    if (!hasUsableRange() || !(value >= minimum && value <= maximum))
        return;
    setShownCursor(value);
}

void Bandscope::setShownCursor(double value) {
    if (look_.bUseMovers)
        ui_.tdKnMovCursor.setDVal(value);
    else
        ui_.tdKnCursor.setDVal(value);
    std::int16_t flag = 100;
    reported(L"CursorVal", L"", flag, [&] { DrawCursorLine(value, look_.lCursorColor, true); });
}

void Bandscope::cmdCenterCursor_Click() {
    std::int16_t flag = 100;
    reported(L"cmdCenterCursor_Click", L"", flag, [&] {
        const double center = DisplayCenterFreq();
        DrawCursorLine(center, look_.lCursorColor, true);
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
    // Without a range there is no step to nudge by.
    if (d == 0.0 || !hasUsableRange())
        return;
    const double nudge = GridStepX() / kNudge;
    applyNewCenter(DisplayCenterFreq() + (d > 0.0 ? -nudge : nudge));
}

void Bandscope::tdKnMovCursor_ValueChanged(double d) {
    if (d == 0.0 || !hasUsableRange())
        return;
    const double nudge = GridStepX() / kNudge;
    const double from = ui_.tdKnMovCursor.dVal() > 0.0 ? ui_.tdKnMovCursor.dVal() : DisplayCenterFreq();
    setShownCursor(from + (d > 0.0 ? nudge : -nudge));
}

void Bandscope::tellRangeChanged() {
    std::int16_t flag = 100;
    reported(L"ChgFreqRange", L"", flag, [&] { services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq()); });
}

}  // namespace kv::control
