// Compares a picture with a reference picture. Text is not compared, because fonts differ between systems.
#pragma once

#include <optional>

#include "host/selfcheck/PictureFile.h"

namespace kv::host {

/// Pixels of text in a reference picture have this color, which no display uses.
constexpr std::uint32_t kTextMark = 0xFF00FF;

struct Comparison {
    std::size_t compared = 0;   ///< pixels without text in both pictures
    std::size_t different = 0;  ///< of these
    int firstX = 0;             ///< the first different one from the top
    int firstY = 0;
    Pixels marked;  ///< the picture in light gray, with the different pixels in red and text in light blue
};

/// The first picture with its text marked. The second one differs in nothing but the color of its text. A border of
/// some pixels around the text is marked, too.
[[nodiscard]] Pixels withTextMarked(const Pixels& picture, const Pixels& otherTextColor);

/// Both have their text marked; empty if their sizes differ.
[[nodiscard]] std::optional<Comparison> compare(const Pixels& drawn, const Pixels& reference);

/// How many pixels differ between pictures of one size; all pixels if their sizes differ.
[[nodiscard]] std::size_t countDifferent(const Pixels& a, const Pixels& b);

/// The number of pixels of a color.
[[nodiscard]] std::size_t countColor(const Pixels& picture, std::uint32_t color);

}  // namespace kv::host
