// GDI drawing that several kinds of windows share.
#pragma once

#include <windows.h>

#include <string>

#include "formenv/Widget.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

/// A length of `pixels` at 96 dpi as pixels at `dpi`, rounded down.
[[nodiscard]] constexpr int scaledPixels(int pixels, int dpi) noexcept {
    return pixels * dpi / USER_DEFAULT_SCREEN_DPI;
}

void fillArea(HDC dc, const RECT& area, raster::Rgb color);

/// Draws a frame `width` pixels wide along the inner edge of `area`.
void drawBorder(HDC dc, RECT area, int width, raster::Rgb color);

/// One line of text in the widget's font and color. `format`: DT_ flags.
void drawText(HDC dc, RECT area, const std::wstring& text, const formenv::Widget& widget, WinPlatform& platform,
              UINT format);

/// What shows that a picture inside a frame has the focus: a border along the edge of `area`.
void drawFocusCue(HDC dc, const RECT& area, const WinPlatform& platform);

}  // namespace kv::win32
