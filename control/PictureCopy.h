// The picture of the display, drawn once more at another size or resolution while the display stays as it is.
#pragma once

#include "control/CopyPlatform.h"
#include "control/Marks.h"
#include "control/SpectrumPainter.h"
#include "formenv/PictureBox.h"
#include "formenv/PictureOutput.h"

namespace kv::control {

/// What a display shows, and what it is drawn from.
struct Shown {
    formenv::PictureBox& strip;
    formenv::PictureBox& picture;
    const SpectrumPainter& painter;
    const Marks& marks;
    const Overlays& overlays;
    channels::ChannelStore& store;
    DisplayRange& range;
};

/// Of the strip; the spectrum has the same distances to its edges as on the screen.
struct CopySize {
    double width = 0.0;  ///< twips
    double height = 0.0;
};

/// Draws as `JustDrawIt` does, with the cursor line if it is on the picture. A picture that was cleared stays empty.
/// The records are not told that they are drawn, and no events run.
class PictureCopy {
  public:
    PictureCopy(const Shown& shown, const CopySize& size, int dpi);
    PictureCopy(const PictureCopy&) = delete;
    PictureCopy& operator=(const PictureCopy&) = delete;

    [[nodiscard]] raster::PixelSize size() const noexcept { return strip_.pixelSize(); }
    /// The place of the spectrum inside. It may be empty.
    [[nodiscard]] raster::PixelRect inner() const noexcept;

    /// `scale`: the width of a line of one pixel on these canvases.
    void drawOn(raster::Canvas& strip, raster::Canvas& picture, double scale);
    /// In pixels, as the display draws; for the resolution of the screen.
    [[nodiscard]] formenv::BitmapImage pixels();

    /// The same for any canvas, with `dpi` units an inch.
    [[nodiscard]] static formenv::VectorPicture vectors(const Shown& shown, const CopySize& size, int dpi);
    /// The pixels on the screen.
    [[nodiscard]] static formenv::BitmapImage shownPixels(const Shown& shown);

  private:
    void draw();

    Shown shown_;
    CopyPlatform platform_;
    formenv::PictureBox strip_{platform_, nullptr, L"strip"};
    formenv::PictureBox picture_{platform_, &strip_, L"picture"};
    Marks marks_{picture_};
    SpectrumPainter painter_;
};

}  // namespace kv::control
