// Pictures as plain lists of pixels, which tests compare.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/PixelBuffer.h"

namespace kv::headless {

/// The pixels row by row, without what is between two rows.
[[nodiscard]] inline std::vector<std::uint32_t> pixelsOf(const raster::PixelBuffer& buffer) {
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < buffer.height; ++y)
        pixels.insert(pixels.end(), buffer.row(y), buffer.row(y) + buffer.width);
    return pixels;
}

}  // namespace kv::headless
