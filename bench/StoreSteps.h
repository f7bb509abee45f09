// A store with many channels and the steps that a host takes with them, without a display around it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/SimpleSlot.h"
#include "channels/ChannelStore.h"

namespace kv::bench {

/// Own records of a set with a key of their own each, not in any store.
[[nodiscard]] std::vector<AnySlot> makeRecords(channels::ChannelKind kind, std::size_t count,
                                               SetKind setKind = SetKind::Narrow);
/// The key of the record of a number from 1.
[[nodiscard]] std::wstring keyOf(channels::ChannelKind kind, std::size_t number);
/// Spreads consecutive numbers over 0 to `count` - 1, each once if `count` is not a multiple of 7919.
[[nodiscard]] constexpr std::size_t nth(std::size_t i, std::size_t count) {
    return (i * 7919 + 17) % count;
}

/// Adds as the control does for its host: an addition that fails ends quietly.
void addQuietly(channels::ChannelStore& store, channels::ChannelKind kind, const AnySlot& slot);
/// The steps of a removal except the display. Throws std::logic_error when there is no channel with this key.
void removeByKey(channels::ChannelStore& store, channels::ChannelKind kind, const std::wstring& key);

struct FilledStore {
    FilledStore(channels::ChannelKind kind, std::size_t count);

    channels::ChannelStore store;
    std::vector<AnySlot> records;
};

}  // namespace kv::bench
