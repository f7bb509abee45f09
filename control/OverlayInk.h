// What the texts over the spectrum have in common: color, font, distances, and a background of their own.
#pragma once

#include <string_view>

#include "formenv/PictureBox.h"

namespace kv::control {

[[nodiscard]] constexpr bool meet(const raster::PixelRect& a, const raster::PixelRect& b) noexcept {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/// Every text stands on a box in the picture's background color, so that it can be read over channels and grid lines,
/// and so that drawing it a second time gives the same pixels.
class OverlayInk {
  public:
    explicit OverlayInk(formenv::PictureBox& picture);

    /// Pixels of a length that is given for 96 dots per inch; at least 1.
    [[nodiscard]] int scaled(int length) const noexcept;
    [[nodiscard]] raster::PixelSize size() const noexcept { return size_; }
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text) { return picture_.textPixels(text); }
    /// A size of which both sides are above 0; without fonts there is none.
    [[nodiscard]] static bool isReadable(raster::PixelSize text) noexcept { return text.width > 0 && text.height > 0; }

    /// Fills `area` with the background.
    void clear(const raster::PixelRect& area);
    /// The outline of `area`, filled with the background.
    void frame(const raster::PixelRect& area);
    void fill(const raster::PixelRect& area, raster::OleColor color);
    /// On the background as it is.
    void text(raster::PixelPoint at, std::wstring_view text);
    /// In the gray of the ticks, the last pixel left out.
    void line(raster::PixelPoint from, raster::PixelPoint to);

  private:
    formenv::PictureBox& picture_;
    raster::PixelSize size_;
    int dpi_;
    raster::Rgb background_;
    raster::Rgb gray_;
    raster::Rgb text_;  ///< black or white
};

}  // namespace kv::control
