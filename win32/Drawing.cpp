#include "win32/Drawing.h"

#include <algorithm>

#include "win32/Gdi.h"

namespace kv::win32 {

void fillArea(HDC dc, const RECT& area, raster::Rgb color) {
    SetDCBrushColor(dc, color);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void drawBorder(HDC dc, RECT area, int width, raster::Rgb color) {
    SetDCBrushColor(dc, color);
    for (int i = 0; i < width; ++i) {
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        InflateRect(&area, -1, -1);
    }
}

void drawText(HDC dc, RECT area, const std::wstring& text, const formenv::Widget& widget, WinPlatform& platform,
              UINT format) {
    const Selected font(dc, platform.fonts().get(widget.font()));
    SetTextColor(dc, platform.resolve(widget.foreColor()));
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area, format | DT_SINGLELINE);
}

void drawFocusCue(HDC dc, const RECT& area, const WinPlatform& platform) {
    const int scale = std::max(1, scaledPixels(1, platform.dpi()));
    drawBorder(dc, area, 3 * scale, platform.resolve(raster::system_color::kHighlight));
}

}  // namespace kv::win32
