// Metafiles, PNG files, printers and pictures on the clipboard.
#pragma once

#include <windows.h>

#include "formenv/PictureOutput.h"
#include "win32/Gdi.h"

namespace kv::win32 {

struct MetafileDeleter {
    void operator()(HENHMETAFILE file) const noexcept { DeleteEnhMetaFile(file); }
};
using Metafile = std::unique_ptr<std::remove_pointer_t<HENHMETAFILE>, MetafileDeleter>;

/// An enhanced metafile of this extent, in hundredths of a millimeter. `draw` gets its device context and the extent in
/// pixels of the reference device. Null if the system fails; throws what `draw` throws.
template <class Draw>
[[nodiscard]] Metafile recordMetafile(SIZEL extent, Draw&& draw) {
    const ScreenDc screen;
    const RECT frame{0, 0, extent.cx, extent.cy};
    const HDC dc = CreateEnhMetaFileW(screen.get(), nullptr, &frame, L"kvBandscope\0Spectrum\0");
    if (!dc)
        return nullptr;
    // The frame is in pixels of the reference device, whose millimeters may not match its dots per inch.
    const auto pixels = [&](LONG hundredths, int dots, int millimeters) {
        return static_cast<double>(hundredths) * GetDeviceCaps(screen.get(), dots) /
               (100.0 * GetDeviceCaps(screen.get(), millimeters));
    };
    try {
        draw(dc, pixels(extent.cx, HORZRES, HORZSIZE), pixels(extent.cy, VERTRES, VERTSIZE));
    } catch (...) {
        const Metafile incomplete(CloseEnhMetaFile(dc));
        throw;
    }
    return Metafile(CloseEnhMetaFile(dc));
}

class WinPictures final : public formenv::PictureOutput {
  public:
    [[nodiscard]] std::string metafile(const formenv::VectorPicture& picture) override;
    [[nodiscard]] formenv::BitmapImage pixels(const formenv::VectorPicture& picture) override;
    [[nodiscard]] std::string png(const formenv::BitmapImage& image, int dpi) override;
    void toClipboard(const formenv::BitmapImage& image, const std::string& png, const std::string& metafile) override;
    [[nodiscard]] formenv::OutputDevice device(std::int64_t context) override;
    void print(std::int64_t context, const raster::PixelRect& place, const formenv::VectorPicture& picture) override;
};

}  // namespace kv::win32
