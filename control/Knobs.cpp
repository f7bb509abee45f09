#include "control/Knobs.h"

#include <string>
#include <utility>

#include "channels/Sentinels.h"
#include "control/Formats.h"
#include "control/GridSteps.h"

namespace kv::control {

using util::Step;

void Knobs::connect() {
    ui_.tdKnGrid.onValueChanged = [this](double d) { tdKnGrid_ValueChanged(d); };
    ui_.tdKnGrid.onTurnEnd = [this] { tdKnGrid_TurnEnd(); };
    ui_.tdKnGrid.onTurnBegin = [this] { range_.rememberForTurn(); };
    ui_.tdKnGrid.onGivenUp = [this] { tdKnGrid_GivenUp(); };
    ui_.tdKnCenter.onValueChanged = [this](double d) {
        actions_.beginRangeAction();
        actions_.applyNewCenter(d);
    };
    ui_.tdKnCenter.onGivenUp = [this] { actions_.giveUpRangeAction(); };
    ui_.tdKnCenter.onTurnEnd = [this] { tdKnCenter_TurnEnd(); };
    ui_.tdKnMovCenter.onValueChanged = [this](double d) { tdKnMovCenter_ValueChanged(d); };
    ui_.tdKnMovCenter.onGivenUp = [this] { actions_.giveUpRangeAction(); };
    ui_.tdKnMovCenter.onTurnEnd = [this] { actions_.panTo(ui_.tdKnMovCenter.dVal()); };
    ui_.tdKnCursor.onValueChanged = [this](double d) { actions_.showCursorAt(d); };
    ui_.tdKnMovCursor.onValueChanged = [this](double d) { tdKnMovCursor_ValueChanged(d); };
    ui_.tdKnMovCursor.onTurnEnd = [this] { actions_.showCursorAt(ui_.tdKnMovCursor.dVal()); };
    ui_.cboGridRange.onClick = [this] { cboGridRange_Click(); };
    ui_.cmdCenterCursor.onClick = [this] { cmdCenterCursor_Click(); };
}

void Knobs::showRange() {
    if (!range_.hasSpan())
        return;
    const auto [minimum, maximum] = range_.span();
    // The center is shown also while none is set.
    panel_.showCenter(channels::isUnsetFrequency(range_.center()) ? minimum + (maximum - minimum) / 2.0
                                                                  : range_.center());
    showGridStep();
}

void Knobs::showGridStep() {
    if (range_.hasSpan())
        panel_.showGridStepText(range_.isDrawnStepChosen() ? std::wstring() : stepText(range_.drawnStep()));
}

void Knobs::showStepOfRange(double step) {
    ui_.tdKnGrid.setDVal(step);
    ui_.tdKnGrid.Refresh();
}

void Knobs::rescaleToRange() {
    const double minimum = range_.DisplayMinFreq();
    panel_.rescaleKnobs(minimum, range_.DisplayMaxFreq(), range_.nGridX());
}

void Knobs::putCursorOnCenter() {
    if (!panel_.bUseMovers())
        rescaleToRange();
    panel_.showCursor(range_.DisplayCenterFreq());
}

void Knobs::cboGridRange_Click() {
    std::pair<double, double> before{0.0, 0.0};
    reported(L"cboGridRange_Click", [&](Step& step) {
        const double kept = ui_.tdKnGrid.dVal();
        panel_.SetGridKnob();
        ui_.tdKnGrid.setDVal(kept);
        step = 200;
        if (!range_.derive())
            return;
        before = range_.span();
        actions_.beginRangeAction();
        range_.setGridStepX(ui_.tdKnGrid.dVal());
        range_.applyChosenStep();
        actions_.drawUnlessDrawing();
    });
    if (range_.isUsable() && range_.span() != before)
        actions_.tellRangeChanged();
    actions_.giveUpRangeAction();
    actions_.tellGridRangeChanged();
}

void Knobs::tdKnGrid_ValueChanged(double dNewVal) {
    reported(L"tdKnGrid_ValueChanged", [&](Step& step) {
        actions_.beginRangeAction();
        range_.setGridStepX(dNewVal);
        step = 200;
        range_.applyChosenStep();
        actions_.drawUnlessDrawing();
    });
}

void Knobs::tdKnGrid_TurnEnd() {
    reported(L"tdKnGrid_TurnEnd", [&](Step& step) {
        range_.setGridStepX(ui_.tdKnGrid.dVal());
        step = 200;
        range_.applyChosenStep();
        // The last change of the value has drawn already.
        actions_.drawUnlessCurrent();
        step = 300;
        rescaleToRange();
    });
    actions_.tellRangeChanged();
}

void Knobs::tdKnGrid_GivenUp() {
    reported(L"tdKnGrid_GivenUp", [&](Step& step) {
        range_.takeTurnBack();
        step = 200;
        actions_.drawUnlessDrawing();
    });
    actions_.giveUpRangeAction();
}

// Each new center gave the knob its start range; under the hand it could not be rescaled.
void Knobs::tdKnCenter_TurnEnd() {
    reported(L"tdKnCenter_TurnEnd", [&](Step&) { rescaleToRange(); });
    actions_.tellRangeChanged();
}

double Knobs::nudged(double from, double direction) {
    const double nudge = range_.GridStepX() / kNudges;
    return from + (direction > 0.0 ? nudge : -nudge);
}

// The center nudges against the sense of the cursor: turning up pulls the picture, not the center, to the right.
void Knobs::tdKnMovCenter_ValueChanged(double d) {
    reported(L"tdKnMovCenter_ValueChanged", [&](Step& step) {
        // Without a range there is no step to nudge by.
        if (d == 0.0 || !range_.derive())
            return;
        step = 200;
        actions_.beginRangeAction();
        actions_.applyNewCenter(nudged(range_.DisplayCenterFreq(), -d));
    });
}

void Knobs::tdKnMovCursor_ValueChanged(double d) {
    reported(L"tdKnMovCursor_ValueChanged", [&](Step& step) {
        if (d == 0.0 || !range_.derive())
            return;
        step = 200;
        const double shown = ui_.tdKnMovCursor.dVal();
        const double from = shown > 0.0 ? shown : range_.DisplayCenterFreq();
        actions_.moveCursorTo(from, nudged(from, d));
    });
}

void Knobs::cmdCenterCursor_Click() {
    reported(L"cmdCenterCursor_Click", [&](Step&) {
        const double center = range_.DisplayCenterFreq();
        actions_.drawCursorAt(center);
        ui_.tdKnMovCursor.setDVal(center);
    });
}

}  // namespace kv::control
