// What is drawn over the finished spectrum and taken off again: the cursor line, the marker and the rubber band.
#pragma once

#include <cstdint>
#include <optional>

#include "channels/Sentinels.h"
#include "formenv/PictureBox.h"

namespace kv::control {

/// A vertical line at a frequency (MHz) from one power to another (dBm).
struct CursorLine {
    double frequency = 0.0;
    double from = 0.0;
    double to = 0.0;
    raster::OleColor color = 0;
};

/// The marks are drawn in modes in which the same stroke once more restores what was there: not-XOR and inverting. The
/// second stroke goes over the pixels of the first one, kept here, because the picture's scale and its size may be
/// different by then. Between the two nothing else may be drawn over a mark; `Aside` takes care of that.
class Marks {
  public:
    explicit Marks(formenv::PictureBox& picture) noexcept : picture_(picture) {}

    /// Draws the cursor line in place of the one that is on the picture. A frequency outside of the picture's scale
    /// draws nothing, and then no line is on the picture.
    void drawCursor(const CursorLine& line);
    void takeCursorOff();
    /// Where the cursor line is on the picture, MHz; -FREQ_UNSET without one.
    [[nodiscard]] double dCursorLineFreq() const noexcept {
        return cursor_ ? cursor_->line.frequency : -channels::FREQ_UNSET;
    }

    /// The same for the marker, a dashed line, which shows also under the cursor line.
    void drawMarker(const CursorLine& line);
    void takeMarkerOff();

    /// Draws the outline of a box over the full height, from one frequency to another (MHz), in place of the last one.
    void drawBand(double from, double to);
    void takeBandOff();

    /// Draws the cursor line and the marker of another picture, at their frequencies in the scale of this one. The
    /// rubber band is not copied, because it is there only while the user drags. `scale`: units of this picture for
    /// each pixel of the other.
    void copyFrom(const Marks& other, double scale);

    /// Leaves the picture without marks.
    void takeOff();
    /// The picture has been cleared, and the marks with it.
    void forget() noexcept;

    /// Takes the marks off and draws them again at its end, at their frequencies in the scale of that moment. A mark
    /// that was drawn meanwhile stays instead, and nothing is drawn on a picture that was cleared meanwhile.
    class Aside {
      public:
        explicit Aside(Marks& marks);
        ~Aside();
        Aside(const Aside&) = delete;
        Aside& operator=(const Aside&) = delete;

      private:
        void putBack();
        Marks& marks_;
        std::optional<CursorLine> cursor_;
        std::optional<CursorLine> marker_;
        std::optional<std::pair<double, double>> band_;
        std::uint64_t clearings_;
    };

  private:
    struct Stroked {
        CursorLine line;
        raster::PixelPoint from;
        raster::PixelPoint to;
        raster::Rgb color = 0;
    };
    struct Band {
        double from = 0.0;  ///< MHz
        double to = 0.0;
        raster::PixelRect box;
    };
    /// Nothing for a frequency outside of the picture's scale.
    [[nodiscard]] std::optional<Stroked> placed(const CursorLine& line) const;
    void stroke(const Stroked& cursor);
    void strokeDashes(const Stroked& marker);
    void stroke(const Band& band);

    formenv::PictureBox& picture_;
    std::optional<Stroked> cursor_;
    std::optional<Stroked> marker_;
    std::optional<Band> band_;
    std::uint64_t clearings_ = 0;
    double scale_ = 1.0;
};

}  // namespace kv::control
