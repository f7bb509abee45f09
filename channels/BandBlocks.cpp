#include "channels/BandBlocks.h"

#include <algorithm>
#include <limits>
#include <span>

namespace kv::channels {

namespace {

BandBlock blockOf(std::span<const DrawRecord> records) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    BandBlock known{kInfinity, -kInfinity, 0.0, false, false};
    for (const DrawRecord& record : records) {
        if (!record.bVisible)
            continue;
        known.undrawn = known.undrawn || !record.bDrawn;
        if (!isRegular(record)) {
            known.hasIrregular = true;
            continue;
        }
        known.lowest = std::min(known.lowest, record.dFreqLo);
        known.highest = std::max(known.highest, record.dFreqHi);
        known.widest = std::max(known.widest, record.dFreqHi - record.dFreqLo);
    }
    return known;
}

}  // namespace

void BandBlocks::derive(const std::vector<DrawRecord>& records, std::size_t from) {
    blocks_.resize((records.size() + kSize - 1) / kSize);
    for (std::size_t block = from / kSize; block < blocks_.size(); ++block) {
        const std::size_t first = block * kSize;
        blocks_[block] = blockOf(std::span(records).subspan(first, std::min(kSize, records.size() - first)));
    }
}

}  // namespace kv::channels
