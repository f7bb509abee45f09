#include "channels/RangeBlocks.h"

#include <algorithm>

namespace kv::channels {

namespace {

/// Does nothing of `outer` come from `inner` alone?
bool isInside(const CountedRange& inner, const CountedRange& outer) noexcept {
    const auto above = [](double value, double bound, double unset) { return value > bound || value == unset; };
    return above(inner.low, outer.low, FREQ_UNSET) && above(-inner.high, -outer.high, FREQ_UNSET) &&
           above(inner.minPower, outer.minPower, FREQ_UNSET) && above(-inner.maxPower, -outer.maxPower, FREQ_UNSET);
}

}  // namespace

void CountedRange::widen(const CountedRange& other) noexcept {
    low = std::min(low, other.low);
    high = std::max(high, other.high);
    minPower = std::min(minPower, other.minPower);
    maxPower = std::max(maxPower, other.maxPower);
}

void RangeBlocks::grow(std::size_t size) {
    const std::size_t blocks = (size + kSize - 1) / kSize;
    if (blocks <= blocks_.size())
        return;
    stale_.grow(blocks);
    blocks_.resize(blocks);
}

void RangeBlocks::removed(std::size_t place, const DrawRecord& record) noexcept {
    CountedRange range;
    range.widenBy(record);
    if (!isInside(range, blocks_[place / kSize]))
        changed(place);
}

void RangeBlocks::shorten(std::size_t size) noexcept {
    blocks_.resize((size + kSize - 1) / kSize);
    stale_.clear();
    for (std::size_t block = 0; block < blocks_.size(); ++block)
        stale_.insert(block);
    all_ = {};
}

void RangeBlocks::derive(std::size_t block, const std::vector<DrawRecord>& records, const PlaceSet& except) noexcept {
    const std::size_t end = std::min((block + 1) * kSize, records.size());
    CountedRange derived;
    for (std::size_t place = block * kSize; place < end; ++place) {
        if (except.empty() || !except.contains(place))
            derived.widenBy(records[place]);
    }
    blocks_[block] = derived;
}

const CountedRange& RangeBlocks::range(const std::vector<DrawRecord>& records, const PlaceSet& except) noexcept {
    if (stale_.empty())
        return all_;
    for (std::size_t block = stale_.next(0); block != PlaceSet::kNone; block = stale_.next(block + 1))
        derive(block, records, except);
    stale_.clear();
    all_ = {};
    for (const CountedRange& block : blocks_)
        all_.widen(block);
    return all_;
}

}  // namespace kv::channels
