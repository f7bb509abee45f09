#include "control/PictureCopy.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace kv::control {

using formenv::BitmapImage;
using formenv::PictureBox;

namespace {

void takeLooks(PictureBox& copy, const PictureBox& from) {
    // The colors of the base class, because setting those of a picture erases it.
    copy.Widget::setBackColor(from.backColor());
    copy.setForeColor(from.foreColor());
    copy.setFont(from.font());
}

raster::PixelRect placeOf(const PictureBox& picture) {
    const int left = raster::twipsToPixels(picture.left(), picture.platform().dpi());
    const int top = raster::twipsToPixels(picture.top(), picture.platform().dpi());
    const raster::PixelSize size = picture.pixelSize();
    return {left, top, left + size.width, top + size.height};
}

/// Between the strip and the picture inside it, twips.
struct Edges {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

/// At another resolution than that of the screen, the edges are those of the pixels on the screen, so that finer units
/// do not show the picture in another place.
Edges edgesOf(const Shown& shown, int dpi) {
    const PictureBox& picture = shown.picture;
    const int screenDpi = shown.strip.platform().dpi();
    const double right = shown.strip.width() - picture.left() - picture.width();
    const double bottom = shown.strip.height() - picture.top() - picture.height();
    if (dpi == screenDpi)
        return {picture.left(), picture.top(), right, bottom};
    const raster::PixelRect place = placeOf(picture);
    const raster::PixelSize size = shown.strip.pixelSize();
    const auto twips = [&](int pixels) { return raster::pixelsToTwips(pixels, screenDpi); };
    return {twips(place.left), twips(place.top), twips(size.width - place.right), twips(size.height - place.bottom)};
}

/// As far as the image reaches.
void copyInto(BitmapImage& image, raster::PixelPoint at, const raster::PixelBuffer& from) {
    const int first = std::max(0, -at.x);
    const int last = std::min(from.width, image.width - at.x);
    for (int y = std::max(0, -at.y); y < std::min(from.height, image.height - at.y) && first < last; ++y) {
        const auto target = static_cast<std::ptrdiff_t>(at.y + y) * image.width + at.x + first;
        std::transform(from.row(y) + first, from.row(y) + last, image.pixels.begin() + target,
                       [](std::uint32_t pixel) { return pixel & 0xFFFFFFU; });
    }
}

BitmapImage together(PictureBox& strip, PictureBox& picture) {
    const raster::PixelSize size = strip.pixelSize();
    BitmapImage image{std::max(size.width, 1), std::max(size.height, 1), {}};
    image.pixels.resize(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    copyInto(image, {0, 0}, strip.surface().pixels());
    const raster::PixelRect place = placeOf(picture);
    if (place.right > place.left && place.bottom > place.top)
        copyInto(image, {place.left, place.top}, picture.surface().pixels());
    return image;
}

}  // namespace

PictureCopy::PictureCopy(const Shown& shown, const CopySize& size, int dpi)
    : shown_(shown),
      platform_(shown.strip.platform(), dpi),
      painter_(picture_, strip_, shown.store, shown.range, marks_, shown.overlays) {
    const PictureBox& picture = shown.picture;
    const Edges edges = edgesOf(shown, dpi);
    strip_.move({0.0, 0.0, std::max(size.width, 0.0), std::max(size.height, 0.0)});
    picture_.move({edges.left, edges.top, std::max(size.width - edges.left - edges.right, 0.0),
                   std::max(size.height - edges.top - edges.bottom, 0.0)});
    takeLooks(strip_, shown.strip);
    takeLooks(picture_, picture);
}

raster::PixelRect PictureCopy::inner() const noexcept {
    return placeOf(picture_);
}

void PictureCopy::drawOn(raster::Canvas& strip, raster::Canvas& picture, double scale) {
    // Strokes beside each other overlap a little, so that rounding on a device leaves no gap between them.
    painter_.becomeCopyOf(shown_.painter, std::max(static_cast<int>(std::lround(scale)) - 1, 0) / 2);
    platform_.measureBy(strip);
    strip_.divert(&strip);
    picture_.divert(&picture);
    draw();
}

BitmapImage PictureCopy::pixels() {
    painter_.becomeCopyOf(shown_.painter, 0);
    draw();
    return together(strip_, picture_);
}

void PictureCopy::draw() {
    const bool hasRange = shown_.range.isComplete();
    if (hasRange) {
        // What the host has set since the last drawing counts, as in a drawing.
        shown_.range.applyScale();
        const raster::UserScale scale = shown_.picture.scale();
        picture_.setScaleLeft(scale.left);
        picture_.setScaleTop(scale.top);
        picture_.setScaleWidth(scale.width);
        picture_.setScaleHeight(scale.height);
    }
    painter_.drawWhole({hasRange && !shown_.picture.isBlank(), hasRange && !shown_.strip.isBlank()});
    marks_.copyFrom(shown_.marks, platform_.dpi() / static_cast<double>(shown_.strip.platform().dpi()));
}

formenv::VectorPicture PictureCopy::vectors(const Shown& shown, const CopySize& size, int dpi) {
    const auto copy = std::make_shared<PictureCopy>(shown, size, dpi);
    const double scale = static_cast<double>(dpi) / shown.strip.platform().dpi();
    return {copy->size(), copy->inner(), dpi, scale,
            [copy, scale](raster::Canvas& strip, raster::Canvas& picture) { copy->drawOn(strip, picture, scale); }};
}

BitmapImage PictureCopy::shownPixels(const Shown& shown) {
    return together(shown.strip, shown.picture);
}

}  // namespace kv::control
