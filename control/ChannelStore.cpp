#include "control/ChannelStore.h"

#include <algorithm>

#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::control {

using util::RuntimeError;

namespace {

constexpr std::int16_t kDownwardDiagonal = 5;
constexpr std::int16_t kUpwardDiagonal = 4;

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

/// The distance of a band edge from the centre: the whole bandwidth, in the frequency's unit.
double edgeOffset(FreqSlot& channel) {
    const double bandwidth = channel.dBW();
    const std::wstring bandwidthUnits = channel.sBWUnits();
    const std::wstring frequencyUnits = channel.sFreqUnits();
    if (!(bandwidth > 0.0) || bandwidthUnits.empty() || frequencyUnits.empty())
        return 0.0;
    bool bErr = false;
    return util::ConvertFreq(bandwidthUnits, frequencyUnits, bandwidth, bErr);
}

void fillInEdges(FreqSlot& channel) {
    const double centre = channel.dFreq();
    const double offset = edgeOffset(channel);
    if (channel.dFreqHi() <= 0.0)
        channel.setDFreqHi(centre + offset);
    if (channel.dFreqLo() <= 0.0)
        channel.setDFreqLo(centre - offset);
}

void raise(double& maximum, double value) {
    if (value > maximum)
        maximum = value;
}

void lower(double& minimum, double value) {
    if (value < minimum)
        minimum = value;
}

}  // namespace

void ChannelStore::add(ChannelKind kind, const FreqSlotRef& channel, std::int32_t& index) {
    FreqSlot& record = demand(channel);
    record.setIFillStyle(kind == ChannelKind::TX ? kDownwardDiagonal : kUpwardDiagonal);
    defaultUnits(record);
    Channels& list = channels(kind);
    list.push_back(channel);
    index = static_cast<std::int32_t>(list.size()) - 1;
    // The array first, the key second: a channel whose key is taken is drawn and counted, but cannot be found.
    addKey(record.sKey(), index);
    if (!(record.dFreq() > 0.0))
        return;
    fillInEdges(record);
    widen(kind, record);
}

void ChannelStore::addKey(const std::wstring& key, std::int32_t index) {
    if (!keyIndex_.emplace(util::foldCase(key), index).second)
        throw RuntimeError(util::error_number::kKeyInUse);
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
    raise(e.dTXPwrDBMMax, power);
    lower(e.dTXPwrDBMMin, power);
    lower(e.dPwrMin, power);
    raise(e.dPwrMax, power);
}

std::int32_t ChannelStore::count(ChannelKind kind) const noexcept {
    return static_cast<std::int32_t>(channels(kind).size());
}

FreqSlotRef ChannelStore::at(ChannelKind kind, std::int32_t index) const noexcept {
    const Channels& list = channels(kind);
    if (index < 0 || static_cast<std::size_t>(index) >= list.size())
        return nullptr;
    return list[static_cast<std::size_t>(index)];
}

std::optional<std::int32_t> ChannelStore::indexOfKey(std::wstring_view key) const {
    const auto found = keyIndex_.find(util::foldCase(key));
    return found == keyIndex_.end() ? std::nullopt : std::optional(found->second);
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

void ChannelStore::closeGap(ChannelKind kind, std::int32_t index) {
    Channels& list = channels(kind);
    // Reading a key may run the host's code, which may change the list: its length is asked for again each time.
    for (std::int32_t j = index; j < count(kind) - 1; ++j) {
        const FreqSlotRef moved = at(kind, j + 1);
        list[static_cast<std::size_t>(j)] = moved;
        const std::wstring key = moved->sKey();
        forgetKey(key);
        addKey(key, j);
    }
    if (!list.empty())
        list.pop_back();
}

void ChannelStore::forgetKey(std::wstring_view key) {
    if (keyIndex_.erase(util::foldCase(key)) == 0)
        throw RuntimeError(util::error_number::kInvalidProcedureCall);
}

void ChannelStore::clear(ChannelKind kind) noexcept {
    // Dropping a reference may run the host's code, which must find the store already empty.
    Channels dropped;
    dropped.swap(channels(kind));
}

void ChannelStore::resetFrequencyExtremes() noexcept {
    Extremes& e = extremes_;
    e.dTXFreqMin = e.dRXFreqMin = e.dFreqMin = FREQ_UNSET;
    e.dTXFreqMax = e.dRXFreqMax = e.dFreqMax = -FREQ_UNSET;
}

void ChannelStore::widenByEdges(ChannelKind kind) {
    const bool tx = kind == ChannelKind::TX;
    double& minimum = tx ? extremes_.dTXFreqMin : extremes_.dRXFreqMin;
    double& maximum = tx ? extremes_.dTXFreqMax : extremes_.dRXFreqMax;
    minimum = FREQ_UNSET;
    maximum = -FREQ_UNSET;
    for (std::int32_t i = 0; const FreqSlotRef channel = at(kind, i); ++i) {
        raise(maximum, channel->dFreqHi());
        lower(minimum, channel->dFreqLo());
    }
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
    for (std::int32_t i = 0; const FreqSlotRef candidate = at(ChannelKind::RX, i); ++i) {
        FreqSlot& rx = *candidate;
        if (rx.dFreqAlt() == channel.dFreqAlt() && rx.dFreq() == channel.dFreq() && rx.dFreqHi() == channel.dFreqHi() &&
            rx.dFreqLo() == channel.dFreqLo() && rx.dBW() == channel.dBW() && rx.sBWUnits() == channel.sBWUnits() &&
            rx.sLabel() == channel.sLabel() && rx.sFreqUnits() == channel.sFreqUnits())
            return i;
    }
    return kInvalid;
}

}  // namespace kv::control
