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
    /// The same without a reference, for an index from 0 to count - 1.
    [[nodiscard]] FreqSlot* peek(ChannelKind kind, std::int32_t index) const noexcept {
        return lists_[kind][static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const ChannelList& list(ChannelKind kind) const noexcept { return lists_[kind]; }
    /// The copy of a kind's records. Callers must call its `update` before reading it.
    [[nodiscard]] ChannelSnapshot& snapshot(ChannelKind kind) const noexcept { return snapshots_[kind]; }

    /// The channel at the key's index in this kind's array, if its own key equals `key` exactly; otherwise null.
    [[nodiscard]] FreqSlotRef findByKey(ChannelKind kind, std::wstring_view key) const;
    /// TX before RX.
    [[nodiscard]] FreqSlotRef findByKey(std::wstring_view key) const;
    /// The index stored for the key (case-insensitive), of either kind.
    [[nodiscard]] std::optional<std::int32_t> indexOfKey(std::wstring_view key) const { return keys_.find(key); }

    /// Closes the gap at `index`, moving the later channels down by one, each with its key. A channel whose key is not
    /// known (its key was changed after adding, or it has the key of another channel) is moved without one. Returns the
    /// first error of that kind, a RuntimeError 5 or what reading a key threw, and null when there was none.
    [[nodiscard]] std::exception_ptr closeGap(ChannelKind kind, std::int32_t index);
    /// Throws RuntimeError 5 when the key is not known.
    void forgetKey(std::wstring_view key);

    /// Empties one kind; keys and extremes stay as they are.
    void clear(ChannelKind kind) noexcept;
    void forgetAllKeys() noexcept;
    void resetFrequencyExtremes() noexcept;

    /// After removals: the band edges of all channels of one kind, then of both.
    void RecalcTXFreqRange();
    void RecalcRXFreqRange();
    void RecalcFreqRange() noexcept;

    /// Derives all extremes except the overall power range from the channels, by the rules of adding.
    void rederiveExtremes();

    /// Index of the first RX channel equal in frequencies, bandwidth, units and label; kInvalid when there is none.
    [[nodiscard]] std::int32_t findMatchRX(FreqSlot& channel) const;

    [[nodiscard]] const Extremes& extremes() const noexcept { return extremes_; }

  private:
    /// The band edges of all channels of a kind, valid as long as no record changes.
    struct EdgeRange {
        double minimum = FREQ_UNSET;
        double maximum = -FREQ_UNSET;
        std::uint64_t revision = 0;
        bool known = false;
    };

    void addKey(std::wstring_view key, ChannelKind kind, std::int32_t index);
    void renumberKey(std::wstring_view key, ChannelKind kind, std::int32_t index);
    void noteAdded(ChannelKind kind, FreqSlot& channel);
    void widen(ChannelKind kind, FreqSlot& channel);
    void widenByEdges(ChannelKind kind);
    std::exception_ptr removeWithKeys(ChannelKind kind, std::int32_t index);
    bool removeAtOnce(ChannelKind kind, std::int32_t index);
    [[nodiscard]] bool keysAreAsTheyCame();

    PerKind<ChannelList> lists_;
    KeyIndex keys_;
    std::uint64_t keyRevision_ = 0;  ///< at which each key led to its channel
    bool hasForeign_ = false;        ///< added since both lists were empty
    PerKind<EdgeRange> edges_;
    mutable MatchIndex matches_;
    Extremes extremes_;
    mutable PerKind<ChannelSnapshot> snapshots_;
};

}  // namespace kv::channels
