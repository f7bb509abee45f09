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
        rows_.clear();
    map_ = map;
    makeRoom(rows_, records.size());
    for (std::size_t position = rows_.size(); position < records.size(); ++position) {
        const DrawRecord& record = records[position];
        if (!record.bVisible) {
            rows_.push_back(kNotShown);
        } else if (!isRegular(record)) {
            rows_.push_back(kIrregular);
        } else {
            rows_.push_back(static_cast<std::int16_t>(std::clamp(map.pixels.y(map.top(record)), 0, kNotShown - 1)));
        }
    }
    return rows_;
}

void PowerRows::forget(std::size_t from) {
    rows_.resize(std::min(rows_.size(), from));
}

void PowerRows::hide(std::size_t position) noexcept {
    if (position < rows_.size())
        rows_[position] = kNotShown;
}

}  // namespace kv::channels
