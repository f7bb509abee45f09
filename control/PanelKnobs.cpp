// The knobs of the panel. The center and the cursor are each on a rotary knob and on a mover, and one kind of the two
// is in use.
#include <cmath>
#include <span>

#include "control/Formats.h"
#include "control/GridSteps.h"
#include "control/KnobRescale.h"
#include "control/Panel.h"

namespace kv::control {

namespace {

constexpr double kBesideMover = 30.0;  // twips

// The knobs' ranges before there is a display range; they differ on purpose.
constexpr double kCenterEnd = 1500.0;  // MHz
constexpr double kCursorEnd = 1000.0;  // MHz
constexpr double kStartStep = 100.0;   // MHz

void setRange(turndial::tdKnob& knob, double end) {
    knob.dMinVal = 0.0;
    knob.dMaxVal = end;
    knob.dStep = kStartStep;
}

/// Half of the divisions, a half to the even number, as the conversion to a whole number rounds.
std::int16_t halfOf(std::int16_t divisions) {
    return static_cast<std::int16_t>(std::nearbyint(divisions / 2.0));
}

}  // namespace

void Panel::SetCenterFreqKnob(double center) {
    turndial::tdKnMover& mover = ui_.tdKnMovCenter;
    turndial::tdKnob& knob = ui_.tdKnCenter;
    mover.setVisible(bUseMovers_ && !isCollapsed());
    knob.setVisible(!bUseMovers_ && !isCollapsed());
    if (bUseMovers_) {
        mover.setSCaption(L"Center Freq (MHz)");
        mover.bShowValue = true;
        mover.sFormat = knobFormat();
        mover.setDVal(center);
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
    knob.setDVal(center);
    knob.Refresh();
}

void Panel::setUpCursorKnob() {
    turndial::tdKnMover& mover = ui_.tdKnMovCursor;
    turndial::tdKnob& knob = ui_.tdKnCursor;
    mover.setVisible(bUseMovers_ && !isCollapsed());
    knob.setVisible(!bUseMovers_ && !isCollapsed());
    if (bUseMovers_) {
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

void Panel::SetGridRange() {
    ui_.cboGridRange.clear();
    for (const wchar_t* unit : kGridUnits)
        ui_.cboGridRange.addItem(unit);
    ui_.cboGridRange.setListIndex(kStartGridUnit);
}

void Panel::SetGridKnob() {
    turndial::tdKnob& knob = ui_.tdKnGrid;
    const std::span<const GridStop> stops = gridStops(ui_.cboGridRange.text());
    knob.setSCaption(L"Grid (Hz)");
    knob.iKnobStyle = 0;
    knob.bShowValue = true;
    knob.textOffStops = stepText;
    knob.dMinVal = stops.front().step;
    knob.dMaxVal = stops.back().step;
    knob.bOption2 = true;
    knob.dStep = 10.0;
    bool clear = true;
    for (const GridStop& stop : stops) {
        knob.AddStop(clear, stop.label, stop.step);
        clear = false;
    }
    knob.setDVal(stops.front().step);
    knob.Refresh();
}

void Panel::rescaleKnobs(double minimum, double maximum, std::int16_t divisions) {
    for (turndial::tdKnob* knob : {&ui_.tdKnCursor, &ui_.tdKnCenter}) {
        std::int16_t nSteps = halfOf(divisions);
        ReScaleknob(*knob, minimum, maximum, 0.0, nSteps);
    }
}

void Panel::resetKnobRanges() {
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

void Panel::showCenter(double center) {
    if (bUseMovers_) {
        ui_.tdKnMovCenter.setDVal(center);
    } else {
        ui_.tdKnCenter.setDVal(center);
    }
}

void Panel::showCursor(double frequency) {
    if (bUseMovers_) {
        ui_.tdKnMovCursor.setDVal(frequency);
    } else {
        ui_.tdKnCursor.setDVal(frequency);
    }
}

double Panel::CursorVal() const noexcept {
    return bUseMovers_ ? ui_.tdKnMovCursor.dVal() : ui_.tdKnCursor.dVal();
}

void Panel::selectGridRange(double step) {
    const int unit = gridUnitFor(step, ui_.cboGridRange.listIndex());
    if (unit != ui_.cboGridRange.listIndex()) {
        ui_.cboGridRange.setListIndex(unit);
        SetGridKnob();
    }
    ui_.tdKnGrid.setDVal(step);
    ui_.tdKnGrid.Refresh();
}

}  // namespace kv::control
