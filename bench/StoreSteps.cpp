#include "bench/StoreSteps.h"

#include <stdexcept>

#include "util/RuntimeError.h"

namespace kv::bench {

using channels::ChannelKind;
using channels::ChannelStore;

std::wstring keyOf(ChannelKind kind, std::size_t number) {
    return kind == ChannelKind::TX ? Channel::key(number) : L"RX" + std::to_wstring(number);
}

std::vector<AnySlot> makeRecords(ChannelKind kind, std::size_t count, SetKind setKind) {
    const ChannelSet& set = channelSet(setKind, count);
    std::vector<AnySlot> records;
    records.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        records.push_back(makeSimpleSlot(set.channels[i], i + 1));
        records.back()->fields().sKey = keyOf(kind, i + 1);
    }
    return records;
}

void addQuietly(ChannelStore& store, ChannelKind kind, const AnySlot& slot) {
    std::int32_t index = 0;
    try {
        store.add(kind, reference(slot), index);
    } catch (const util::RuntimeError&) {
        // The channel is in the store all the same.
    }
}

void removeByKey(ChannelStore& store, ChannelKind kind, const std::wstring& key) {
    if (!store.findByKey(key))
        throw std::logic_error("there is no channel with this key");
    static_cast<void>(store.closeGap(kind, key));
    store.forgetKey(key);
    store.RecalcTXFreqRange();
    store.RecalcRXFreqRange();
    store.RecalcFreqRange();
}

FilledStore::FilledStore(ChannelKind kind, std::size_t count) : records(makeRecords(kind, count)) {
    for (const AnySlot& record : records)
        addQuietly(store, kind, record);
    store.RecalcTXFreqRange();
    store.RecalcRXFreqRange();
}

}  // namespace kv::bench
