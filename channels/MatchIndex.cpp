#include "channels/MatchIndex.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <string_view>
namespace kv::channels {

bool isEqualChannel(const FreqSlotFields& a, const FreqSlotFields& b) {
    return a.dFreqAlt == b.dFreqAlt && a.dFreq == b.dFreq && a.dFreqHi == b.dFreqHi && a.dFreqLo == b.dFreqLo &&
           a.dBW == b.dBW && a.sBWUnits == b.sBWUnits && a.sLabel == b.sLabel && a.sFreqUnits == b.sFreqUnits;
}

namespace {

bool equalsItself(const FreqSlotFields& f) {
    for (const double number : {f.dFreqAlt, f.dFreq, f.dFreqHi, f.dFreqLo, f.dBW}) {
        if (std::isnan(number))
            return false;
    }
    return true;
}

/// Equal for equal channels, of which one may hold 0 and the other -0.
std::uint32_t hashOf(const FreqSlotFields& f) {
    std::size_t hash = 0;
    const auto mix = [&hash](std::size_t part) { hash = (hash ^ part) * 0x9E3779B1U + (hash >> 15); };
    for (const double number : {f.dFreqAlt, f.dFreq, f.dFreqHi, f.dFreqLo, f.dBW})
        mix(std::hash<double>()(number));
    for (const std::wstring_view text :
         {std::wstring_view(f.sBWUnits), std::wstring_view(f.sLabel), std::wstring_view(f.sFreqUnits)})
        mix(std::hash<std::wstring_view>()(text));
    return static_cast<std::uint32_t>(hash ^ hash >> 16);
}

}  // namespace

void MatchIndex::append(bool isOwn) {
    changed_.grow(places_ + 1);
    if (isOwn)
        changed_.insert(places_);
    ++places_;
}

void MatchIndex::takeBack() noexcept {
    remove(--places_);
}

void MatchIndex::changed(std::size_t place) noexcept {
    if (place < places_)
        changed_.insert(place);
}

void MatchIndex::remove(std::size_t place) noexcept {
    changed_.erase(place);
    if (place < nodes_.size())
        leave(static_cast<std::int32_t>(place));
}

void MatchIndex::closed(std::size_t places, const ChannelList& list) noexcept {
    nodes_.clear();
    std::ranges::fill(firsts_, kEnd);
    changed_.clear();
    places_ = places;
    for (std::size_t place = 0; place < places; ++place) {
        if (list.at(place)->peek())
            changed_.insert(place);
    }
}

std::size_t MatchIndex::find(const ChannelList& list, const FreqSlotFields& wanted) {
    takeIn(list);
    if (firsts_.empty())
        return kNone;
    const std::uint32_t hash = hashOf(wanted);
    for (std::int32_t place = firstOf(hash); place != kEnd; place = node(place).after) {
        const auto at = static_cast<std::size_t>(place);
        if (node(place).hash == hash && isEqualChannel(*list.at(at)->peek(), wanted))
            return at;
    }
    return kNone;
}

void MatchIndex::takeIn(const ChannelList& list) {
    if (changed_.empty())
        return;
    makeRoom();
    // Places come in rising order: the next one of the same list is not before the last one.
    std::int32_t behind = kEnd;
    for (std::size_t at = changed_.next(0); at != kNone; at = changed_.next(at + 1)) {
        const auto place = static_cast<std::int32_t>(at);
        const FreqSlotFields& fields = *list.at(at)->peek();
        const bool takesPart = equalsItself(fields);
        const std::uint32_t hash = hashOf(fields);
        if (takesPart && node(place).before != kOut && node(place).hash == hash)
            continue;
        leave(place);
        if (takesPart) {
            node(place).hash = hash;
            enter(place, behind);
            behind = place;
        }
    }
    changed_.clear();
}

void MatchIndex::makeRoom() {
    nodes_.resize(places_);
    if (places_ <= firsts_.size())
        return;
    std::vector<std::int32_t> larger(std::bit_ceil(places_), kEnd);
    firsts_.swap(larger);
    for (std::size_t place = 0; place < nodes_.size(); ++place) {
        if (nodes_[place].before != kOut)
            enter(static_cast<std::int32_t>(place), kEnd);
    }
}

/// Mostly the place is behind all others of its list, because channels come in the order of their places. Otherwise it
/// is looked for from `behind` on, a lower place that was entered before, if that is in the same list.
void MatchIndex::enter(std::int32_t place, std::int32_t behind) noexcept {
    Node& entered = node(place);
    std::int32_t& first = firstOf(entered.hash);
    if (first == kEnd) {
        first = entered.before = place;
        entered.after = kEnd;
        return;
    }
    const std::int32_t last = node(first).before;
    if (place < first) {
        entered.after = first;
        entered.before = last;
        node(first).before = place;
        first = place;
        return;
    }
    std::int32_t before = last;
    if (last > place) {
        before = behind != kEnd && &firstOf(node(behind).hash) == &first ? behind : first;
        for (std::int32_t next = node(before).after; next != kEnd && next < place; next = node(before).after)
            before = next;
    }
    entered.before = before;
    entered.after = node(before).after;
    node(before).after = place;
    node(entered.after == kEnd ? first : entered.after).before = place;
}

void MatchIndex::leave(std::int32_t place) noexcept {
    Node& left = node(place);
    if (left.before == kOut)
        return;
    std::int32_t& first = firstOf(left.hash);
    const std::int32_t last = node(first).before;
    if (place == first) {
        first = left.after;
        if (first != kEnd)
            node(first).before = last == place ? first : last;
    } else {
        node(left.before).after = left.after;
        node(left.after == kEnd ? first : left.after).before = left.before;
    }
    left.before = kOut;
    left.after = kEnd;
}

}  // namespace kv::channels
