// The pixels of a surface, wherever they are kept.
#pragma once

#include <cstddef>
#include <cstdint>

#include "raster/Canvas.h"

namespace kv::raster {

/// Rows run from the top down. A pixel is 0x00RRGGBB, as in a 32-bit DIB section; its top byte means nothing.
/// A null `pixels`, or a width or height below 1, is a surface without pixels.
struct PixelBuffer {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0;  ///< from one row to the next, pixels

    [[nodiscard]] bool empty() const noexcept { return pixels == nullptr || width < 1 || height < 1; }
    [[nodiscard]] std::uint32_t* row(int y) const noexcept { return pixels + static_cast<std::ptrdiff_t>(y) * stride; }
};

/// The color as a pixel value, with red and blue exchanged.
[[nodiscard]] constexpr std::uint32_t toPixel(Rgb color) noexcept {
    return ((color & 0xFFU) << 16) | (color & 0xFF00U) | ((color >> 16) & 0xFFU);
}

}  // namespace kv::raster
