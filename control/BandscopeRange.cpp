// The procedures and handlers that choose the range, the center, the grid step and the cursor.
#include <cmath>
#include <string>

#include "control/Bandscope.h"
#include "control/Formats.h"
#include "control/GridSteps.h"
#include "util/NumberFormat.h"
#include "util/RuntimeError.h"

namespace kv::control {

bool Bandscope::ReScaleChannels() {
    return reported(
        L"ReScaleChannels",
        [&](Step& step) {
            store_.rederiveExtremes();
            step = 200;
            putCursorOnCenter();
        },
        L"Error Re-scaling Bandscope Channels");
}

void Bandscope::putCursorOnCenter() {
    if (!panel_.bUseMovers())
        rescaleKnobsToRange();
    panel_.showCursor(DisplayCenterFreq());
}

void Bandscope::RescaleAll() {
    reported(L"RescaleAll", [&](Step& step) {
        ReScaleChannels();
        step = 200;
        const double gridStep = range_.GridStepX();
        step = 300;
        if (channels::isUnsetFrequency(gridStep))
            return;
        ui_.tdKnGrid.setDVal(gridStep);
        ui_.tdKnGrid.Refresh();
        showGridStep();
    });
}

void Bandscope::DrawByRange(double dFMin, double dFMax) {
    reported(L"DrawByRange", [&](Step& step) { drawByRange(dFMin, dFMax, step); });
}

void Bandscope::drawByRange(double dFMin, double dFMax, Step& step) {
    ReScaleChannels();
    step = 200;
    const channels::Extremes& e = store_.extremes();
    const double minimum = dFMin > 0.0 ? dFMin : e.dFreqMin;
    const double maximum = dFMax > 0.0 ? dFMax : e.dFreqMax;
    if (channels::isEmptyStoreMinimum(minimum) || channels::isUnsetFrequency(maximum)) {
        // Nothing to take a bound from: the range stays unset rather than far away from every channel.
        drawUnlessDrawing();
        return;
    }
    step = 300;
    // The scale of the channels; it stays when the bounds give no range, as reversed ones do.
    setScaleLeft(e.dFreqMin);
    const double span = e.dFreqMax - e.dFreqMin;
    if (!std::isfinite(span))
        throw util::RuntimeError(util::error_number::kOverflow);
    if (span != 0.0)
        setScaleWidth(span);
    range_.SetDisplayRange(minimum, maximum);
    range_.unsetCenter();
    step = 400;
    range_.deriveGridStep();
    DisplayMinFreq();
    DisplayMaxFreq();
    DisplayCenterFreq();
    step = 500;
    drawUnlessDrawing();
}

void Bandscope::DrawNewCenterFreq() {
    reported(L"DrawNewCenterFreq", [&](Step& step) {
        range_.shiftOntoCenter();
        step = 200;
        JustDrawIt();
    });
}

void Bandscope::setShowAll(bool value) {
    bShowAll_ = value;
    const channels::Extremes& e = store_.extremes();
    if (!value || !(e.dFreqMin < e.dFreqMax))
        return;
    reported(L"ShowAll", [&](Step& step) {
        if (DisplayMinFreq() <= e.dFreqMin && e.dFreqMax <= DisplayMaxFreq()) {
            tellRangeAlreadyShown();
            return;
        }
        step = 200;
        showWholeSpan();
    });
}

void Bandscope::tellRangeAlreadyShown() {
    const std::wstring& format = panel_.knobFormat();
    const auto text = [&format](double value) { return util::formatNumber(value, format); };
    services_.platform.messageBox(
        L"The current display range is:" + text(DisplayMinFreq()) + L" to " + text(DisplayMaxFreq()) +
            L"\r\n\r\nThis range includes all the frequencies currently selected:" + text(store_.extremes().dFreqMin) +
            L" to " + text(store_.extremes().dFreqMax),
        L"All Frequencies in Current Range", formenv::MessageIcon::Information, formenv::MessageButtons::Ok);
}

void Bandscope::showWholeSpan() {
    const channels::Extremes& e = store_.extremes();
    panel_.resetKnobRanges();
    range_.SetDisplayRange(e.dFreqMin, e.dFreqMax);
    setDisplayCenterFreq((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
    range_.deriveGridStep();
    ui_.tdKnGrid.setDVal(range_.step());
    ui_.tdKnGrid.Refresh();
    rescaleKnobsToRange();
    JustDrawIt();
}

// Ticked, the whole range is shown; cleared, the range from before. The host hears of both.
void Bandscope::chkViewAllxx_Click() {
    reported(L"chkViewAllxx_Click", [&](Step& step) {
        const std::pair<double, double> before = range_.span();
        if (ui_.chkViewAllxx.value() != 0) {
            range_.derive();
            range_.rememberForViewAll();
            step = 200;
            if (store_.extremes().dFreqMin < store_.extremes().dFreqMax)
                showWholeSpan();
        } else {
            step = 300;
            if (range_.returnFromViewAll())
                drawUnlessDrawing();
        }
        step = 400;
        if (before != range_.span())
            tellRangeChanged();
    });
}

void Bandscope::zoomTo(double minimum, double maximum) {
    if (!range_.setExactly(minimum, maximum))
        return;
    rescaleKnobsToRange();
    setDisplayCenterFreq(minimum + (maximum - minimum) / 2.0);
    range_.deriveGridStep();
    panel_.selectGridRange(range_.step());
    drawUnlessDrawing();
    services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq());
}

void Bandscope::panTo(double center) {
    applyNewCenter(center);
    tellRangeChanged();
}

void Bandscope::showAllChannels() {
    DrawByRange(0.0, 0.0);
    tellRangeChanged();
}

void Bandscope::tellRangeChanged() {
    reported(L"ChgFreqRange", [&](Step&) { services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq()); });
}

void Bandscope::rescaleKnobsToRange() {
    const double minimum = DisplayMinFreq();
    panel_.rescaleKnobs(minimum, DisplayMaxFreq(), nGridX());
}

void Bandscope::stepChosenByHand() {
    range_.applyChosenStep();
    drawUnlessDrawing();
}

void Bandscope::cboGridRange_Click() {
    std::pair<double, double> before{0.0, 0.0};
    reported(L"cboGridRange_Click", [&](Step& step) {
        const double kept = ui_.tdKnGrid.dVal();
        panel_.SetGridKnob();
        ui_.tdKnGrid.setDVal(kept);
        step = 200;
        if (!range_.derive())
            return;
        before = range_.span();
        range_.setGridStepX(ui_.tdKnGrid.dVal());
        stepChosenByHand();
    });
    if (range_.isUsable() && range_.span() != before)
        tellRangeChanged();
    reported(L"ChgGridRange", [&](Step&) { services_.events.ChgGridRange(); });
}

void Bandscope::tdKnGrid_ValueChanged(double dNewVal) {
    reported(L"tdKnGrid_ValueChanged", [&](Step& step) {
        range_.setGridStepX(dNewVal);
        step = 200;
        stepChosenByHand();
    });
}

void Bandscope::tdKnGrid_TurnEnd() {
    reported(L"tdKnGrid_TurnEnd", [&](Step& step) {
        range_.setGridStepX(ui_.tdKnGrid.dVal());
        step = 200;
        stepChosenByHand();
        step = 300;
        rescaleKnobsToRange();
    });
    tellRangeChanged();
}

void Bandscope::tdKnGrid_GivenUp() {
    reported(L"tdKnGrid_GivenUp", [&](Step& step) {
        range_.takeTurnBack();
        step = 200;
        drawUnlessDrawing();
    });
}

void Bandscope::setCursorVal(double value) {
    if (range_.derive() && range_.contains(value))
        setShownCursor(value);
}

void Bandscope::setShownCursor(double value) {
    panel_.showCursor(value);
    reported(L"CursorVal", [&](Step&) { DrawCursorLine(value, lCursorColor_); });
}

void Bandscope::cmdCenterCursor_Click() {
    reported(L"cmdCenterCursor_Click", [&](Step&) {
        const double center = DisplayCenterFreq();
        DrawCursorLine(center, lCursorColor_);
        ui_.tdKnMovCursor.setDVal(center);
    });
}

void Bandscope::applyNewCenter(double value) {
    reported(L"SetNewCenter", [&](Step& step) {
        setDisplayCenterFreq(value);
        step = 200;
        DrawNewCenterFreq();
    });
}

// Each new center gave the knob its start range; under the hand it could not be rescaled.
void Bandscope::tdKnCenter_TurnEnd() {
    reported(L"tdKnCenter_TurnEnd", [&](Step&) { rescaleKnobsToRange(); });
    tellRangeChanged();
}

// The center nudges against the sense of the cursor: turning up pulls the picture, not the center, to the right.
void Bandscope::tdKnMovCenter_ValueChanged(double d) {
    reported(L"tdKnMovCenter_ValueChanged", [&](Step& step) {
        // Without a range there is no step to nudge by.
        if (d == 0.0 || !range_.derive())
            return;
        step = 200;
        const double nudge = range_.GridStepX() / kNudges;
        applyNewCenter(DisplayCenterFreq() + (d > 0.0 ? -nudge : nudge));
    });
}

void Bandscope::tdKnMovCenter_TurnEnd() {
    applyNewCenter(ui_.tdKnMovCenter.dVal());
    tellRangeChanged();
}

void Bandscope::tdKnMovCursor_ValueChanged(double d) {
    reported(L"tdKnMovCursor_ValueChanged", [&](Step& step) {
        if (d == 0.0 || !range_.derive())
            return;
        step = 200;
        const double nudge = range_.GridStepX() / kNudges;
        const double from = ui_.tdKnMovCursor.dVal() > 0.0 ? ui_.tdKnMovCursor.dVal() : DisplayCenterFreq();
        setShownCursor(from + (d > 0.0 ? nudge : -nudge));
    });
}

}  // namespace kv::control
