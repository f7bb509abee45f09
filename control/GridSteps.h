// The steps between two grid lines that the user can choose, by the unit in the grid-range box, and how a step is
// written.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace kv::control {

/// A stop of the grid knob.
struct GridStop {
    const wchar_t* label;  ///< in Hz with a suffix, such as "10K"
    double step;           ///< MHz
};

/// The entries of the grid-range box, in its order.
inline constexpr const wchar_t* kGridUnits[] = {L"KHz", L"MHz", L"GHz"};
/// The entry that is selected at the start.
inline constexpr int kStartGridUnit = 1;

/// The stops of the grid knob while `unit` is selected in the grid-range box, in ascending order. Any other text counts
/// as "MHz".
[[nodiscard]] std::span<const GridStop> gridStops(const std::wstring& unit) noexcept;

/// The index in `kGridUnits` of the unit whose stops reach from below `step` (MHz) to above it: the unit in `present`
/// as long as its stops do.
[[nodiscard]] int gridUnitFor(double step, int present) noexcept;

/// Steps that differ only by the rounding of a division are the same.
[[nodiscard]] bool isSameStep(double a, double b) noexcept;

/// A step in MHz written like the labels of the stops, in Hz with a suffix, with up to six significant digits: "25K".
[[nodiscard]] std::wstring stepText(double step);

}  // namespace kv::control
