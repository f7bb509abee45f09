#include "channels/FrequencyGrid.h"

#include <algorithm>
#include <limits>

namespace kv::channels {

namespace {

constexpr double kSteps = 1 << FrequencyGrid::kBits;
constexpr double kLeastUnit = 1e-9;  // MHz

}  // namespace

void FrequencyGrid::derive(const std::vector<DrawRecord>& records, const std::vector<BandBlock>& blocks,
                           std::size_t from) {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (const BandBlock& block : blocks) {
        lowest = std::min(lowest, block.lowest);
        highest = std::max(highest, block.highest);
    }
    if (from == 0 || !(lowest >= scale_.origin) || !(highest <= scale_.origin + scale_.unit * kSteps)) {
        from = 0;
        const double unit = (highest - lowest) / kSteps;
        // Without a regular record `highest` is below `lowest`.
        scale_ = unit > 0.0 ? Scale{lowest, unit} : Scale{unit < 0.0 ? 0.0 : lowest, kLeastUnit};
    }
    low_.resize(records.size());
    const double perMHz = 1.0 / scale_.unit;
    for (std::size_t position = from; position < records.size(); ++position) {
        const double steps = (records[position].dFreqLo - scale_.origin) * perMHz;
        // The steps of a regular record are in range. The others only must not overflow.
        low_[position] = steps >= 0.0 ? static_cast<std::int32_t>(std::min(steps, kSteps)) : 0;
    }
}

}  // namespace kv::channels
