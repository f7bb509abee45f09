#include "channels/KeyTable.h"

#include <algorithm>
#include <limits>
#include <new>

#include "util/KeyedHash.h"
#include "util/Text.h"

namespace kv::channels {

namespace {

constexpr std::size_t kFewSlots = 32;

bool equal(std::wstring_view a, std::wstring_view b) noexcept {
    return std::ranges::equal(
        a, b, [](wchar_t x, wchar_t y) { return x == y || util::foldAsciiFast(x) == util::foldAsciiFast(y); });
}

}  // namespace

std::uint32_t KeyTable::hashOf(std::wstring_view text) noexcept {
    return static_cast<std::uint32_t>(util::foldedHash(text));
}

std::wstring_view KeyTable::text(std::int32_t number) const noexcept {
    const auto at = static_cast<std::size_t>(number);
    const std::size_t begin = entries_[at].begin;
    const std::size_t end = at + 1 < entries_.size() ? entries_[at + 1].begin : characters_.size();
    return {characters_.data() + begin, end - begin};
}

std::int32_t KeyTable::find(std::wstring_view key) const noexcept {
    if (slots_.empty())
        return kNone;
    if (last_ != kNone && text(last_) == key) {
        lastIsExact_ = true;
        return last_;
    }
    const std::uint32_t hash = hashOf(key);
    const auto mask = static_cast<std::uint32_t>(slots_.size() - 1);
    for (std::size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
        if (((slots_[slot] ^ hash) & ~mask) != 0)
            continue;
        const auto number = static_cast<std::int32_t>((slots_[slot] & mask) - 1);
        if (entries_[static_cast<std::size_t>(number)].hash != hash)
            continue;
        lastIsExact_ = text(number) == key;
        if (lastIsExact_ || equal(text(number), key))
            return last_ = number;
    }
    return kNone;
}

std::int32_t KeyTable::add(std::wstring_view key) {
    if (isFull())
        growSlots();
    const std::uint32_t hash = hashOf(key);
    const std::size_t begin = characters_.size();
    if (key.size() > std::numeric_limits<std::uint32_t>::max() - begin)
        throw std::bad_alloc();
    // By a quarter instead of doubling, because this is the largest list of all.
    if (begin + key.size() > characters_.capacity())
        characters_.reserve(begin + key.size() + begin / 4);
    characters_.insert(characters_.end(), key.begin(), key.end());
    try {
        entries_.push_back({static_cast<std::uint32_t>(begin), hash});
    } catch (...) {
        characters_.resize(begin);
        throw;
    }
    enter(slots_, hash, entries_.size() - 1);
    return static_cast<std::int32_t>(entries_.size() - 1);
}

void KeyTable::enter(std::vector<std::uint32_t>& slots, std::uint32_t hash, std::size_t number) noexcept {
    const auto mask = static_cast<std::uint32_t>(slots.size() - 1);
    std::size_t slot = hash & mask;
    while (slots[slot] != 0)
        slot = (slot + 1) & mask;
    slots[slot] = (hash & ~mask) | static_cast<std::uint32_t>(number + 1);
}

void KeyTable::growSlots() {
    std::vector<std::uint32_t> larger(std::max(kFewSlots, slots_.size() * 2));
    for (std::size_t number = 0; number < entries_.size(); ++number)
        enter(larger, entries_[number].hash, number);
    slots_.swap(larger);
}

}  // namespace kv::channels
