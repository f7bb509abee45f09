#include "channels/RankedBits.h"

#include <bit>
#include <limits>

namespace kv::channels {

namespace {

constexpr std::size_t kWordBits = std::numeric_limits<std::size_t>::digits;
constexpr std::size_t kBlockBits = 1024;
constexpr std::size_t kBlockWords = kBlockBits / kWordBits;

constexpr std::size_t bitOf(std::size_t position) {
    return std::size_t{1} << (position % kWordBits);
}

/// The number of bits that are set: sums of pairs, of fours, of bytes, and of all bytes. std::popcount is a call where
/// the program must also run on processors without an instruction for it.
std::size_t countOf(std::size_t bits) {
    constexpr std::size_t kEachByte = std::numeric_limits<std::size_t>::max() / 0xFF;
    bits -= (bits >> 1U) & (kEachByte * 0x55U);
    bits = (bits & (kEachByte * 0x33U)) + ((bits >> 2U) & (kEachByte * 0x33U));
    bits = (bits + (bits >> 4U)) & (kEachByte * 0x0FU);
    return bits * kEachByte >> (kWordBits - 8);
}

}  // namespace

void RankedBits::set(std::size_t position) {
    const std::size_t block = position / kBlockBits;
    if (block >= setBefore_.size()) {
        words_.resize((block + 1) * kBlockWords);
        setInBlock_.resize(words_.size());
        setBefore_.resize(block + 1, static_cast<std::uint32_t>(count_));
    }
    const std::size_t word = position / kWordBits;
    words_[word] |= bitOf(position);
    for (std::size_t later = word + 1; later < (block + 1) * kBlockWords; ++later)
        ++setInBlock_[later];
    for (std::size_t later = block + 1; later < setBefore_.size(); ++later)
        ++setBefore_[later];
    ++count_;
}

bool RankedBits::test(std::size_t position) const noexcept {
    const std::size_t word = position / kWordBits;
    return word < words_.size() && (words_[word] & bitOf(position)) != 0;
}

std::size_t RankedBits::clearBefore(std::size_t position) const noexcept {
    if (position / kBlockBits >= setBefore_.size())
        return position - count_;
    const std::size_t word = position / kWordBits;
    return clearBeforeWord(word) + position % kWordBits - countOf(words_[word] & (bitOf(position) - 1));
}

std::size_t RankedBits::clearBeforeBlock(std::size_t block) const noexcept {
    return block * kBlockBits - (block < setBefore_.size() ? setBefore_[block] : count_);
}

std::size_t RankedBits::clearBeforeWord(std::size_t word) const noexcept {
    return word * kWordBits - setBefore_[word / kBlockWords] - setInBlock_[word];
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
    std::size_t word = block * kBlockWords;
    const std::size_t lastWord = word + kBlockWords - 1;
    while (word < lastWord && clearBeforeWord(word + 1) <= rank)
        ++word;
    std::size_t bits = ~words_[word];
    for (std::size_t left = rank - clearBeforeWord(word); left > 0; --left)
        bits &= bits - 1;
    return word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits));
}

}  // namespace kv::channels
