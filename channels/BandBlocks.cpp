#include "channels/BandBlocks.h"

#include <algorithm>
#include <limits>

namespace kv::channels {

void BandBlocks::derive(const std::vector<DrawRecord>& records, std::size_t block) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    BandBlock known{.lowest = kInfinity, .highest = -kInfinity};
    hidden_[block] = {};
    std::size_t next = 0;
    for (const DrawRecord& record : blockOf(records, block)) {
        const std::size_t place = next++;
        known.hasUnknownStyle = known.hasUnknownStyle || hasUnknownFillStyle(record);
        if (!isShown(record))
            continue;
        if (!record.bVisible) {
            known.hasHiddenButDrawn = true;
            hidden_[block][place / kWordBits] |= std::uint64_t{1} << place % kWordBits;
        }
        known.undrawn = known.undrawn || !record.bDrawn;
        if (!isRegular(record)) {
            known.hasIrregular = true;
            continue;
        }
        known.lowest = std::min(known.lowest, record.dFreqLo);
        known.highest = std::max(known.highest, record.dFreqHi);
        known.widest = std::max(known.widest, record.dFreqHi - record.dFreqLo);
    }
    blocks_[block] = known;
}

}  // namespace kv::channels
