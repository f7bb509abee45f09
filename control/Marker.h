// The reference marker: a frequency that the cursor is measured from.
#pragma once

#include <string>

#include "control/DisplayRange.h"
#include "control/Marks.h"
#include "formenv/PictureBox.h"

namespace kv::control {

/// "+12.50 kHz": a difference of two frequencies (MHz) in the largest of MHz, kHz and Hz in which it is not below 1,
/// with a last digit of at most a pixel, whose width is `resolution` MHz. A difference of 0 is in the unit of a pixel.
[[nodiscard]] std::wstring differenceText(double difference, double resolution);

class Marker {
  public:
    /// All have to live longer. `readout` is inside the picture.
    Marker(const formenv::PictureBox& picture, DisplayRange& range, Marks& marks, formenv::Label& readout);
    Marker(const Marker&) = delete;
    Marker& operator=(const Marker&) = delete;

    /// MHz; 0 before it was set.
    [[nodiscard]] double frequency() const noexcept { return frequency_; }
    [[nodiscard]] bool isVisible() const noexcept { return visible_; }
    void set(double frequency, bool visible) noexcept {
        frequency_ = frequency;
        visible_ = visible;
    }

    /// Draws it, or takes it off when it is not visible, and shows the distance of the cursor at `cursor` MHz from it.
    /// Called after each drawing of the display and after each change of the marker.
    void show(double cursor, raster::OleColor color);
    /// The cursor is elsewhere.
    void showDistance(double cursor);
    /// "Cursor - marker: +12.50 kHz"; empty while there is no marker or no cursor.
    [[nodiscard]] std::wstring distanceText(double cursor) const;

  private:
    void placeReadout();

    const formenv::PictureBox& picture_;
    DisplayRange& range_;
    Marks& marks_;
    formenv::Label& readout_;
    double frequency_ = 0.0;
    bool visible_ = false;
};

}  // namespace kv::control
