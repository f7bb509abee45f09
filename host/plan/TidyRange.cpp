#include "host/plan/TidyRange.h"

#include <algorithm>
#include <cmath>

namespace kv::host {

namespace {

struct Span {
    double lowest;
    double highest;
};

/// A span that a grid can be computed for: `a` and `b` in order, limited, and far enough apart to be told apart.
Span usableSpan(double a, double b) {
    constexpr double kHighest = 1e12;
    constexpr double kSmallestPart = 1e-9;  // of the higher end
    constexpr double kSmallest = 1e-9;
    const auto limited = [=](double value) { return std::isnan(value) ? 0.0 : std::clamp(value, 0.0, kHighest); };
    const auto [lowest, highest] = std::minmax({limited(a), limited(b)});
    const double missing = std::max(highest * kSmallestPart, kSmallest) - (highest - lowest);
    const double widening = std::max(missing, 0.0) / 2.0;
    return {lowest - widening, highest + widening};
}

}  // namespace

TidyRange tidyRange(double a, double b) {
    constexpr double kMostDivisions = 24.0;
    constexpr double kRoom = 0.01;  // part of the span, on each side
    constexpr double kSame = 1e-6;  // part of a step
    const auto [lowest, highest] = usableSpan(a, b);
    const double room = (highest - lowest) * kRoom;
    const double from = std::max(lowest - room, 0.0);
    const double to = highest + room;
    double decade = std::pow(10.0, std::floor(std::log10((to - from) / kMostDivisions)));
    for (;; decade *= 10.0) {
        for (const double factor : {1.0, 2.0, 2.5, 5.0}) {
            const double step = factor * decade;
            double first = std::floor(from / step);
            double last = std::ceil(to / step);
            if (std::fmod(last - first, 2.0) != 0.0) {
                // Adds a step on the side with less room, or above when both sides have the same room.
                const bool below = first > 0.0 && from - first * step < last * step - to - step * kSame;
                (below ? first : last) += below ? -1.0 : 1.0;
            }
            if (last - first <= kMostDivisions) {
                return {first * step, last * step, static_cast<int>(last - first)};
            }
        }
    }
}

}  // namespace kv::host
