#include "channels/ChannelIndex.h"

#include <algorithm>
#include <string>
#include <vector>

#include "util/ConvertFreq.h"

namespace kv::channels {

namespace {

using Found = std::function<bool(std::int32_t index)>;

constexpr std::int32_t kMany = 256;  // channels that are not worth an index

void scan(const ChannelStore& store, ChannelKind kind, double x, double tolerance, const Found& found) {
    for (std::int32_t i = 0; const FreqSlotRef channel = store.at(kind, i); ++i) {
        const std::wstring units = channel->sFreqUnits();
        bool bErr = false;
        const double low = util::ConvertFreq(units, L"MHz", channel->dFreqLo(), bErr);
        const double high = util::ConvertFreq(units, L"MHz", channel->dFreqHi(), bErr);
        if (low <= x + tolerance && high >= x - tolerance && !found(i))
            return;
    }
}

}  // namespace

void forEachChannelAt(const ChannelStore& store, ChannelKind kind, double x, double tolerance, const Found& found) {
    ChannelSnapshot& snapshot = store.snapshot(kind);
    const EdgeIndex* const index =
        store.count(kind) >= kMany && snapshot.update(store, kind) ? snapshot.edges() : nullptr;
    if (!index) {
        scan(store, kind, x, tolerance, found);
        return;
    }
    std::vector<std::int32_t> places;
    index->meet(x - tolerance, x + tolerance, places);
    // Places stand in the order of indices. Often only the first few of thousands are wanted.
    const auto later = [](std::int32_t a, std::int32_t b) { return a > b; };
    std::make_heap(places.begin(), places.end(), later);
    // Indices mean nothing any more once `found` has taken a channel out.
    const std::uint64_t version = snapshot.version();
    for (auto end = places.end(); end != places.begin() && snapshot.version() == version; --end) {
        std::pop_heap(places.begin(), end, later);
        if (!found(snapshot.indexOf(static_cast<std::size_t>(*(end - 1)))))
            return;
    }
}

}  // namespace kv::channels
