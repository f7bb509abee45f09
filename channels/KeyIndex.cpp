#include "channels/KeyIndex.h"

#include "util/Text.h"

namespace kv::channels {

std::int32_t KeyIndex::indexOf(const Entry& entry) const noexcept {
    if (!entry.linked)
        return entry.number;
    return static_cast<std::int32_t>(gone_[entry.kind].clearBefore(static_cast<std::size_t>(entry.number)));
}

bool KeyIndex::add(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    fixEmptied();
    // Without links no removed channel is counted, and the number is the index.
    const std::int32_t number = index + static_cast<std::int32_t>(gone_[kind].count());
    return entries_.emplace(util::foldCase(key), Entry{number, kind, linked_}).second;
}

std::optional<std::int32_t> KeyIndex::find(std::wstring_view key) const {
    const auto found = entries_.find(util::foldCase(key));
    return found == entries_.end() ? std::nullopt : std::optional(indexOf(found->second));
}

bool KeyIndex::isLinked(std::wstring_view key, ChannelKind kind, std::int32_t index) const {
    const auto found = entries_.find(util::foldCase(key));
    return found != entries_.end() && found->second.linked && found->second.kind == kind &&
           indexOf(found->second) == index;
}

bool KeyIndex::forget(std::wstring_view key) {
    fixEmptied();
    const auto found = entries_.find(util::foldCase(key));
    if (found == entries_.end())
        return false;
    const bool bereaved = found->second.linked;
    entries_.erase(found);
    if (bereaved)
        unlink();
    return true;
}

bool KeyIndex::closeGap(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    fixEmptied();
    if (!linked_)
        return false;
    const auto found = entries_.find(util::foldCase(key));
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
