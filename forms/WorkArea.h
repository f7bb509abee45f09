// Places in the work areas of monitors, in twips.
#pragma once

#include <cstdint>
#include <optional>

#include "formenv/Desktop.h"
#include "formenv/Widget.h"

namespace kv::forms {

struct TwipsPerPixel {
    double x = 15.0;
    double y = 15.0;
};

/// Those of the screen; 15 when the system call fails.
[[nodiscard]] TwipsPerPixel twipsPerPixel(formenv::Desktop& desktop) noexcept;

/// The whole primary screen, twips, at the origin; with the size 0 when the system call fails.
[[nodiscard]] formenv::Place screenSize(formenv::Desktop& desktop) noexcept;

/// The record of a monitor; nothing for handle 0, an unknown monitor, and when the system call fails.
[[nodiscard]] std::optional<formenv::MonitorInfo> monitorInfo(formenv::Desktop& desktop,
                                                              std::intptr_t monitor) noexcept;

[[nodiscard]] formenv::Place inTwips(const formenv::ScreenRect& rect, const TwipsPerPixel& scale) noexcept;

/// `place` in the middle of `area`, its size kept. Half of the remaining size is rounded to whole twips; a place larger
/// than the area begins outside of it.
[[nodiscard]] formenv::Place centeredIn(const formenv::Place& area, const formenv::Place& place) noexcept;

/// To the nearest whole number, halves to the even one; numbers out of range become the largest or smallest one.
[[nodiscard]] std::int32_t toInt32(double value) noexcept;

}  // namespace kv::forms
