// GDI objects with an owner.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
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

/// Fonts by face, size, weight and resolution, each created once.
class FontCache {
  public:
    explicit FontCache(int dpi) : dpi_(dpi) {}
    /// Sets the resolution. Fonts of other resolutions are kept, because windows use them.
    void setDpi(int dpi) noexcept { dpi_ = dpi; }
    /// Returns the system's dialog font if a font cannot be created.
    [[nodiscard]] HFONT get(const raster::Font& font) { return get(font, dpi_); }
    [[nodiscard]] HFONT get(const raster::Font& font, int dpi);
    [[nodiscard]] raster::PixelSize textSize(HDC dc, std::wstring_view text, const raster::Font& font);

  private:
    int dpi_;
    std::map<std::tuple<std::wstring, double, bool, int>, GdiObject<HFONT>> fonts_;
};

}  // namespace kv::win32
