// Pictures of the display for hosts: in files, on the clipboard and on printers.
#pragma once

#include <cstdint>
#include <string>

#include "raster/Canvas.h"

namespace kv::control {

class Bandscope;

/// Pictures show what the control shows: the label strip with the spectrum inside. Drawing them changes nothing in the
/// display, raises no event and lets no pending events run. A wrong argument ends in RuntimeError 5, whose text
/// contains the value and what is allowed. Whatever the error, nothing is left half done.
class ViewPictures {
  public:
    explicit ViewPictures(Bandscope& scope) noexcept : scope_(scope) {}

    /// Writes a file whose extension says its format: .bmp, .png or .emf. A size in pixels or a resolution of 0 is that
    /// of the screen; another resolution alone changes the number of pixels and not the size on paper. Also throws
    /// RuntimeError 75 if the file cannot be written, and 429 if the system cannot write PNG files.
    void save(const std::wstring& file, std::int32_t width, std::int32_t height, std::int32_t dpi);
    /// Places the picture of the screen on the clipboard as a bitmap, PNG file and metafile. Also throws RuntimeError
    /// 521 if the clipboard stays busy, and 429 if the system cannot write PNG files.
    void copy();
    /// Draws on a device context, given by its handle, in a rectangle of its pixels.
    void print(double context, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height);

  private:
    void demandRoom(const wchar_t* member, raster::PixelSize size, int dpi) const;
    [[nodiscard]] raster::PixelSize shownSize(int dpi) const noexcept;
    [[nodiscard]] std::string metafile(raster::PixelSize size, int dpi) const;
    [[nodiscard]] std::string bitmapFile(bool asPng, raster::PixelSize size, int dpi) const;

    Bandscope& scope_;
};

}  // namespace kv::control
