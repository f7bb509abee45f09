// Text without fonts.
#pragma once

#include <string_view>

#include "raster/TextPainter.h"

namespace kv::headless {

/// Paints every character as a solid block in a cell of one size, so that pictures with text come out the same on any
/// machine. A cell is six fifths of the font's size high and half as wide as the size, at 96 dots an inch; bold is one
/// pixel wider. Blanks and control characters leave their cell empty.
class BlockTextPainter : public raster::TextPainter {
  public:
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void draw(const raster::PixelBuffer& buffer, raster::PixelPoint at, std::wstring_view text,
              const raster::Font& font, raster::Rgb color) override;
};

}  // namespace kv::headless
