// The position of a dial in its area, and of the labels of its scale.
#pragma once

#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "raster/Canvas.h"
#include "raster/Smooth.h"
#include "turndial/KnobScale.h"

namespace kv::turndial {

/// From the low end of a dial's scale to its high end, radians; twelve o'clock is the middle.
inline constexpr double kDialSweep = 1.5 * std::numbers::pi;

/// Clockwise from twelve o'clock, radians.
[[nodiscard]] inline double dialAngle(double place) noexcept {
    return (place - 0.5) * kDialSweep;
}

struct DialLabel {
    std::wstring text;
    double place = 0.0;  ///< on the scale
    raster::PixelRect box;
};

struct DialLayout {
    raster::SmoothPoint center;
    double radius = 0.0;  ///< of the scale, pixels; 0 when there is no room for a dial
    std::vector<DialLabel> labels;
};

using TextMeasure = std::function<raster::PixelSize(std::wstring_view)>;

/// The largest dial that fits. Labels are outside of the scale and inside of `area`, and never overlap: when there
/// is no room for all of them, only every second, third ... is kept, or none. `unit` is a pixel at 96 dots an inch.
[[nodiscard]] DialLayout layOutDial(const raster::SmoothBox& area, const KnobScale& scale, double unit,
                                    const TextMeasure& measure);

/// Tick marks as places on the scale: at every stop or detent if they are `least` or further apart on a scale
/// of that length, otherwise at every second, fifth, tenth ..., and always at both ends.
[[nodiscard]] std::vector<double> ticksOf(const KnobScale& scale, double length, double least);

}  // namespace kv::turndial
