#include "channels/ChannelStore.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "raster/Canvas.h"
#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::channels {

using raster::FillStyle;
using util::RuntimeError;

namespace {

FreqSlot& demand(const FreqSlotRef& channel) {
    if (!channel)
        throw RuntimeError(util::error_number::kObjectNotSet);
    return *channel;
}

void defaultUnits(FreqSlot& channel) {
    if (util::getLenTrim(channel.sFreqUnits()) < 1)
        channel.setSFreqUnits(L"MHz");
    if (util::getLenTrim(channel.sBWUnits()) < 1)
        channel.setSBWUnits(L"KHz");
}

/// The distance of a band edge from the center: the whole bandwidth, in the frequency's unit.
double edgeOffset(FreqSlot& channel) {
    const double bandwidth = channel.dBW();
    const std::wstring bandwidthUnits = channel.sBWUnits();
    const std::wstring frequencyUnits = channel.sFreqUnits();
    if (!(bandwidth > 0.0) || bandwidthUnits.empty() || frequencyUnits.empty())
        return 0.0;
    return util::ConvertFreq(bandwidthUnits, frequencyUnits, bandwidth);
}

void fillInEdges(FreqSlot& channel) {
    const FreqSlotFields* const own = channel.peek();
    if (own && own->dFreqHi > 0.0 && own->dFreqLo > 0.0)
        return;
    const double center = channel.dFreq();
    const double offset = edgeOffset(channel);
    if (channel.dFreqHi() <= 0.0)
        channel.setDFreqHi(center + offset);
    if (channel.dFreqLo() <= 0.0)
        channel.setDFreqLo(center - offset);
}

/// The band edges of a channel as far as they count for the extremes, MHz: a channel without a frequency, and an edge
/// that is not above 0, widen nothing.
struct CountedEdges {
    double low = FREQ_UNSET;
    double high = -FREQ_UNSET;
};

CountedEdges countedEdges(double frequency, double low, double high) {
    CountedEdges counted;
    if (frequency > 0.0) {
        counted.low = low > 0.0 ? low : FREQ_UNSET;
        counted.high = high > 0.0 ? high : -FREQ_UNSET;
    }
    return counted;
}

CountedEdges countedEdges(const FreqSlotFields& fields) {
    return countedEdges(fields.dFreq, fields.dFreqLo, fields.dFreqHi);
}

/// A value that is no number changes nothing.
void raise(double& maximum, double value) {
    maximum = std::max(maximum, value);
}

void lower(double& minimum, double value) {
    minimum = std::min(minimum, value);
}

}  // namespace

void ChannelStore::add(ChannelKind kind, const FreqSlotRef& channel, std::int32_t& index) {
    FreqSlot& record = demand(channel);
    record.setIFillStyle(
        static_cast<std::int16_t>(kind == ChannelKind::TX ? FillStyle::DownwardDiagonal : FillStyle::UpwardDiagonal));
    defaultUnits(record);
    if (empty())
        keyRevision_ = keyRevision();
    ChannelList& list = lists_[kind];
    list.append(channel);
    index = static_cast<std::int32_t>(list.size()) - 1;
    std::uint64_t keyed = 0;
    try {
        // The array first, the key second: a channel whose key is taken is drawn and counted, but cannot be found.
        if (const FreqSlotFields* const own = record.peek()) {
            addKey(own->sKey, kind, index);
        } else {
            addKey(record.sKey(), kind, index);
        }
        keyed = keys_.version();
        if (record.dFreq() > 0.0) {
            fillInEdges(record);
            widen(kind, record);
        }
    } catch (const std::bad_alloc&) {
        // Without memory for what belongs to it the channel is not added at all, unless the host's code has changed the
        // store meanwhile.
        if (!list.empty() && list[list.size() - 1] == channel.get() && keys_.takeBack(keyed)) {
            static_cast<void>(list.take(list.size() - 1));
        } else {
            keys_.unlink();
            noteAdded(kind, record);
        }
        throw;
    } catch (...) {
        keys_.unlink();
        noteAdded(kind, record);
        throw;
    }
    noteAdded(kind, record);
}

void ChannelStore::addKey(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    if (!keys_.add(key, kind, index))
        throw RuntimeError(util::error_number::kKeyInUse);
}

// Last of all, so that what adding has changed of the record does not count as a change.
void ChannelStore::noteAdded(ChannelKind kind, FreqSlot& channel) {
    EdgeRange& range = edges_[kind];
    if (const FreqSlotFields* const own = channel.watch()) {
        const CountedEdges counted = countedEdges(*own);
        raise(range.maximum, counted.high);
        lower(range.minimum, counted.low);
        return;
    }
    hasForeign_ = true;
    keys_.unlink();
}

void ChannelStore::widen(ChannelKind kind, FreqSlot& channel) {
    const bool tx = kind == ChannelKind::TX;
    Extremes& e = extremes_;
    const double high = channel.dFreqHi();
    if (high > 0.0) {
        raise(tx ? e.dTXFreqMax : e.dRXFreqMax, high);
        raise(e.dFreqMax, high);
    }
    const double low = channel.dFreqLo();
    if (low > 0.0) {
        lower(tx ? e.dTXFreqMin : e.dRXFreqMin, low);
        lower(e.dFreqMin, low);
    }
    if (!tx)
        return;
    const double power = channel.dPwrDBM();
    // Minus infinity is the power of 0 W. As an extreme it would leave the picture without a scale.
    if (!std::isfinite(power))
        return;
    raise(e.dTXPwrDBMMax, power);
    lower(e.dTXPwrDBMMin, power);
    lower(e.dPwrMin, power);
    raise(e.dPwrMax, power);
}

std::int32_t ChannelStore::count(ChannelKind kind) const noexcept {
    return static_cast<std::int32_t>(lists_[kind].size());
}

FreqSlotRef ChannelStore::at(ChannelKind kind, std::int32_t index) const noexcept {
    const ChannelList& list = lists_[kind];
    if (index < 0 || static_cast<std::size_t>(index) >= list.size())
        return nullptr;
    return FreqSlotRef(list[static_cast<std::size_t>(index)]);
}

FreqSlotRef ChannelStore::findByKey(ChannelKind kind, std::wstring_view key) const {
    const std::optional<std::int32_t> index = indexOfKey(key);
    if (!index)
        return nullptr;
    FreqSlotRef channel = at(kind, *index);
    if (!channel || channel->sKey() != key)
        return nullptr;
    return channel;
}

FreqSlotRef ChannelStore::findByKey(std::wstring_view key) const {
    FreqSlotRef channel = findByKey(ChannelKind::TX, key);
    return channel ? channel : findByKey(ChannelKind::RX, key);
}

std::exception_ptr ChannelStore::closeGap(ChannelKind kind, std::int32_t index) {
    return removeAtOnce(kind, index) ? nullptr : removeWithKeys(kind, index);
}

// Has the result of removeWithKeys when each channel has a key of its own that was not changed.
bool ChannelStore::removeAtOnce(ChannelKind kind, std::int32_t index) {
    ChannelList& list = lists_[kind];
    if (index < 0 || static_cast<std::size_t>(index) >= list.size() || !keysAreAsTheyCame())
        return false;
    const FreqSlotFields& fields = *list[static_cast<std::size_t>(index)]->watch();
    if (!keys_.closeGap(fields.sKey, kind, index))
        return false;
    ChannelSnapshot::Removal removal(snapshot(kind));
    EdgeRange& range = edges_[kind];
    const CountedEdges counted = countedEdges(fields);
    const bool inside = (counted.low > range.minimum || counted.low == FREQ_UNSET) &&
                        (counted.high < range.maximum || counted.high == -FREQ_UNSET);
    range.known = range.known && inside;
    matches_.drop();
    const FreqSlotRef gone = list.take(static_cast<std::size_t>(index));
    removal.done(index);
    return true;
}

bool ChannelStore::keysAreAsTheyCame() {
    if (!keys_.linked())
        return false;
    const std::uint64_t now = keyRevision();
    if (keyRevision_ == now)
        return true;
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        for (std::int32_t i = 0; i < count(kind); ++i) {
            if (!keys_.isLinked(lists_[kind][static_cast<std::size_t>(i)]->peek()->sKey, kind, i))
                return false;
        }
    }
    keyRevision_ = now;
    return true;
}

std::exception_ptr ChannelStore::removeWithKeys(ChannelKind kind, std::int32_t index) {
    keys_.unlink();
    edges_[kind].known = false;
    matches_.drop();
    ChannelList& list = lists_[kind];
    ChannelSnapshot::Removal removal(snapshot(kind));
    std::exception_ptr failed;
    // Reading a key may run the host's code, which may change the list: its length is read again each time.
    for (std::int32_t j = index; j < count(kind) - 1; ++j) {
        const FreqSlotRef moved = at(kind, j + 1);
        static_cast<void>(list.replace(static_cast<std::size_t>(j), moved));
        // A key that cannot be moved does not end the loop: with the array half moved, one channel would be in it
        // twice and another one lost.
        try {
            // Reading a key of our own class takes no copy, for which there might be no memory.
            if (const FreqSlotFields* const own = moved->peek()) {
                renumberKey(own->sKey, kind, j);
            } else {
                renumberKey(moved->sKey(), kind, j);
            }
        } catch (...) {
            if (!failed)
                failed = std::current_exception();
        }
    }
    if (!list.empty()) {
        static_cast<void>(list.take(list.size() - 1));
        removal.done(std::min(index, count(kind)));
    }
    return failed;
}

void ChannelStore::renumberKey(std::wstring_view key, ChannelKind kind, std::int32_t index) {
    if (!keys_.renumber(key, kind, index))
        throw RuntimeError(util::error_number::kInvalidProcedureCall);
}

void ChannelStore::forgetKey(std::wstring_view key) {
    if (!keys_.forget(key))
        throw RuntimeError(util::error_number::kInvalidProcedureCall);
}

void ChannelStore::clear(ChannelKind kind) noexcept {
    // Dropping a reference may run the host's code, which must find the store already empty.
    ChannelList dropped;
    snapshot(kind).drop();
    dropped.swap(lists_[kind]);
    keys_.emptied(kind);
    edges_[kind] = {};
    matches_.drop();
    if (empty())
        hasForeign_ = false;
}

void ChannelStore::forgetAllKeys() noexcept {
    keys_.clear(empty());
}

void ChannelStore::resetFrequencyExtremes() noexcept {
    Extremes& e = extremes_;
    e.dTXFreqMin = e.dRXFreqMin = e.dFreqMin = FREQ_UNSET;
    e.dTXFreqMax = e.dRXFreqMax = e.dFreqMax = -FREQ_UNSET;
}

void ChannelStore::widenByEdges(ChannelKind kind) {
    EdgeRange& range = edges_[kind];
    const std::uint64_t revision = recordRevision();
    if (hasForeign_ || !range.known || range.revision != revision) {
        EdgeRange fresh{FREQ_UNSET, -FREQ_UNSET, revision, true};
        for (std::int32_t i = 0; const FreqSlotRef channel = at(kind, i); ++i) {
            const CountedEdges counted = countedEdges(channel->dFreq(), channel->dFreqLo(), channel->dFreqHi());
            raise(fresh.maximum, counted.high);
            lower(fresh.minimum, counted.low);
        }
        range = fresh;
    }
    (kind == ChannelKind::TX ? extremes_.dTXFreqMin : extremes_.dRXFreqMin) = range.minimum;
    (kind == ChannelKind::TX ? extremes_.dTXFreqMax : extremes_.dRXFreqMax) = range.maximum;
}

void ChannelStore::RecalcTXFreqRange() {
    widenByEdges(ChannelKind::TX);
}

void ChannelStore::RecalcRXFreqRange() {
    widenByEdges(ChannelKind::RX);
}

void ChannelStore::RecalcFreqRange() noexcept {
    extremes_.dFreqMin = std::min(extremes_.dTXFreqMin, extremes_.dRXFreqMin);
    extremes_.dFreqMax = std::max(extremes_.dTXFreqMax, extremes_.dRXFreqMax);
}

void ChannelStore::rederiveExtremes() {
    resetFrequencyExtremes();
    extremes_.dTXPwrDBMMin = FREQ_UNSET;
    extremes_.dTXPwrDBMMax = -FREQ_UNSET;
    for (const ChannelKind kind : {ChannelKind::RX, ChannelKind::TX}) {
        for (std::int32_t i = 0; const FreqSlotRef channel = at(kind, i); ++i) {
            if (channel->dFreq() > 0.0)
                widen(kind, *channel);
        }
    }
}

std::int32_t ChannelStore::findMatchRX(FreqSlot& channel) const {
    const FreqSlotFields* const own = channel.peek();
    if (own && !hasForeign_)
        return matches_.find(lists_[ChannelKind::RX], *own);
    for (std::int32_t i = 0; const FreqSlotRef candidate = at(ChannelKind::RX, i); ++i) {
        FreqSlot& rx = *candidate;
        if (rx.dFreqAlt() == channel.dFreqAlt() && rx.dFreq() == channel.dFreq() && rx.dFreqHi() == channel.dFreqHi() &&
            rx.dFreqLo() == channel.dFreqLo() && rx.dBW() == channel.dBW() && rx.sBWUnits() == channel.sBWUnits() &&
            rx.sLabel() == channel.sLabel() && rx.sFreqUnits() == channel.sFreqUnits())
            return i;
    }
    return kInvalid;
}

}  // namespace kv::channels
