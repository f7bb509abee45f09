// A picture in a 32-bit DIB section. Shapes are stored directly, text is drawn by GDI, both into the same pixels.
#pragma once

#include <windows.h>

#include "formenv/Platform.h"
#include "raster/RasterCanvas.h"
#include "raster/TextPainter.h"
#include "win32/Gdi.h"

namespace kv::win32 {

class DibSurface final : public formenv::Surface, private raster::TextPainter {
  public:
    /// Throws RuntimeError 7 if the system has no memory for a picture of this size.
    DibSurface(raster::PixelSize size, FontCache& fonts, const raster::HatchTiles& tiles);
    ~DibSurface() override;

    [[nodiscard]] raster::PixelBuffer pixels() noexcept override { return buffer_; }
    [[nodiscard]] raster::Canvas& canvas() noexcept override { return canvas_; }
    [[nodiscard]] formenv::Handle deviceContext() const noexcept override {
        return reinterpret_cast<formenv::Handle>(dc_.get());
    }

    /// For copying to a window or another picture. Contains everything that was drawn.
    [[nodiscard]] HDC dc() const noexcept { return dc_.get(); }

  private:
    raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void draw(const raster::PixelBuffer& buffer, raster::PixelPoint at, std::wstring_view text,
              const raster::Font& font, raster::Rgb color) override;

    FontCache& fonts_;
    MemoryDc dc_;
    GdiObject<HBITMAP> bitmap_;
    HGDIOBJ previous_ = nullptr;
    HFONT font_ = nullptr;  ///< selected; belongs to `fonts_`
    raster::PixelBuffer buffer_;
    raster::RasterCanvas canvas_;
};

/// The system's own hatch patterns, read from a small picture that GDI has hatched.
[[nodiscard]] raster::HatchTiles systemHatchTiles();

}  // namespace kv::win32
