// The size of the control in the units of containers: hundredths of a millimeter, 2540 to the inch.
#pragma once

#include <windows.h>

#include <cstdint>

#include "raster/Twips.h"

namespace kv::automation {

inline constexpr int kHimetricPerInch = 2540;

/// Rounds to the nearest, halves up, as containers do.
[[nodiscard]] constexpr LONG pixelsToHimetric(LONG pixels, int dpi) noexcept {
    return static_cast<LONG>((static_cast<std::int64_t>(pixels) * kHimetricPerInch + dpi / 2) / dpi);
}

[[nodiscard]] constexpr LONG himetricToPixels(LONG himetric, int dpi) noexcept {
    return static_cast<LONG>((static_cast<std::int64_t>(himetric) * dpi + kHimetricPerInch / 2) / kHimetricPerInch);
}

[[nodiscard]] inline LONG twipsToHimetric(double twips) noexcept {
    return static_cast<LONG>(twips * kHimetricPerInch / raster::kTwipsPerInch + 0.5);
}

[[nodiscard]] constexpr double himetricToTwips(LONG himetric) noexcept {
    return himetric * raster::kTwipsPerInch / kHimetricPerInch;
}

[[nodiscard]] constexpr SIZE himetricToPixels(const SIZEL& extent, int dpi) noexcept {
    return {himetricToPixels(extent.cx, dpi), himetricToPixels(extent.cy, dpi)};
}

/// The extent of a window. A length in `known` that rounds to the pixels of the window is kept, so that a container
/// that reads the extent gets the number that it set.
[[nodiscard]] constexpr SIZEL extentOf(const SIZE& window, int dpi, const SIZEL& known) noexcept {
    const auto length = [dpi](LONG pixels, LONG before) {
        return himetricToPixels(before, dpi) == pixels ? before : pixelsToHimetric(pixels, dpi);
    };
    return {length(window.cx, known.cx), length(window.cy, known.cy)};
}

}  // namespace kv::automation
