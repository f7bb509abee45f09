#include "channels/RankedBits.h"

#include <bit>

namespace kv::channels {

namespace {

constexpr std::size_t kWordBits = 64;
constexpr std::size_t kBlockWords = 16;
constexpr std::size_t kBlockBits = kWordBits * kBlockWords;

constexpr std::uint64_t bitOf(std::size_t position) {
    return std::uint64_t{1} << (position % kWordBits);
}

/// The number of bits that are set: sums of pairs, of fours, of bytes, and of all bytes. std::popcount is a call where
/// the program must also run on processors without an instruction for it.
std::size_t countOf(std::uint64_t bits) {
    bits -= (bits >> 1U) & 0x5555555555555555U;
    bits = (bits & 0x3333333333333333U) + ((bits >> 2U) & 0x3333333333333333U);
    bits = (bits + (bits >> 4U)) & 0x0F0F0F0F0F0F0F0FU;
    const auto halves = static_cast<std::uint32_t>(bits) + static_cast<std::uint32_t>(bits >> 32U);
    return halves * 0x01010101U >> 24U;
}

}  // namespace

void RankedBits::set(std::size_t position) {
    const std::size_t block = position / kBlockBits;
    if (block >= setBefore_.size()) {
        words_.resize((block + 1) * kBlockWords);
        setBefore_.resize(block + 1, static_cast<std::uint32_t>(count_));
    }
    words_[position / kWordBits] |= bitOf(position);
    for (std::size_t later = block + 1; later < setBefore_.size(); ++later)
        ++setBefore_[later];
    ++count_;
}

bool RankedBits::test(std::size_t position) const noexcept {
    const std::size_t word = position / kWordBits;
    return word < words_.size() && (words_[word] & bitOf(position)) != 0;
}

std::size_t RankedBits::clearBefore(std::size_t position) const noexcept {
    const std::size_t block = position / kBlockBits;
    if (block >= setBefore_.size())
        return position - count_;
    std::size_t before = setBefore_[block];
    const std::size_t last = position / kWordBits;
    for (std::size_t word = block * kBlockWords; word < last; ++word)
        before += countOf(words_[word]);
    return position - before - countOf(words_[last] & (bitOf(position) - 1));
}

std::size_t RankedBits::clearBeforeBlock(std::size_t block) const noexcept {
    return block * kBlockBits - (block < setBefore_.size() ? setBefore_[block] : count_);
}

std::size_t RankedBits::positionOfClear(std::size_t rank) const noexcept {
    std::size_t block = 0;
    std::size_t end = setBefore_.size();
    if (rank >= clearBeforeBlock(end))
        return rank + count_;
    while (end - block > 1) {
        const std::size_t middle = block + (end - block) / 2;
        (clearBeforeBlock(middle) <= rank ? block : end) = middle;
    }
    std::size_t left = rank - clearBeforeBlock(block);
    std::size_t word = block * kBlockWords;
    for (; left >= countOf(~words_[word]); ++word)
        left -= countOf(~words_[word]);
    std::uint64_t bits = ~words_[word];
    for (; left > 0; --left)
        bits &= bits - 1;
    return word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits));
}

}  // namespace kv::channels
