// The TX and RX channels in the order of adding, their keys, and the extremes of their frequencies and powers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "channels/ChannelKind.h"
#include "channels/ChannelList.h"
#include "channels/ChannelSnapshot.h"
#include "channels/FreqSlot.h"
#include "channels/KeyIndex.h"
#include "channels/MatchIndex.h"
#include "channels/Sentinels.h"
#include "util/Raised.h"

namespace kv::channels {

/// Frequencies in MHz, powers in dBm. A range counts as set when its maximum is not below its minimum.
struct Extremes {
    double dTXFreqMin = FREQ_UNSET;
    double dTXFreqMax = -FREQ_UNSET;
    double dRXFreqMin = FREQ_UNSET;
    double dRXFreqMax = -FREQ_UNSET;
    double dTXPwrDBMMin = FREQ_UNSET;
    double dTXPwrDBMMax = -FREQ_UNSET;
    double dFreqMin = FREQ_UNSET;
    double dFreqMax = -FREQ_UNSET;
    double dPwrMin = 0.0;  ///< the power range always spans 0 to 3 dBm at least
    double dPwrMax = 3.0;
};

class ChannelStore {
  public:
    ChannelStore() = default;
    ~ChannelStore();
    ChannelStore(const ChannelStore&) = delete;
    ChannelStore& operator=(const ChannelStore&) = delete;

    /// Appends the channel, then adds its key, then widens the extremes; `index` is set as soon as the channel is
    /// appended. Throws RuntimeError 457 when the key is taken (the channel stays in the store) and 91 for no channel.
    void add(ChannelKind kind, const FreqSlotRef& channel, std::int32_t& index);

    [[nodiscard]] std::int32_t count(ChannelKind kind) const noexcept;
    /// Neither a TX nor an RX channel.
    [[nodiscard]] bool empty() const noexcept {
        return lists_[ChannelKind::TX].empty() && lists_[ChannelKind::RX].empty();
    }
    /// Null outside 0 to count - 1.
    [[nodiscard]] FreqSlotRef at(ChannelKind kind, std::int32_t index) const noexcept;
    [[nodiscard]] const ChannelList& list(ChannelKind kind) const noexcept { return lists_[kind]; }
    /// The copy of a kind's records. Callers must call its `update` before reading it.
    [[nodiscard]] ChannelSnapshot& snapshot(ChannelKind kind) const noexcept { return snapshots_[kind]; }
    /// Moves when the channels of a kind get other places.
    [[nodiscard]] std::uint64_t arrangement(ChannelKind kind) const noexcept { return arrangements_[kind]; }
    /// Moves with each channel of a kind that comes or goes.
    [[nodiscard]] std::uint64_t listChanges(ChannelKind kind) const noexcept { return listChanges_[kind]; }

    /// The channel at the key's index in this kind's array, if its own key equals `key` exactly; otherwise null.
    [[nodiscard]] FreqSlotRef findByKey(ChannelKind kind, std::wstring_view key) const;
    /// TX before RX.
    [[nodiscard]] FreqSlotRef findByKey(std::wstring_view key) const;
    /// The index stored for the key (case-insensitive), of either kind.
    [[nodiscard]] std::optional<std::int32_t> indexOfKey(std::wstring_view key) const { return keys_.find(key); }

    /// Removes the channel at `index`, beyond the end the last one: the later channels move down by one, each with its
    /// key. A channel whose key is not known (its key was changed after adding, or it has the key of another channel)
    /// is moved without one. Returns the first error of that kind, a RuntimeError 5 or what reading a key threw, and
    /// null when there was none. Throws std::bad_alloc and changes nothing.
    [[nodiscard]] std::exception_ptr closeGap(ChannelKind kind, std::int32_t index);
    /// The same at the index that the key leads to, of whatever kind the key is; at 0 for an unknown key.
    [[nodiscard]] std::exception_ptr closeGap(ChannelKind kind, std::wstring_view key);
    /// Throws RuntimeError 5 when the key is not known.
    void forgetKey(std::wstring_view key);

    /// Empties one kind; keys and extremes stay as they are.
    void clear(ChannelKind kind) noexcept;
    void forgetAllKeys() noexcept;
    void resetFrequencyExtremes() noexcept;

    /// After removals: the band edges of all channels of one kind, then of both.
    void RecalcTXFreqRange() { widenByEdges(ChannelKind::TX); }
    void RecalcRXFreqRange() { widenByEdges(ChannelKind::RX); }
    void RecalcFreqRange() noexcept;

    /// Derives all extremes except the overall power range from the channels, by the rules of adding.
    void rederiveExtremes();

    /// Calls `body` with each channel of a class of the host's, in their order. Reading one may run the host's code,
    /// which may change the list.
    template <class Body>
    void forEachForeign(ChannelKind kind, Body&& body) const {
        const util::Raised busy(busy_);
        const PlaceSet& foreign = snapshots_[kind].foreign();
        for (std::size_t place = foreign.next(0); place != PlaceSet::kNone; place = foreign.next(place + 1))
            body(*FreqSlotRef(lists_[kind].at(place)));
    }

    /// Index of the first RX channel equal in frequencies, bandwidth, units and label; kInvalid when there is none.
    [[nodiscard]] std::int32_t findMatchRX(FreqSlot& channel) const;

    [[nodiscard]] const Extremes& extremes() const noexcept { return extremes_; }

  private:
    class Watcher final : public RecordWatcher {
      public:
        Watcher(ChannelStore& store, ChannelKind kind) noexcept : store_(store), kind_(kind) {}
        void recordChanges(std::int32_t place, Changes what) noexcept override;

      private:
        ChannelStore& store_;
        ChannelKind kind_;
    };
    [[nodiscard]] Watcher& watcher(ChannelKind kind) noexcept { return kind == ChannelKind::TX ? watchTX_ : watchRX_; }

    void append(ChannelKind kind, const FreqSlotRef& channel);
    void takeBack(ChannelKind kind) noexcept;
    void addKey(ChannelKind kind, FreqSlot& record, std::size_t place, std::int32_t index);
    void widen(ChannelKind kind, FreqSlot& channel, double low, double high);
    void widenFrequencies(ChannelKind kind, const CountedRange& range) noexcept;
    void widenPowers(const CountedRange& range) noexcept;
    void widenByEdges(ChannelKind kind);
    std::exception_ptr closeGapAt(ChannelKind kind, std::size_t place);
    void closeHoles(ChannelKind kind) noexcept;
    PerKind<ChannelList> lists_;
    KeyIndex keys_{lists_};
    Watcher watchTX_{*this, ChannelKind::TX};
    Watcher watchRX_{*this, ChannelKind::RX};
    mutable MatchIndex matches_;  ///< of the RX channels
    Extremes extremes_;
    mutable PerKind<ChannelSnapshot> snapshots_{ChannelSnapshot(lists_[ChannelKind::TX]),
                                                ChannelSnapshot(lists_[ChannelKind::RX])};
    PerKind<std::uint64_t> arrangements_;
    PerKind<std::uint64_t> listChanges_;
    mutable bool busy_ = false;  ///< places must not change, because code of the host may run meanwhile
};

}  // namespace kv::channels
