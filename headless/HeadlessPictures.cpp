#include "headless/HeadlessPictures.h"

#include "headless/RecordingCanvas.h"
#include "util/RuntimeError.h"

namespace kv::headless {

using formenv::BitmapImage;
using formenv::VectorPicture;

void HeadlessPictures::draw(const VectorPicture& picture) {
    const raster::PixelRect& place = picture.inner;
    RecordingCanvas strip(picture.size);
    RecordingCanvas inner({place.right - place.left, place.bottom - place.top});
    picture.draw(strip, inner);
    drawn = strip.lines();
    drawn.insert(drawn.end(), inner.lines().begin(), inner.lines().end());
}

std::string HeadlessPictures::metafile(const VectorPicture& picture) {
    draw(picture);
    std::string text;
    for (const std::string& line : drawn)
        text += line + '\n';
    return text;
}

BitmapImage HeadlessPictures::pixels(const VectorPicture& picture) {
    draw(picture);
    const auto count = static_cast<std::size_t>(picture.size.width) * static_cast<std::size_t>(picture.size.height);
    return {picture.size.width, picture.size.height, std::vector<std::uint32_t>(count, 0xFFFFFF)};
}

std::string HeadlessPictures::png(const BitmapImage& image, int dpi) {
    if (!hasPng)
        throw util::RuntimeError(util::error_number::kCannotCreateObject);
    return "PNG " + std::to_string(image.width) + "x" + std::to_string(image.height) + " " + std::to_string(dpi);
}

void HeadlessPictures::toClipboard(const BitmapImage& image, const std::string& png, const std::string& metafile) {
    if (busyClipboard)
        throw util::RuntimeError(util::error_number::kCannotOpenClipboard);
    clipboard = image;
    clipboardPng = png;
    clipboardMetafile = metafile;
}

void HeadlessPictures::print(std::int64_t context, const raster::PixelRect& place, const VectorPicture& picture) {
    draw(picture);
    printed.push_back({context, place, picture});
}

}  // namespace kv::headless
