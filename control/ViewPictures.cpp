#include "control/ViewPictures.h"

#include <algorithm>
#include <cmath>

#include "control/Bandscope.h"
#include "control/Refuse.h"
#include "util/Bmp.h"
#include "util/NumberFormat.h"
#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::control {

using formenv::BitmapImage;
using raster::PixelSize;
using util::RuntimeError;

namespace {

constexpr int kLeastSize = 32;  // pixels
constexpr int kMostSize = 16384;
constexpr int kLeastDpi = 24;
constexpr int kMostDpi = 2400;
constexpr int kLeastSpectrum = 16;  // pixels each way
// Metafiles keep coordinates up to this in 16 bits.
constexpr int kMostUnits = 32000;

std::wstring text(PixelSize size) {
    return std::to_wstring(size.width) + L" x " + std::to_wstring(size.height);
}

void demandBetween(const wchar_t* what, int value, int least, int most, const wchar_t* unit) {
    if (value < least || value > most) {
        refuse(what + std::to_wstring(value) + L". It must be " + std::to_wstring(least) + L" to " +
               std::to_wstring(most) + unit);
    }
}

/// Runs `body`; an error with this number gets another text.
template <class Body>
auto explained(int number, const std::wstring& why, Body&& body) {
    try {
        return body();
    } catch (const RuntimeError& error) {
        if (error.number() != number)
            throw;
        throw RuntimeError(number, why);
    }
}

/// From the last point of the file's name on, in capital letters; empty without one.
std::wstring extensionOf(const std::wstring& file) {
    const std::size_t point = file.find_last_of(L".\\/:");
    return point == std::wstring::npos || file[point] != L'.' ? std::wstring() : util::upperCase(file.substr(point));
}

CopySize paper(PixelSize size, int dpi) {
    return {raster::pixelsToTwips(size.width, dpi), raster::pixelsToTwips(size.height, dpi)};
}

/// Units for each pixel: as many as `wanted`, unless coordinates would become too large.
int finenessOf(PixelSize size, int wanted) {
    return formenv::oddFineness(std::min(kMostUnits / std::max({size.width, size.height, 1}), wanted));
}

}  // namespace

PixelSize ViewPictures::shownSize(int dpi) const noexcept {
    const Shown shown = scope_.shown();
    const PixelSize size = shown.strip.pixelSize();
    const double larger = static_cast<double>(dpi) / shown.strip.platform().dpi();
    return {raster::toNearestPixel(size.width * larger), raster::toNearestPixel(size.height * larger)};
}

void ViewPictures::demandRoom(const wchar_t* member, PixelSize size, int dpi) const {
    const raster::PixelRect inner = PictureCopy(scope_.shown(), paper(size, dpi), dpi).inner();
    const PixelSize spectrum{inner.right - inner.left, inner.bottom - inner.top};
    if (spectrum.width >= kLeastSpectrum && spectrum.height >= kLeastSpectrum)
        return;
    const Shown shown = scope_.shown();
    const auto edges = [&](double outer, double within) {
        return static_cast<int>(std::ceil((outer - within) * dpi / raster::kTwipsPerInch)) + kLeastSpectrum + 1;
    };
    const PixelSize least{std::max(edges(shown.strip.width(), shown.picture.width()), kLeastSize),
                          std::max(edges(shown.strip.height(), shown.picture.height()), kLeastSize)};
    refuse(std::wstring(member) + L": a picture of " + text(size) + L" pixels at " + std::to_wstring(dpi) +
           L" dpi has no room for the spectrum. It must have at least " + text(least) + L" pixels.");
}

void ViewPictures::save(const std::wstring& file, std::int32_t width, std::int32_t height, std::int32_t dpi) {
    const std::wstring extension = extensionOf(file);
    if (extension != L".BMP" && extension != L".PNG" && extension != L".EMF")
        refuse(L"SavePicture: the file is \"" + file + L"\". Its name must end in .bmp, .png or .emf.");
    if (dpi != 0) {
        demandBetween(L"SavePicture: the resolution is ", dpi, kLeastDpi, kMostDpi,
                      L" dpi, or 0 for that of the screen.");
    }
    const int resolution = dpi != 0 ? dpi : scope_.platform().dpi();
    const PixelSize onScreen = shownSize(resolution);
    const PixelSize size{width != 0 ? width : onScreen.width, height != 0 ? height : onScreen.height};
    demandBetween(L"SavePicture: the width is ", size.width, kLeastSize, kMostSize,
                  L" pixels, or 0 for that of the screen.");
    demandBetween(L"SavePicture: the height is ", size.height, kLeastSize, kMostSize,
                  L" pixels, or 0 for that of the screen.");
    demandRoom(L"SavePicture", size, resolution);
    const std::string bytes = extension == L".EMF"
                                  ? metafile(size, resolution)
                                  : explained(util::error_number::kCannotCreateObject,
                                              L"SavePicture: the imaging component of Windows (WIC), which writes PNG "
                                              L"files, is missing. Use .bmp or .emf.",
                                              [&] { return bitmapFile(extension == L".PNG", size, resolution); });
    explained(util::error_number::kPathFileAccess,
              L"SavePicture: the file \"" + file +
                  L"\" cannot be written. Its folder must exist, and the file must be neither read-only nor in use.",
              [&] { scope_.files().writeFile(file, bytes); });
}

std::string ViewPictures::metafile(PixelSize size, int dpi) const {
    const Shown shown = scope_.shown();
    constexpr int kLeastFineness = 3;  // for resolutions that are as fine as those of printers
    const double screen = formenv::kRecordedFineness * shown.strip.platform().dpi();
    const int wanted = std::max(kLeastFineness, static_cast<int>(std::lround(screen / dpi)));
    return scope_.platform().pictureOutput().metafile(
        PictureCopy::vectors(shown, paper(size, dpi), dpi * finenessOf(size, wanted)));
}

std::string ViewPictures::bitmapFile(bool asPng, PixelSize size, int dpi) const {
    const Shown shown = scope_.shown();
    formenv::PictureOutput& output = scope_.platform().pictureOutput();
    BitmapImage image;
    if (dpi != scope_.platform().dpi()) {
        image = output.pixels(PictureCopy::vectors(shown, paper(size, dpi), dpi));
    } else if (size == shown.strip.pixelSize()) {
        image = PictureCopy::shownPixels(shown);
    } else {
        image = PictureCopy(shown, paper(size, dpi), dpi).pixels();
    }
    return asPng ? output.png(image, dpi)
                 : util::bmpFile(image.pixels.data(), image.width, image.height, image.width, dpi);
}

void ViewPictures::copy() {
    const Shown shown = scope_.shown();
    formenv::PictureOutput& output = scope_.platform().pictureOutput();
    const int dpi = scope_.platform().dpi();
    const PixelSize size = shown.strip.pixelSize();
    demandRoom(L"CopyPicture", size, dpi);
    const BitmapImage image = PictureCopy::shownPixels(shown);
    const std::string png = explained(
        util::error_number::kCannotCreateObject,
        L"CopyPicture: the imaging component of Windows (WIC), which writes the PNG form of the picture, is missing.",
        [&] { return output.png(image, dpi); });
    const std::string vectors = metafile(size, dpi);
    explained(util::error_number::kCannotOpenClipboard,
              L"CopyPicture: another program has the clipboard open. Close it there, or try again later.",
              [&] { output.toClipboard(image, png, vectors); });
}

void ViewPictures::print(double context, std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
    constexpr double kMostHandle = 9007199254740992.0;  // whole numbers up to this are exact
    formenv::PictureOutput& output = scope_.platform().pictureOutput();
    const bool isWhole = std::abs(context) <= kMostHandle && std::floor(context) == context;
    const auto handle = isWhole ? static_cast<std::int64_t>(context) : 0;
    const formenv::OutputDevice device = output.device(handle);
    if (device.dpi < 1) {
        refuse(L"PrintPicture: hdc is " + util::formatNumber(context, L"") +
               L". It must be the handle of a device context, as a number.");
    }
    demandBetween(L"PrintPicture: the width is ", width, kLeastSize, kMostUnits, L" pixels of the device.");
    demandBetween(L"PrintPicture: the height is ", height, kLeastSize, kMostUnits, L" pixels of the device.");
    demandBetween(L"PrintPicture: left is ", left, -kMostUnits, kMostUnits, L" pixels of the device.");
    demandBetween(L"PrintPicture: top is ", top, -kMostUnits, kMostUnits, L" pixels of the device.");
    const PixelSize size{width, height};
    demandRoom(L"PrintPicture", size, device.dpi);
    output.print(
        handle, {left, top, left + width, top + height},
        PictureCopy::vectors(scope_.shown(), paper(size, device.dpi), device.dpi * finenessOf(size, device.finer)));
}

}  // namespace kv::control
