// Text for a canvas that cannot draw text itself.
#pragma once

#include <string_view>

#include "raster/PixelBuffer.h"

namespace kv::raster {

class TextPainter {
  public:
    virtual ~TextPainter() = default;

    /// Width and height of one line of text, pixels.
    [[nodiscard]] virtual PixelSize textSize(std::wstring_view text, const Font& font) = 0;

    /// Paints one line with its cell's top left corner at `at`, on a transparent background, clipped to the buffer.
    /// When it returns, all drawing is in the pixels, including what was drawn before.
    virtual void draw(const PixelBuffer& buffer, PixelPoint at, std::wstring_view text, const Font& font,
                      Rgb color) = 0;
};

}  // namespace kv::raster
