// Text without fonts.
#pragma once

#include <string_view>

#include "formenv/TextPainter.h"

namespace kv::formenv {

/// Paints every character as a solid block in a cell of one size, so that pictures with text come out the same on any
/// machine. A cell is six fifths of the font's size high and half as wide as the size, at 96 dots an inch; bold is one
/// pixel wider. Blanks and control characters leave their cell empty.
class BlockTextPainter : public TextPainter {
  public:
    [[nodiscard]] PixelSize textSize(std::wstring_view text, const Font& font) override;
    void draw(const PixelBuffer& buffer, PixelPoint at, std::wstring_view text, const Font& font, Rgb color) override;
};

}  // namespace kv::formenv
