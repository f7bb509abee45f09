// Which index each key stands for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "channels/ChannelKind.h"
#include "channels/RankedBits.h"

namespace kv::channels {

/// Keys count without regard to case. As long as every channel of both lists has a key of its own that stands for it,
/// closing a gap moves no key: an index is the rank of its channel. Once that is not so any more (`unlink`), indexes
/// are numbers that only change one by one, until all keys are forgotten.
class KeyIndex {
  public:
    /// The channel at `index`, the last of its list, takes `key`; false when the key is taken.
    bool add(std::wstring_view key, ChannelKind kind, std::int32_t index);
    [[nodiscard]] std::optional<std::int32_t> find(std::wstring_view key) const;
    /// Whether `key` stands for the channel at `index` and moves with it.
    [[nodiscard]] bool isLinked(std::wstring_view key, ChannelKind kind, std::int32_t index) const;
    /// False when the key is not known.
    bool forget(std::wstring_view key);
    /// The channel at `index`, whose key is `key`, goes from its list; the key stays behind and stands for the index
    /// still. False when that cannot be done at one stroke: then nothing has happened but `unlink`.
    bool closeGap(std::wstring_view key, ChannelKind kind, std::int32_t index);
    /// A list has been emptied; its keys stand for the indexes that they had.
    void emptied(ChannelKind kind) noexcept;
    /// All keys are forgotten. Keys are linked again if both lists are empty.
    void clear(bool listsAreEmpty) noexcept;
    void unlink();
    [[nodiscard]] bool linked() const noexcept { return linked_; }

  private:
    struct Entry {
        std::int32_t number = 0;  ///< the position in `gone_` when linked, otherwise the index
        ChannelKind kind = ChannelKind::TX;
        bool linked = false;
    };
    [[nodiscard]] std::int32_t indexOf(const Entry& entry) const noexcept;
    void fix(ChannelKind kind) noexcept;
    void fixEmptied() noexcept;

    std::unordered_map<std::wstring, Entry> entries_;  ///< by the key's folded case
    PerKind<RankedBits> gone_;                         ///< by number, the linked channels that were removed
    PerKind<bool> emptied_;                            ///< lists whose keys must be fixed before anything else happens
    bool linked_ = true;
};

}  // namespace kv::channels
