#include "channels/EdgeIndexCache.h"

#include <cstddef>
#include <utility>

#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"

namespace kv::channels {

namespace {

/// Throws RuntimeError 6 for an edge that is too large in MHz.
std::vector<EdgeIndex::Band> bandsOf(const std::vector<FreqSlotFields*>& records) {
    std::vector<EdgeIndex::Band> bands;
    bands.reserve(records.size());
    for (std::size_t position = 0; position < records.size(); ++position) {
        const FreqSlotFields* const fields = records[position];
        if (!fields)
            continue;
        bands.push_back({util::toMHz(fields->sFreqUnits, fields->dFreqLo),
                         util::toMHz(fields->sFreqUnits, fields->dFreqHi), static_cast<std::int32_t>(position)});
    }
    return bands;
}

}  // namespace

const EdgeIndex* EdgeIndexCache::find(std::uint64_t version, const std::vector<FreqSlotFields*>& fields) {
    if (builtFor_ != version) {
        index_.reset();
        if (std::exchange(askedFor_, version) != version)
            return nullptr;
        builtFor_ = version;
        try {
            index_.emplace(bandsOf(fields));
        } catch (const util::RuntimeError&) {
            // The search reads the records one by one and reports the edge when it comes to it.
        }
    }
    return index_ ? &*index_ : nullptr;
}

}  // namespace kv::channels
