#include "channels/PowerRows.h"

#include <algorithm>

#include "channels/MakeRoom.h"

namespace kv::channels {

bool PowerMap::sameRows(const PowerMap& other) const noexcept {
    return pixels.scale.top == other.pixels.scale.top && pixels.scale.height == other.pixels.scale.height &&
           pixels.size.height == other.pixels.size.height && floor == other.floor && markHeight == other.markHeight;
}

const std::vector<std::int16_t>& PowerRows::rows(const std::vector<DrawRecord>& records, const PowerMap& map) {
    if (!map.sameRows(map_))
        known_.assign(known_.size(), 0);
    map_ = map;
    resize(records.size());
    for (std::size_t block = 0; block < known_.size(); ++block) {
        if (known_[block] == 0)
            compute(records, block);
    }
    return rows_;
}

void PowerRows::resize(std::size_t records) {
    const std::size_t blocks = BandBlocks::countFor(records);
    if (records == rows_.size() && blocks == known_.size())
        return;
    makeRoom(rows_, records);
    // The last of the blocks that were there may have been incomplete.
    const std::size_t complete = std::min(rows_.size(), records) / BandBlocks::kSize;
    rows_.resize(records);
    known_.resize(std::min(known_.size(), complete));
    known_.resize(blocks, 0);
}

void PowerRows::compute(const std::vector<DrawRecord>& records, std::size_t block) noexcept {
    std::int16_t* row = rows_.data() + block * BandBlocks::kSize;
    for (const DrawRecord& record : blockOf(records, block)) {
        if (!isShown(record)) {
            *row++ = kNotShown;
        } else if (!isRegular(record)) {
            *row++ = kIrregular;
        } else {
            *row++ = static_cast<std::int16_t>(std::clamp(map_.pixels.y(map_.top(record)), 0, kNotShown - 1));
        }
    }
    known_[block] = 1;
}

void PowerRows::forget(std::size_t block) noexcept {
    if (block < known_.size())
        known_[block] = 0;
}

void PowerRows::hide(std::size_t position) noexcept {
    if (position < rows_.size())
        rows_[position] = kNotShown;
}

}  // namespace kv::channels
