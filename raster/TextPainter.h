// Letters for a canvas that has none of its own.
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
    /// What it paints stands in the pixels when it returns, and nothing that was drawn before is still on its way.
    virtual void draw(const PixelBuffer& buffer, PixelPoint at, std::wstring_view text, const Font& font,
                      Rgb color) = 0;
};

}  // namespace kv::raster
