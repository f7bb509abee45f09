#include "channels/EdgeIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kv::channels {

namespace {

std::vector<double> highestOfEach(std::size_t group, const std::vector<EdgeIndex::Band>& bands) {
    std::vector<double> highest((bands.size() + group - 1) / group, -std::numeric_limits<double>::infinity());
    for (std::size_t i = 0; i < bands.size(); ++i)
        highest[i / group] = std::max(highest[i / group], bands[i].high);
    return highest;
}

}  // namespace

EdgeIndex::EdgeIndex(std::vector<Band> bands) : bands_(std::move(bands)) {
    std::erase_if(bands_, [](const Band& band) { return std::isnan(band.low) || std::isnan(band.high); });
    std::sort(bands_.begin(), bands_.end(), [](const Band& a, const Band& b) { return a.low < b.low; });
    highOfFew_ = highestOfEach(kFew, bands_);
    highOfMany_ = highestOfEach(kMany, bands_);
}

void EdgeIndex::meet(double lowest, double highest, std::vector<std::int32_t>& places) const {
    const auto after = std::upper_bound(bands_.begin(), bands_.end(), highest,
                                        [](double value, const Band& band) { return value < band.low; });
    const auto end = static_cast<std::size_t>(after - bands_.begin());
    for (std::size_t i = 0; i < end;) {
        if (i % kMany == 0 && !(highOfMany_[i / kMany] >= lowest)) {
            i += kMany;
        } else if (i % kFew == 0 && !(highOfFew_[i / kFew] >= lowest)) {
            i += kFew;
        } else {
            if (bands_[i].high >= lowest)
                places.push_back(bands_[i].place);
            ++i;
        }
    }
}

}  // namespace kv::channels
