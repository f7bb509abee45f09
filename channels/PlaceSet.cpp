#include "channels/PlaceSet.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace kv::channels {

namespace {

constexpr std::size_t kBits = std::numeric_limits<std::size_t>::digits;

constexpr std::size_t bitOf(std::size_t position) {
    return std::size_t{1} << (position % kBits);
}

/// The first set bit at `from` or after it.
std::size_t nextBit(const std::vector<std::size_t>& words, std::size_t from) noexcept {
    std::size_t word = from / kBits;
    if (word >= words.size())
        return PlaceSet::kNone;
    std::size_t bits = words[word] & (~std::size_t{0} << (from % kBits));
    while (bits == 0) {
        if (++word == words.size())
            return PlaceSet::kNone;
        bits = words[word];
    }
    return word * kBits + static_cast<std::size_t>(std::countr_zero(bits));
}

}  // namespace

void PlaceSet::grow(std::size_t size) {
    const std::size_t words = (size + kBits - 1) / kBits;
    if (words <= words_.size())
        return;
    used_.resize((words + kBits - 1) / kBits);
    words_.resize(words);
}

void PlaceSet::insert(std::size_t place) noexcept {
    const std::size_t word = place / kBits;
    if (word >= words_.size() || (words_[word] & bitOf(place)) != 0)
        return;
    words_[word] |= bitOf(place);
    used_[word / kBits] |= bitOf(word);
    ++count_;
}

void PlaceSet::erase(std::size_t place) noexcept {
    if (!contains(place))
        return;
    const std::size_t word = place / kBits;
    words_[word] &= ~bitOf(place);
    if (words_[word] == 0)
        used_[word / kBits] &= ~bitOf(word);
    --count_;
}

void PlaceSet::clear() noexcept {
    for (std::size_t word = nextBit(used_, 0); word != kNone; word = nextBit(used_, word + 1))
        words_[word] = 0;
    std::ranges::fill(used_, 0);
    count_ = 0;
}

bool PlaceSet::contains(std::size_t place) const noexcept {
    const std::size_t word = place / kBits;
    return word < words_.size() && (words_[word] & bitOf(place)) != 0;
}

std::size_t PlaceSet::next(std::size_t from) const noexcept {
    const std::size_t word = from / kBits;
    if (count_ == 0 || word >= words_.size())
        return kNone;
    if (const std::size_t bits = words_[word] & (~std::size_t{0} << (from % kBits)); bits != 0)
        return word * kBits + static_cast<std::size_t>(std::countr_zero(bits));
    const std::size_t later = nextBit(used_, word + 1);
    return later == kNone ? kNone : later * kBits + static_cast<std::size_t>(std::countr_zero(words_[later]));
}

}  // namespace kv::channels
