#include "channels/KeyIndex.h"

#include <algorithm>

#include "util/Text.h"

namespace kv::channels {

std::size_t KeyIndex::FoldedHash::operator()(std::wstring_view key) const noexcept {
    std::size_t hash = 0;
    for (const wchar_t character : key)
        hash = hash * 31U + static_cast<std::size_t>(util::foldCase(character));
    return hash * 0x9E3779B1U;
}

bool KeyIndex::FoldedEqual::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return std::ranges::equal(a, b, [](wchar_t x, wchar_t y) { return util::foldCase(x) == util::foldCase(y); });
}

// Without links no removed channel is counted, and the number is the index.
std::int32_t KeyIndex::numberOf(ChannelKind kind, std::int32_t index) const noexcept {
    return index + static_cast<std::int32_t>(gone_[kind].count());
}

std::int32_t KeyIndex::indexOf(const Entry& entry) const noexcept {
    if (!entry.linked)
        return entry.number;
    return static_cast<std::int32_t>(gone_[entry.kind].clearBefore(static_cast<std::size_t>(entry.number)));
}

bool KeyIndex::add(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    ++version_;
    fixEmptied();
    const auto [entry, isNew] = entries_.emplace(key, Entry{numberOf(kind, index), kind, linked_});
    if (isNew)
        added_ = &entry->first;
    return isNew;
}

bool KeyIndex::takeBack(std::uint64_t version) noexcept {
    if (version == 0)
        return true;
    if (version != version_)
        return false;
    ++version_;
    entries_.erase(entries_.find(*added_));
    return true;
}

std::optional<std::int32_t> KeyIndex::find(std::wstring_view key) const {
    const auto found = entries_.find(key);
    return found == entries_.end() ? std::nullopt : std::optional(indexOf(found->second));
}

bool KeyIndex::isLinked(std::wstring_view key, ChannelKind kind, std::int32_t index) const {
    const auto found = entries_.find(key);
    return found != entries_.end() && found->second.linked && found->second.kind == kind &&
           indexOf(found->second) == index;
}

bool KeyIndex::forget(std::wstring_view key) {
    ++version_;
    fixEmptied();
    const auto found = entries_.find(key);
    if (found == entries_.end())
        return false;
    const bool bereaved = found->second.linked;
    entries_.erase(found);
    if (bereaved)
        unlink();
    return true;
}

bool KeyIndex::renumber(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    ++version_;
    fixEmptied();
    const auto found = entries_.find(key);
    if (found == entries_.end())
        return false;
    if (found->second.linked)
        unlink();
    found->second = {numberOf(kind, index), kind, linked_};
    return true;
}

bool KeyIndex::closeGap(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    fixEmptied();
    if (!linked_)
        return false;
    const auto found = entries_.find(key);
    if (found == entries_.end() || !found->second.linked || found->second.kind != kind ||
        indexOf(found->second) != index) {
        unlink();
        return false;
    }
    gone_[kind].set(static_cast<std::size_t>(found->second.number));
    found->second = {index, kind, false};
    return true;
}

void KeyIndex::emptied(ChannelKind kind) noexcept {
    emptied_[kind] = true;
}

void KeyIndex::clear(bool listsAreEmpty) noexcept {
    ++version_;
    entries_.clear();
    gone_ = {};
    emptied_ = {};
    linked_ = listsAreEmpty;
}

void KeyIndex::unlink() {
    fix(ChannelKind::TX);
    fix(ChannelKind::RX);
    linked_ = false;
}

void KeyIndex::fix(ChannelKind kind) noexcept {
    for (auto& [key, entry] : entries_) {
        if (entry.linked && entry.kind == kind)
            entry = {indexOf(entry), kind, false};
    }
    gone_[kind] = {};
    emptied_[kind] = false;
}

void KeyIndex::fixEmptied() noexcept {
    if (emptied_[ChannelKind::TX])
        fix(ChannelKind::TX);
    if (emptied_[ChannelKind::RX])
        fix(ChannelKind::RX);
}

}  // namespace kv::channels
