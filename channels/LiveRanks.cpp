#include "channels/LiveRanks.h"

#include <bit>
#include <cstddef>

namespace kv::channels {

namespace {

constexpr std::size_t kWordBits = 64;
constexpr std::size_t kBlockWords = 16;
constexpr std::size_t kBlockBits = kWordBits * kBlockWords;

}  // namespace

std::int32_t LiveRanks::rank(std::int32_t number) const noexcept {
    const auto place = static_cast<std::size_t>(number);
    const std::size_t block = place / kBlockBits;
    if (block >= leftBefore_.size())
        return number - gone_;
    std::int32_t before = leftBefore_[block];
    const std::size_t last = place / kWordBits;
    for (std::size_t word = block * kBlockWords; word < last; ++word)
        before += std::popcount(left_[word]);
    const std::uint64_t below = (std::uint64_t{1} << (place % kWordBits)) - 1;
    return number - before - std::popcount(left_[last] & below);
}

void LiveRanks::leave(std::int32_t number) {
    const auto place = static_cast<std::size_t>(number);
    const std::size_t block = place / kBlockBits;
    if (block >= leftBefore_.size()) {
        left_.reserve((block + 1) * kBlockWords);  // a failure here leaves all as it was
        leftBefore_.resize(block + 1, gone_);
        left_.resize((block + 1) * kBlockWords, 0);
    }
    left_[place / kWordBits] |= std::uint64_t{1} << (place % kWordBits);
    for (std::size_t behind = block + 1; behind < leftBefore_.size(); ++behind)
        ++leftBefore_[behind];
    ++gone_;
}

void LiveRanks::clear() noexcept {
    left_.clear();
    leftBefore_.clear();
    gone_ = 0;
}

}  // namespace kv::channels
