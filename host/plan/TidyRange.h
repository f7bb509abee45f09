// A display range whose grid lines are on round frequencies.
#pragma once

namespace kv::host {

struct TidyRange {
    double lowest = 0.0;  ///< in the unit of the arguments
    double highest = 0.0;
    int divisions = 0;  ///< grid intervals across it, an even number, so that a line marks the middle
};

/// A range with a small margin around the span between two values. It has at most 24 divisions of 1, 2, 2.5 or 5 times
/// a power of ten, and it does not begin below 0. Values below 0 and values that are not numbers count as 0, values
/// above 1e12 as 1e12. A span of less than a billionth of its higher end, or of less than 1e-9, is widened to that.
[[nodiscard]] TidyRange tidyRange(double a, double b);

}  // namespace kv::host
