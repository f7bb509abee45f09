// The one map from user units to pixels.
#pragma once

#include "raster/Canvas.h"
#include "raster/Twips.h"

namespace kv::raster {

/// The coordinate system of a picture box: `left`, `top` at its upper left corner, `width`, `height` across it. A
/// negative height makes y grow upwards.
struct UserScale {
    double left = 0.0;
    double top = 0.0;
    double width = 1.0;
    double height = 1.0;
    friend bool operator==(const UserScale&, const UserScale&) = default;
};

/// Coordinates are rounded to the nearest pixel, halves up; they saturate far outside.
struct PixelMap {
    UserScale scale;
    PixelSize size;
    [[nodiscard]] int x(double user) const noexcept {
        return toNearestPixel((user - scale.left) / scale.width * size.width);
    }
    [[nodiscard]] int y(double user) const noexcept {
        return toNearestPixel((user - scale.top) / scale.height * size.height);
    }
    friend bool operator==(const PixelMap&, const PixelMap&) = default;
};

}  // namespace kv::raster
