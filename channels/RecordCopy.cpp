#include "channels/RecordCopy.h"

#include <cmath>

namespace kv::channels {

namespace {

constexpr DrawRecord hidden() {
    DrawRecord record;
    record.bVisible = false;
    return record;
}

bool isTooLarge(util::FreqUnit unit, double edge) {
    return std::isfinite(edge) && !std::isfinite(util::toMHz(unit, edge));
}

bool hasTooLargeEdge(const DrawRecord& record) {
    return record.unit == util::FreqUnit::GHz &&
           (isTooLarge(record.unit, record.dFreqLo) || isTooLarge(record.unit, record.dFreqHi));
}

}  // namespace

void RecordCopy::append(bool isForeign) {
    const std::size_t place = records_.size();
    changed_.grow(place + 1);
    foreign_.grow(place + 1);
    records_.push_back(hidden());
    if (isForeign) {
        foreign_.insert(place);
    } else {
        changed_.insert(place);
    }
}

void RecordCopy::takeBack() noexcept {
    remove(records_.size() - 1);
    records_.pop_back();
}

void RecordCopy::changes(std::size_t place) noexcept {
    if (place < records_.size() && !foreign_.contains(place))
        changed_.insert(place);
}

void RecordCopy::remove(std::size_t place) noexcept {
    put(place, hidden());
    changed_.erase(place);
    foreign_.erase(place);
}

void RecordCopy::put(std::size_t place, const DrawRecord& record) noexcept {
    tooLarge_ -= hasTooLargeEdge(records_[place]) ? 1 : 0;
    tooLarge_ += hasTooLargeEdge(record) ? 1 : 0;
    records_[place] = record;
}

bool RecordCopy::read(const ChannelList& list, std::size_t place) noexcept {
    if (!changed_.contains(place))
        return false;
    changed_.erase(place);
    put(place, list.at(place)->peek()->drawRecord());
    return true;
}

void RecordCopy::move(std::size_t from, std::size_t to) noexcept {
    records_[to] = records_[from];
    for (PlaceSet* const set : {&changed_, &foreign_}) {
        if (set->contains(from)) {
            set->erase(from);
            set->insert(to);
        }
    }
}

void RecordCopy::shorten(std::size_t places) noexcept {
    records_.resize(places);
}

}  // namespace kv::channels
