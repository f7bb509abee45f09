#include "win32/DibSurface.h"

#include "util/RuntimeError.h"

namespace kv::win32 {

namespace {

constexpr int kTile = 8;

/// A top-down 32-bit DIB section; `bits` receives its pixels.
GdiObject<HBITMAP> makeDib(HDC dc, raster::PixelSize size, void** bits) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = size.width;
    info.bmiHeader.biHeight = -size.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return GdiObject<HBITMAP>(CreateDIBSection(dc, &info, DIB_RGB_COLORS, bits, nullptr, 0));
}

raster::HatchTile readTile(HDC dc, const std::uint32_t* bits, int hatch) {
    const RECT all{0, 0, kTile, kTile};
    const GdiObject<HBRUSH> brush(CreateHatchBrush(hatch, RGB(255, 255, 255)));
    SetBkMode(dc, OPAQUE);
    SetBkColor(dc, 0);
    FillRect(dc, &all, brush.get());
    GdiFlush();
    raster::HatchTile tile{};
    for (int y = 0; y < kTile; ++y) {
        for (int x = 0; x < kTile; ++x) {
            if ((bits[y * kTile + x] & 0xFFFFFFU) != 0)
                tile[static_cast<std::size_t>(y)] =
                    static_cast<std::uint8_t>(tile[static_cast<std::size_t>(y)] | 1 << x);
        }
    }
    return tile;
}

}  // namespace

DibSurface::DibSurface(raster::PixelSize size, FontCache& fonts, const raster::HatchTiles& tiles)
    : fonts_(fonts), dc_(CreateCompatibleDC(nullptr)), canvas_(*this, {}, tiles) {
    void* bits = nullptr;
    if (dc_)
        bitmap_ = makeDib(dc_.get(), size, &bits);
    if (!bitmap_ || !bits)
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    previous_ = SelectObject(dc_.get(), bitmap_.get());
    SetBkMode(dc_.get(), TRANSPARENT);
    buffer_ = {static_cast<std::uint32_t*>(bits), size.width, size.height, size.width};
    canvas_.attach(buffer_);
}

DibSurface::~DibSurface() {
    if (previous_)
        SelectObject(dc_.get(), previous_);
}

raster::PixelSize DibSurface::textSize(std::wstring_view text, const raster::Font& font) {
    return fonts_.textSize(text, font);
}

void DibSurface::draw(const raster::PixelBuffer& /*buffer*/, raster::PixelPoint at, std::wstring_view text,
                      const raster::Font& font, raster::Rgb color) {
    // Selecting a font takes about as long as drawing a short text, so the font stays selected.
    if (const HFONT wanted = fonts_.get(font); wanted != font_) {
        SelectObject(dc_.get(), wanted);
        font_ = wanted;
    }
    SetTextColor(dc_.get(), color);
    ExtTextOutW(dc_.get(), at.x, at.y, 0, nullptr, text.data(), static_cast<UINT>(text.size()), nullptr);
    // The caller stores directly into the pixels, so GDI must have finished its drawing in them.
    GdiFlush();
}

raster::HatchTiles systemHatchTiles() {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    void* bits = nullptr;
    const GdiObject<HBITMAP> bitmap = makeDib(dc.get(), {kTile, kTile}, &bits);
    if (!dc || !bitmap || !bits)
        return {};
    const Selected selected(dc.get(), bitmap.get());
    const auto* pixels = static_cast<const std::uint32_t*>(bits);
    raster::HatchTiles tiles;
    tiles.horizontal = readTile(dc.get(), pixels, HS_HORIZONTAL);
    tiles.vertical = readTile(dc.get(), pixels, HS_VERTICAL);
    tiles.upward = readTile(dc.get(), pixels, HS_BDIAGONAL);
    tiles.downward = readTile(dc.get(), pixels, HS_FDIAGONAL);
    tiles.cross = readTile(dc.get(), pixels, HS_CROSS);
    tiles.diagonalCross = readTile(dc.get(), pixels, HS_DIAGCROSS);
    return tiles;
}

}  // namespace kv::win32
