// Colors as hosts give them: RGB values or names of system colors.
#pragma once

#include <cstdint>

namespace kv::raster {

/// 0x00BBGGRR, or 0x80000000 plus the number of a system color.
using OleColor = std::uint32_t;

namespace system_color {
inline constexpr OleColor kWindowBackground = 0x80000005;
inline constexpr OleColor kWindowText = 0x80000008;
inline constexpr OleColor kHighlight = 0x8000000D;
inline constexpr OleColor kButtonFace = 0x8000000F;
inline constexpr OleColor kButtonShadow = 0x80000010;
inline constexpr OleColor kGrayText = 0x80000011;
inline constexpr OleColor kButtonText = 0x80000012;
inline constexpr OleColor kButtonHighlight = 0x80000014;
inline constexpr OleColor kToolTipText = 0x80000017;
inline constexpr OleColor kToolTipBackground = 0x80000018;
}  // namespace system_color

[[nodiscard]] constexpr bool isSystemColor(OleColor color) noexcept {
    return (color & 0xFF000000U) == 0x80000000U;
}

/// The number of a system color, as the system counts them.
[[nodiscard]] constexpr int systemColorIndex(OleColor color) noexcept {
    return static_cast<int>(color & 0xFFU);
}

}  // namespace kv::raster
