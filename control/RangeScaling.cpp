// From the extremes of the channels to the range that the picture shows, and from there to the picture's scale.
#include <cmath>
#include <string>
#include <tuple>

#include "control/Bandscope.h"
#include "util/NumberFormat.h"
#include "util/RuntimeError.h"

namespace kv::control {

using util::RuntimeError;
using util::error_number::kOverflow;

namespace {

constexpr double kUsualEndBuffer = 100.0;  // MHz
constexpr double kLeastSpan = 1e-6;        // MHz

// Centers closer than this part of half the span are one and the same: the last digits of a sum must not make the
// range creep from drawing to drawing.
constexpr double kSameCenter = 1e-9;

/// Passes a sum on, or raises "Overflow" as the arithmetic of the day would.
double checked(double value) {
    if (!std::isfinite(value))
        throw RuntimeError(kOverflow);
    return value;
}

}  // namespace

double Bandscope::FreqEndBuffer() noexcept {
    if (!(range_.endBuffer >= 0.0))
        range_.endBuffer = kUsualEndBuffer;
    return range_.endBuffer;
}

double Bandscope::DisplayMinFreq() {
    if (channels::isUnsetMinimum(range_.minFreq) && !channels::isEmptyStoreMinimum(store_.extremes().dFreqMin))
        range_.minFreq = checked(store_.extremes().dFreqMin - FreqEndBuffer());
    if (range_.minFreq < range_.maxFreq)
        applyHorizontalScale();
    return range_.minFreq;
}

double Bandscope::DisplayMaxFreq() {
    if (channels::isUnsetFrequency(range_.maxFreq) && store_.extremes().dFreqMax > 0.0)
        range_.maxFreq = checked(FreqEndBuffer() + store_.extremes().dFreqMax);
    if (range_.maxFreq - range_.minFreq > 0.0)
        applyHorizontalScale();
    return range_.maxFreq;
}

// The picture keeps the scale in double precision: at 460 MHz single precision is off by more than a pixel as soon as
// the display shows less than some 30 kHz.
void Bandscope::applyHorizontalScale() {
    ui_.picSpectrum.setScaleLeft(range_.minFreq);
    ui_.picSpectrum.setScaleWidth(checked(range_.maxFreq - range_.minFreq));
}

// A picture has no scale without a height; equal bounds keep the one it has.
void Bandscope::applyVerticalScale(double minPwr) {
    const double height = checked(minPwr - DisplayMaxPwr());
    if (height != 0.0)
        ui_.picSpectrum.setScaleHeight(height);
}

double Bandscope::DisplayCenterFreq() {
    if (channels::isUnsetFrequency(range_.center)) {
        range_.center = checked((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
        SetCenterFreqKnob();
    }
    return range_.center;
}

void Bandscope::setDisplayCenterFreq(double value) {
    range_.center = value > 0.0 ? checked(value) : checked((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
    SetCenterFreqKnob();
}

void Bandscope::setDisplayMinPwr(double value) {
    range_.minPwr = checked(value);
    applyVerticalScale(range_.minPwr);
}

// What is read before there is a channel is not kept: it would cut off the first channels that come.
double Bandscope::DisplayMinPwr() {
    if (!channels::isUnsetMinimum(range_.minPwr))
        return range_.minPwr;
    const double minimum = store_.extremes().dPwrMin;
    if (!store_.empty())
        range_.minPwr = minimum;
    applyVerticalScale(minimum);
    return minimum;
}

void Bandscope::setDisplayMaxPwr(double value) {
    range_.maxPwr = checked(value);
    ui_.picSpectrum.setScaleTop(range_.maxPwr);
}

double Bandscope::DisplayMaxPwr() {
    if (!channels::isUnsetMaxPower(range_.maxPwr))
        return range_.maxPwr;
    const double maximum = store_.extremes().dPwrMax;
    if (!store_.empty())
        range_.maxPwr = maximum;
    ui_.picSpectrum.setScaleTop(maximum);
    return maximum;
}

bool Bandscope::hasUsableRange() const noexcept {
    return range_.maxFreq > range_.minFreq && store_.extremes().dPwrMin < store_.extremes().dPwrMax;
}

// The getters derive what is still unset, so that a range which nothing has read yet counts as well.
bool Bandscope::deriveRange() {
    DisplayMinFreq();
    DisplayMaxFreq();
    return hasUsableRange();
}

void Bandscope::shiftRangeOntoCenter() {
    deriveRange();
    if (channels::isUnsetFrequency(range_.center) || !(range_.maxFreq > range_.minFreq))
        return;
    const double halfSpan = checked(range_.maxFreq - range_.minFreq) / 2.0;
    const double middle = range_.minFreq + halfSpan;
    if (std::abs(middle - range_.center) > halfSpan * kSameCenter)
        showAround(range_.center, halfSpan);
}

// A center so far out that the span is lost beside it, or that its range would count as not set, ends in an error
// rather than in a range that no later center could widen again.
void Bandscope::showAround(double center, double halfSpan) {
    const double minimum = checked(center - halfSpan);
    const double maximum = checked(center + halfSpan);
    if (!(maximum > minimum) || channels::isUnsetMinimum(minimum))
        throw RuntimeError(kOverflow);
    range_.minFreq = minimum;
    range_.maxFreq = maximum;
}

// Without a range the powers stay unset as well: a drawing before the first channel must not fix them for later.
bool Bandscope::applyScale() {
    DisplayMinFreq();
    DisplayMaxFreq();
    if (!(range_.maxFreq > range_.minFreq))
        return false;
    // A host that sets the highest power moves the top alone; in a drawing the height follows.
    applyVerticalScale(DisplayMinPwr());
    return true;
}

bool Bandscope::ScaleDisplay() {
    shiftRangeOntoCenter();
    return applyScale();
}

void Bandscope::zoomTo(double minimum, double maximum) {
    // A range that ends at 0 MHz or below would count as not set; far below a hertz the digits of a double run out.
    if (!(maximum - minimum >= kLeastSpan) || channels::isUnsetFrequency(maximum))
        return;
    range_.minFreq = minimum;
    range_.maxFreq = maximum;
    applyHorizontalScale();
    rescaleKnobsToRange();
    setDisplayCenterFreq(minimum + (maximum - minimum) / 2.0);
    nGridX();
    deriveGridStep();
    selectGridRange();
    drawUnlessDrawing();
    services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq());
}

void Bandscope::unsetRange() noexcept {
    range_.minFreq = channels::FREQ_UNSET;
    range_.maxFreq = -channels::FREQ_UNSET;
    range_.center = 0.0;
}

void Bandscope::SetDisplayRange(double dMin, double dMax) {
    if (dMax > dMin) {
        checked(dMin);
        checked(dMax);
        checked(range_.endBuffer);
        while ((dMax - dMin) / 3.0 < range_.endBuffer)
            range_.endBuffer /= 2.0;
    }
    const double minimum = checked(dMin - FreqEndBuffer());
    range_.maxFreq = checked(FreqEndBuffer() + dMax);
    range_.minFreq = minimum;
}

bool Bandscope::ReScaleChannels() {
    std::int16_t flag = 100;
    return reported(L"ReScaleChannels", L"Error Re-scaling Bandscope Channels", flag, [&] {
        store_.rederiveExtremes();
        flag = 200;
        putCursorOnCenter();
    });
}

void Bandscope::putCursorOnCenter() {
    if (look_.bUseMovers) {
        ui_.tdKnMovCursor.setDVal(DisplayCenterFreq());
        return;
    }
    rescaleKnobsToRange();
    ui_.tdKnCursor.setDVal(DisplayCenterFreq());
}

void Bandscope::RescaleAll() {
    std::int16_t flag = 100;
    reported(L"RescaleAll", L"", flag, [&] {
        ReScaleChannels();
        flag = 200;
        const double step = GridStepX();
        flag = 300;
        if (channels::isUnsetFrequency(step))
            return;
        ui_.tdKnGrid.setDVal(step);
        ui_.tdKnGrid.Refresh();
        showGridStep();
    });
}

void Bandscope::DrawByRange(double dFMin, double dFMax) {
    std::int16_t flag = 100;
    reported(L"DrawByRange", L"", flag, [&] {
        ReScaleChannels();
        flag = 200;
        const channels::Extremes& e = store_.extremes();
        const double minimum = dFMin > 0.0 ? dFMin : e.dFreqMin;
        const double maximum = dFMax > 0.0 ? dFMax : e.dFreqMax;
        if (channels::isEmptyStoreMinimum(minimum) || channels::isUnsetFrequency(maximum)) {
            // Nothing to take a bound from: the range stays unset rather than far away from every channel.
            drawUnlessDrawing();
            return;
        }
        flag = 300;
        // The scale of the channels; it stays when the bounds give no range, as reversed ones do.
        ui_.picSpectrum.setScaleLeft(e.dFreqMin);
        if (const double span = checked(e.dFreqMax - e.dFreqMin); span != 0.0)
            ui_.picSpectrum.setScaleWidth(span);
        SetDisplayRange(minimum, maximum);
        range_.center = 0.0;
        flag = 400;
        nGridX();
        deriveGridStep();
        DisplayMinFreq();
        DisplayMaxFreq();
        DisplayCenterFreq();
        flag = 500;
        drawUnlessDrawing();
    });
}

void Bandscope::DrawNewCenterFreq() {
    std::int16_t flag = 100;
    reported(L"DrawNewCenterFreq", L"", flag, [&] {
        shiftRangeOntoCenter();
        flag = 200;
        JustDrawIt();
    });
}

void Bandscope::setShowAll(bool value) {
    range_.bShowAll = value;
    const channels::Extremes& e = store_.extremes();
    if (!value || !(e.dFreqMin < e.dFreqMax))
        return;
    std::int16_t flag = 100;
    reported(L"ShowAll", L"", flag, [&] {
        if (DisplayMinFreq() <= e.dFreqMin && e.dFreqMax <= DisplayMaxFreq()) {
            tellRangeAlreadyShown();
            return;
        }
        flag = 200;
        showWholeSpan();
    });
}

// Ticked, the whole range is shown; cleared, the range from before. The host hears of both.
void Bandscope::chkViewAllxx_Click() {
    std::int16_t flag = 100;
    reported(L"chkViewAllxx_Click", L"", flag, [&] {
        const std::pair<double, double> before{range_.minFreq, range_.maxFreq};
        if (ui_.chkViewAllxx.value() != 0) {
            deriveRange();
            range_.beforeViewAll = {range_.minFreq, range_.maxFreq};
            flag = 200;
            if (store_.extremes().dFreqMin < store_.extremes().dFreqMax)
                showWholeSpan();
        } else if (range_.beforeViewAll.first < range_.beforeViewAll.second) {
            flag = 300;
            std::tie(range_.minFreq, range_.maxFreq) = range_.beforeViewAll;
            range_.center = 0.0;
            deriveGridStep();
            drawUnlessDrawing();
        }
        flag = 400;
        if (before != std::pair(range_.minFreq, range_.maxFreq))
            tellRangeChanged();
    });
}

void Bandscope::tellRangeAlreadyShown() {
    const std::wstring format = knobFormat();
    const auto text = [&format](double value) { return util::formatNumber(value, format); };
    services_.platform.messageBox(
        L"The current display range is:" + text(DisplayMinFreq()) + L" to " + text(DisplayMaxFreq()) +
            L"\r\n\r\nThis range includes all the frequencies currently selected:" + text(store_.extremes().dFreqMin) +
            L" to " + text(store_.extremes().dFreqMax),
        L"All Frequencies in Current Range", formenv::MessageIcon::Information, formenv::MessageButtons::Ok);
}

void Bandscope::showWholeSpan() {
    const channels::Extremes& e = store_.extremes();
    resetKnobRanges();
    SetDisplayRange(e.dFreqMin, e.dFreqMax);
    setDisplayCenterFreq((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
    nGridX();
    deriveGridStep();
    ui_.tdKnGrid.setDVal(grid_.step);
    ui_.tdKnGrid.Refresh();
    rescaleKnobsToRange();
    JustDrawIt();
}

}  // namespace kv::control
