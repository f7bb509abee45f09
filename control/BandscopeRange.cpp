// The procedures that choose the range, the center, the grid step and the cursor.
#include <string>

#include "control/Bandscope.h"
#include "util/NumberFormat.h"

namespace kv::control {

bool Bandscope::ReScaleChannels() {
    return reported(
        L"ReScaleChannels",
        [&](Step& step) {
            store_.rederiveExtremes();
            step = 200;
            knobs_.putCursorOnCenter();
        },
        L"Error Re-scaling Bandscope Channels");
}

void Bandscope::RescaleAll() {
    reported(L"RescaleAll", [&](Step& step) {
        ReScaleChannels();
        step = 200;
        const double gridStep = range_.GridStepX();
        step = 300;
        if (channels::isUnsetFrequency(gridStep))
            return;
        knobs_.showStepOfRange(gridStep);
        knobs_.showGridStep();
    });
}

void Bandscope::DrawByRange(double dFMin, double dFMax) {
    reported(L"DrawByRange", [&](Step& step) { drawByRange(dFMin, dFMax, step); });
}

void Bandscope::drawByRange(double dFMin, double dFMax, Step& step) {
    ReScaleChannels();
    step = 300;
    if (!range_.showBetween(dFMin, dFMax)) {
        drawUnlessDrawing();
        return;
    }
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
    knobs_.showStepOfRange(range_.step());
    knobs_.rescaleToRange();
    JustDrawIt();
}

// Ticked, the whole range is shown; cleared, the range from before. The host hears of both.
void Bandscope::chkViewAllxx_Click() {
    reported(L"chkViewAllxx_Click", [&](Step& step) {
        const std::pair<double, double> before = range_.span();
        const RangeAction action(navigation_.history(), before);
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

bool Bandscope::showExactly(double minimum, double maximum) {
    if (!range_.setExactly(minimum, maximum))
        return false;
    knobs_.rescaleToRange();
    setDisplayCenterFreq(minimum + (maximum - minimum) / 2.0);
    range_.deriveGridStep();
    panel_.selectGridRange(range_.step());
    drawUnlessDrawing();
    return true;
}

void Bandscope::zoomTo(double minimum, double maximum) {
    if (showExactly(minimum, maximum))
        rangeChosen();
}

void Bandscope::rangeChosen() {
    navigation_.history().finish(range_.span());
    services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq());
}

bool Bandscope::goByHand(bool (Navigation::*step)()) {
    if (!(navigation_.*step)())
        return false;
    tellRangeChanged();
    return true;
}

void Bandscope::panTo(double center) {
    applyNewCenter(center);
    tellRangeChanged();
}

void Bandscope::showAllChannels() {
    DrawByRange(0.0, 0.0);
    tellRangeChanged();
}

void Bandscope::tellGridRangeChanged() {
    reported(L"ChgGridRange", [&](Step&) { services_.events.ChgGridRange(); });
}

void Bandscope::tellRangeChanged() {
    reported(L"ChgFreqRange", [&](Step&) { rangeChosen(); });
}

void Bandscope::setCursorVal(double value) {
    if (range_.derive() && range_.contains(value))
        showCursorAt(value);
}

void Bandscope::showCursorAt(double frequency) {
    panel_.showCursor(frequency);
    reported(L"CursorVal", [&](Step&) { drawCursorAt(frequency); });
}

void Bandscope::moveCursorTo(double from, double to) {
    showCursorAt(snapping_.ahead(from, to));
}

void Bandscope::drawCursorAt(double frequency) {
    DrawCursorLine(frequency, lCursorColor_);
    marker_.showDistance(frequency);
}

void Bandscope::setMarker(double frequency, bool visible) {
    marker_.set(frequency, visible);
    showMarker();
    ui_.picSpectrum.tellSpoken();
}

double Bandscope::cursorOrCenter() {
    if (CursorVal() > 0.0)
        return CursorVal();
    return range_.derive() ? DisplayCenterFreq() : 0.0;
}

void Bandscope::toggleMarker() {
    setMarker(marker_.isVisible() ? marker_.frequency() : cursorOrCenter(), !marker_.isVisible());
}

void Bandscope::showMarker() {
    marker_.show(CursorVal(), lCursorColor_);
}

void Bandscope::applyNewCenter(double value) {
    reported(L"SetNewCenter", [&](Step& step) {
        setDisplayCenterFreq(value);
        step = 200;
        DrawNewCenterFreq();
    });
}

}  // namespace kv::control
