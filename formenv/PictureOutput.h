// What the system does with pictures besides showing them: metafiles, PNG files, printers and the clipboard.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "formenv/BitmapCalls.h"
#include "raster/Canvas.h"

namespace kv::formenv {

/// A picture that can be drawn on canvases of any kind: a strip, and another picture at its place inside.
struct VectorPicture {
    raster::PixelSize size;   ///< of the strip, units of the drawing
    raster::PixelRect inner;  ///< where the other picture is inside it
    int dpi = 0;              ///< units of the drawing an inch
    double scale = 1.0;       ///< units of the drawing for each pixel of the screen: lines and hatches grow with it
    /// Draws on two canvases of these sizes. Throws RuntimeError 7 if the memory is short.
    std::function<void(raster::Canvas& strip, raster::Canvas& inner)> draw;
};

/// A device that can be drawn on.
struct OutputDevice {
    int dpi = 0;    ///< pixels an inch; 0 if there is no such device
    int finer = 1;  ///< units to draw with for each of its pixels; more than 1 if it records what is drawn
};

/// Each call throws RuntimeError 7 if the memory is short.
class PictureOutput {
  public:
    PictureOutput() = default;
    PictureOutput(const PictureOutput&) = delete;
    PictureOutput& operator=(const PictureOutput&) = delete;
    virtual ~PictureOutput() = default;

    /// An enhanced metafile, as the bytes of a file. Its size is that of the picture at its resolution.
    [[nodiscard]] virtual std::string metafile(const VectorPicture& picture) = 0;
    /// The picture in pixels, one for each unit of the drawing.
    [[nodiscard]] virtual BitmapImage pixels(const VectorPicture& picture) = 0;
    /// A PNG file with the resolution in its header. Throws RuntimeError 429 if the system has no component for it.
    [[nodiscard]] virtual std::string png(const BitmapImage& image, int dpi) = 0;
    /// Places the three forms of a picture on the clipboard and nothing else. Throws RuntimeError 521, with nothing
    /// changed, if the clipboard stays busy.
    virtual void toClipboard(const BitmapImage& image, const std::string& png, const std::string& metafile) = 0;
    /// A device context, by its handle.
    [[nodiscard]] virtual OutputDevice device(std::int64_t context) = 0;
    /// Draws the picture in a rectangle of the device's pixels, whatever mapping its context has.
    virtual void print(std::int64_t context, const raster::PixelRect& place, const VectorPicture& picture) = 0;
};

/// Units that a recorded picture has for each pixel of the screen, so that it stays sharp on a printer: 1248 an inch at
/// 96 dpi. An odd number, because then no coordinate is half way between two pixels: played at the resolution of the
/// screen, each one is rounded to the pixel that it has on the screen.
inline constexpr int kRecordedFineness = 13;

/// The greatest number of this kind up to `most`, at least 1.
[[nodiscard]] constexpr int oddFineness(int most) noexcept {
    return most < 1 ? 1 : most - (most % 2 == 0 ? 1 : 0);
}

}  // namespace kv::formenv
