// The index of each key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string_view>
#include <vector>

#include "channels/ChannelKind.h"
#include "channels/ChannelList.h"
#include "channels/KeyTable.h"
#include "channels/PlaceSet.h"

namespace kv::channels {

/// One collection for both lists: each key, without regard to case, leads to an index, which belongs to the list of the
/// channel that brought the key.
///
/// When a gap is closed, each channel behind it removes its key and adds it again with its new index. Done one by one,
/// a removal would cost as much as the list is long. So a key leads to the place of its channel and not to an index as
/// long as that channel, of our own class, still has the key: the channel and its key are *linked*. The others are
/// *odd*: their key is taken, unknown, changed, or must be read from an object of the host. A removal goes through the
/// odd ones behind the gap alone. A key whose channel is not linked with it leads to a plain number.
class KeyIndex {
  public:
    explicit KeyIndex(const PerKind<ChannelList>& lists) noexcept : lists_(lists) {}

    /// A channel was appended to its list; it is odd until its key is added. Throws std::bad_alloc, also when there are
    /// too many channels, and changes nothing.
    void appended(ChannelKind kind, bool isForeign);
    /// Undoes the last `appended`.
    void takenBack(ChannelKind kind) noexcept;
    /// Adds the key of the channel of our own class at `place`; false when the key is taken. Throws std::bad_alloc and
    /// changes nothing.
    bool add(std::wstring_view key, ChannelKind kind, std::size_t place);
    /// The same for a foreign channel at `index`.
    bool addForeign(std::wstring_view key, std::int32_t index);
    /// Moves when a key is added or forgotten or leads elsewhere.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    /// Undoes the `add` after which the keys had this version; false when they have changed since. 0 stands for an
    /// `add` that has not happened.
    bool takeBack(std::uint64_t version) noexcept;

    /// The index that the key leads to.
    [[nodiscard]] std::optional<std::int32_t> find(std::wstring_view key) const noexcept;
    struct Found {
        std::size_t place = 0;
        bool hasKey = false;  ///< the channel has exactly this key; otherwise its own has to be read
    };
    /// The place of the channel of this kind that has the index which the key leads to; nothing when the key is not
    /// known or the index is beyond the end.
    [[nodiscard]] std::optional<Found> findPlace(std::wstring_view key, ChannelKind kind) const noexcept;
    /// Removes the key; false when it is not known.
    bool forget(std::wstring_view key) noexcept;
    /// The key of the channel at `place` may be another one now.
    void keyChanges(ChannelKind kind, std::size_t place) noexcept;

    /// The channel at `place` is about to leave its list. Its key keeps its index.
    void leaves(ChannelKind kind, std::size_t place) noexcept;
    /// Gives the keys of the channels behind `place`, which has been removed, their new indexes. A channel whose key is
    /// not known is left out. Returns the first error of that kind, a RuntimeError 5 or what reading a key threw, and
    /// null when there was none.
    [[nodiscard]] std::exception_ptr moveKeysBehind(ChannelKind kind, std::size_t place);
    /// The list is about to be emptied; its keys keep the indexes that they have.
    void empties(ChannelKind kind) noexcept;
    /// Removes all keys.
    void clear() noexcept;
    /// As ChannelList::closeHoles, which calls `moved` and then needs `closed` with the number of places left.
    void moved(ChannelKind kind, std::size_t from, std::size_t to) noexcept;
    void closed(ChannelKind kind, std::size_t places) noexcept;

  private:
    enum class Leads : std::uint32_t { Nowhere, ToNumber, ToTX, ToRX };
    /// Where a key leads, in 4 bytes, because there is one for each key.
    class Entry {
      public:
        /// The highest index or place. KeyIndex::appended fails for the channel above it.
        static constexpr std::uint32_t kMost = (std::uint32_t{1} << 29U) - 1;

        Entry() noexcept = default;
        Entry(std::size_t value, Leads leads, bool isExact = false) noexcept
            : value_(static_cast<std::uint32_t>(value) & kMost), leads_(leads), isExact_(isExact ? 1U : 0U) {}
        /// The index or the place.
        [[nodiscard]] std::size_t value() const noexcept { return value_; }
        [[nodiscard]] Leads leads() const noexcept { return leads_; }
        /// The key of the linked channel is the text in the same letter case.
        [[nodiscard]] bool isExact() const noexcept { return isExact_ != 0; }
        [[nodiscard]] bool isLinked() const noexcept { return leads_ >= Leads::ToTX; }
        [[nodiscard]] ChannelKind kind() const noexcept {
            return leads_ == Leads::ToTX ? ChannelKind::TX : ChannelKind::RX;
        }

      private:
        // Of one type, because Windows' compilers begin a new word for another one.
        std::uint32_t value_ : 29 = 0;
        Leads leads_ : 2 = Leads::Nowhere;
        std::uint32_t isExact_ : 1 = 0;
    };
    static_assert(sizeof(Entry) == sizeof(std::uint32_t));
    struct Places {
        std::vector<std::int32_t> numbers;  ///< by place: the number of the key in `texts_`
        PlaceSet odd;
    };

    [[nodiscard]] static Leads linkTo(ChannelKind kind) noexcept {
        return kind == ChannelKind::TX ? Leads::ToTX : Leads::ToRX;
    }
    /// The number of a key that leads somewhere; KeyTable::kNone for any other.
    [[nodiscard]] std::int32_t known(std::wstring_view key) const noexcept;
    [[nodiscard]] std::size_t indexOf(const Entry& entry) const noexcept;
    [[nodiscard]] std::size_t indexOf(ChannelKind kind, std::size_t place) const noexcept;
    [[nodiscard]] Entry& entry(std::int32_t number) noexcept { return entries_[static_cast<std::size_t>(number)]; }
    [[nodiscard]] const Entry& entry(std::int32_t number) const noexcept {
        return entries_[static_cast<std::size_t>(number)];
    }
    std::int32_t numberOf(std::wstring_view key);
    bool lead(std::int32_t number, const Entry& to) noexcept;
    void unlink(Entry& entry) noexcept;
    void unlinkPlace(ChannelKind kind, std::size_t place) noexcept;
    bool moveKey(std::int32_t number, ChannelKind kind, std::size_t place, bool isOwn) noexcept;
    bool moveKeyOf(FreqSlot& channel, ChannelKind kind, std::size_t place);
    void dropForgotten();

    static constexpr std::size_t kFewForgotten = 1024;

    const PerKind<ChannelList>& lists_;
    KeyTable texts_;
    std::vector<Entry> entries_;  ///< by the number of the text
    PerKind<Places> places_;
    std::size_t forgotten_ = 0;  ///< entries that lead nowhere
    std::size_t dropFrom_ = kFewForgotten;
    std::int32_t added_ = KeyTable::kNone;
    std::uint64_t version_ = 0;
};

}  // namespace kv::channels
