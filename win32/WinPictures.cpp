#include "win32/WinPictures.h"

#include <wincodec.h>
#include <wrl/client.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "util/RuntimeError.h"
#include "win32/Clipboard.h"
#include "win32/Demand.h"
#include "win32/GdiCanvas.h"

namespace kv::win32 {

using formenv::BitmapImage;
using formenv::VectorPicture;
using Microsoft::WRL::ComPtr;
using util::RuntimeError;
using util::error_number::kOutOfMemory;

namespace {

constexpr double kHimetricPerInch = 2540.0;

struct GlobalDeleter {
    void operator()(HGLOBAL memory) const noexcept { GlobalFree(memory); }
};
using GlobalMemory = std::unique_ptr<void, GlobalDeleter>;

void demandSuccess(HRESULT hr) {
    if (FAILED(hr))
        throw RuntimeError(kOutOfMemory);
}

BITMAPINFO topDown(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

GlobalMemory globalOf(const std::string& bytes) {
    GlobalMemory memory = demand(GlobalMemory(GlobalAlloc(GMEM_MOVEABLE, bytes.size())));
    void* const target = demand(GlobalLock(memory.get()));
    std::memcpy(target, bytes.data(), bytes.size());
    GlobalUnlock(memory.get());
    return memory;
}

/// Of a stream in memory.
std::string bytesOf(IStream* stream) {
    HGLOBAL memory = nullptr;
    STATSTG state{};
    demandSuccess(stream->Stat(&state, STATFLAG_NONAME));
    demandSuccess(GetHGlobalFromStream(stream, &memory));
    const auto* const bytes = demand(static_cast<const char*>(GlobalLock(memory)));
    std::string copy(bytes, static_cast<std::size_t>(state.cbSize.QuadPart));
    GlobalUnlock(memory);
    return copy;
}

/// The row without the top bytes of its pixels.
void packRow(const std::uint32_t* pixels, std::vector<BYTE>& packed) {
    for (std::size_t x = 0; x < packed.size() / 3; ++x) {
        packed[x * 3] = static_cast<BYTE>(pixels[x]);
        packed[x * 3 + 1] = static_cast<BYTE>(pixels[x] >> 8U);
        packed[x * 3 + 2] = static_cast<BYTE>(pixels[x] >> 16U);
    }
}

void writeRows(IWICBitmapFrameEncode& frame, const BitmapImage& image) {
    const auto width = static_cast<std::size_t>(image.width);
    std::vector<BYTE> row(width * 3);
    for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y) {
        packRow(image.pixels.data() + y * width, row);
        demandSuccess(frame.WritePixels(1, static_cast<UINT>(row.size()), static_cast<UINT>(row.size()), row.data()));
    }
}

HDC nativeDc(std::int64_t context) noexcept {
    return reinterpret_cast<HDC>(static_cast<std::intptr_t>(context));
}

}  // namespace

std::string WinPictures::metafile(const VectorPicture& picture) {
    const auto hundredths = [&](int units) {
        return static_cast<LONG>(std::lround(units * kHimetricPerInch / picture.dpi));
    };
    const Metafile file = demand(recordMetafile({hundredths(picture.size.width), hundredths(picture.size.height)},
                                                [&](HDC dc, double width, double height) {
                                                    drawVectors(dc, {0.0, 0.0, width, height}, picture);
                                                }));
    std::string bytes(GetEnhMetaFileBits(file.get(), 0, nullptr), '\0');
    GetEnhMetaFileBits(file.get(), static_cast<UINT>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data()));
    return bytes;
}

BitmapImage WinPictures::pixels(const VectorPicture& picture) {
    const auto [width, height] = picture.size;
    const BITMAPINFO info = topDown(width, height);
    const MemoryDc dc = demand(MemoryDc(CreateCompatibleDC(nullptr)));
    void* bits = nullptr;
    const GdiObject<HBITMAP> bitmap =
        demand(GdiObject<HBITMAP>(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0)));
    const Selected selected(dc.get(), bitmap.get());
    drawVectors(dc.get(), {0.0, 0.0, static_cast<double>(width), static_cast<double>(height)}, picture);
    GdiFlush();
    const auto* const pixels = static_cast<const std::uint32_t*>(bits);
    return {width, height, {pixels, pixels + static_cast<std::size_t>(width) * static_cast<std::size_t>(height)}};
}

std::string WinPictures::png(const BitmapImage& image, int dpi) {
    ComPtr<IWICImagingFactory> factory;
    ComPtr<IWICBitmapEncoder> encoder;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_PPV_ARGS(factory.GetAddressOf()))) ||
        FAILED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder)))
        throw RuntimeError(util::error_number::kCannotCreateObject);
    ComPtr<IStream> stream;
    ComPtr<IWICBitmapFrameEncode> frame;
    demandSuccess(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    demandSuccess(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache));
    demandSuccess(encoder->CreateNewFrame(&frame, nullptr));
    demandSuccess(frame->Initialize(nullptr));
    demandSuccess(frame->SetSize(static_cast<UINT>(image.width), static_cast<UINT>(image.height)));
    demandSuccess(frame->SetResolution(dpi, dpi));
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    demandSuccess(frame->SetPixelFormat(&format));
    writeRows(*frame.Get(), image);
    demandSuccess(frame->Commit());
    demandSuccess(encoder->Commit());
    return bytesOf(stream.Get());
}

void WinPictures::toClipboard(const BitmapImage& image, const std::string& png, const std::string& metafile) {
    // The bitmap must be compatible with the screen. Bits in the memory of this process could not be passed to another.
    const BITMAPINFO info = topDown(image.width, image.height);
    GdiObject<HBITMAP> bitmap;
    {
        const ScreenDc screen;
        bitmap = demand(GdiObject<HBITMAP>(
            CreateDIBitmap(screen.get(), &info.bmiHeader, CBM_INIT, image.pixels.data(), &info, DIB_RGB_COLORS)));
    }
    Metafile vectors = demand(Metafile(
        SetEnhMetaFileBits(static_cast<UINT>(metafile.size()), reinterpret_cast<const BYTE*>(metafile.data()))));
    GlobalMemory file = globalOf(png);
    const UINT pngFormat = demand(RegisterClipboardFormatW(L"PNG"));
    const OpenedClipboard clipboard;
    EmptyClipboard();
    // What was placed belongs to the clipboard.
    if (SetClipboardData(CF_ENHMETAFILE, vectors.get()))
        static_cast<void>(vectors.release());
    if (SetClipboardData(pngFormat, file.get()))
        static_cast<void>(file.release());
    if (SetClipboardData(CF_BITMAP, bitmap.get()))
        static_cast<void>(bitmap.release());
    if (vectors || file || bitmap) {
        EmptyClipboard();
        throw RuntimeError(kOutOfMemory);
    }
}

formenv::OutputDevice WinPictures::device(std::int64_t context) {
    const HDC dc = nativeDc(context);
    switch (GetObjectType(dc)) {
        case OBJ_ENHMETADC:
            return {GetDeviceCaps(dc, LOGPIXELSY), formenv::kRecordedFineness};
        case OBJ_DC:
        case OBJ_MEMDC:
            return {GetDeviceCaps(dc, LOGPIXELSY), 1};
        default:
            return {};
    }
}

void WinPictures::print(std::int64_t context, const raster::PixelRect& place, const VectorPicture& picture) {
    const HDC dc = nativeDc(context);
    const int saved = SaveDC(dc);
    SetMapMode(dc, MM_TEXT);
    SetWindowOrgEx(dc, 0, 0, nullptr);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    if (SetGraphicsMode(dc, GM_ADVANCED))
        ModifyWorldTransform(dc, nullptr, MWT_IDENTITY);
    try {
        drawVectors(dc,
                    {static_cast<double>(place.left), static_cast<double>(place.top),
                     static_cast<double>(place.right - place.left), static_cast<double>(place.bottom - place.top)},
                    picture);
    } catch (...) {
        RestoreDC(dc, saved);
        throw;
    }
    RestoreDC(dc, saved);
}

}  // namespace kv::win32
