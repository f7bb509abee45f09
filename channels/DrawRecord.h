// What drawing needs of a channel record.
#pragma once

#include <cstdint>

#include "raster/Canvas.h"
#include "util/ConvertFreq.h"

namespace kv::channels {

/// Read in one go.
struct DrawRecord {
    double dFreq = 0.0;    ///< MHz
    double dFreqLo = 0.0;  ///< MHz
    double dFreqHi = 0.0;  ///< MHz
    double dPwrDBM = 0.0;  ///< dBm
    std::uint32_t lColor = 0;
    std::uint32_t lColorLine = 0;
    std::int16_t iFillStyle = 0;
    bool bVisible = true;
    bool bDrawn = false;
    util::FreqUnit unit = util::FreqUnit::MHz;  ///< of the three frequencies, which drawing takes for MHz
};

/// Visible, or hidden since it was drawn, so that refreshing the picture takes it off.
[[nodiscard]] constexpr bool isShown(const DrawRecord& record) noexcept {
    return record.bVisible || record.bDrawn;
}

/// Shown, at a frequency above 0 and inside its band, whose edges are at most 1e15 MHz from 0. Differences of such
/// edges are exact enough for the frequency grid, whichever two are taken.
[[nodiscard]] constexpr bool isRegular(const DrawRecord& record) noexcept {
    constexpr double kFarthest = 1e15;  // MHz
    return isShown(record) && record.dFreq > 0.0 && record.dFreqLo <= record.dFreq && record.dFreq <= record.dFreqHi &&
           record.dFreqLo >= -kFarthest && record.dFreqHi <= kFarthest;
}

/// A fill style that the picture box does not have.
[[nodiscard]] constexpr bool hasUnknownFillStyle(const DrawRecord& record) noexcept {
    return record.iFillStyle < static_cast<int>(raster::FillStyle::Solid) ||
           record.iFillStyle > static_cast<int>(raster::FillStyle::DiagonalCross);
}

}  // namespace kv::channels
