#include "channels/ChannelSnapshot.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "channels/ChannelStore.h"
#include "util/ConvertFreq.h"
#include "util/RuntimeError.h"

namespace kv::channels {

namespace {

constexpr std::size_t kAhead = 8;      // records that are fetched while one is read
constexpr std::size_t kFewHoles = 64;  // not worth closing
constexpr double kLeastUnit = 1e-9;    // MHz
// Differences of edges within this distance from 0 are exact enough for the grid, whichever two are taken.
constexpr double kFarthest = 1e15;  // MHz

bool hasOddFillStyle(const DrawRecord& record) {
    return record.iFillStyle < 0 || record.iFillStyle > 7;
}

/// No more than needed for many at once; one at a time grows in leaps by itself.
template <class T>
void makeRoom(std::vector<T>& list, std::size_t size) {
    if (size > list.size() + list.size() / 2)
        list.reserve(size);
}

void fetch(const FreqSlot* channel) {
    __builtin_prefetch(channel);
    __builtin_prefetch(reinterpret_cast<const char*>(channel) + sizeof(DrawRecord) + sizeof(void*));
}

}  // namespace

bool ChannelSnapshot::isRegular(const DrawRecord& record) noexcept {
    return record.bVisible && record.dFreq > 0.0 && record.dFreqLo <= record.dFreq && record.dFreq <= record.dFreqHi &&
           record.dFreqLo >= -kFarthest && record.dFreqHi <= kFarthest;
}

bool ChannelSnapshot::update(const ChannelStore& store, ChannelKind kind) noexcept {
    if (removals_ != 0)
        return false;
    try {
        // Asked before the reading: what changes meanwhile, in another apartment, is read next time.
        const std::uint64_t revision = recordRevision();
        const auto count = static_cast<std::size_t>(store.count(kind));
        const std::size_t known = records_.size();
        if (known - liveCount_ > kFewHoles + known / 8)
            drop();
        if (liveCount_ == 0 && foreign_ == 0)
            revision_ = revision;
        const std::size_t from = records_.size();
        makeRoom(records_, from + count - liveCount_);
        makeRoom(fields_, from + count - liveCount_);
        while (liveCount_ < count) {
            if (liveCount_ + kAhead < count)
                fetch(store.peek(kind, static_cast<std::int32_t>(liveCount_ + kAhead)));
            append(*store.peek(kind, static_cast<std::int32_t>(liveCount_)));
        }
        if (foreign_ != 0)
            return false;
        if (revision != revision_) {
            readAgain();
            revision_ = revision;
        } else if (from < records_.size()) {
            derive(from);
        }
        return true;
    } catch (...) {
        drop();
        return false;
    }
}

void ChannelSnapshot::append(FreqSlot& channel) {
    const std::size_t place = records_.size();
    if (live_.size() <= place / 64)
        live_.push_back(0);
    FreqSlotFields* const fields = channel.watch();
    fields_.push_back(fields);
    records_.push_back(fields ? fields->drawRecord() : DrawRecord{});
    live_[place / 64] |= std::uint64_t{1} << (place % 64);
    ++liveCount_;
    foreign_ += fields ? 0 : 1;
    oddStyles_ += hasOddFillStyle(records_.back()) ? 1 : 0;
}

void ChannelSnapshot::readAgain() {
    oddStyles_ = 0;
    for (std::size_t place = 0; place < records_.size(); ++place) {
        if (place + kAhead < records_.size())
            __builtin_prefetch(fields_[place + kAhead]);
        if (const FreqSlotFields* const fields = fields_[place]) {
            records_[place] = fields->drawRecord();
            oddStyles_ += hasOddFillStyle(records_[place]) ? 1 : 0;
        }
    }
    derive(0);
}

void ChannelSnapshot::derive(std::size_t from) {
    ++version_;
    rows_.resize(std::min(rows_.size(), from));
    const std::size_t first = from / kBlock;
    blocks_.resize((records_.size() + kBlock - 1) / kBlock);
    for (std::size_t block = first; block < blocks_.size(); ++block)
        deriveBlock(block);
    deriveGrid(from);
}

void ChannelSnapshot::deriveBlock(std::size_t block) noexcept {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Block known{kInfinity, -kInfinity, 0.0, false, false};
    const std::size_t end = std::min((block + 1) * kBlock, records_.size());
    for (std::size_t place = block * kBlock; place < end; ++place) {
        const DrawRecord& record = records_[place];
        if (!record.bVisible)
            continue;
        known.undrawn = known.undrawn || !record.bDrawn;
        if (!isRegular(record)) {
            known.hasOdd = true;
            continue;
        }
        known.lowest = std::min(known.lowest, record.dFreqLo);
        known.highest = std::max(known.highest, record.dFreqHi);
        known.widest = std::max(known.widest, record.dFreqHi - record.dFreqLo);
    }
    blocks_[block] = known;
}

void ChannelSnapshot::deriveGrid(std::size_t from) {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (const Block& block : blocks_) {
        lowest = std::min(lowest, block.lowest);
        highest = std::max(highest, block.highest);
    }
    constexpr double kSteps = 1 << kGridBits;
    if (from == 0 || !(lowest >= grid_.origin) || !(highest <= grid_.origin + grid_.unit * kSteps)) {
        from = 0;
        const double unit = (highest - lowest) / kSteps;
        grid_ = unit > 0.0 && std::isfinite(unit) ? Grid{lowest, unit}
                                                  : Grid{std::isfinite(lowest) ? lowest : 0.0, kLeastUnit};
    }
    low_.resize(records_.size());
    const double perMHz = 1.0 / grid_.unit;
    for (std::size_t place = from; place < records_.size(); ++place) {
        const double steps = (records_[place].dFreqLo - grid_.origin) * perMHz;
        // A regular record is inside; the others only have to give some number.
        low_[place] = steps >= 0.0 ? static_cast<std::int32_t>(std::min(steps, kSteps)) : 0;
    }
}

bool ChannelSnapshot::PowerMap::sameRows(const PowerMap& other) const noexcept {
    return pixels.scale.top == other.pixels.scale.top && pixels.scale.height == other.pixels.scale.height &&
           pixels.size.height == other.pixels.size.height && floor == other.floor && markHeight == other.markHeight;
}

const std::vector<std::int16_t>& ChannelSnapshot::rows(const PowerMap& map) {
    if (!map.sameRows(rowMap_))
        rows_.clear();
    rowMap_ = map;
    makeRoom(rows_, records_.size());
    for (std::size_t place = rows_.size(); place < records_.size(); ++place) {
        const DrawRecord& record = records_[place];
        if (!record.bVisible)
            rows_.push_back(kNotShown);
        else if (!isRegular(record))
            rows_.push_back(kOdd);
        else
            rows_.push_back(static_cast<std::int16_t>(std::clamp(map.pixels.y(map.top(record)), 0, kNotShown - 1)));
    }
    return rows_;
}

const EdgeIndex* ChannelSnapshot::edges() {
    if (edgesVersion_ == version_)
        return edges_ ? &*edges_ : nullptr;
    edges_.reset();
    if (std::exchange(edgesAsked_, version_) != version_)
        return nullptr;
    edgesVersion_ = version_;
    std::vector<EdgeIndex::Band> bands;
    bands.reserve(liveCount_);
    try {
        for (std::size_t place = 0; place < fields_.size(); ++place) {
            const FreqSlotFields* const fields = fields_[place];
            if (!fields)
                continue;
            bool unknown = false;
            bands.push_back({util::ConvertFreq(fields->sFreqUnits, L"MHz", fields->dFreqLo, unknown),
                             util::ConvertFreq(fields->sFreqUnits, L"MHz", fields->dFreqHi, unknown),
                             static_cast<std::int32_t>(place)});
        }
    } catch (const util::RuntimeError&) {
        return nullptr;
    }
    return &edges_.emplace(std::move(bands));
}

std::int32_t ChannelSnapshot::indexOf(std::size_t place) const noexcept {
    if (liveCount_ == records_.size())
        return static_cast<std::int32_t>(place);
    int index = 0;
    for (std::size_t word = 0; word < place / 64; ++word)
        index += std::popcount(live_[word]);
    return index + std::popcount(live_[place / 64] & ((std::uint64_t{1} << (place % 64)) - 1));
}

std::size_t ChannelSnapshot::placeOf(std::int32_t index) const noexcept {
    if (liveCount_ == records_.size())
        return static_cast<std::size_t>(index);
    std::size_t word = 0;
    int left = index;
    while (left >= std::popcount(live_[word]))
        left -= std::popcount(live_[word++]);
    std::uint64_t bits = live_[word];
    while (left-- > 0)
        bits &= bits - 1;
    return word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
}

void ChannelSnapshot::removed(std::int32_t index) noexcept {
    if (index < 0 || static_cast<std::size_t>(index) >= liveCount_)
        return;  // not read yet
    if (foreign_ != 0) {
        drop();
        return;
    }
    const std::size_t place = placeOf(index);
    live_[place / 64] &= ~(std::uint64_t{1} << (place % 64));
    oddStyles_ -= hasOddFillStyle(records_[place]) ? 1 : 0;
    records_[place] = {};
    records_[place].bVisible = false;
    if (place < rows_.size())
        rows_[place] = kNotShown;
    fields_[place] = nullptr;
    --liveCount_;
    ++version_;
}

void ChannelSnapshot::drop() noexcept {
    const std::uint64_t version = version_;
    const int removals = removals_;
    *this = {};
    version_ = version + 1;
    removals_ = removals;
}

void ChannelSnapshot::Removal::done(std::int32_t index) noexcept {
    // Taking a record out may run the host's code, which may do the same: then nothing is known of the order.
    done_ = snapshot_.version_ == before_;
    if (done_)
        snapshot_.removed(index);
}

ChannelSnapshot::Removal::~Removal() {
    --snapshot_.removals_;
    if (!done_)
        snapshot_.drop();
}

}  // namespace kv::channels
