#include "channels/EdgeIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kv::channels {

namespace {

constexpr std::size_t kFewChanges = 64;

const DrawRecord& recordAt(const std::vector<DrawRecord>& records, std::int32_t place) {
    return records[static_cast<std::size_t>(place)];
}

}  // namespace

void EdgeIndex::forget() noexcept {
    built_ = false;
    bands_ = {};
    highOfFew_ = {};
    highOfMany_ = {};
    changes_ = {};
    isChanged_ = {};
}

void EdgeIndex::changed(std::size_t place) noexcept {
    if (!built_)
        return;
    try {
        isChanged_.grow(place + 1);
        if (isChanged_.contains(place))
            return;
        // Sorting everything again is as good then, and may never be needed.
        if (changes_.size() > kFewChanges + bands_.place.size()) {
            forget();
            return;
        }
        changes_.push_back(static_cast<std::int32_t>(place));
        isChanged_.insert(place);
    } catch (...) {
        forget();
    }
}

bool EdgeIndex::isWorthSorting() const noexcept {
    return changes_.size() > kFewChanges + bands_.place.size() / 64;
}

void EdgeIndex::arrange(const std::vector<DrawRecord>& records, const PlaceSet& except) {
    if (built_ && !isWorthSorting())
        return;
    try {
        if (!built_) {
            changes_.clear();
            changes_.reserve(records.size());
            for (std::size_t place = 0; place < records.size(); ++place) {
                if (!except.contains(place))
                    changes_.push_back(static_cast<std::int32_t>(place));
            }
        }
        merge(sortedChanges(records));
        findHighest(records);
        built_ = true;
    } catch (...) {
        forget();
        throw;
    }
}

std::vector<EdgeIndex::Band> EdgeIndex::sortedChanges(const std::vector<DrawRecord>& records) {
    std::vector<Band> added;
    added.reserve(changes_.size());
    for (const std::int32_t place : changes_) {
        const DrawRecord& record = recordAt(records, place);
        const double low = util::toMHz(record.unit, record.dFreqLo);
        if (!std::isnan(low))
            added.push_back({low, place});
    }
    std::ranges::sort(added, {}, &Band::low);
    return added;
}

void EdgeIndex::merge(const std::vector<Band>& added) {
    Bands merged;
    merged.low.reserve(bands_.low.size() + added.size());
    merged.place.reserve(bands_.low.size() + added.size());
    const auto take = [&merged](double low, std::int32_t place) {
        merged.low.push_back(low);
        merged.place.push_back(place);
    };
    auto next = added.begin();
    for (std::size_t i = 0; i < bands_.low.size(); ++i) {
        if (isChanged_.contains(static_cast<std::size_t>(bands_.place[i])))
            continue;
        for (; next != added.end() && next->low < bands_.low[i]; ++next)
            take(next->low, next->place);
        take(bands_.low[i], bands_.place[i]);
    }
    for (; next != added.end(); ++next)
        take(next->low, next->place);
    bands_ = std::move(merged);
    changes_ = {};
    isChanged_.clear();
}

void EdgeIndex::findHighest(const std::vector<DrawRecord>& records) {
    const std::size_t count = bands_.place.size();
    constexpr double kLowest = -std::numeric_limits<double>::infinity();
    highOfFew_.assign((count + kFew - 1) / kFew, kLowest);
    highOfMany_.assign((count + kMany - 1) / kMany, kLowest);
    for (std::size_t i = 0; i < count; ++i) {
        const DrawRecord& record = recordAt(records, bands_.place[i]);
        const double high = util::toMHz(record.unit, record.dFreqHi);
        highOfFew_[i / kFew] = std::max(highOfFew_[i / kFew], high);
        highOfMany_[i / kMany] = std::max(highOfMany_[i / kMany], high);
    }
}

std::size_t EdgeIndex::meet(const std::vector<DrawRecord>& records, double lowest, double highest,
                            std::vector<std::int32_t>& places) const {
    const auto end = static_cast<std::size_t>(std::ranges::upper_bound(bands_.low, highest) - bands_.low.begin());
    std::size_t steps = 0;
    for (std::size_t i = 0; i < end; ++steps) {
        if (i % kMany == 0 && !(highOfMany_[i / kMany] >= lowest)) {
            i += kMany;
        } else if (i % kFew == 0 && !(highOfFew_[i / kFew] >= lowest)) {
            i += kFew;
        } else {
            const std::int32_t place = bands_.place[i++];
            if (!isChanged_.contains(static_cast<std::size_t>(place)) &&
                meets(recordAt(records, place), lowest, highest))
                places.push_back(place);
        }
    }
    for (const std::int32_t place : changes_) {
        ++steps;
        if (meets(recordAt(records, place), lowest, highest))
            places.push_back(place);
    }
    return steps;
}

}  // namespace kv::channels
