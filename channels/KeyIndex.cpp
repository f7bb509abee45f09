#include "channels/KeyIndex.h"

#include <algorithm>
#include <new>

#include "util/RuntimeError.h"

namespace kv::channels {

namespace {

// Instead of the number of a key.
constexpr std::int32_t kUnknown = KeyTable::kNone;  // to be looked up
constexpr std::int32_t kForeign = -2;               // to be read from the host's object each time

}  // namespace

void KeyIndex::appended(ChannelKind kind, bool isForeign) {
    Places& places = places_[kind];
    const std::size_t place = places.numbers.size();
    if (place > Entry::kMost)
        throw std::bad_alloc();
    places.odd.grow(place + 1);
    places.numbers.push_back(isForeign ? kForeign : kUnknown);
    places.odd.insert(place);
}

void KeyIndex::takenBack(ChannelKind kind) noexcept {
    Places& places = places_[kind];
    places.numbers.pop_back();
    places.odd.erase(places.numbers.size());
}

bool KeyIndex::add(std::wstring_view key, ChannelKind kind, std::size_t place) {
    const std::int32_t number = numberOf(key);
    places_[kind].numbers[place] = number;
    if (!lead(number, Entry(place, linkTo(kind), texts_.text(number) == key)))
        return false;
    places_[kind].odd.erase(place);
    return true;
}

bool KeyIndex::addForeign(std::wstring_view key, std::int32_t index) {
    return lead(numberOf(key), Entry(static_cast<std::size_t>(index), Leads::ToNumber));
}

/// False when it leads somewhere already.
bool KeyIndex::lead(std::int32_t number, const Entry& to) noexcept {
    ++version_;
    if (entry(number).leads() != Leads::Nowhere)
        return false;
    entry(number) = to;
    --forgotten_;
    added_ = number;
    return true;
}

/// The number of the key, which leads nowhere when it is new.
std::int32_t KeyIndex::numberOf(std::wstring_view key) {
    if (const std::int32_t known = texts_.find(key); known != KeyTable::kNone)
        return known;
    if (forgotten_ > dropFrom_)
        dropForgotten();
    entries_.push_back({});
    try {
        const std::int32_t number = texts_.add(key);
        ++forgotten_;
        return number;
    } catch (...) {
        entries_.pop_back();
        throw;
    }
}

/// A text that leads nowhere stays while a channel has its number, which is then found without looking it up.
void KeyIndex::dropForgotten() {
    std::vector<std::int32_t> kept(entries_.size(), kUnknown);
    for (const ChannelKind kind : kBothKinds) {
        for (const std::int32_t number : places_[kind].numbers) {
            if (number >= 0)
                kept[static_cast<std::size_t>(number)] = 0;
        }
    }
    KeyTable texts;
    std::vector<Entry> entries;
    std::size_t forgotten = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const bool leadsNowhere = entries_[i].leads() == Leads::Nowhere;
        if (leadsNowhere && kept[i] == kUnknown)
            continue;
        kept[i] = texts.add(texts_.text(static_cast<std::int32_t>(i)));
        entries.push_back(entries_[i]);
        forgotten += leadsNowhere ? 1 : 0;
    }
    for (const ChannelKind kind : kBothKinds) {
        for (std::int32_t& number : places_[kind].numbers) {
            if (number >= 0)
                number = kept[static_cast<std::size_t>(number)];
        }
    }
    std::swap(texts_, texts);
    entries_.swap(entries);
    forgotten_ = forgotten;
    dropFrom_ = kFewForgotten + forgotten + entries_.size() / 2;
    added_ = KeyTable::kNone;
    ++version_;
}

bool KeyIndex::takeBack(std::uint64_t version) noexcept {
    if (version == 0)
        return true;
    if (version != version_)
        return false;
    ++version_;
    entry(added_) = {};
    ++forgotten_;
    return true;
}

std::int32_t KeyIndex::known(std::wstring_view key) const noexcept {
    const std::int32_t number = texts_.find(key);
    return number != KeyTable::kNone && entry(number).leads() != Leads::Nowhere ? number : KeyTable::kNone;
}

std::size_t KeyIndex::indexOf(const Entry& entry) const noexcept {
    return entry.isLinked() ? indexOf(entry.kind(), entry.value()) : entry.value();
}

std::size_t KeyIndex::indexOf(ChannelKind kind, std::size_t place) const noexcept {
    return static_cast<std::size_t>(lists_[kind].indexOf(place));
}

std::optional<std::int32_t> KeyIndex::find(std::wstring_view key) const noexcept {
    const std::int32_t number = known(key);
    return number != KeyTable::kNone ? std::optional(static_cast<std::int32_t>(indexOf(entry(number)))) : std::nullopt;
}

std::optional<KeyIndex::Found> KeyIndex::findPlace(std::wstring_view key, ChannelKind kind) const noexcept {
    const std::int32_t number = known(key);
    if (number == KeyTable::kNone)
        return std::nullopt;
    const Entry& found = entry(number);
    if (found.isLinked() && found.kind() == kind)
        return Found{found.value(), found.isExact() && texts_.foundExactly()};
    const std::size_t index = indexOf(found);
    return index < lists_[kind].size() ? std::optional(Found{lists_[kind].placeOf(index), false}) : std::nullopt;
}

bool KeyIndex::forget(std::wstring_view key) noexcept {
    const std::int32_t number = known(key);
    if (number == KeyTable::kNone)
        return false;
    ++version_;
    unlink(entry(number));
    entry(number) = {};
    ++forgotten_;
    return true;
}

/// From now on the key leads to the index that it has now.
void KeyIndex::unlink(Entry& entry) noexcept {
    if (!entry.isLinked())
        return;
    const std::size_t place = entry.value();
    const ChannelKind kind = entry.kind();
    places_[kind].odd.insert(place);
    entry = Entry(indexOf(kind, place), Leads::ToNumber);
}

void KeyIndex::unlinkPlace(ChannelKind kind, std::size_t place) noexcept {
    if (!places_[kind].odd.contains(place))
        unlink(entry(places_[kind].numbers[place]));
}

void KeyIndex::keyChanges(ChannelKind kind, std::size_t place) noexcept {
    Places& places = places_[kind];
    if (place >= places.numbers.size() || places.numbers[place] == kForeign)
        return;
    ++version_;
    unlinkPlace(kind, place);
    places.numbers[place] = kUnknown;
}

void KeyIndex::leaves(ChannelKind kind, std::size_t place) noexcept {
    ++version_;
    Places& places = places_[kind];
    if (places.odd.contains(place)) {
        places.odd.erase(place);
    } else {
        entry(places.numbers[place]) = Entry(indexOf(kind, place), Leads::ToNumber);
    }
    places.numbers[place] = kUnknown;
}

std::exception_ptr KeyIndex::moveKeysBehind(ChannelKind kind, std::size_t place) {
    std::exception_ptr failed;
    const PlaceSet& odd = places_[kind].odd;
    while ((place = odd.next(place + 1)) != PlaceSet::kNone) {
        try {
            const FreqSlotRef channel(lists_[kind].at(place));
            if (!moveKeyOf(*channel, kind, place) && !failed)
                throw util::RuntimeError(util::error_number::kInvalidProcedureCall);
        } catch (...) {
            // A key that cannot be moved does not keep the later ones from moving.
            if (!failed)
                failed = std::current_exception();
        }
    }
    return failed;
}

bool KeyIndex::moveKeyOf(FreqSlot& channel, ChannelKind kind, std::size_t place) {
    Places& places = places_[kind];
    if (places.numbers[place] == kForeign) {
        const std::int32_t number = texts_.find(channel.sKey());
        // Its code may have removed it.
        if (place >= places.numbers.size() || lists_[kind].at(place) != &channel)
            return true;
        return moveKey(number, kind, place, false);
    }
    if (places.numbers[place] == kUnknown)
        return moveKey(texts_.find(channel.peek()->sKey), kind, place, true);
    return moveKey(places.numbers[place], kind, place, true);
}

/// False when the key is not known.
bool KeyIndex::moveKey(std::int32_t number, ChannelKind kind, std::size_t place, bool isOwn) noexcept {
    if (number == KeyTable::kNone || entry(number).leads() == Leads::Nowhere)
        return false;
    Entry& moved = entry(number);
    // A later channel that has the key takes it in its turn.
    if (moved.isLinked() && moved.kind() == kind && moved.value() > place)
        return true;
    ++version_;
    unlink(moved);
    if (isOwn) {
        moved = Entry(place, linkTo(kind));
        places_[kind].numbers[place] = number;
        places_[kind].odd.erase(place);
    } else {
        moved = Entry(indexOf(kind, place), Leads::ToNumber);
    }
    return true;
}

void KeyIndex::empties(ChannelKind kind) noexcept {
    ++version_;
    Places& places = places_[kind];
    const ChannelList& list = lists_[kind];
    std::size_t index = 0;
    for (std::size_t place = 0; place < places.numbers.size(); ++place) {
        if (!list.at(place))
            continue;
        if (!places.odd.contains(place))
            entry(places.numbers[place]) = Entry(index, Leads::ToNumber);
        ++index;
    }
    places = {};
}

void KeyIndex::clear() noexcept {
    ++version_;
    texts_ = {};
    entries_.clear();
    forgotten_ = 0;
    for (const ChannelKind kind : kBothKinds) {
        Places& places = places_[kind];
        for (std::size_t place = 0; place < places.numbers.size(); ++place) {
            if (!lists_[kind].at(place))
                continue;
            if (places.numbers[place] != kForeign)
                places.numbers[place] = kUnknown;
            places.odd.insert(place);
        }
    }
}

void KeyIndex::moved(ChannelKind kind, std::size_t from, std::size_t to) noexcept {
    Places& places = places_[kind];
    const bool isOdd = places.odd.contains(from);
    places.odd.erase(from);
    places.numbers[to] = places.numbers[from];
    if (isOdd) {
        places.odd.insert(to);
    } else {
        Entry& linked = entry(places.numbers[to]);
        linked = Entry(to, linked.leads(), linked.isExact());
    }
}

void KeyIndex::closed(ChannelKind kind, std::size_t places) noexcept {
    places_[kind].numbers.resize(places);
}

}  // namespace kv::channels
