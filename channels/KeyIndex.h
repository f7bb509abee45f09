// The index of each key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "channels/ChannelKind.h"
#include "channels/RankedBits.h"

namespace kv::channels {

/// Keys are case-insensitive. Only adding one needs memory, so that a removal that has begun can be completed. A key is
/// linked when it moves with its channel. As long as every channel of both lists has a linked key of its own, closing a
/// gap changes no entry, because an index is computed from the number of channels removed before it. After `unlink`,
/// indexes are plain numbers that are changed one by one, until all keys are removed.
class KeyIndex {
  public:
    /// Adds the key of the channel at `index`, the last of its list; false when the key is taken.
    bool add(std::wstring_view key, ChannelKind kind, std::int32_t index);
    /// Moves when a key is added, forgotten or renumbered.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    /// Undoes the `add` after which the keys had this version; false when they have changed since. 0 stands for an
    /// `add` that has not happened.
    bool takeBack(std::uint64_t version) noexcept;
    [[nodiscard]] std::optional<std::int32_t> find(std::wstring_view key) const;
    /// Whether `key` is linked to the channel at `index`.
    [[nodiscard]] bool isLinked(std::wstring_view key, ChannelKind kind, std::int32_t index) const;
    /// Removes the key; false when it is not known.
    bool forget(std::wstring_view key);
    /// Gives a known key another index, as `forget` and `add` would; false when it is not known.
    bool renumber(std::wstring_view key, ChannelKind kind, std::int32_t index);
    /// The channel at `index`, whose key is `key`, is being removed from its list; the key keeps the index. False when
    /// the keys of the later channels must be changed one by one: then only `unlink` has happened.
    bool closeGap(std::wstring_view key, ChannelKind kind, std::int32_t index);
    /// A list has been emptied; its keys keep the indexes that they had.
    void emptied(ChannelKind kind) noexcept;
    /// Removes all keys. New keys are linked if both lists are empty.
    void clear(bool listsAreEmpty) noexcept;
    void unlink();
    [[nodiscard]] bool linked() const noexcept { return linked_; }

  private:
    /// Compare keys as they are, without folded copies.
    struct FoldedHash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view key) const noexcept;
    };
    struct FoldedEqual {
        using is_transparent = void;
        bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
    };
    struct Entry {
        std::int32_t number = 0;  ///< the position in `gone_` when linked, otherwise the index
        ChannelKind kind = ChannelKind::TX;
        bool linked = false;
    };
    [[nodiscard]] std::int32_t indexOf(const Entry& entry) const noexcept;
    void fix(ChannelKind kind) noexcept;
    void fixEmptied() noexcept;

    [[nodiscard]] std::int32_t numberOf(ChannelKind kind, std::int32_t index) const noexcept;

    std::unordered_map<std::wstring, Entry, FoldedHash, FoldedEqual> entries_;
    PerKind<RankedBits> gone_;             ///< by number, the linked channels that were removed
    PerKind<bool> emptied_;                ///< lists whose keys must be fixed before anything else happens
    const std::wstring* added_ = nullptr;  ///< the last key, which `takeBack` removes
    std::uint64_t version_ = 0;
    bool linked_ = true;
};

}  // namespace kv::channels
