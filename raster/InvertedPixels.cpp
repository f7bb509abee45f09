#include "raster/InvertedPixels.h"

#include <algorithm>

namespace kv::raster {

namespace {

std::uint32_t allOf(const std::uint32_t* changes, std::size_t count) noexcept {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < count; ++i)
        bits ^= changes[i];
    return bits;
}

void addUpList(std::uint32_t* changes, std::size_t count) noexcept {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < count; ++i)
        changes[i] = bits ^= changes[i];
}

}  // namespace

void InvertedPixels::begin(int width, int height) {
    width_ = width;
    height_ = height;
    // A run may end below the last row.
    columnStride_ = static_cast<std::size_t>(height) + 1;
    phaseStride_ = static_cast<std::size_t>(height) / kPhases + 2;
    const auto columns = (static_cast<std::size_t>(width) + kGroup - 1) / kGroup * kGroup;
    first_.assign(columns, static_cast<std::int16_t>(height));
    changes_.assign(columns * columnStride_, 0);
    hasEighths_ = false;
}

std::size_t InvertedPixels::eighth(int x, int y) const noexcept {
    const auto phase = static_cast<std::size_t>(x) * kPhases + static_cast<std::size_t>(y % kPhases);
    return phase * phaseStride_ + static_cast<std::size_t>(y / kPhases);
}

void InvertedPixels::note(int x, int row) noexcept {
    std::int16_t& first = first_[static_cast<std::size_t>(x)];
    first = std::min(first, static_cast<std::int16_t>(row));
}

void InvertedPixels::run(int x, int top, int bottom, std::uint32_t bits) noexcept {
    if (top >= bottom)
        return;
    note(x, top);
    std::uint32_t* const column = changes_.data() + static_cast<std::size_t>(x) * columnStride_;
    column[top] ^= bits;
    column[bottom] ^= bits;
}

void InvertedPixels::everyEighth(int x, int top, int bottom, std::uint32_t bits) {
    if (top >= bottom)
        return;
    note(x, top);
    if (!hasEighths_)
        eighths_.assign(first_.size() * phaseStride_ * kPhases, 0);
    hasEighths_ = true;
    const int rows = (bottom - top + kPhases - 1) / kPhases;
    std::uint32_t* const change = eighths_.data() + eighth(x, top);
    change[0] ^= bits;
    change[rows] ^= bits;
}

std::uint32_t InvertedPixels::at(int x, int y) const noexcept {
    const int first = first_[static_cast<std::size_t>(x)];
    if (y < first)
        return 0;
    const std::uint32_t* const column = changes_.data() + static_cast<std::size_t>(x) * columnStride_;
    const std::uint32_t bits = allOf(column + first, static_cast<std::size_t>(y - first) + 1);
    if (!hasEighths_)
        return bits;
    return bits ^ allOf(eighths_.data() + eighth(x, y % kPhases), static_cast<std::size_t>(y / kPhases) + 1);
}

void InvertedPixels::addUp(std::size_t x) noexcept {
    addUpList(changes_.data() + x * columnStride_, columnStride_);
    if (!hasEighths_)
        return;
    for (std::size_t phase = 0; phase < kPhases; ++phase)
        addUpList(eighths_.data() + (x * kPhases + phase) * phaseStride_, phaseStride_);
}

// By groups of columns, so that the columns of a group stay in the fast memory while their rows are read across.
void InvertedPixels::exchangeIn(const PixelBuffer& pixels, const std::uint64_t* marks,
                                std::size_t marksStride) noexcept {
    for (std::size_t x = 0; x < first_.size(); x += kGroup) {
        const int first = *std::min_element(first_.data() + x, first_.data() + x + kGroup);
        if (first >= height_)
            continue;
        for (std::size_t i = x; i < x + kGroup; ++i)
            addUp(i);
        const std::size_t count = std::min(kGroup, static_cast<std::size_t>(width_) - x);
        for (int y = first; y < height_; ++y) {
            const std::uint64_t marked =
                marks ? marks[static_cast<std::size_t>(y) * marksStride + x / kWord] >> x % kWord : 0U;
            const std::uint32_t* const change = changes_.data() + x * columnStride_ + static_cast<std::size_t>(y);
            const std::uint32_t* const phase = hasEighths_ ? eighths_.data() + eighth(static_cast<int>(x), y) : nullptr;
            std::uint32_t* const row = pixels.row(y) + x;
            for (std::size_t i = 0; i < count; ++i) {
                const std::uint32_t bits = change[i * columnStride_] ^ (phase ? phase[i * kPhases * phaseStride_] : 0U);
                row[i] ^= (marked >> i & 1U) != 0 ? 0U : bits;
            }
        }
    }
}

}  // namespace kv::raster
