// A picture in a 32-bit DIB section: shapes by plain stores, text by GDI, both into the same pixels.
#pragma once

#include <windows.h>

#include "formenv/Platform.h"
#include "formenv/RasterCanvas.h"
#include "formenv/TextPainter.h"
#include "win32/Gdi.h"

namespace kv::win32 {

class DibSurface final : public formenv::Surface, private formenv::TextPainter {
  public:
    /// Throws RuntimeError 7 when the system has no memory for a picture of this size.
    DibSurface(formenv::PixelSize size, FontCache& fonts, const formenv::HatchTiles& tiles);
    ~DibSurface() override;

    [[nodiscard]] formenv::PixelBuffer pixels() noexcept override { return buffer_; }
    [[nodiscard]] formenv::Canvas& canvas() noexcept override { return canvas_; }
    [[nodiscard]] formenv::Handle deviceContext() const noexcept override {
        return reinterpret_cast<formenv::Handle>(dc_.get());
    }

    /// For copying to a window or another picture; whatever was drawn is in it.
    [[nodiscard]] HDC dc() const noexcept { return dc_.get(); }

  private:
    formenv::PixelSize textSize(std::wstring_view text, const formenv::Font& font) override;
    void draw(const formenv::PixelBuffer& buffer, formenv::PixelPoint at, std::wstring_view text,
              const formenv::Font& font, formenv::Rgb color) override;

    FontCache& fonts_;
    MemoryDc dc_;
    GdiObject<HBITMAP> bitmap_;
    HGDIOBJ previous_ = nullptr;
    formenv::PixelBuffer buffer_;
    formenv::RasterCanvas canvas_;
};

/// The system's own hatch patterns, read off a small picture that GDI hatches.
[[nodiscard]] formenv::HatchTiles systemHatchTiles();

}  // namespace kv::win32
