#include "win32/Gdi.h"

#include <cmath>

namespace kv::win32 {

namespace {

// Far more than a display has at a time. The texts of a display that moves are all different after a while.
constexpr std::size_t kMostTexts = 1000;

}  // namespace

GdiObject<HFONT> makeFont(const raster::Font& font, int dpi) {
    const int height = -static_cast<int>(std::lround(font.points * dpi / 72.0));
    return GdiObject<HFONT>(CreateFontW(height, 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                        DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                                        DEFAULT_PITCH | FF_SWISS, font.face.c_str()));
}

raster::PixelSize measureText(HDC dc, std::wstring_view text, HFONT font) {
    SelectObject(dc, font);
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

/// Null if the font cannot be created.
FontCache::Face* FontCache::face(const raster::Font& font, int dpi) {
    const auto key = std::make_tuple(font.face, font.points, font.bold, dpi);
    const auto found = faces_.find(key);
    if (found != faces_.end())
        return &found->second;
    GdiObject<HFONT> made = makeFont(font, dpi);
    if (!made)
        return nullptr;
    return &faces_.emplace(key, Face{std::move(made), 0, {}}).first->second;
}

HFONT FontCache::get(const raster::Font& font, int dpi) {
    const Face* const made = face(font, dpi);
    return made ? made->font.get() : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

raster::PixelSize FontCache::textSize(std::wstring_view text, const raster::Font& font) {
    Face* const known = face(font, dpi_);
    if (known && known->height > 0) {
        if (text.empty())
            return {0, known->height};
        if (const auto width = known->widths.find(text); width != known->widths.end())
            return {width->second, known->height};
    }
    if (!measuring_)
        measuring_.reset(CreateCompatibleDC(nullptr));
    const raster::PixelSize size = measureText(measuring_.get(), text, get(font));
    if (known && size.height > 0)
        keep(*known, text, size);
    return size;
}

void FontCache::keep(Face& face, std::wstring_view text, raster::PixelSize size) {
    face.height = size.height;
    if (text.empty())
        return;
    if (measuredTexts_ >= kMostTexts) {
        for (auto& [key, other] : faces_)
            other.widths.clear();
        measuredTexts_ = 0;
    }
    face.widths.emplace(text, size.width);
    ++measuredTexts_;
}

}  // namespace kv::win32
