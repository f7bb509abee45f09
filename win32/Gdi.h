// GDI objects with an owner.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "raster/Canvas.h"

namespace kv::win32 {

struct GdiDeleter {
    void operator()(HGDIOBJ object) const noexcept { DeleteObject(object); }
};
template <class Handle>
using GdiObject = std::unique_ptr<std::remove_pointer_t<Handle>, GdiDeleter>;

struct MemoryDcDeleter {
    void operator()(HDC dc) const noexcept { DeleteDC(dc); }
};
using MemoryDc = std::unique_ptr<std::remove_pointer_t<HDC>, MemoryDcDeleter>;

/// The screen's device context for the duration of a block.
class ScreenDc {
  public:
    ScreenDc() noexcept : dc_(GetDC(nullptr)) {}
    ~ScreenDc() { ReleaseDC(nullptr, dc_); }
    ScreenDc(const ScreenDc&) = delete;
    ScreenDc& operator=(const ScreenDc&) = delete;
    [[nodiscard]] HDC get() const noexcept { return dc_; }

  private:
    HDC dc_;
};

/// Selects an object for the duration of a block.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) noexcept : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, previous_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

/// A font for a device with this resolution; null if it cannot be created.
[[nodiscard]] GdiObject<HFONT> makeFont(const raster::Font& font, int dpi);
/// The size of a line of text. The height does not depend on the text.
[[nodiscard]] raster::PixelSize measureText(HDC dc, std::wstring_view text, HFONT font);

/// Fonts by face, size, weight and resolution, each created once, and the sizes of texts in them. Measuring a text
/// takes longer than drawing it, and most of the texts that a redraw measures were measured before.
class FontCache {
  public:
    explicit FontCache(int dpi) : dpi_(dpi) {}
    /// Sets the resolution. Fonts of other resolutions are kept, because windows use them.
    void setDpi(int dpi) noexcept { dpi_ = dpi; }
    /// Returns the system's dialog font if a font cannot be created.
    [[nodiscard]] HFONT get(const raster::Font& font) { return get(font, dpi_); }
    [[nodiscard]] HFONT get(const raster::Font& font, int dpi);
    /// The height does not depend on the text.
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font);
    /// The number of texts whose width is known.
    [[nodiscard]] std::size_t measuredTexts() const noexcept { return measuredTexts_; }

  private:
    struct Face {
        GdiObject<HFONT> font;
        int height = 0;  ///< 0: not measured yet
        std::map<std::wstring, int, std::less<>> widths;
    };

    [[nodiscard]] Face* face(const raster::Font& font, int dpi);
    void keep(Face& face, std::wstring_view text, raster::PixelSize size);

    int dpi_;
    std::map<std::tuple<std::wstring, double, bool, int>, Face> faces_;
    std::size_t measuredTexts_ = 0;
    // The last member, because a font can only be deleted when no device context has it selected.
    MemoryDc measuring_;
};

}  // namespace kv::win32
