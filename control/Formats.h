// The number formats and proportions that more than one part of the display uses.
#pragma once

namespace kv::control {

/// Frequencies in MHz on knobs and labels.
inline constexpr wchar_t kKnobFormat[] = L"##0.00000";
/// Frequencies in MHz under the pointer, and as a screen reader says them.
inline constexpr wchar_t kPointerFormat[] = L"0.00000";

/// Nudges of a mover, or presses of an arrow key with Shift, to a grid division.
inline constexpr double kNudges = 10.0;

}  // namespace kv::control
