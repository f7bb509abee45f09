#include "raster/StandingBoxes.h"

#include <algorithm>
#include <bit>

namespace kv::raster {

namespace {

constexpr std::uint32_t kInk = 0xFF000000U;

/// Bit y for each of the tile's rows that has a pixel in column `x`.
unsigned rowsOf(const HatchTile& tile, int x) {
    unsigned rows = 0;
    for (unsigned y = 0; y < 8; ++y)
        rows |= (static_cast<unsigned>(tile[y]) >> (x & 7) & 1U) << y;
    return rows;
}

/// Bit i when number i of 64 is greater than `y`.
std::uint64_t columnsAbove(const std::int16_t* numbers, int y) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::size_t kGroup = 8;
    constexpr std::uint64_t kGather = 0x0102040810204080U;  // the lowest bit of each byte into the topmost byte
    std::array<std::uint8_t, 64> above;
    const auto row = static_cast<std::int16_t>(y);
    for (std::size_t i = 0; i < above.size(); ++i)
        above[i] = numbers[i] > row ? 1 : 0;
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < above.size(); i += kGroup) {
        bits |= std::bit_cast<std::uint64_t>(
                    std::to_array<std::uint8_t>({above[i], above[i + 1], above[i + 2], above[i + 3], above[i + 4],
                                                 above[i + 5], above[i + 6], above[i + 7]})) *
                    kGather >>
                56 << i;
    }
    return bits;
}

/// Stores the ink of the pixels that have ink and no mark. Without a branch, for the compiler to take several pixels at
/// once.
inline void storeAround(std::uint32_t* pixels, const std::uint32_t* ink, unsigned marks, std::size_t count) {
    constexpr std::array<std::uint32_t, 8> kMarks = {1, 2, 4, 8, 16, 32, 64, 128};
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t free = (marks & kMarks[i]) == 0 ? ~std::uint32_t{0} : 0U;
        const std::uint32_t takes = (0U - (ink[i] >> 31)) & free;
        pixels[i] = (pixels[i] & ~takes) | (ink[i] & takes & ~kInk);
    }
}

}  // namespace

void StandingBoxes::begin(const PixelBuffer& pixels, const HatchTiles& tiles, int floor, Covers covers) {
    pixels_ = pixels;
    tiles_ = tiles;
    floor_ = floor;
    kept_ = covers;
    const auto width = static_cast<std::size_t>(pixels.width);
    const auto below = static_cast<std::int16_t>(std::clamp(floor + 1, 0, pixels.height));
    for (int level = 0; level <= kept_.levels; ++level) {
        auto& cover = covers_[static_cast<std::size_t>(level)];
        cover.assign(width + std::size_t{2} * kGuard, 0);
        std::fill(cover.begin() + kGuard + 1 - (1 << level), cover.begin() + kGuard + pixels.width, below);
    }
    if (kept_.segments)
        segments_.begin(cover(0), pixels.width);
    heads_.assign(static_cast<std::size_t>(pixels.height), -1);
    steps_.clear();
    ink_.assign(width, 0);
    inked_.assign(width / kGroup + 1, 0);
    hasLone_ = false;
    hasInverted_ = false;
}

void StandingBoxes::box(int left, int right, int top, FillStyle style, Rgb color) {
    const std::uint32_t pixel = toPixel(color);
    const int width = right - left + 1;
    const int height = floor_ - top + 1;
    if (width == 1 && height == 1)
        return;
    if (width <= 2 || height <= 2 || style == FillStyle::Solid) {
        opaque(left, right, top, pixel);
        return;
    }
    run(left, top, pixel);
    run(right, top, pixel);
    row(top, left + 1, right - 1, pixel);
    row(floor_, left + 1, right - 1, pixel);
    hatch(left + 1, right - 1, top + 1, style, pixel);
}

void StandingBoxes::opaque(int left, int right, int top, std::uint32_t pixel) {
    const int last = std::min(right, pixels_.width - 1);
    constexpr int kSegment = 1 << ColumnMaxima::kLowest;
    for (int x = std::max(left, 0); x <= last;) {
        const int end = std::min(x / kSegment * kSegment + kSegment - 1, last);
        if (kept_.segments && std::max(top, 0) >= segments_.segments(ColumnMaxima::kLowest)[x / kSegment]) {
            x = end + 1;
            continue;
        }
        for (; x <= end; ++x)
            run(x, top, pixel);
    }
}

void StandingBoxes::run(int x, int top, std::uint32_t pixel) {
    if (x < 0 || x >= pixels_.width)
        return;
    top = std::max(top, 0);
    std::int16_t& painted = covers_[0][static_cast<std::size_t>(x) + kGuard];
    if (top >= painted)
        return;
    const std::int16_t before = painted;
    painted = static_cast<std::int16_t>(top);
    std::int32_t& head = heads_[static_cast<std::size_t>(top)];
    steps_.push_back({pixel, static_cast<std::int16_t>(x), head});
    head = static_cast<std::int32_t>(steps_.size()) - 1;
    raiseCover(x, before);
}

void StandingBoxes::raiseCover(int x, std::int16_t before) noexcept {
    if (kept_.segments)
        segments_.fell(x, before);
    for (int level = 1; level <= kept_.levels; ++level) {
        const int half = 1 << (level - 1);
        const std::int16_t* const smaller = cover(level - 1);
        std::int16_t* const larger = covers_[static_cast<std::size_t>(level)].data() + kGuard;
        bool changed = false;
        for (int at = x + 1 - 2 * half; at <= x; ++at) {
            const std::int16_t both = std::max(smaller[at], smaller[at + half]);
            changed |= both != larger[at];
            larger[at] = both;
        }
        if (!changed)
            return;
    }
}

// A pixel of a row is looked at once: it is painted afterwards, or it had been before.
void StandingBoxes::row(int y, int left, int right, std::uint32_t pixel) {
    left = std::max(left, 0);
    right = std::min(right, pixels_.width - 1);
    if (y < 0 || y >= pixels_.height || left > right)
        return;
    prepareLone();
    Stretch& seen = stretches_[static_cast<std::size_t>(y)];
    if (left >= seen.first && right <= seen.last)
        return;
    seen.add(left, right);
    for (int word = left / kWord; word <= right / kWord; ++word) {
        const int first = std::max(left - word * kWord, 0);
        const int last = std::min(right - word * kWord, kWord - 1);
        const std::uint64_t columns = ~std::uint64_t{0} >> (kWord - 1 - last + first) << first;
        std::uint64_t& known = rowsSeen_[wordAt(y, word)];
        if (const std::uint64_t fresh = columns & ~known; fresh != 0)
            loneWord(y, word, fresh & columnsAbove(cover(0) + static_cast<std::ptrdiff_t>(word) * kWord, y), pixel);
        known |= columns;
    }
}

void StandingBoxes::Stretch::add(int left, int right) noexcept {
    if (left <= last + 1 && right >= first - 1) {
        first = static_cast<std::int16_t>(std::min<int>(first, left));
        last = static_cast<std::int16_t>(std::max<int>(last, right));
    } else if (right - left > last - first) {
        first = static_cast<std::int16_t>(left);
        last = static_cast<std::int16_t>(right);
    }
}

// Hatches of one style coincide, because they are aligned to the surface: what one has painted, no other needs to
// paint.
void StandingBoxes::hatch(int left, int right, int top, FillStyle style, std::uint32_t pixel) {
    const HatchTile* const tile = tiles_.of(style);
    left = std::max(left, 0);
    right = std::min(right, pixels_.width - 1);
    if (!tile || left > right)
        return;
    prepareLone();
    Hatched& hatched = hatched_[static_cast<std::size_t>(style) - static_cast<std::size_t>(FillStyle::HorizontalLine)];
    const int first = std::clamp(top, 0, pixels_.height);
    if (first >= hatched.openAnywhere)
        return;
    const std::int16_t* const painted = cover(0);
    for (int word = left / kWord; word <= right / kWord; ++word) {
        if (first >= hatched.open[static_cast<std::size_t>(word)])
            continue;
        const int last = std::min(right, word * kWord + kWord - 1);
        for (int x = std::max(left, word * kWord); x <= last; ++x) {
            std::int16_t& known = hatched.tops[static_cast<std::size_t>(x)];
            const int bottom = std::min(painted[x], known);
            if (first >= bottom)
                continue;
            known = static_cast<std::int16_t>(first);
            hatchColumn(x, first, bottom, rowsOf(*tile, x), pixel);
        }
        updateOpen(hatched, static_cast<std::size_t>(word));
    }
    hatched.openAnywhere = *std::ranges::max_element(hatched.open);
}

void StandingBoxes::hatchColumn(int x, int first, int bottom, unsigned rows, std::uint32_t pixel) {
    for (unsigned turned = std::rotr(static_cast<std::uint8_t>(rows), first & 7); turned != 0; turned &= turned - 1) {
        for (int y = first + std::countr_zero(turned); y < bottom; y += 8)
            lone(x, y, pixel);
    }
}

void StandingBoxes::updateOpen(Hatched& hatched, std::size_t word) noexcept {
    const std::size_t last = std::min((word + 1) * kWord, hatched.tops.size());
    const std::int16_t* const painted = cover(0);
    std::int16_t open = 0;
    for (std::size_t x = word * kWord; x < last; ++x)
        open = std::max(open, std::min(painted[x], hatched.tops[x]));
    hatched.open[word] = open;
}

std::uint32_t StandingBoxes::invertedBits(Rgb color) {
    if (!hasInverted_)
        inverted_.begin(pixels_.width, pixels_.height);
    hasInverted_ = true;
    return ~toPixel(color) & ~kInk;
}

void StandingBoxes::invertLine(int x, int top, Rgb color) {
    invertRun(x, top + 1, invertedBits(color));
}

void StandingBoxes::invertBox(int left, int right, int top, FillStyle style, Rgb color) {
    const std::uint32_t bits = invertedBits(color);
    const int width = right - left + 1;
    const int height = floor_ - top + 1;
    if (width == 1 || height == 1) {
        // The sides are drawn over each other. Only the end pixels remain, and of a single pixel nothing.
        if (width != height) {
            invertPixel(left, top, bits);
            invertPixel(right, floor_, bits);
        }
        return;
    }
    if (width == 2 || height == 2 || style == FillStyle::Solid) {
        const int last = std::min(right, pixels_.width - 1);
        for (int x = std::max(left, 0); x <= last; ++x)
            invertRun(x, top, bits);
        return;
    }
    invertRun(left, top, bits);
    invertRun(right, top, bits);
    invertRow(top, left + 1, right - 1, bits);
    invertRow(floor_, left + 1, right - 1, bits);
    invertHatch(left + 1, right - 1, top + 1, style, bits);
}

void StandingBoxes::invertRun(int x, int top, std::uint32_t bits) noexcept {
    if (x >= 0 && x < pixels_.width)
        inverted_.run(x, std::max(top, 0), cover(0)[x], bits);
}

void StandingBoxes::invertPixel(int x, int y, std::uint32_t bits) noexcept {
    if (x >= 0 && x < pixels_.width && y >= 0 && y < cover(0)[x])
        inverted_.run(x, y, y + 1, bits);
}

void StandingBoxes::invertRow(int y, int left, int right, std::uint32_t bits) noexcept {
    const int last = std::min(right, pixels_.width - 1);
    for (int x = std::max(left, 0); x <= last; ++x)
        invertPixel(x, y, bits);
}

void StandingBoxes::invertHatch(int left, int right, int top, FillStyle style, std::uint32_t bits) {
    const HatchTile* const tile = tiles_.of(style);
    if (!tile)
        return;
    const int first = std::max(top, 0);
    const int last = std::min(right, pixels_.width - 1);
    for (int x = std::max(left, 0); x <= last; ++x) {
        // The floor itself is an edge.
        const int bottom = std::min<int>(cover(0)[x], floor_);
        for (unsigned turned = std::rotr(static_cast<std::uint8_t>(rowsOf(*tile, x)), first & 7); turned != 0;
             turned &= turned - 1)
            inverted_.everyEighth(x, first + std::countr_zero(turned), bottom, bits);
    }
}

void StandingBoxes::lone(int x, int y, std::uint32_t pixel) {
    prepareLone();
    std::uint64_t& marks = lone_[wordAt(y, x / kWord)];
    const std::uint64_t mark = std::uint64_t{1} << x % kWord;
    if ((marks & mark) != 0)
        return;
    marks |= mark;
    pixels_.row(y)[x] = hasInverted_ ? pixel ^ inverted_.at(x, y) : pixel;
}

void StandingBoxes::loneWord(int y, int word, std::uint64_t columns, std::uint32_t pixel) {
    std::uint64_t& marks = lone_[wordAt(y, word)];
    std::uint64_t left = columns & ~marks;
    marks |= left;
    std::uint32_t* const row = pixels_.row(y) + static_cast<std::ptrdiff_t>(word) * kWord;
    while (left != 0) {
        const int first = std::countr_zero(left);
        const int count = std::countr_one(left >> first);
        std::fill_n(row + first, count, pixel);
        for (int x = first; hasInverted_ && x < first + count; ++x)
            row[x] ^= inverted_.at(word * kWord + x, y);
        left &= left + (left & (0 - left));  // without its lowest run of bits
    }
}

void StandingBoxes::prepareLone() {
    if (hasLone_)
        return;
    hasLone_ = true;
    const auto height = static_cast<std::size_t>(pixels_.height);
    rowStride_ = (static_cast<std::size_t>(pixels_.width) + kWord - 1) / kWord;
    lone_.assign(rowStride_ * height, 0);
    rowsSeen_.assign(rowStride_ * height, 0);
    stretches_.assign(height, {});
    // The floor itself is an edge.
    const auto below = static_cast<std::int16_t>(std::clamp(floor_, 0, pixels_.height));
    for (Hatched& hatched : hatched_) {
        hatched.tops.assign(static_cast<std::size_t>(pixels_.width), below);
        hatched.open.assign(rowStride_, below);
        hatched.openAnywhere = below;
    }
}

void StandingBoxes::end() {
    const int below = std::clamp(floor_ + 1, 0, pixels_.height);
    for (int y = 0; y < below; ++y) {
        for (std::int32_t at = heads_[static_cast<std::size_t>(y)]; at >= 0;) {
            const Step& step = steps_[static_cast<std::size_t>(at)];
            const auto x = static_cast<std::size_t>(step.x);
            ink_[x] = step.pixel | kInk;
            inked_[x / kGroup] = 1;
            at = step.next;
        }
        storeRow(y);
    }
    if (hasInverted_)
        inverted_.exchangeIn(pixels_, hasLone_ ? lone_.data() : nullptr, rowStride_);
}

void StandingBoxes::storeRow(int y) {
    std::uint32_t* const row = pixels_.row(y);
    const std::uint64_t* const words = hasLone_ ? lone_.data() + wordAt(y, 0) : nullptr;
    const auto marksOf = [words](std::size_t group) {
        constexpr std::size_t kGroups = kWord / kGroup;
        return words ? static_cast<unsigned>(words[group / kGroups] >> group % kGroups * kGroup & 0xFFU) : 0U;
    };
    const std::size_t whole = static_cast<std::size_t>(pixels_.width) / kGroup;
    for (std::size_t group = 0; group < whole; ++group) {
        if (inked_[group] == 0)
            continue;
        const std::size_t x = group * kGroup;
        storeAround(row + x, ink_.data() + x, marksOf(group), kGroup);
    }
    if (const std::size_t x = whole * kGroup; x < static_cast<std::size_t>(pixels_.width))
        storeAround(row + x, ink_.data() + x, marksOf(whole), static_cast<std::size_t>(pixels_.width) - x);
}

}  // namespace kv::raster
