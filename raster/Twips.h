// Twips (1/1440 inch) and pixels.
#pragma once

namespace kv::raster {

inline constexpr double kTwipsPerInch = 1440.0;

/// The nearest whole number, halves up. Saturates far beyond any screen. What is not a number gives 0.
[[nodiscard]] inline int toNearestPixel(double value) noexcept {
    constexpr double kFar = 1 << 24;
    if (!(value > -kFar))
        return value <= -kFar ? -(1 << 24) : 0;
    if (value >= kFar)
        return 1 << 24;
    // Not std::floor, which without SSE4 is a call: this runs for each of half a million channels.
    const double shifted = value + 0.5;
    const int whole = static_cast<int>(shifted);
    return whole - (shifted < whole ? 1 : 0);
}

[[nodiscard]] inline int twipsToPixels(double twips, int dpi) noexcept {
    return toNearestPixel(twips * dpi / kTwipsPerInch);
}

[[nodiscard]] inline double pixelsToTwips(double pixels, int dpi) noexcept {
    return pixels * kTwipsPerInch / dpi;
}

}  // namespace kv::raster
