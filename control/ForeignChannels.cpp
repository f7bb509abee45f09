#include "control/ForeignChannels.h"

namespace kv::control {

namespace {

/// False for one whose fill style ends the drawing, which is left to the drawing.
bool tellDrawn(channels::FreqSlot& channel, const channels::DrawRecord& record, const PaintedView& view) {
    if (hasUnknownFillStyle(record) && (view.refreshes || view.takes(record)))
        return false;
    if (view.tells && view.reaches(record))
        channel.setBDrawn(record.bVisible);
    return true;
}

}  // namespace

ForeignRead readForeignChannels(const channels::ChannelStore& store, channels::ChannelKind kind,
                                const PaintedView& view, std::size_t last) {
    channels::ChannelSnapshot& snapshot = store.snapshot(kind);
    const channels::PlaceSet& foreign = snapshot.foreign();
    const std::uint64_t list = store.listChanges(kind);
    const std::uint64_t round = snapshot.foreignRound();
    const auto isOvertaken = [&] { return store.listChanges(kind) != list || snapshot.foreignRound() != round; };
    // A drawing inside this one has forgotten what was read here.
    const auto upTo = [&](std::size_t end) { return snapshot.foreignRound() == round ? end : 0; };
    for (std::size_t place = foreign.next(0); place < last; place = foreign.next(place + 1)) {
        const channels::FreqSlotRef channel(store.list(kind).at(place));
        std::size_t end = place;
        try {
            channels::DrawRecord record = view.refreshes ? channel->drawRecord() : channel->visibleRecord();
            if (isOvertaken())
                return {upTo(place), place, nullptr};
            // What it is told here, the painter does not tell it.
            record.bDrawn = record.bDrawn || view.reaches(record);
            snapshot.putForeign(place, record);
            end = place + 1;
            if (!tellDrawn(*channel, record, view))
                break;
            if (isOvertaken())
                return {upTo(end), place, nullptr};
        } catch (...) {
            return {upTo(end), place, std::current_exception()};
        }
    }
    return {last, last, nullptr};
}

}  // namespace kv::control
