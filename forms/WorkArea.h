// Places on the part of a monitor that task bars leave free, in twips.
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

/// Those of the screen; of the usual screen when the system does not tell.
[[nodiscard]] TwipsPerPixel twipsPerPixel(formenv::Desktop& desktop) noexcept;

/// The whole primary screen, twips, at the origin; of no size when the system does not tell.
[[nodiscard]] formenv::Place screenSize(formenv::Desktop& desktop) noexcept;

/// What the system knows of a monitor; nothing for none, and when it fails.
[[nodiscard]] std::optional<formenv::MonitorInfo> monitorInfo(formenv::Desktop& desktop,
                                                              std::intptr_t monitor) noexcept;

[[nodiscard]] formenv::Place inTwips(const formenv::ScreenRect& rect, const TwipsPerPixel& scale) noexcept;

/// `place` in the middle of `area`, its size kept. Half of the room that is left is a whole number; a place larger than
/// the area begins outside of it.
[[nodiscard]] formenv::Place centeredIn(const formenv::Place& area, const formenv::Place& place) noexcept;

/// To the nearest whole number, halves to the even one; numbers out of range become the largest or smallest there is.
[[nodiscard]] std::int32_t toInt32(double value) noexcept;

}  // namespace kv::forms
