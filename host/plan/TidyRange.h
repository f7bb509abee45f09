// A display range whose grid lines are on round frequencies.
#pragma once

namespace kv::host {

struct TidyRange {
    double lowest = 0.0;  ///< in the unit of the arguments
    double highest = 0.0;
    int divisions = 0;  ///< grid intervals across it, an even number, so that a line marks the middle
};

/// A range with a small margin around the span from lowest to highest (lowest is below highest and not negative). It
/// has at most 24 divisions of 1, 2, 2.5 or 5 times a power of ten, and it does not begin below 0.
[[nodiscard]] TidyRange tidyRange(double lowest, double highest);

}  // namespace kv::host
