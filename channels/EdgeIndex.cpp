#include "channels/EdgeIndex.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kv::channels {

namespace {

std::vector<double> highestOfEach(std::size_t group, const std::vector<EdgeIndex::Band>& bands) {
    std::vector<double> highest;
    for (std::size_t i = 0; i < bands.size(); ++i) {
        if (i % group == 0) {
            highest.push_back(bands[i].high);
        } else {
            highest.back() = std::max(highest.back(), bands[i].high);
        }
    }
    return highest;
}

}  // namespace

EdgeIndex::EdgeIndex(std::vector<Band> bands) : bands_(std::move(bands)) {
    std::erase_if(bands_, [](const Band& band) { return std::isnan(band.low) || std::isnan(band.high); });
    std::sort(bands_.begin(), bands_.end(), [](const Band& a, const Band& b) { return a.low < b.low; });
    highOfFew_ = highestOfEach(kFew, bands_);
    highOfMany_ = highestOfEach(kMany, bands_);
}

std::size_t EdgeIndex::meet(double lowest, double highest, std::vector<std::int32_t>& positions) const {
    const auto after = std::upper_bound(bands_.begin(), bands_.end(), highest,
                                        [](double value, const Band& band) { return value < band.low; });
    const auto end = static_cast<std::size_t>(after - bands_.begin());
    std::size_t steps = 0;
    for (std::size_t i = 0; i < end; ++steps) {
        if (i % kMany == 0 && !(highOfMany_[i / kMany] >= lowest)) {
            i += kMany;
        } else if (i % kFew == 0 && !(highOfFew_[i / kFew] >= lowest)) {
            i += kFew;
        } else {
            if (bands_[i].high >= lowest)
                positions.push_back(bands_[i].position);
            ++i;
        }
    }
    return steps;
}

}  // namespace kv::channels
