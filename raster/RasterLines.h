// Which pixels a line consists of, and drawing those of them that are visible.
#pragma once

#include <cstdint>
#include <vector>

#include "raster/PixelWriter.h"

namespace kv::raster {

/// The greatest width that a pen can have, that of `DrawWidth`; a wider one counts as this.
inline constexpr int kMaxPenWidth = 32767;

/// A line of one pixel's width, without the pixel at `to`. Clipping never changes which pixels are chosen.
void drawThinLine(const PixelWriter& ink, PixelPoint from, PixelPoint to);

/// The round tip of wide pens. Keeps the last width, so that only a change of width takes time.
class RoundTip {
  public:
    /// Makes this the tip of a pen of `width` pixels, at least 1.
    void setWidth(int width);
    [[nodiscard]] int width() const noexcept { return static_cast<int>(insets_.size()); }

    /// How far above and left of a point its tip begins, pixels.
    [[nodiscard]] int before() const noexcept { return width() / 2; }
    /// How far below and right of a point its tip ends, the first pixel outside.
    [[nodiscard]] int after() const noexcept { return width() - width() / 2; }
    /// Pixels that row `row` of the tip, 0 to width - 1, is set back from its square, on either side.
    [[nodiscard]] int inset(int row) const noexcept { return insets_[static_cast<std::size_t>(row)]; }

  private:
    std::vector<int> insets_;
};

/// A line of a pen of two and more pixels: GDI's geometric pen with round ends, every pixel drawn once. A line without
/// length is one tip.
///
/// A level or upright line is a bar of the pen's width. A slanted one is a parallelogram whose corners are whole
/// pixels: its left side lies half the pen's width beside the line and its right side half a pixel more in x and in y,
/// each component rounded on its own. Of each row the pixels count that are on the left side or right of it and left
/// of the right side; the lowest row is left out.
void drawWideLine(const PixelWriter& ink, PixelPoint from, PixelPoint to, const RoundTip& tip);

/// The outline of a box whose corner pixels are `topLeft` and `bottomRight` by a wide pen, every pixel drawn once.
void drawWideOutline(const PixelWriter& ink, PixelPoint topLeft, PixelPoint bottomRight, const RoundTip& tip);

}  // namespace kv::raster
