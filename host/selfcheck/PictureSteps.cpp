// Saved pictures, read again.
#include <array>

#include "host/selfcheck/CheckWindow.h"
#include "host/selfcheck/Comparison.h"

namespace kv::host {

namespace {

/// Lines and texts of a metafile may be a pixel away from those on the screen.
constexpr std::size_t kMostDifferent = 20;  // one in so many pixels

Pixels sizedLike(const Pixels& picture) {
    return {picture.width, picture.height};
}

/// The metafile, played over the whole of a white picture.
Pixels played(HENHMETAFILE file, const Pixels& like) {
    Pixels picture = sizedLike(like);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = -picture.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HDC dc = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    const RECT all = {0, 0, picture.width, picture.height};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    const BOOL complete = PlayEnhMetaFile(dc, file, &all);
    GdiFlush();
    if (bits != nullptr) {
        const auto* const pixels = static_cast<const std::uint32_t*>(bits);
        picture.rgb.assign(pixels, pixels + picture.rgb.size());
    }
    SelectObject(dc, before);
    DeleteObject(bitmap);
    DeleteDC(dc);
    if (!complete) {
        throw Failure{kExitOther, L"the metafile cannot be played"};
    }
    for (std::uint32_t& pixel : picture.rgb) {
        pixel &= 0xFFFFFFU;
    }
    return picture;
}

void compareFiles(Context& context, _kvBandscope& control, const PictureSize& size) {
    const Pixels png = readPicture(savePicture(context, control, L"picture.png", size));
    const Pixels bmp = readPicture(savePicture(context, control, L"picture.bmp", size));
    const bool sized = size.width == 0 || (png.width == size.width && png.height == size.height);
    const std::size_t different = countDifferent(png, bmp);
    context.report.expect(sized && different == 0, L"PNG and BMP of " + png.sizeText() + L" pixels are the same",
                          differenceText(different, png));
}

void comparePlayed(Context& context, HENHMETAFILE file, const Pixels& saved) {
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(file, sizeof header, &header);
    const std::size_t different = countDifferent(saved, played(file, saved));
    context.report.add(different < saved.rgb.size() / kMostDifferent ? Verdict::kPassed : Verdict::kDiffers,
                       L"Metafile looks like the picture",
                       std::to_wstring(header.nRecords) + L" records, " + differenceText(different, saved));
}

}  // namespace

void checkPictureFiles(Context& context) {
    const CheckWindow window(context);
    for (const PictureSize& size : {PictureSize{}, PictureSize{640, 320, 0}, PictureSize{1280, 640, 192}}) {
        compareFiles(context, window.control(), size);
    }
}

void checkMetafile(Context& context) {
    const CheckWindow window(context);
    const std::wstring path = savePicture(context, window.control(), L"picture.emf");
    const HENHMETAFILE file = GetEnhMetaFileW(path.c_str());
    if (file == nullptr) {
        throw Failure{kExitOther, L"the metafile cannot be read"};
    }
    try {
        comparePlayed(context, file, window.saved());
    } catch (...) {
        DeleteEnhMetaFile(file);
        throw;
    }
    DeleteEnhMetaFile(file);
}

}  // namespace kv::host
