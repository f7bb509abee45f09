#include "channels/ChannelSnapshot.h"

#include <algorithm>
#include <new>

namespace kv::channels {

namespace {

constexpr std::size_t kMany = 256;  // fewer channels are not worth an index

bool haveSameBand(const DrawRecord& a, const DrawRecord& b) {
    return a.dFreqLo == b.dFreqLo && a.dFreqHi == b.dFreqHi && a.unit == b.unit;
}

bool haveSameColor(const DrawRecord& a, const DrawRecord& b) {
    return a.bVisible == b.bVisible && a.lColor == b.lColor;
}

}  // namespace

void ChannelSnapshot::append(bool isForeign) {
    const std::size_t size = copy_.size() + 1;
    stale_.grow(BandBlocks::countFor(size));
    ranges_.grow(size);
    groups_.grow(size);
    copy_.append(isForeign);
    if (!isForeign)
        edges_.changed(size - 1);
    groups_.changed(size - 1);
    stale_.insert((size - 1) / kBlock);
}

void ChannelSnapshot::takeBack() noexcept {
    ranges_.changed(copy_.size() - 1);
    groups_.changed(copy_.size() - 1);
    copy_.takeBack();
    edges_.forget();
    stale_.insert(copy_.size() / kBlock);
}

void ChannelSnapshot::readLast() noexcept {
    read(copy_.size() - 1);
}

void ChannelSnapshot::read(std::size_t place) noexcept {
    const DrawRecord before = copy_.records()[place];
    if (!copy_.read(list_, place))
        return;
    const DrawRecord& now = copy_.records()[place];
    stale_.insert(place / kBlock);
    if (!countAlike(before, now))
        ranges_.changed(place);
    if (!haveSameColor(before, now))
        groups_.changed(place);
    if (!haveSameBand(before, now))
        edges_.changed(place);
}

void ChannelSnapshot::readChanges() noexcept {
    for (std::size_t place = copy_.nextChanged(0); place != PlaceSet::kNone; place = copy_.nextChanged(place + 1))
        read(place);
}

void ChannelSnapshot::remove(std::size_t place) noexcept {
    ++version_;
    ranges_.removed(place, copy_.records()[place]);
    groups_.changed(place);
    copy_.remove(place);
    rows_.hide(place);
}

void ChannelSnapshot::closed(std::size_t places) noexcept {
    copy_.shorten(places);
    ranges_.shorten(places);
    groups_.shorten(places);
    edges_.forget();
    stale_.clear();
    for (std::size_t block = 0; block < BandBlocks::countFor(places); ++block)
        stale_.insert(block);
}

void ChannelSnapshot::clear() noexcept {
    ++version_;
    copy_ = {};
    stale_ = {};
    blocks_ = {};
    grid_ = {};
    rows_ = {};
    ranges_ = {};
    groups_ = {};
    edges_.forget();
    searched_ = false;
}

bool ChannelSnapshot::update() noexcept {
    readChanges();
    try {
        derive();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void ChannelSnapshot::derive() {
    blocks_.resize(copy_.size());
    grid_.resize(copy_.size());
    for (std::size_t block = stale_.next(0); block != PlaceSet::kNone; block = stale_.next(block + 1)) {
        if (block >= blocks_.blocks().size())
            break;
        blocks_.derive(copy_.records(), block);
        grid_.derive(copy_.records(), blocks_.blocks()[block], block);
        rows_.forget(block);
        derived_ += kBlock;
        ++version_;
    }
    stale_.clear();
}

void ChannelSnapshot::forgetForeign() noexcept {
    ++foreignRound_;
    DrawRecord hidden;
    hidden.bVisible = false;
    for (std::size_t place = foreign().next(0); place != PlaceSet::kNone; place = foreign().next(place + 1))
        putForeign(place, hidden);
}

void ChannelSnapshot::putForeign(std::size_t place, const DrawRecord& record) noexcept {
    copy_.put(place, record);
    stale_.insert(place / kBlock);
}

void ChannelSnapshot::markDrawn(std::size_t place) {
    copy_.markDrawn(place);
    if (!copy_.foreign().contains(place))
        list_.at(place)->setBDrawn(true);
}

const CountedRange& ChannelSnapshot::range() noexcept {
    readChanges();
    return ranges_.range(copy_.records(), copy_.foreign());
}

const GroupBlocks& ChannelSnapshot::groups(ChannelKind kind) {
    readChanges();
    groups_.update(kind, list_, copy_.records(), copy_.foreign());
    return groups_;
}

bool ChannelSnapshot::hasTooLargeEdges() noexcept {
    readChanges();
    return copy_.hasTooLargeEdges();
}

std::vector<std::int32_t> ChannelSnapshot::placesAt(double lowest, double highest) {
    readChanges();
    std::vector<std::int32_t> places;
    const std::vector<DrawRecord>& records = copy_.records();
    if (edges_.isBuilt() || (searched_ && records.size() >= kMany)) {
        edges_.arrange(records, copy_.foreign());
        searchSteps_ = edges_.meet(records, lowest, highest, places);
        std::erase_if(places, [this](std::int32_t place) { return !isLive(static_cast<std::size_t>(place)); });
        return places;
    }
    searched_ = true;
    searchSteps_ = records.size();
    for (std::size_t place = 0; place < records.size(); ++place) {
        if (meets(records[place], lowest, highest) && isLive(place) && !copy_.foreign().contains(place))
            places.push_back(static_cast<std::int32_t>(place));
    }
    return places;
}

}  // namespace kv::channels
