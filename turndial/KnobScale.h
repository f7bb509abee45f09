// The arithmetic of a dial's scale: the places of values, and the values that turning leads to.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kv::turndial {

/// A place on a knob's scale where turning stops.
struct KnobStop {
    std::wstring sLabel;
    double dValue = 0.0;
};

/// A place on the scale is 0 at its low end and 1 at its high end, with stops at even distances. An invalid range
/// (empty, reversed, not finite) cannot be turned; values that are off the scale, or not numbers, are allowed.
struct KnobScale {
    double min = 0.0;
    double max = 100.0;
    double step = 1.0;            ///< one detent; not above 0, or extremely small: a hundredth of the range
    std::vector<KnobStop> stops;  ///< empty: a range from `min` to `max`
    bool smooth = false;          ///< a turn by mouse does not stop at detents
    bool endless = false;         ///< past one end the scale continues at the other

    [[nodiscard]] bool canTurn() const noexcept;
    /// Detents from end to end; not whole when the last one is cut short, 0 when the scale cannot be turned.
    [[nodiscard]] double detents() const noexcept;

    /// The place of a value; below 0 or above 1 when it is off the scale. NaN is below the low end.
    [[nodiscard]] double placeOf(double value) const noexcept;

    /// The value at a place (0 to 1) that the mouse has turned to: at a stop, at a detent, or, on a smooth scale, at a
    /// number rounded to about a hundredth of a detent, `fine` to a thousandth.
    [[nodiscard]] double valueAt(double place, bool fine) const noexcept;

    /// The value that lies `count` detents (below 0: downwards) from `value`, no further than the end. From a value
    /// between two stops or detents, or off the scale, the first one is the neighbor on that side. `fine` takes
    /// tenths of a detent where there are no stops. Nothing when the scale ends there.
    [[nodiscard]] std::optional<double> stepped(double value, int count, bool fine) const noexcept;

  private:
    [[nodiscard]] double detent() const noexcept;
    /// Without the rounding error of additions.
    [[nodiscard]] double cleaned(double value) const noexcept;
    [[nodiscard]] double stopIndexOf(double value) const noexcept;
    [[nodiscard]] std::optional<double> steppedStop(double value, int count) const noexcept;
    [[nodiscard]] std::optional<double> steppedRange(double value, int count, bool fine) const noexcept;
};

}  // namespace kv::turndial
