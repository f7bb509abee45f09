// Additions of channels with unusual keys or records, and after a kind was cleared.
#include <vector>

#include "bench/Growth.h"
#include "bench/PlainLoops.h"

namespace kv::bench {

using channels::ChannelKind;
using channels::ChannelStore;

// Additions that are refused, beside many TX channels with keys.

constexpr std::size_t kAdditions = 100;

template <class Spoil>
static Cost additions(std::size_t count, Spoil spoil) {
    FilledStore filled(ChannelKind::TX, count);
    std::vector<AnySlot> added;
    for (std::size_t i = 0; i < kAdditions; ++i) {
        added.push_back(ownSlot(L"RXnew" + std::to_wstring(i)));
        spoil(added.back()->fields());
    }
    return each(kAdditions, nothing, [&](std::size_t i) { addQuietly(filled.store, ChannelKind::RX, added[i]); });
}
Cost addKeyed(std::size_t count) {
    return additions(count, [](channels::FreqSlotFields&) {});
}
Cost addUnkeyed(std::size_t count) {
    return additions(count, [](channels::FreqSlotFields& fields) { fields.sKey.clear(); });
}
Cost addTaken(std::size_t count) {
    return additions(count, [](channels::FreqSlotFields& fields) { fields.sKey = keyOf(ChannelKind::TX, 1); });
}
Cost addUnreadable(std::size_t count) {
    return additions(count, [](channels::FreqSlotFields& fields) {
        fields.dFreqHi = fields.dFreqLo = 0.0;
        fields.dBW = 1e308;
        fields.sBWUnits = L"GHz";
    });
}

// Adding all channels.

template <class IsForeign>
static Cost addAll(std::size_t count, IsForeign isForeign) {
    std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count);
    for (std::size_t i = 0; i < count; ++i) {
        if (isForeign(i)) {
            AnySlot foreign(new ForeignSlot);
            foreign->fields() = std::as_const(*records[i]).fields();
            records[i] = foreign;
        }
    }
    return each(3, nothing, [&](std::size_t) {
        ChannelStore store;
        for (const AnySlot& record : records)
            addQuietly(store, ChannelKind::TX, record);
    });
}
Cost addPlain(std::size_t count) {
    const double seconds = plainAddSeconds(channelSet(SetKind::Narrow, count));
    return {seconds, seconds};
}
Cost addOwn(std::size_t count) {
    return addAll(count, [](std::size_t) { return false; });
}
Cost addForeign(std::size_t count) {
    return addAll(count, [](std::size_t) { return true; });
}
Cost addForeignNowAndThen(std::size_t count) {
    return addAll(count, [](std::size_t i) { return i % 100 == 0; });
}
Cost addSameKeysAgain(std::size_t count) {
    FilledStore filled(ChannelKind::TX, count);
    return each(
        3, [&](std::size_t) { filled.store.clear(ChannelKind::TX); },
        [&](std::size_t) {
            for (const AnySlot& record : filled.records)
                addQuietly(filled.store, ChannelKind::TX, record);
        });
}

// Kinds that are cleared and loaded again.

constexpr std::size_t kFew = 20;

template <class KeyOf>
static Cost loadFewRX(std::size_t count, KeyOf keyOfOne) {
    FilledStore filled(ChannelKind::TX, count);
    std::vector<AnySlot> few(kFew);
    return each(
        9,
        [&](std::size_t round) {
            filled.store.clear(ChannelKind::RX);
            for (std::size_t i = 0; i < kFew; ++i)
                few[i] = ownSlot(keyOfOne(round, i));
        },
        [&](std::size_t) {
            for (const AnySlot& record : few)
                addQuietly(filled.store, ChannelKind::RX, record);
        });
}
Cost reloadFewRX(std::size_t count) {
    return loadFewRX(count, [](std::size_t, std::size_t i) { return L"RX" + std::to_wstring(i); });
}
Cost loadFewRXFirst(std::size_t count) {
    FilledStore filled(ChannelKind::TX, count);
    return each(9, nothing, [&](std::size_t round) {
        for (std::size_t i = 0; i < kFew; ++i)
            addQuietly(filled.store, ChannelKind::RX, ownSlot(L"RX" + std::to_wstring(round * kFew + i)));
    });
}
Cost clearAndAddTen(std::size_t count) {
    ChannelStore store;
    const std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count);
    return each(1, nothing, [&](std::size_t) {
        for (std::size_t i = 0; i < count; ++i) {
            if (i % 10 == 0)
                store.clear(ChannelKind::TX);
            addQuietly(store, ChannelKind::TX, records[i]);
        }
    });
}
Cost clearAndAddTenBeside(std::size_t count) {
    FilledStore filled(ChannelKind::RX, count);
    return each(25, nothing, [&](std::size_t round) {
        filled.store.clear(ChannelKind::TX);
        for (std::size_t i = 0; i < 10; ++i)
            addQuietly(filled.store, ChannelKind::TX, ownSlot(L"TX" + std::to_wstring(round * 10 + i)));
    });
}
Cost addTenBeside(std::size_t count) {
    FilledStore filled(ChannelKind::RX, count);
    return each(25, nothing, [&](std::size_t round) {
        for (std::size_t i = 0; i < 10; ++i)
            addQuietly(filled.store, ChannelKind::TX, ownSlot(L"TX" + std::to_wstring(round * 10 + i)));
    });
}

}  // namespace kv::bench
