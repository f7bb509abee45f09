// The power axis: labels in dBm at the left of the spectrum, with light lines across it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "control/OverlayInk.h"

namespace kv::control {

/// The least step of 1, 2 or 5 times a power of ten that is not below `least`; 0 if there is none.
[[nodiscard]] double niceStep(double least) noexcept;

class PowerAxis {
  public:
    /// An axis for the picture's scale and size at this moment. It has no lines if there is no room for two labels, or
    /// if the powers are so close together that their numbers could not be told apart.
    PowerAxis(formenv::PictureBox& picture, OverlayInk& ink);

    struct Line {
        double power = 0.0;  ///< dBm
        int row = 0;
        std::wstring text;  ///< empty where the label would not be inside the picture
        raster::PixelRect label;
    };
    [[nodiscard]] const std::vector<Line>& lines() const noexcept { return lines_; }
    /// dB from one line to the next; 0 without lines.
    [[nodiscard]] double step() const noexcept { return step_; }

    /// The labels are in the columns before this one; 0 without labels.
    [[nodiscard]] int right() const noexcept;

    void drawLines(OverlayInk& ink) const;
    void drawLabels(OverlayInk& ink) const;

  private:
    void addLines(const raster::PixelMap& map);
    void placeLabels(OverlayInk& ink);

    double step_ = 0.0;
    std::vector<Line> lines_;  ///< from the lowest power to the highest
};

}  // namespace kv::control
