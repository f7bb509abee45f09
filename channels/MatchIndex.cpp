#include "channels/MatchIndex.h"

#include <cmath>
#include <functional>
#include <string_view>

#include "channels/Sentinels.h"

namespace kv::channels {

namespace {

bool equal(const FreqSlotFields& a, const FreqSlotFields& b) {
    return a.dFreqAlt == b.dFreqAlt && a.dFreq == b.dFreq && a.dFreqHi == b.dFreqHi && a.dFreqLo == b.dFreqLo &&
           a.dBW == b.dBW && a.sBWUnits == b.sBWUnits && a.sLabel == b.sLabel && a.sFreqUnits == b.sFreqUnits;
}

bool equalsItself(const FreqSlotFields& f) {
    for (const double number : {f.dFreqAlt, f.dFreq, f.dFreqHi, f.dFreqLo, f.dBW}) {
        if (std::isnan(number))
            return false;
    }
    return true;
}

/// Equal for equal channels, of which one may hold 0 and the other -0.
std::size_t hashOf(const FreqSlotFields& f) {
    std::size_t hash = 0;
    const auto mix = [&hash](std::size_t part) { hash = (hash ^ part) * 0x9E3779B1U + (hash >> 15); };
    for (const double number : {f.dFreqAlt, f.dFreq, f.dFreqHi, f.dFreqLo, f.dBW})
        mix(std::hash<double>()(number));
    for (const std::wstring_view text :
         {std::wstring_view(f.sBWUnits), std::wstring_view(f.sLabel), std::wstring_view(f.sFreqUnits)})
        mix(std::hash<std::wstring_view>()(text));
    return hash;
}

}  // namespace

std::int32_t MatchIndex::find(const ChannelList& list, const FreqSlotFields& wanted) {
    append(list);
    const auto [begin, end] = indexes_.equal_range(hashOf(wanted));
    for (auto candidate = begin; candidate != end; ++candidate) {
        if (equal(*list[static_cast<std::size_t>(candidate->second)]->peek(), wanted))
            return candidate->second;
    }
    return kInvalid;
}

void MatchIndex::append(const ChannelList& list) {
    const std::uint64_t now = recordRevision();
    if (now != revision_)
        drop();
    revision_ = now;
    for (; known_ < list.size(); ++known_) {
        const FreqSlotFields& fields = *list[known_]->watch();
        const std::size_t hash = hashOf(fields);
        bool first = equalsItself(fields);
        const auto [begin, end] = indexes_.equal_range(hash);
        for (auto other = begin; first && other != end; ++other)
            first = !equal(*list[static_cast<std::size_t>(other->second)]->peek(), fields);
        if (first)
            indexes_.emplace(hash, static_cast<std::int32_t>(known_));
    }
}

void MatchIndex::drop() noexcept {
    indexes_.clear();
    known_ = 0;
}

}  // namespace kv::channels
