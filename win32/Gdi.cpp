#include "win32/Gdi.h"

#include <cmath>

namespace kv::win32 {

HFONT FontCache::get(const raster::Font& font, int dpi) {
    const auto key = std::make_tuple(font.face, font.points, font.bold, dpi);
    const auto found = fonts_.find(key);
    if (found != fonts_.end())
        return found->second.get();
    const int height = -static_cast<int>(std::lround(font.points * dpi / 72.0));
    GdiObject<HFONT> made(CreateFontW(height, 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                      DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                      DEFAULT_PITCH | FF_SWISS, font.face.c_str()));
    if (!made)
        return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    return fonts_.emplace(key, std::move(made)).first->second.get();
}

raster::PixelSize FontCache::textSize(HDC dc, std::wstring_view text, const raster::Font& font) {
    const Selected selected(dc, get(font));
    SIZE size{};
    if (text.empty()) {
        TEXTMETRICW metrics{};
        GetTextMetricsW(dc, &metrics);
        size.cy = metrics.tmHeight;
    } else {
        GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    }
    return {static_cast<int>(size.cx), static_cast<int>(size.cy)};
}

}  // namespace kv::win32
