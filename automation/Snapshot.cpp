#include "automation/Snapshot.h"

#include <algorithm>
#include <cstring>

#include "util/RuntimeError.h"

namespace kv::automation {

namespace {

BITMAPINFOHEADER headerOf(SIZE size, WORD bits) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = size.cx;
    header.biHeight = size.cy;
    header.biPlanes = 1;
    header.biBitCount = bits;
    header.biCompression = BI_RGB;
    return header;
}

/// Screens and memory copy pixels fastest from a bitmap. Printers and metafiles get the pixels with the call.
bool isPixelDevice(HDC dc) {
    const DWORD type = GetObjectType(dc);
    if (type == OBJ_MEMDC)
        return true;
    return type == OBJ_DC && GetDeviceCaps(dc, TECHNOLOGY) == DT_RASDISPLAY;
}

}  // namespace

Snapshot::Snapshot(SIZE size, const std::function<void(HDC, const RECT&)>& paint)
    : size_{std::max<LONG>(size.cx, 1), std::max<LONG>(size.cy, 1)}, dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader = headerOf(size_, 32);
    void* bits = nullptr;
    if (dc_)
        bitmap_.reset(CreateDIBSection(dc_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap_)
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    previous_ = SelectObject(dc_.get(), bitmap_.get());
    paint(dc_.get(), {0, 0, size_.cx, size_.cy});
    GdiFlush();
}

Snapshot::~Snapshot() {
    if (previous_)
        SelectObject(dc_.get(), previous_);
}

bool Snapshot::drawTo(HDC dc, const RECTL& bounds) const {
    const int width = static_cast<int>(bounds.right - bounds.left);
    const int height = static_cast<int>(bounds.bottom - bounds.top);
    if (width == 0 || height == 0)
        return true;
    // The default stretch mode darkens a reduced picture until thin lines disappear.
    const int mode = SetStretchBltMode(dc, HALFTONE);
    POINT origin{};
    SetBrushOrgEx(dc, 0, 0, &origin);
    bool done = false;
    if (isPixelDevice(dc)) {
        done =
            StretchBlt(dc, bounds.left, bounds.top, width, height, dc_.get(), 0, 0, size_.cx, size_.cy, SRCCOPY) != 0;
    } else {
        const std::vector<BYTE> dib = packedDib();
        done = StretchDIBits(dc, bounds.left, bounds.top, width, height, 0, 0, size_.cx, size_.cy,
                             dib.data() + sizeof(BITMAPINFOHEADER), reinterpret_cast<const BITMAPINFO*>(dib.data()),
                             DIB_RGB_COLORS, SRCCOPY) != static_cast<int>(GDI_ERROR);
    }
    SetBrushOrgEx(dc, origin.x, origin.y, nullptr);
    if (mode)
        SetStretchBltMode(dc, mode);
    return done;
}

std::vector<BYTE> Snapshot::packedDib() const {
    BITMAPINFO info{};
    info.bmiHeader = headerOf(size_, 24);
    const std::size_t row = (static_cast<std::size_t>(size_.cx) * 3U + 3U) / 4U * 4U;
    const std::size_t bytes = row * static_cast<std::size_t>(size_.cy);
    std::vector<BYTE> dib(sizeof info.bmiHeader + bytes);
    // A bitmap must not be selected while its bits are read.
    SelectObject(dc_.get(), previous_);
    const int lines = GetDIBits(dc_.get(), bitmap_.get(), 0, static_cast<UINT>(size_.cy),
                                dib.data() + sizeof info.bmiHeader, &info, DIB_RGB_COLORS);
    SelectObject(dc_.get(), bitmap_.get());
    if (lines != size_.cy)
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    info.bmiHeader = headerOf(size_, 24);
    info.bmiHeader.biSizeImage = static_cast<DWORD>(bytes);
    std::memcpy(dib.data(), &info.bmiHeader, sizeof info.bmiHeader);
    return dib;
}

HBITMAP Snapshot::bitmap() const {
    const win32::ScreenDc screen;
    win32::GdiObject<HBITMAP> made(CreateCompatibleBitmap(screen.get(), size_.cx, size_.cy));
    const win32::MemoryDc dc(CreateCompatibleDC(screen.get()));
    if (!made || !dc)
        return nullptr;
    {
        const win32::Selected selected(dc.get(), made.get());
        if (!BitBlt(dc.get(), 0, 0, size_.cx, size_.cy, dc_.get(), 0, 0, SRCCOPY))
            return nullptr;
    }
    return made.release();
}

Snapshot Snapshot::cut(const RECT& part) const {
    return Snapshot({part.right - part.left, part.bottom - part.top}, [&](HDC dc, const RECT& bounds) {
        BitBlt(dc, 0, 0, bounds.right, bounds.bottom, dc_.get(), part.left, part.top, SRCCOPY);
    });
}

}  // namespace kv::automation
