#include "channels/ChannelStore.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "raster/Canvas.h"
#include "util/ConvertFreq.h"
#include "util/Raised.h"
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

// Members of a foreign object are read once: each is a call of the host's code. A member that was set is read back,
// because the object may have kept its own value.

struct Units {
    std::wstring frequency;
    std::wstring bandwidth;
};

Units defaultUnits(FreqSlot& channel) {
    Units units;
    units.frequency = channel.sFreqUnits();
    if (util::getLenTrim(units.frequency) < 1) {
        channel.setSFreqUnits(L"MHz");
        units.frequency = channel.sFreqUnits();
    }
    units.bandwidth = channel.sBWUnits();
    if (util::getLenTrim(units.bandwidth) < 1) {
        channel.setSBWUnits(L"KHz");
        units.bandwidth = channel.sBWUnits();
    }
    return units;
}

/// The distance of a band edge from the center: the whole bandwidth, in the frequency's unit.
double edgeOffset(double bandwidth, const Units& units) {
    if (!(bandwidth > 0.0) || units.bandwidth.empty() || units.frequency.empty())
        return 0.0;
    return util::ConvertFreq(units.bandwidth, units.frequency, bandwidth);
}

/// In the frequency's unit.
struct Edges {
    double low;
    double high;
};

/// The edges of a channel whose center is at `center`, after filling in those that are missing. The bandwidth is
/// converted in any case: one that is too large for the frequency's unit is an error even if no edge needs it.
Edges fillInEdges(FreqSlot& channel, double center, const Units& units) {
    const double offset = edgeOffset(channel.dBW(), units);
    Edges edges{0.0, channel.dFreqHi()};
    if (edges.high <= 0.0) {
        channel.setDFreqHi(center + offset);
        edges.high = channel.dFreqHi();
    }
    edges.low = channel.dFreqLo();
    if (edges.low <= 0.0) {
        channel.setDFreqLo(center - offset);
        edges.low = channel.dFreqLo();
    }
    return edges;
}

FreqSlotFields comparedMembers(FreqSlot& channel) {
    FreqSlotFields fields;
    fields.dFreqAlt = channel.dFreqAlt();
    fields.dFreq = channel.dFreq();
    fields.dFreqHi = channel.dFreqHi();
    fields.dFreqLo = channel.dFreqLo();
    fields.dBW = channel.dBW();
    fields.sBWUnits = channel.sBWUnits();
    fields.sLabel = channel.sLabel();
    fields.sFreqUnits = channel.sFreqUnits();
    return fields;
}

/// As isEqualChannel; reads no further than to the first difference.
bool isEqualForeign(FreqSlot& rx, const FreqSlotFields& f) {
    return rx.dFreqAlt() == f.dFreqAlt && rx.dFreq() == f.dFreq && rx.dFreqHi() == f.dFreqHi &&
           rx.dFreqLo() == f.dFreqLo && rx.dBW() == f.dBW && rx.sBWUnits() == f.sBWUnits && rx.sLabel() == f.sLabel &&
           rx.sFreqUnits() == f.sFreqUnits;
}

/// A value that is no number changes nothing.
void raise(double& maximum, double value) {
    maximum = std::max(maximum, value);
}

void lower(double& minimum, double value) {
    minimum = std::min(minimum, value);
}

}  // namespace

ChannelStore::~ChannelStore() {
    // Releasing a channel may run the host's code.
    while (!empty()) {
        clear(ChannelKind::TX);
        clear(ChannelKind::RX);
    }
}

void ChannelStore::Watcher::recordChanges(std::int32_t place, Changes what) noexcept {
    const auto at = static_cast<std::size_t>(place);
    if ((what & change::kDrawing) != 0)
        store_.snapshots_[kind_].recordChanges(at);
    if ((what & change::kMatching) != 0 && kind_ == ChannelKind::RX)
        store_.matches_.changed(at);
    if ((what & change::kGroup) != 0)
        store_.snapshots_[kind_].groupChanges(at);
    if ((what & change::kKey) != 0)
        store_.keys_.keyChanges(kind_, at);
}

void ChannelStore::add(ChannelKind kind, const FreqSlotRef& channel, std::int32_t& index) {
    FreqSlot& record = demand(channel);
    record.setIFillStyle(
        static_cast<std::int16_t>(kind == ChannelKind::TX ? FillStyle::DownwardDiagonal : FillStyle::UpwardDiagonal));
    const Units units = defaultUnits(record);
    const util::Raised busy(busy_);
    append(kind, channel);
    const ChannelList& list = lists_[kind];
    const std::size_t place = list.places() - 1;
    index = static_cast<std::int32_t>(list.size()) - 1;
    const auto isThere = [&] { return list.places() == place + 1 && list.at(place) == channel.get(); };
    std::uint64_t keyed = 0;
    try {
        // The array first, the key second: a channel whose key is taken is drawn and counted, but cannot be found.
        addKey(kind, record, place, index);
        keyed = keys_.version();
        if (const double center = record.dFreq(); center > 0.0) {
            const Edges edges = fillInEdges(record, center, units);
            widen(kind, record, edges.low, edges.high);
        }
    } catch (const std::bad_alloc&) {
        // Without memory for what belongs to it the channel is not added at all, unless the host's code has changed the
        // store meanwhile.
        if (isThere() && keys_.takeBack(keyed))
            takeBack(kind);
        throw;
    } catch (...) {
        if (isThere())
            snapshots_[kind].readLast();
        throw;
    }
    if (isThere())
        snapshots_[kind].readLast();
}

void ChannelStore::append(ChannelKind kind, const FreqSlotRef& channel) {
    ChannelList& list = lists_[kind];
    const bool isForeign = !channel->peek();
    list.append(channel);
    ++listChanges_[kind];
    int done = 0;
    try {
        keys_.appended(kind, isForeign);
        ++done;
        snapshots_[kind].append(isForeign);
        ++done;
        if (kind == ChannelKind::RX)
            matches_.append(!isForeign);
        ++done;
        if (!isForeign)
            static_cast<void>(channel->watch(watcher(kind), static_cast<std::int32_t>(list.places()) - 1));
    } catch (...) {
        if (done > 2 && kind == ChannelKind::RX)
            matches_.takeBack();
        if (done > 1)
            snapshots_[kind].takeBack();
        if (done > 0)
            keys_.takenBack(kind);
        static_cast<void>(list.takeBack());
        throw;
    }
}

/// Undoes the last `append`.
void ChannelStore::takeBack(ChannelKind kind) noexcept {
    ChannelList& list = lists_[kind];
    const FreqSlotRef gone = list.takeBack();
    gone->unwatch(watcher(kind), static_cast<std::int32_t>(list.places()));
    keys_.takenBack(kind);
    snapshots_[kind].takeBack();
    if (kind == ChannelKind::RX)
        matches_.takeBack();
}

void ChannelStore::addKey(ChannelKind kind, FreqSlot& record, std::size_t place, std::int32_t index) {
    const FreqSlotFields* const own = record.peek();
    if (!(own ? keys_.add(own->sKey, kind, place) : keys_.addForeign(record.sKey(), index)))
        throw RuntimeError(util::error_number::kKeyInUse);
}

void ChannelStore::widen(ChannelKind kind, FreqSlot& channel, double low, double high) {
    CountedRange range;
    range.widenByEdges(1.0, low, high);
    widenFrequencies(kind, range);
    if (kind != ChannelKind::TX)
        return;
    range.widenByPower(channel.dPwrDBM());
    widenPowers(range);
}

void ChannelStore::widenFrequencies(ChannelKind kind, const CountedRange& range) noexcept {
    const bool tx = kind == ChannelKind::TX;
    Extremes& e = extremes_;
    raise(tx ? e.dTXFreqMax : e.dRXFreqMax, range.high);
    raise(e.dFreqMax, range.high);
    lower(tx ? e.dTXFreqMin : e.dRXFreqMin, range.low);
    lower(e.dFreqMin, range.low);
}

void ChannelStore::widenPowers(const CountedRange& range) noexcept {
    raise(extremes_.dTXPwrDBMMax, range.maxPower);
    lower(extremes_.dTXPwrDBMMin, range.minPower);
    lower(extremes_.dPwrMin, range.minPower);
    raise(extremes_.dPwrMax, range.maxPower);
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
    const std::optional<KeyIndex::Found> found = keys_.findPlace(key, kind);
    if (!found)
        return nullptr;
    FreqSlotRef channel(lists_[kind].at(found->place));
    if (found->hasKey)
        return channel;
    const FreqSlotFields* const own = channel->peek();
    if (own ? own->sKey != key : channel->sKey() != key)
        return nullptr;
    return channel;
}

FreqSlotRef ChannelStore::findByKey(std::wstring_view key) const {
    FreqSlotRef channel = findByKey(ChannelKind::TX, key);
    return channel ? channel : findByKey(ChannelKind::RX, key);
}

std::exception_ptr ChannelStore::closeGap(ChannelKind kind, std::int32_t index) {
    const ChannelList& list = lists_[kind];
    if (list.empty())
        return nullptr;
    return closeGapAt(kind, list.placeOf(std::min(static_cast<std::size_t>(index), list.size() - 1)));
}

std::exception_ptr ChannelStore::closeGap(ChannelKind kind, std::wstring_view key) {
    const std::optional<KeyIndex::Found> found = keys_.findPlace(key, kind);
    return found ? closeGapAt(kind, found->place) : closeGap(kind, indexOfKey(key).value_or(0));
}

std::exception_ptr ChannelStore::closeGapAt(ChannelKind kind, std::size_t place) {
    ChannelList& list = lists_[kind];
    const FreqSlotRef gone = list.remove(place);
    ++listChanges_[kind];
    gone->unwatch(watcher(kind), static_cast<std::int32_t>(place));
    keys_.leaves(kind, place);
    snapshots_[kind].remove(place);
    if (kind == ChannelKind::RX)
        matches_.remove(place);
    std::exception_ptr failed;
    {
        const util::Raised busy(busy_);
        failed = keys_.moveKeysBehind(kind, place);
    }
    if (!busy_ && list.hasManyHoles())
        closeHoles(kind);
    return failed;
}

void ChannelStore::closeHoles(ChannelKind kind) noexcept {
    ChannelList& list = lists_[kind];
    list.closeHoles([&](std::size_t from, std::size_t to) {
        list.at(to)->moveWatch(watcher(kind), static_cast<std::int32_t>(from), static_cast<std::int32_t>(to));
        keys_.moved(kind, from, to);
        snapshots_[kind].move(from, to);
    });
    keys_.closed(kind, list.places());
    snapshots_[kind].closed(list.places());
    if (kind == ChannelKind::RX)
        matches_.closed(list.places(), list);
    ++arrangements_[kind];
}

void ChannelStore::forgetKey(std::wstring_view key) {
    if (!keys_.forget(key))
        throw RuntimeError(util::error_number::kInvalidProcedureCall);
}

void ChannelStore::clear(ChannelKind kind) noexcept {
    // Dropping a reference may run the host's code, which must find the store already empty.
    keys_.empties(kind);
    ChannelList dropped;
    dropped.swap(lists_[kind]);
    ++listChanges_[kind];
    snapshots_[kind].clear();
    if (kind == ChannelKind::RX)
        matches_ = {};
    ++arrangements_[kind];
    dropped.clear([&](FreqSlot& channel) { channel.unwatchAll(watcher(kind)); });
}

void ChannelStore::forgetAllKeys() noexcept {
    keys_.clear();
}

void ChannelStore::resetFrequencyExtremes() noexcept {
    Extremes& e = extremes_;
    e.dTXFreqMin = e.dRXFreqMin = e.dFreqMin = FREQ_UNSET;
    e.dTXFreqMax = e.dRXFreqMax = e.dFreqMax = -FREQ_UNSET;
}

void ChannelStore::widenByEdges(ChannelKind kind) {
    CountedRange range;
    forEachForeign(kind, [&range](FreqSlot& channel) {
        const double frequency = channel.dFreq();
        const double low = channel.dFreqLo();
        range.widenByEdges(frequency, low, channel.dFreqHi());
    });
    // Last, because the host's code may have changed the others.
    range.widen(snapshots_[kind].range());
    (kind == ChannelKind::TX ? extremes_.dTXFreqMin : extremes_.dRXFreqMin) = range.low;
    (kind == ChannelKind::TX ? extremes_.dTXFreqMax : extremes_.dRXFreqMax) = range.high;
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
        const CountedRange range = snapshots_[kind].range();
        widenFrequencies(kind, range);
        if (kind == ChannelKind::TX)
            widenPowers(range);
        forEachForeign(kind, [&](FreqSlot& channel) {
            if (!(channel.dFreq() > 0.0))
                return;
            const double low = channel.dFreqLo();
            widen(kind, channel, low, channel.dFreqHi());
        });
    }
}

std::int32_t ChannelStore::findMatchRX(FreqSlot& channel) const {
    const ChannelList& list = lists_[ChannelKind::RX];
    if (list.empty())
        return kInvalid;
    const FreqSlotFields* wanted = channel.peek();
    FreqSlotFields read;
    if (!wanted) {
        read = comparedMembers(channel);
        wanted = &read;
    }
    std::size_t place = matches_.find(list, *wanted);
    const PlaceSet& foreign = snapshots_[ChannelKind::RX].foreign();
    if (!foreign.empty()) {
        const util::Raised busy(busy_);
        for (std::size_t other = foreign.next(0); other < place; other = foreign.next(other + 1)) {
            if (isEqualForeign(*FreqSlotRef(list.at(other)), *wanted) && other < list.places())
                return list.indexOf(other);
        }
        // The host's code may have changed the list.
        place = matches_.find(list, *wanted);
    }
    return place == MatchIndex::kNone ? kInvalid : list.indexOf(place);
}

}  // namespace kv::channels
