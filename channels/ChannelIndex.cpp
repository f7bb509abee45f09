#include "channels/ChannelIndex.h"

#include <algorithm>
#include <string>
#include <vector>

#include "util/ConvertFreq.h"

namespace kv::channels {

namespace {

using Found = std::function<bool(std::int32_t index)>;

constexpr std::int32_t kMany = 256;  // fewer channels are not worth an index

void scan(const ChannelStore& store, ChannelKind kind, double x, double tolerance, const Found& found) {
    for (std::int32_t i = 0; const FreqSlotRef channel = store.at(kind, i); ++i) {
        const std::wstring units = channel->sFreqUnits();
        const double low = util::toMHz(units, channel->dFreqLo());
        const double high = util::toMHz(units, channel->dFreqHi());
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
    std::vector<std::int32_t> positions;
    index->meet(x - tolerance, x + tolerance, positions);
    // Positions have the order of indexes. Often only the first few of thousands are wanted.
    const auto later = [](std::int32_t a, std::int32_t b) { return a > b; };
    std::make_heap(positions.begin(), positions.end(), later);
    // The positions are no longer valid once `found` has removed a channel.
    const std::uint64_t version = snapshot.version();
    for (auto end = positions.end(); end != positions.begin() && snapshot.version() == version; --end) {
        std::pop_heap(positions.begin(), end, later);
        if (!found(snapshot.indexOf(static_cast<std::size_t>(*(end - 1)))))
            return;
    }
}

}  // namespace kv::channels
