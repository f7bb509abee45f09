#include "channels/FrequencyGrid.h"

#include <algorithm>
#include <cmath>

#include "channels/MakeRoom.h"

namespace kv::channels {

namespace {

constexpr double kSteps = 1 << FrequencyGrid::kBits;
constexpr double kLeastUnit = 1e-9;  // MHz

FrequencyGrid::Scale scaleOf(const BandBlock& known) noexcept {
    if (!(known.lowest <= known.highest))
        return {0.0, kLeastUnit};
    const double unit = (known.highest - known.lowest) / kSteps;
    // The reciprocal of a subnormal unit could overflow.
    return {known.lowest, std::isnormal(unit) ? unit : kLeastUnit};
}

}  // namespace

void FrequencyGrid::resize(std::size_t records) {
    scales_.resize(BandBlocks::countFor(records));
    makeRoom(low_, records);
    low_.resize(records);
}

void FrequencyGrid::derive(const std::vector<DrawRecord>& records, const BandBlock& known, std::size_t block) noexcept {
    const Scale scale = scales_[block] = scaleOf(known);
    const double perMHz = 1.0 / scale.unit;
    std::int32_t* low = low_.data() + block * BandBlocks::kSize;
    for (const DrawRecord& record : blockOf(records, block)) {
        const double steps = (record.dFreqLo - scale.origin) * perMHz;
        // The steps of a regular record are in range. The others only must not overflow.
        *low++ = steps >= 0.0 ? static_cast<std::int32_t>(std::min(steps, kSteps)) : 0;
    }
}

}  // namespace kv::channels
