#include "channels/KeyIndex.h"

#include "util/Text.h"

namespace kv::channels {

std::int32_t KeyIndex::indexOf(const Entry& entry) const noexcept {
    return entry.linked ? ranks(entry.kind).rank(entry.number) : entry.number;
}

bool KeyIndex::add(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    fixEmptied();
    const Entry entry{linked_ ? ranks(kind).next(index) : index, kind, linked_};
    return entries_.emplace(util::foldCase(key), entry).second;
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
    ranks(kind).leave(found->second.number);
    found->second = {index, kind, false};
    return true;
}

void KeyIndex::emptied(ChannelKind kind) noexcept {
    emptied_[kind == ChannelKind::TX ? 0 : 1] = true;
}

void KeyIndex::clear(bool listsAreEmpty) noexcept {
    entries_.clear();
    for (LiveRanks& ranks : ranks_)
        ranks.clear();
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
    ranks(kind).clear();
    emptied_[kind == ChannelKind::TX ? 0 : 1] = false;
}

void KeyIndex::fixEmptied() noexcept {
    if (emptied_[0])
        fix(ChannelKind::TX);
    if (emptied_[1])
        fix(ChannelKind::RX);
}

}  // namespace kv::channels
