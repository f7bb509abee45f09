#include "control/DisplayRange.h"

#include <cmath>
#include <tuple>

#include "control/GridSteps.h"
#include "util/RuntimeError.h"

namespace kv::control {

using util::RuntimeError;
using util::error_number::kOverflow;

namespace {

constexpr double kUsualEndBuffer = 100.0;  // MHz
constexpr double kLeastSpan = 1e-6;        // MHz; far below a hertz the digits of a double run out
constexpr std::int16_t kUsualGridX = 20;

// Centers closer than this part of half the span are the same center: otherwise the rounding of a sum would make the
// range creep from drawing to drawing.
constexpr double kSameCenter = 1e-9;

/// Passes a result on, or raises "Overflow" when it is not finite.
double checked(double value) {
    if (!std::isfinite(value))
        throw RuntimeError(kOverflow);
    return value;
}

}  // namespace

double DisplayRange::FreqEndBuffer() noexcept {
    if (!(endBuffer_ >= 0.0))
        endBuffer_ = kUsualEndBuffer;
    return endBuffer_;
}

double DisplayRange::DisplayMinFreq() {
    if (channels::isUnsetMinimum(minFreq_) && !channels::isEmptyStoreMinimum(store_.extremes().dFreqMin))
        minFreq_ = checked(store_.extremes().dFreqMin - FreqEndBuffer());
    if (hasSpan())
        applyHorizontalScale();
    return minFreq_;
}

double DisplayRange::DisplayMaxFreq() {
    if (channels::isUnsetFrequency(maxFreq_) && store_.extremes().dFreqMax > 0.0)
        maxFreq_ = checked(FreqEndBuffer() + store_.extremes().dFreqMax);
    if (hasSpan())
        applyHorizontalScale();
    return maxFreq_;
}

// The scale is kept in double precision: at 460 MHz, single precision is off by more than a pixel as soon as the
// display shows less than some 30 kHz.
void DisplayRange::applyHorizontalScale() {
    view_.setScaleLeft(minFreq_);
    view_.setScaleWidth(checked(maxFreq_ - minFreq_));
}

// A picture has no scale without a height; equal bounds keep the one it has.
void DisplayRange::applyVerticalScale(double minPwr) {
    const double height = checked(minPwr - DisplayMaxPwr());
    if (height != 0.0)
        view_.setScaleHeight(height);
}

double DisplayRange::DisplayCenterFreq() {
    if (channels::isUnsetFrequency(center_)) {
        center_ = checked((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
        view_.centerChanged();
    }
    return center_;
}

void DisplayRange::setDisplayCenterFreq(double value) {
    center_ = value > 0.0 ? checked(value) : checked((DisplayMinFreq() + DisplayMaxFreq()) / 2.0);
    view_.centerChanged();
}

// What is read before there is a channel is not kept, because it would cut off the first channels that are added.
double DisplayRange::DisplayMinPwr() {
    if (!channels::isUnsetMinimum(minPwr_))
        return minPwr_;
    const double minimum = store_.extremes().dPwrMin;
    if (!store_.empty())
        minPwr_ = minimum;
    applyVerticalScale(minimum);
    return minimum;
}

void DisplayRange::setDisplayMinPwr(double value) {
    minPwr_ = checked(value);
    applyVerticalScale(minPwr_);
}

double DisplayRange::DisplayMaxPwr() {
    if (!channels::isUnsetMaxPower(maxPwr_))
        return maxPwr_;
    const double maximum = store_.extremes().dPwrMax;
    if (!store_.empty())
        maxPwr_ = maximum;
    view_.setScaleTop(maximum);
    return maximum;
}

void DisplayRange::setDisplayMaxPwr(double value) {
    maxPwr_ = checked(value);
    view_.setScaleTop(maxPwr_);
}

bool DisplayRange::isUsable() const noexcept {
    return hasSpan() && store_.extremes().dPwrMin < store_.extremes().dPwrMax;
}

bool DisplayRange::isComplete() const noexcept {
    return !channels::isUnsetMinimum(minFreq_) && !channels::isUnsetFrequency(maxFreq_) &&
           !channels::isUnsetMinimum(minPwr_) && !channels::isUnsetMaxPower(maxPwr_) && hasSpan();
}

bool DisplayRange::derive() {
    DisplayMinFreq();
    DisplayMaxFreq();
    return isUsable();
}

void DisplayRange::shiftOntoCenter() {
    derive();
    if (channels::isUnsetFrequency(center_) || !hasSpan())
        return;
    const double halfSpan = checked(maxFreq_ - minFreq_) / 2.0;
    const double middle = minFreq_ + halfSpan;
    if (std::abs(middle - center_) > halfSpan * kSameCenter)
        showAround(center_, halfSpan);
}

// A center so far out that the span is lost beside it, or that its range would count as unset, ends in an error rather
// than in a range that no later center could widen again.
void DisplayRange::showAround(double center, double halfSpan) {
    const double minimum = checked(center - halfSpan);
    const double maximum = checked(center + halfSpan);
    if (!(maximum > minimum) || channels::isUnsetMinimum(minimum))
        throw RuntimeError(kOverflow);
    minFreq_ = minimum;
    maxFreq_ = maximum;
}

// Without a range the powers stay unset as well: a drawing before the first channel must not fix them for later.
bool DisplayRange::applyScale() {
    DisplayMinFreq();
    DisplayMaxFreq();
    if (!hasSpan())
        return false;
    // A host that sets the highest power moves the top alone; in a drawing the height follows.
    applyVerticalScale(DisplayMinPwr());
    return true;
}

bool DisplayRange::ScaleDisplay() {
    shiftOntoCenter();
    return applyScale();
}

void DisplayRange::unset() noexcept {
    minFreq_ = channels::FREQ_UNSET;
    maxFreq_ = -channels::FREQ_UNSET;
    center_ = 0.0;
    step_ = 0.0;
}

void DisplayRange::SetDisplayRange(double dMin, double dMax) {
    if (dMax > dMin) {
        checked(endBuffer_);
        while ((dMax - dMin) / 3.0 < endBuffer_)
            endBuffer_ /= 2.0;
    }
    const double minimum = checked(dMin - FreqEndBuffer());
    maxFreq_ = checked(FreqEndBuffer() + dMax);
    minFreq_ = minimum;
}

bool DisplayRange::showBetween(double dFMin, double dFMax) {
    const channels::Extremes& e = store_.extremes();
    const double minimum = dFMin > 0.0 ? dFMin : e.dFreqMin;
    const double maximum = dFMax > 0.0 ? dFMax : e.dFreqMax;
    // The range stays unset rather than far away from every channel.
    if (channels::isEmptyStoreMinimum(minimum) || channels::isUnsetFrequency(maximum))
        return false;
    view_.setScaleLeft(e.dFreqMin);
    const double span = checked(e.dFreqMax - e.dFreqMin);
    if (span != 0.0)
        view_.setScaleWidth(span);
    SetDisplayRange(minimum, maximum);
    unsetCenter();
    return true;
}

bool DisplayRange::setExactly(double minimum, double maximum) {
    if (!(maximum - minimum >= kLeastSpan) || channels::isUnsetFrequency(maximum))
        return false;
    minFreq_ = minimum;
    maxFreq_ = maximum;
    applyHorizontalScale();
    return true;
}

bool DisplayRange::returnFromViewAll() {
    if (!(beforeViewAll_.first < beforeViewAll_.second))
        return false;
    std::tie(minFreq_, maxFreq_) = beforeViewAll_;
    center_ = 0.0;
    deriveGridStep();
    return true;
}

std::int16_t DisplayRange::nGridX() noexcept {
    if (nGridX_ < 1)
        nGridX_ = kUsualGridX;
    return nGridX_;
}

double DisplayRange::GridStepX() {
    if (channels::isUnsetFrequency(step_)) {
        step_ = drawnStep();
        chosen_ = false;
    }
    return step_;
}

void DisplayRange::setGridStepX(double value) noexcept {
    step_ = value;
    chosen_ = true;
}

void DisplayRange::deriveGridStep() {
    step_ = 0.0;
    GridStepX();
}

// So turning the grid knob zooms, and the middle line goes on marking the center.
void DisplayRange::applyChosenStep() {
    if (!derive() || channels::isUnsetFrequency(step_))
        return;
    showAround(DisplayCenterFreq(), step_ * nGridX() / 2.0);
    applyHorizontalScale();
}

bool DisplayRange::isDrawnStepChosen() {
    return chosen_ && isSameStep(step_, drawnStep());
}

void DisplayRange::takeTurnBack() noexcept {
    minFreq_ = beforeTurn_.minFreq;
    maxFreq_ = beforeTurn_.maxFreq;
    step_ = beforeTurn_.step;
    chosen_ = beforeTurn_.chosen;
}

}  // namespace kv::control
