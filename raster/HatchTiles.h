// The patterns of the six hatches.
#pragma once

#include <array>
#include <cstdint>

#include "raster/Canvas.h"

namespace kv::raster {

/// One hatch, eight by eight pixels: a byte a row from the top, bit 0 the leftmost pixel; set bits are drawn.
using HatchTile = std::array<std::uint8_t, 8>;

/// These are the system's own tiles. The tiles of a display driver that has others can be set instead.
struct HatchTiles {
    HatchTile horizontal{0, 0, 0, 0xFF, 0, 0, 0, 0};
    HatchTile vertical{0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10};
    HatchTile upward{0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};
    HatchTile downward{0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80};
    HatchTile cross{0x10, 0x10, 0x10, 0xFF, 0x10, 0x10, 0x10, 0x10};
    HatchTile diagonalCross{0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81};

    /// The tile of a hatching style; null for the styles that have none, which includes values outside the list.
    [[nodiscard]] const HatchTile* of(FillStyle style) const noexcept {
        switch (style) {
            case FillStyle::HorizontalLine:
                return &horizontal;
            case FillStyle::VerticalLine:
                return &vertical;
            case FillStyle::UpwardDiagonal:
                return &upward;
            case FillStyle::DownwardDiagonal:
                return &downward;
            case FillStyle::Cross:
                return &cross;
            case FillStyle::DiagonalCross:
                return &diagonalCross;
            case FillStyle::Solid:
            case FillStyle::Transparent:
                break;
        }
        return nullptr;
    }

    friend bool operator==(const HatchTiles&, const HatchTiles&) = default;
};

}  // namespace kv::raster
