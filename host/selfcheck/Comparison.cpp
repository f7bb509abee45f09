#include "host/selfcheck/Comparison.h"

#include <algorithm>

namespace kv::host {

namespace {

constexpr int kBorder = 3;  // pixels around text, for the edges that smoothing changes too little to notice
constexpr std::uint32_t kDifferentColor = 0xE00000;
constexpr std::uint32_t kTextColor = 0xD8E4F4;

void markAround(Pixels& picture, int x, int y) {
    for (int row = std::max(y - kBorder, 0); row <= std::min(y + kBorder, picture.height - 1); ++row) {
        for (int column = std::max(x - kBorder, 0); column <= std::min(x + kBorder, picture.width - 1); ++column) {
            picture.rgb[picture.indexOf(column, row)] = kTextMark;
        }
    }
}

/// So light that the marks in it stand out.
std::uint32_t pale(std::uint32_t rgb) {
    const std::uint32_t gray = ((rgb & 0xFFU) + (rgb >> 8U & 0xFFU) + (rgb >> 16U & 0xFFU)) / 3;
    return (0xC0U + gray / 4) * 0x010101U;
}

}  // namespace

Pixels withTextMarked(const Pixels& picture, const Pixels& otherTextColor) {
    Pixels marked = picture;
    if (picture.rgb.size() != otherTextColor.rgb.size()) {
        return marked;
    }
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.rgb[picture.indexOf(x, y)] != otherTextColor.rgb[picture.indexOf(x, y)]) {
                markAround(marked, x, y);
            }
        }
    }
    return marked;
}

std::optional<Comparison> compare(const Pixels& drawn, const Pixels& reference) {
    if (drawn.width != reference.width || drawn.height != reference.height) {
        return std::nullopt;
    }
    Comparison result;
    result.marked = Pixels(drawn.width, drawn.height);
    for (std::size_t i = 0; i < drawn.rgb.size(); ++i) {
        if (drawn.rgb[i] == kTextMark || reference.rgb[i] == kTextMark) {
            result.marked.rgb[i] = kTextColor;
            continue;
        }
        ++result.compared;
        const bool same = drawn.rgb[i] == reference.rgb[i];
        result.marked.rgb[i] = same ? pale(drawn.rgb[i]) : kDifferentColor;
        if (!same && result.different++ == 0) {
            result.firstX = static_cast<int>(i % static_cast<std::size_t>(drawn.width));
            result.firstY = static_cast<int>(i / static_cast<std::size_t>(drawn.width));
        }
    }
    return result;
}

std::size_t countDifferent(const Pixels& a, const Pixels& b) {
    if (a.width != b.width || a.height != b.height) {
        return std::max(a.rgb.size(), b.rgb.size());
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.rgb.size(); ++i) {
        count += a.rgb[i] != b.rgb[i] ? 1 : 0;
    }
    return count;
}

std::size_t countColor(const Pixels& picture, std::uint32_t color) {
    return static_cast<std::size_t>(std::count(picture.rgb.begin(), picture.rgb.end(), color));
}

}  // namespace kv::host
