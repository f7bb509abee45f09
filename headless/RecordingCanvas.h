// A canvas that records the drawing calls.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "raster/Canvas.h"

namespace kv::headless {

/// One line of UTF-8 for every drawing call, for tests that compare them with what they expect:
///
///     clear ffffff
///     line 1,2 30,40 pen 0000ff w3 mode 10
///     rectangle 10,20 30,40 pen 0000ff w1 brush 5 00ff00 mode 13
///     text 5,6 "89.5 MHz" font "Tahoma" 8.25 bold color 000000
///
/// Colors are Rgb in six digits, blue first; styles and modes are their values. In strings a backslash precedes
/// quotes and backslashes, and control characters are \xNN. Calls that only measure are not recorded.
class RecordingCanvas : public raster::Canvas {
  public:
    /// Text measures `character.width` for each unit of the string and `character.height`, whatever the font.
    explicit RecordingCanvas(raster::PixelSize size, raster::PixelSize character = {6, 13})
        : size_(size), character_(character) {}

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return lines_; }
    /// All lines, each with a line feed.
    [[nodiscard]] std::string log() const;
    void forget() noexcept { lines_.clear(); }
    /// Changes the size of the canvas.
    void resize(raster::PixelSize size) noexcept { size_ = size; }

    [[nodiscard]] raster::PixelSize size() const override { return size_; }
    void clear(raster::Rgb color) override;
    void line(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen, raster::DrawMode mode) override;
    void rectangle(raster::PixelRect box, const raster::Pen& pen, const raster::Brush& brush,
                   raster::DrawMode mode) override;
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override;
    void text(raster::PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) override;

  private:
    raster::PixelSize size_;
    raster::PixelSize character_;
    std::vector<std::string> lines_;
};

}  // namespace kv::headless
