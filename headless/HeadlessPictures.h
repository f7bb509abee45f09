// Output of pictures without a system: it keeps what it is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formenv/PictureOutput.h"

namespace kv::headless {

/// Draws on recording canvases. A metafile is the text of their lines, those of the strip first.
class HeadlessPictures final : public formenv::PictureOutput {
  public:
    struct Printed {
        std::int64_t context = 0;
        raster::PixelRect place;
        formenv::VectorPicture picture;
    };

    [[nodiscard]] std::string metafile(const formenv::VectorPicture& picture) override;
    /// White pixels; what was drawn is `drawn`.
    [[nodiscard]] formenv::BitmapImage pixels(const formenv::VectorPicture& picture) override;
    /// A text with the size and the resolution.
    [[nodiscard]] std::string png(const formenv::BitmapImage& image, int dpi) override;
    void toClipboard(const formenv::BitmapImage& image, const std::string& png, const std::string& metafile) override;
    [[nodiscard]] formenv::OutputDevice device(std::int64_t context) override {
        return context == printer ? onPrinter : formenv::OutputDevice{};
    }
    void print(std::int64_t context, const raster::PixelRect& place, const formenv::VectorPicture& picture) override;

    bool hasPng = true;
    bool busyClipboard = false;
    std::int64_t printer = 77;
    formenv::OutputDevice onPrinter{600, 1};
    std::vector<std::string> drawn;  ///< of the last picture: the lines on the strip, then those on the inner picture
    std::vector<Printed> printed;
    formenv::BitmapImage clipboard;
    std::string clipboardPng;
    std::string clipboardMetafile;

  private:
    void draw(const formenv::VectorPicture& picture);
};

}  // namespace kv::headless
