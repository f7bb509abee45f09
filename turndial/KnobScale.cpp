#include "turndial/KnobScale.h"

#include <algorithm>
#include <cmath>

namespace kv::turndial {
namespace {

/// Values that differ by no more than this part count as equal, because of rounding errors.
constexpr double kHair = 1e-9;
/// The distance from the end at which values that are off the scale are shown.
constexpr double kOff = 0.5;
/// A step that is a smaller part of the range than this counts as not set.
constexpr double kLeastStep = 1e-12;
constexpr double kDetentsWithoutStep = 100.0;

bool same(double a, double b) {
    return std::abs(a - b) <= kHair * std::max(std::abs(a), std::abs(b));
}

/// `value` rounded to a power of ten not above `unit`, as the nearest number that decimals can write.
double tidied(double value, double unit) {
    const double exponent = std::floor(std::log10(unit));
    const double tidy = exponent < 0.0 ? std::round(value * std::pow(10.0, -exponent)) / std::pow(10.0, -exponent)
                                       : std::round(value / std::pow(10.0, exponent)) * std::pow(10.0, exponent);
    return std::isfinite(tidy) ? tidy : value;
}

}  // namespace

bool KnobScale::canTurn() const noexcept {
    return !stops.empty() || (std::isfinite(min) && std::isfinite(max) && min < max && std::isfinite(max - min));
}

double KnobScale::detent() const noexcept {
    return step > kLeastStep * (max - min) && std::isfinite(step) ? step : (max - min) / kDetentsWithoutStep;
}

double KnobScale::cleaned(double value) const noexcept {
    return tidied(value, detent() * kHair);
}

double KnobScale::detents() const noexcept {
    if (!canTurn())
        return 0.0;
    if (!stops.empty())
        return static_cast<double>(stops.size() - 1);
    const double count = (max - min) / detent();
    const double whole = std::round(count);
    return same(count, whole) ? whole : count;
}

/// Counts from 0, between two stops by parts.
double KnobScale::stopIndexOf(double value) const noexcept {
    for (std::size_t i = 0; i < stops.size(); ++i) {
        if (same(stops[i].dValue, value))
            return static_cast<double>(i);
    }
    for (std::size_t i = 1; i < stops.size(); ++i) {
        const double low = stops[i - 1].dValue;
        const double high = stops[i].dValue;
        if ((low < value && value < high) || (high < value && value < low))
            return static_cast<double>(i - 1) + std::clamp((value - low) / (high - low), 0.001, 0.999);
    }
    const bool falling = stops.front().dValue > stops.back().dValue;
    const bool beyond = falling ? value < stops.back().dValue : value > stops.back().dValue;
    return beyond ? static_cast<double>(stops.size()) - 1.0 + kOff : -kOff;
}

double KnobScale::placeOf(double value) const noexcept {
    if (!canTurn())
        return -kOff;
    if (!stops.empty())
        return stopIndexOf(value) / std::max(1.0, static_cast<double>(stops.size() - 1));
    if (value > max)
        return 1.0 + kOff;
    return value >= min ? (value - min) / (max - min) : -kOff;
}

double KnobScale::valueAt(double place, bool fine) const noexcept {
    if (!canTurn())
        return min;
    const double part = place > 0.0 ? std::min(place, 1.0) : 0.0;
    if (!stops.empty()) {
        const double last = static_cast<double>(stops.size() - 1);
        return stops[static_cast<std::size_t>(std::lround(part * last))].dValue;
    }
    if (part <= 0.0)
        return min;
    if (part >= 1.0)
        return max;
    const double exact = min + part * (max - min);
    if (smooth) {
        const double unit = std::min(detent(), (max - min) / 10.0) / (fine ? 1000.0 : 100.0);
        return std::clamp(tidied(exact, unit), min, max);
    }
    const double nearest = std::min(cleaned(min + std::round((exact - min) / detent()) * detent()), max);
    // The last detent may be cut short.
    return max - exact < std::abs(nearest - exact) ? max : nearest;
}

std::optional<double> KnobScale::stepped(double value, int count, bool fine) const noexcept {
    if (count == 0 || !canTurn())
        return std::nullopt;
    return stops.empty() ? steppedRange(value, count, fine) : steppedStop(value, count);
}

std::optional<double> KnobScale::steppedStop(double value, int count) const noexcept {
    const double from = stopIndexOf(value);
    const double last = static_cast<double>(stops.size() - 1);
    double to = (count > 0 ? std::floor(from) : std::ceil(from)) + count;
    if (endless)
        to -= std::floor(to / (last + 1.0)) * (last + 1.0);
    to = std::clamp(to, 0.0, last);
    if (endless ? to == from : (to - from) * count <= 0.0)
        return std::nullopt;
    return stops[static_cast<std::size_t>(to)].dValue;
}

std::optional<double> KnobScale::steppedRange(double value, int count, bool fine) const noexcept {
    const bool up = count > 0;
    const double end = up ? max : min;
    const double otherEnd = up ? min : max;
    if (!(value >= min && value <= max)) {
        const bool towards = (value > max) != up;
        return towards ? std::optional(otherEnd) : std::nullopt;
    }
    if (std::abs(value - end) <= kHair * (max - min))
        return endless ? std::optional(otherEnd) : value == end ? std::nullopt : std::optional(end);
    double to = value + count * (fine ? detent() / 10.0 : detent());
    if (!smooth && !fine) {
        const double at = (value - min) / detent();
        const bool onDetent = std::abs(at - std::round(at)) <= kHair * std::max(1.0, at);
        const double whole = onDetent ? std::round(at) : up ? std::floor(at) : std::ceil(at);
        to = min + (whole + count) * detent();
    }
    to = std::clamp(cleaned(to), min, max);
    return to == value ? std::nullopt : std::optional(to);
}

}  // namespace kv::turndial
