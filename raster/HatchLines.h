// The lines of the hatches, for canvases that draw lines instead of pixels.
#pragma once

#include <vector>

#include "raster/Canvas.h"

namespace kv::raster {

struct HatchLine {
    PixelPoint from;
    PixelPoint to;
    friend bool operator==(const HatchLine&, const HatchLine&) = default;
};

/// The lines of a hatch between the edges of `inside`, which belong to it. They are the lines of the system's pattern
/// of eight by eight pixels, aligned to the origin, with `scale` units for each of these pixels. Empty for a style
/// without a hatch.
[[nodiscard]] std::vector<HatchLine> hatchLines(FillStyle style, const PixelRect& inside, double scale);

}  // namespace kv::raster
