#include "control/OverlayInk.h"

#include <algorithm>

namespace kv::control {

namespace {

constexpr int kUsualDpi = 96;

/// Black or white, whichever contrasts more with `background`.
raster::Rgb contrastTo(raster::Rgb background) noexcept {
    constexpr raster::Rgb kBlack = 0x000000;
    constexpr raster::Rgb kWhite = 0xFFFFFF;
    constexpr unsigned kMiddle = 128;
    // The usual weights of red, green and blue for brightness, in 1/1000.
    const unsigned brightness =
        (299 * (background & 0xFFU) + 587 * (background >> 8 & 0xFFU) + 114 * (background >> 16 & 0xFFU)) / 1000;
    return brightness < kMiddle ? kWhite : kBlack;
}

}  // namespace

OverlayInk::OverlayInk(formenv::PictureBox& picture)
    : picture_(picture),
      size_(picture.pixelSize()),
      dpi_(picture.platform().dpi()),
      background_(picture.platform().resolve(picture.backColor())),
      gray_(picture.platform().resolve(picture.foreColor())),
      text_(contrastTo(background_)) {}

int OverlayInk::scaled(int length) const noexcept {
    return std::max((length * dpi_ + kUsualDpi / 2) / kUsualDpi, 1);
}

void OverlayInk::clear(const raster::PixelRect& area) {
    picture_.strokeBox(area, {background_, 1}, {raster::FillStyle::Solid, background_}, raster::DrawMode::CopyPen);
}

void OverlayInk::frame(const raster::PixelRect& area) {
    picture_.strokeBox(area, {gray_, 1}, {raster::FillStyle::Solid, background_}, raster::DrawMode::CopyPen);
}

void OverlayInk::fill(const raster::PixelRect& area, raster::OleColor color) {
    const raster::Rgb rgb = picture_.platform().resolve(color);
    picture_.strokeBox(area, {rgb, 1}, {raster::FillStyle::Solid, rgb}, raster::DrawMode::CopyPen);
}

void OverlayInk::text(raster::PixelPoint at, std::wstring_view text) {
    picture_.strokeText(at, text, text_);
}

void OverlayInk::line(raster::PixelPoint from, raster::PixelPoint to) {
    picture_.strokeLine(from, to, {gray_, 1}, raster::DrawMode::CopyPen);
}

}  // namespace kv::control
