#include "raster/ColumnMaxima.h"

#include <algorithm>
#include <utility>

namespace kv::raster {

namespace {

std::int16_t ofPair(const std::vector<std::int16_t>& smaller, std::size_t pair) noexcept {
    const std::size_t second = std::min(2 * pair + 1, smaller.size() - 1);
    return std::max(smaller[2 * pair], smaller[second]);
}

}  // namespace

void ColumnMaxima::begin(const std::int16_t* columns, int width) {
    columns_ = columns;
    width_ = static_cast<std::size_t>(width);
    std::size_t count = (width_ + (std::size_t{1} << kLowest) - 1) >> kLowest;
    levels_.resize(1);
    levels_[0].resize(count);
    for (std::size_t segment = 0; segment < count; ++segment)
        levels_[0][segment] = ofColumns(segment);
    while (count > 1) {
        count = (count + 1) / 2;
        std::vector<std::int16_t> larger(count);
        for (std::size_t segment = 0; segment < count; ++segment)
            larger[segment] = ofPair(levels_.back(), segment);
        levels_.push_back(std::move(larger));
    }
}

void ColumnMaxima::fell(int x, std::int16_t before) noexcept {
    std::size_t segment = static_cast<std::size_t>(x) >> kLowest;
    for (std::size_t level = 0; level < levels_.size(); ++level, segment /= 2) {
        std::int16_t& greatest = levels_[level][segment];
        if (greatest != before)
            return;  // another column has the greatest number
        greatest = level == 0 ? ofColumns(segment) : ofPair(levels_[level - 1], segment);
        if (greatest == before)
            return;
    }
}

std::int16_t ColumnMaxima::ofColumns(std::size_t segment) const noexcept {
    const std::size_t first = segment << kLowest;
    const std::size_t last = std::min(first + (std::size_t{1} << kLowest), width_);
    std::int16_t greatest = columns_[first];
    for (std::size_t x = first; x < last; ++x)
        greatest = std::max(greatest, columns_[x]);
    return greatest;
}

}  // namespace kv::raster
