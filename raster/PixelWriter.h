// Stores of one color in one draw mode into a pixel buffer.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "raster/HatchTiles.h"
#include "raster/PixelBuffer.h"

namespace kv::raster {

/// Copying stores a value, both inverting modes exchange the bits of a mask: not-XOR is an XOR with the complement.
/// All members but `put` clip to the buffer, and their work is in proportion to what is visible.
class PixelWriter {
  public:
    PixelWriter(const PixelBuffer& buffer, Rgb color, DrawMode mode) noexcept
        : buffer_(buffer), value_(valueFor(toPixel(color), mode)), exchanges_(inverts(mode)) {}

    [[nodiscard]] static bool inverts(DrawMode mode) noexcept {
        return mode == DrawMode::NotXorPen || mode == DrawMode::Invert;
    }

    [[nodiscard]] const PixelBuffer& buffer() const noexcept { return buffer_; }

    /// One pixel by its offset from the buffer's first; it must be inside.
    void put(std::ptrdiff_t offset) const noexcept { apply(buffer_.pixels[offset]); }

    void pixel(int x, int y) const noexcept {
        if (x >= 0 && x < buffer_.width && y >= 0 && y < buffer_.height) {
            apply(buffer_.row(y)[x]);
        }
    }

    /// The pixels of row `y` from `left` up to and without `right`.
    void span(int y, int left, int right) const noexcept {
        if (y >= 0 && y < buffer_.height) {
            visibleSpan(buffer_.row(y), std::max(left, 0), std::min(right, buffer_.width));
        }
    }

    /// The pixels of column `x` from `top` up to and without `bottom`.
    void column(int x, int top, int bottom) const noexcept {
        if (x >= 0 && x < buffer_.width) {
            visibleColumn(x, std::max(top, 0), std::min(bottom, buffer_.height));
        }
    }

    void box(const PixelRect& area) const noexcept {
        const PixelRect seen = visible(area);
        if (seen.left >= seen.right) {
            return;
        }
        if (seen.left + 1 == seen.right) {
            visibleColumn(seen.left, seen.top, seen.bottom);
            return;
        }
        for (int y = seen.top; y < seen.bottom; ++y) {
            visibleSpan(buffer_.row(y), seen.left, seen.right);
        }
    }

    /// The box's pixels that `tile` sets, the tile laid from the buffer's origin.
    void hatch(const PixelRect& area, const HatchTile& tile) const noexcept {
        const PixelRect seen = visible(area);
        if (seen.left >= seen.right) {
            return;
        }
        for (int y = seen.top; y < seen.bottom; ++y) {
            hatchRow(buffer_.row(y), seen.left, seen.right, tile[static_cast<unsigned>(y) & 7U]);
        }
    }

  private:
    [[nodiscard]] static std::uint32_t valueFor(std::uint32_t pixel, DrawMode mode) noexcept {
        switch (mode) {
            case DrawMode::Invert:
                return 0x00FFFFFFU;
            case DrawMode::NotXorPen:
                return ~pixel & 0x00FFFFFFU;
            case DrawMode::CopyPen:
                break;
        }
        return pixel;
    }

    [[nodiscard]] PixelRect visible(const PixelRect& area) const noexcept {
        return {std::max(area.left, 0), std::max(area.top, 0), std::min(area.right, buffer_.width),
                std::min(area.bottom, buffer_.height)};
    }

    void apply(std::uint32_t& pixel) const noexcept { pixel = exchanges_ ? pixel ^ value_ : value_; }

    void visibleSpan(std::uint32_t* row, int left, int right) const noexcept {
        if (left >= right) {
            return;
        }
        if (!exchanges_) {
            std::fill(row + left, row + right, value_);
            return;
        }
        for (int x = left; x < right; ++x) {
            row[x] ^= value_;
        }
    }

    void visibleColumn(int x, int top, int bottom) const noexcept {
        if (top >= bottom) {
            return;
        }
        std::uint32_t* const first = buffer_.pixels + x;
        const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(bottom) * buffer_.stride;
        for (std::ptrdiff_t at = static_cast<std::ptrdiff_t>(top) * buffer_.stride; at < last; at += buffer_.stride) {
            apply(first[at]);
        }
    }

    void hatchRow(std::uint32_t* row, int left, int right, std::uint8_t bits) const noexcept {
        if (bits == 0xFF) {
            visibleSpan(row, left, right);
            return;
        }
        // Turned so that bit 0 belongs to the pixel at `left`; each set bit is then every eighth pixel from there.
        unsigned turned = std::rotr(bits, left & 7);
        for (; turned != 0; turned &= turned - 1) {
            for (int x = left + std::countr_zero(turned); x < right; x += 8) {
                apply(row[x]);
            }
        }
    }

    PixelBuffer buffer_;
    std::uint32_t value_;
    bool exchanges_;
};

}  // namespace kv::raster
