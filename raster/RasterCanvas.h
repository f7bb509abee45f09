// A canvas that draws by plain stores into pixels that the platform supplies.
#pragma once

#include <string_view>

#include "raster/Canvas.h"
#include "raster/HatchTiles.h"
#include "raster/PixelBuffer.h"
#include "raster/RasterLines.h"
#include "raster/TextPainter.h"

namespace kv::raster {

/// Draws what GDI draws into the same pixels, many times faster: calls into GDI cost more than the few pixels that a
/// channel's box has. The text painter must outlive the canvas; the pixels must be valid during each call. A copy
/// writes 0 into a pixel's top byte and the inverting modes leave it alone. No call allocates memory except for a new
/// pen width.
///
/// GDI draws a one-pixel outline as four lines, each without its end. A box of one pixel's width or height is therefore
/// drawn twice, there and back: in an inverting mode only its two ends remain, and a box of one pixel draws nothing.
class RasterCanvas : public Canvas {
  public:
    explicit RasterCanvas(TextPainter& texts, PixelBuffer pixels = {}, const HatchTiles& tiles = {});

    /// Draws into other pixels from now on.
    void attach(PixelBuffer pixels) noexcept;
    [[nodiscard]] const PixelBuffer& pixels() const noexcept { return pixels_; }
    [[nodiscard]] const HatchTiles& tiles() const noexcept { return tiles_; }

    [[nodiscard]] PixelSize size() const override;
    void clear(Rgb color) override;
    void line(PixelPoint from, PixelPoint to, const Pen& pen, DrawMode mode) override;
    void rectangle(PixelRect box, const Pen& pen, const Brush& brush, DrawMode mode) override;
    [[nodiscard]] PixelSize textSize(std::wstring_view text, const Font& font) override;
    void text(PixelPoint at, std::wstring_view text, const Font& font, Rgb color) override;

  private:
    void fill(const PixelRect& area, const Brush& brush, DrawMode mode) const;

    TextPainter& texts_;
    PixelBuffer pixels_;
    HatchTiles tiles_;
    RoundTip tip_;
};

}  // namespace kv::raster
