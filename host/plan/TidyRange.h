// A display range whose grid lines stand on round frequencies.
#pragma once

namespace kv::host {

struct TidyRange {
    double lowest = 0.0;  ///< in the unit of the arguments
    double highest = 0.0;
    int divisions = 0;  ///< grid intervals across it, an even number, so that a line marks the middle
};

/// The range with a little room around the span from lowest to highest (lowest below highest, lowest not negative),
/// cut into at most 24 steps of 1, 2, 2.5 or 5 times a power of ten. It does not go below 0.
[[nodiscard]] TidyRange tidyRange(double lowest, double highest);

}  // namespace kv::host
