// The dial: a value on a scale.
#include "turndial/Knob.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kv::turndial {

using raster::SmoothPoint;

namespace {

// Pixels at 96 dpi to push for a whole range, and from stop to stop.
constexpr double kTravel = 200.0;
constexpr double kStopTravel = 16.0;
// In a 1-2-5 row of stops, three are a decade.
constexpr int kPageStops = 3;
constexpr int kPageDetents = 5;

/// How far the mouse moved around a dial's middle, radians clockwise. Close to the middle the angle is not meaningful.
double angleBetween(const DialPlace& dial, SmoothPoint from, SmoothPoint to) {
    const SmoothPoint a{from.x - dial.center.x, from.y - dial.center.y};
    const SmoothPoint b{to.x - dial.center.x, to.y - dial.center.y};
    if (std::min(std::hypot(a.x, a.y), std::hypot(b.x, b.y)) < dial.rimInside / 2.0)
        return 0.0;
    return std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y);
}

}  // namespace

void tdKnob::AddStop(bool bFirst, std::wstring sLabel, double dValue) {
    if (bFirst)
        stops_.clear();
    stops_.push_back({std::move(sLabel), dValue});
}

KnobScale tdKnob::presentScale() const {
    KnobScale scale{dMinVal, dMaxVal, dStep, {}, bOption1, bOption3};
    if (hasStops())
        scale.stops = stops_;
    return scale;
}

KnobScale tdKnob::scale() const {
    return holdsMouse() ? heldScale_ : presentScale();
}

int tdKnob::page() const noexcept {
    return hasStops() ? kPageStops : kPageDetents;
}

/// A stop without a number format reads as its label does.
std::wstring tdKnob::readOut() const {
    if (sFormat.empty() && hasStops()) {
        const auto at =
            std::find_if(stops_.begin(), stops_.end(), [this](const KnobStop& stop) { return stop.dValue == dVal(); });
        if (at != stops_.end())
            return at->sLabel;
        if (textOffStops)
            return textOffStops(dVal());
    }
    return KnobBase::readOut();
}

void tdKnob::turnBegins() {
    heldScale_ = presentScale();
    startValue_ = turnedTo_ = dVal();
    turned_ = false;
    place_ = std::clamp(heldScale_.placeOf(startValue_), 0.0, 1.0);
}

void tdKnob::press(SmoothPoint at) {
    byRim_ = dial_.onRim(at);
}

void tdKnob::drag(SmoothPoint from, SmoothPoint to, double pixelsUp, bool fine) {
    const double travel = heldScale_.stops.empty() ? kTravel : kStopTravel * std::max(1.0, heldScale_.detents());
    double by = byRim_ ? angleBetween(dial_, from, to) / kDialSweep : pixelsUp / travel;
    // A mouse that does not move turns nothing, not even by rounding the value again.
    if (!heldScale_.canTurn() || by == 0.0)
        return;
    if (fine)
        by *= kFine;
    place_ += by;
    place_ = heldScale_.endless ? place_ - std::floor(place_) : std::clamp(place_, 0.0, 1.0);
    const double value = heldScale_.valueAt(place_, fine);
    if (!turned_ && !heldScale_.endless) {
        // From off the scale or between two stops the first stop is the next one in the direction of the turn.
        const double start = heldScale_.placeOf(startValue_);
        const double next = heldScale_.placeOf(value);
        if (by > 0.0 ? next <= start : next >= start)
            return;
    }
    if (value != turnedTo_)
        turnTo(value);
}

void tdKnob::turnTo(double value) {
    turnedTo_ = value;
    turned_ = true;
    setDVal(value);
    tell(value);
}

void tdKnob::turnBy(int detents, bool fine) {
    if (const std::optional<double> value = presentScale().stepped(dVal(), detents, fine))
        turnTo(*value);
}

void tdKnob::turnToEnd(bool last) {
    const KnobScale present = presentScale();
    if (!present.canTurn())
        return;
    const double value = present.valueAt(last ? 1.0 : 0.0, false);
    // While another text is shown, the user may want the value that the knob already has.
    if (value != dVal() || isReadOutBorrowed())
        turnTo(value);
}

void tdKnob::takeBack() {
    setDVal(startValue_);
    tell(startValue_);
}

void tdKnob::paintBody(const KnobPicture& picture, const raster::SmoothBox& area) {
    dial_ = paintDial(picture, area, scale(), dVal(), iKnobStyle);
}

}  // namespace kv::turndial
