// The picture as a bitmap file and on the clipboard: the label strip with the spectrum at its place inside.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "control/Bandscope.h"
#include "formenv/Twips.h"
#include "util/Bmp.h"
#include "util/Text.h"

namespace kv::control {

namespace {

struct Composed {
    std::vector<std::uint32_t> pixels;
    int width = 0;
    int height = 0;
};

/// A file that goes again at the end, also when an error comes before it.
class Scratch {
  public:
    Scratch(formenv::FileServices& files, const std::wstring& path) : files_(files), path_(path) {}
    ~Scratch() {
        if (!path_.empty())
            files_.deleteFile(path_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

  private:
    formenv::FileServices& files_;
    const std::wstring& path_;
};

/// The inner picture over the outer one, clipped to it.
Composed compose(formenv::PictureBox& outer, formenv::PictureBox& inner) {
    const formenv::PixelBuffer under = outer.surface().pixels();
    const formenv::PixelBuffer over = inner.surface().pixels();
    Composed picture{{}, under.width, under.height};
    picture.pixels.reserve(static_cast<std::size_t>(under.width) * static_cast<std::size_t>(under.height));
    for (int y = 0; y < under.height; ++y) {
        const std::uint32_t* row = under.pixels + static_cast<std::ptrdiff_t>(y) * under.stride;
        picture.pixels.insert(picture.pixels.end(), row, row + under.width);
    }
    const int dpi = outer.platform().dpi();
    const int left = formenv::twipsToPixels(inner.left(), dpi);
    const int top = formenv::twipsToPixels(inner.top(), dpi);
    const int first = std::max(0, -left);
    const int last = std::min(over.width, under.width - left);
    for (int y = std::max(0, -top); y < std::min(over.height, under.height - top); ++y) {
        const std::uint32_t* row = over.pixels + static_cast<std::ptrdiff_t>(y) * over.stride;
        if (first < last)
            std::copy(row + first, row + last,
                      picture.pixels.begin() + static_cast<std::ptrdiff_t>(top + y) * under.width + left + first);
    }
    return picture;
}

}  // namespace

std::wstring Bandscope::DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName) {
    std::int16_t flag = 100;
    const bool written = noted(L"DisplayToBMP", flag, [&] {
        if (sFName.empty())
            sFName = util::setPathName(services_.files.scratchFolder(), L"NXBandscope.BMP");
        flag = 200;
        services_.platform.pumpEvents();
        dHgt = ui_.picUnits.height();
        dWid = ui_.picUnits.width();
        flag = 300;
        const Composed picture = compose(ui_.picUnits, ui_.picSpectrum);
        flag = 400;
        services_.files.writeFile(sFName, util::bmpFile(picture.pixels.data(), picture.width, picture.height,
                                                        picture.width, services_.platform.dpi()));
    });
    if (written)
        return sFName;
    dHgt = 0.0;
    dWid = 0.0;
    return {};
}

void Bandscope::CopyDisplayToClipboard() {
    std::int16_t flag = 100;
    reported(L"CopyDisplayToClipboard", L"", flag, [&] {
        std::wstring file = util::setPathName(services_.files.scratchFolder(), L"TempClip.BMP");
        double height = 0.0;
        double width = 0.0;
        const std::wstring written = DisplayToBMP(height, width, file);
        flag = 200;
        const Scratch scratch(services_.files, written);
        services_.files.bitmapFileToClipboard(written);
    });
}

}  // namespace kv::control
