// A picture that is drawn on in user units and kept off screen, so that uncovering its window needs no redraw.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "formenv/Platform.h"
#include "formenv/Widget.h"
#include "raster/PixelMap.h"

namespace kv::formenv {

/// Plain lines follow GDI's LineTo: the last pixel is left out. Boxes include all four edges, so that a box narrower
/// than a pixel still shows as a column. Coordinates are rounded to the nearest pixel, halves up, here and only here.
class PictureBox : public Widget {
  public:
    PictureBox(Platform& platform, Widget* parent, std::wstring name);
    ~PictureBox() override;

    /// Twips until a user scale is chosen or any of its four members is set.
    [[nodiscard]] bool hasUserScale() const noexcept { return userScale_; }
    void setUserScaleMode() noexcept;
    [[nodiscard]] raster::UserScale scale() const noexcept;
    [[nodiscard]] double scaleLeft() const noexcept { return scale().left; }
    [[nodiscard]] double scaleTop() const noexcept { return scale().top; }
    [[nodiscard]] double scaleWidth() const noexcept { return scale().width; }
    [[nodiscard]] double scaleHeight() const noexcept { return scale().height; }
    /// Throw RuntimeError 6 for a number that is not finite and 380 for a width or height of 0.
    void setScaleLeft(double value);
    void setScaleTop(double value);
    void setScaleWidth(double value);
    void setScaleHeight(double value);

    /// Throws RuntimeError 380 outside 0 to 7.
    void setFillStyle(int style);
    [[nodiscard]] int fillStyle() const noexcept { return static_cast<int>(drawing_.fillStyle); }
    void setFillColor(raster::OleColor color) noexcept { drawing_.fillColor = color; }
    [[nodiscard]] raster::OleColor fillColor() const noexcept { return drawing_.fillColor; }
    void setDrawMode(raster::DrawMode mode) noexcept { drawing_.drawMode = mode; }
    [[nodiscard]] int drawMode() const noexcept { return static_cast<int>(drawing_.drawMode); }
    /// Pixels; throws RuntimeError 380 below 1.
    void setDrawWidth(int width);
    [[nodiscard]] int drawWidth() const noexcept { return drawing_.drawWidth; }
    /// Typographic points; throws RuntimeError 380 when not above 0.
    void setFontSize(double points);

    /// Erases everything drawn and puts the current position at the scale's origin.
    void cls();
    /// Nothing was drawn since it was erased.
    [[nodiscard]] bool isBlank() const noexcept { return blank_; }
    /// Also erases everything drawn.
    void setBackColor(raster::OleColor color) override;

    /// A line, an outlined box filled by `FillStyle` and `FillColor`, and a box filled with its own color. The
    /// current position becomes the end point.
    void line(double x1, double y1, double x2, double y2, raster::OleColor color);
    void box(double x1, double y1, double x2, double y2, raster::OleColor color);
    void filledBox(double x1, double y1, double x2, double y2, raster::OleColor color);

    /// The same in pixels, without scale and drawing properties, for strokes that a later one has to meet exactly
    /// whatever the scale has become by then. The current position stays where it is.
    void strokeLine(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen, raster::DrawMode mode);
    void strokeBox(const raster::PixelRect& box, const raster::Pen& pen, const raster::Brush& brush,
                   raster::DrawMode mode);
    /// A line of text in the font of the box, its upper left corner at `at`, on a transparent background.
    void strokeText(raster::PixelPoint at, std::wstring_view text, raster::Rgb color);

    double currentX = 0.0;
    double currentY = 0.0;
    /// Size of a line of text, pixels.
    [[nodiscard]] raster::PixelSize textPixels(std::wstring_view text) { return platform_.textSize(text, font()); }
    /// Prints at the current position in `ForeColor`, then moves to the start of the next line.
    void print(std::wstring_view text) { print(text, textPixels(text)); }
    /// The same of a text that has been measured already.
    void print(std::wstring_view text, raster::PixelSize size);
    /// Size of a line of text in the picture's scale (magnitude).
    [[nodiscard]] double textWidth(std::wstring_view text) { return widthOf(textPixels(text)); }
    [[nodiscard]] double textHeight(std::wstring_view text) { return heightOf(textPixels(text)); }
    /// A size in pixels in the picture's scale (magnitude).
    [[nodiscard]] double widthOf(raster::PixelSize size) const;
    [[nodiscard]] double heightOf(raster::PixelSize size) const;

    /// One map from user units to pixels; saturates far outside.
    [[nodiscard]] raster::PixelMap pixelMap() const noexcept { return {scale(), pixelSize()}; }
    [[nodiscard]] int pixelX(double x) const noexcept { return pixelMap().x(x); }
    [[nodiscard]] int pixelY(double y) const noexcept { return pixelMap().y(y); }
    /// User units of a pixel's left and upper edge.
    [[nodiscard]] double userX(int pixel) const noexcept;
    [[nodiscard]] double userY(int pixel) const noexcept;

    [[nodiscard]] raster::PixelSize pixelSize() const noexcept;
    /// The platform has a new resolution: the picture gets the number of pixels that it needs now.
    void rescaled() { placed(); }
    /// The kept picture. Valid until the box changes its size.
    [[nodiscard]] Surface& surface();
    [[nodiscard]] Platform& platform() const noexcept { return platform_; }

    /// The canvas as pixels to store into, without the drawing properties; nullptr when it has none. After storing, the
    /// caller calls `storedUpTo` with the current position that drawing would have left.
    [[nodiscard]] raster::RasterCanvas* raster();
    void storedUpTo(double x, double y);

    /// Increases with every stroke, clearing and change of the number of pixels.
    [[nodiscard]] std::uint64_t changes() const noexcept { return changes_; }

    /// The window shows the picture now; the next stroke requests a repaint again.
    void shown() noexcept { dirty_ = heldBack_ = false; }
    /// Shows at once what was drawn under `HoldBack`.
    void showHeldBack();

    /// A canvas to draw on instead of the kept picture, or nullptr: for tests that read the strokes.
    void divert(raster::Canvas* canvas) noexcept {
        diverted_ = canvas;
        ++changes_;  // what is on it is not known
    }

  protected:
    void placed() override;

  private:
    friend class KeepDrawing;
    friend class HoldBack;
    /// The properties that a drawing procedure may change for a while.
    struct Drawing {
        raster::FillStyle fillStyle = raster::FillStyle::Transparent;
        raster::OleColor fillColor = 0;
        raster::DrawMode drawMode = raster::DrawMode::CopyPen;
        int drawWidth = 1;
    };

    /// Of the kept picture: at least one pixel each way.
    [[nodiscard]] raster::PixelSize keptSize() const noexcept;
    [[nodiscard]] raster::Canvas& target();
    void touched();
    void changed();
    void drawBox(double x1, double y1, double x2, double y2, raster::OleColor color, const raster::Brush& brush);

    Platform& platform_;
    std::unique_ptr<Surface> surface_;
    std::unique_ptr<Surface> outgrown_;  ///< of the earlier size, while there was no memory for one of the present size
    raster::Canvas* diverted_ = nullptr;
    std::uint64_t changes_ = 0;
    bool dirty_ = false;
    bool heldBack_ = false;  ///< strokes that the window was not told of
    int holds_ = 0;
    bool blank_ = true;
    bool userScale_ = false;
    raster::UserScale scale_;
    Drawing drawing_;
};

/// One step of a drawing between whose steps events run. The window is not told of its strokes, so that the events do
/// not show a picture that is drawn in part. The drawing ends with `showHeldBack`.
class HoldBack {
  public:
    explicit HoldBack(PictureBox& box) noexcept : box_(box) { ++box_.holds_; }
    ~HoldBack() { --box_.holds_; }
    HoldBack(const HoldBack&) = delete;
    HoldBack& operator=(const HoldBack&) = delete;

  private:
    PictureBox& box_;
};

/// Restores the drawing properties of a picture box at the end of a block, also after an error.
class KeepDrawing {
  public:
    explicit KeepDrawing(PictureBox& box) noexcept : box_(box), kept_(box.drawing_) {}
    ~KeepDrawing() { box_.drawing_ = kept_; }
    KeepDrawing(const KeepDrawing&) = delete;
    KeepDrawing& operator=(const KeepDrawing&) = delete;

  private:
    PictureBox& box_;
    PictureBox::Drawing kept_;
};

}  // namespace kv::formenv
