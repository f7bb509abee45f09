// Drawing by GDI's calls, for devices whose pixels are not in memory: printers and metafiles.
#pragma once

#include <windows.h>

#include <map>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "formenv/PictureOutput.h"
#include "raster/Canvas.h"
#include "win32/Gdi.h"

namespace kv::win32 {

/// The rectangle of logical units that a picture is stretched to.
struct GdiPlace {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Draws the picture in `place`, which may lie in any mapping of `dc`. The state of `dc` is restored. Throws
/// RuntimeError 7, and what drawing throws.
void drawVectors(HDC dc, const GdiPlace& place, const formenv::VectorPicture& picture);

/// A device context with its pens, brushes and fonts, which canvases share.
class GdiSheet {
  public:
    GdiSheet(HDC dc, double scale, int dpi);
    ~GdiSheet();
    GdiSheet(const GdiSheet&) = delete;
    GdiSheet& operator=(const GdiSheet&) = delete;

    [[nodiscard]] HDC dc() const noexcept { return dc_; }
    [[nodiscard]] double scale() const noexcept { return scale_; }
    [[nodiscard]] int penUnits(int width) const noexcept;
    /// A width for the lines of diagonal hatches: in each row of pixels they are as wide as a pen of one pixel.
    static constexpr int kDiagonal = 0;

    /// Clips to this area from now on.
    void clipTo(const raster::PixelRect& area);
    void selectPen(const raster::Pen& pen, raster::DrawMode mode);
    /// Fills with a color; `selectNoBrush` fills nothing.
    void selectBrush(raster::Rgb color);
    void selectNoBrush();
    void selectFont(const raster::Font& font);
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font);

  private:
    using FontKey = std::tuple<std::wstring, double, bool>;

    HFONT fontOf(const raster::Font& font);
    void select(HGDIOBJ& selected, HGDIOBJ wanted);
    void forgetSelected() noexcept;

    HDC dc_;
    double scale_;
    int dpi_;
    int saved_;
    raster::PixelRect clip_;
    bool clipped_ = false;
    int mode_ = 0;
    HGDIOBJ pen_ = nullptr;
    HGDIOBJ brush_ = nullptr;
    HGDIOBJ font_ = nullptr;
    std::map<std::pair<raster::Rgb, int>, GdiObject<HPEN>> pens_;  ///< by color and width
    std::map<raster::Rgb, GdiObject<HBRUSH>> brushes_;
    std::map<FontKey, GdiObject<HFONT>> fonts_;
    MemoryDc measuring_;  ///< the last member, because its font must not be deleted before it
};

/// A part of a sheet. A pen of one pixel has the width that a pixel of the screen has on the sheet, and is centered on
/// the coordinates. When the sheet is shown with the screen's resolution, lines have the pixels that they have on the
/// screen. Hatches are lines with the spacing that they have on the screen.
class GdiCanvas final : public raster::Canvas {
  public:
    GdiCanvas(GdiSheet& sheet, const raster::PixelRect& place) noexcept : sheet_(sheet), place_(place) {}

    [[nodiscard]] raster::PixelSize size() const override {
        return {place_.right - place_.left, place_.bottom - place_.top};
    }
    void clear(raster::Rgb color) override;
    void line(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen, raster::DrawMode mode) override;
    void rectangle(raster::PixelRect box, const raster::Pen& pen, const raster::Brush& brush,
                   raster::DrawMode mode) override;
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void text(raster::PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) override;

  private:
    /// What of a box is at most `margin` units outside of the canvas.
    [[nodiscard]] raster::PixelRect reachable(const raster::PixelRect& box, int margin) const noexcept;
    [[nodiscard]] POINT at(raster::PixelPoint point) const noexcept {
        return {point.x + place_.left, point.y + place_.top};
    }
    void hatch(const raster::PixelRect& corners, const raster::Pen& pen, const raster::Brush& brush,
               raster::DrawMode mode);
    void outline(const raster::PixelRect& corners) const;

    GdiSheet& sheet_;
    raster::PixelRect place_;
};

}  // namespace kv::win32
