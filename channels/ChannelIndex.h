// Which channels are at a frequency.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "channels/ChannelStore.h"

namespace kv::channels {

/// Calls `found` with the indices, in rising order, of the channels of a kind whose band, in MHz, meets
/// [x - tolerance, x + tolerance], until it returns false. Reading a foreign channel runs the host's code, which may
/// change the store meanwhile. Throws what reading a channel throws, and RuntimeError 6 for an edge too large in MHz.
void forEachChannelAt(const ChannelStore& store, ChannelKind kind, double x, double tolerance,
                      const std::function<bool(std::int32_t index)>& found);

/// The frequency, in MHz, of the channel nearest to `from` on one side of it: below for a `side` of -1, above for 1.
/// Channels in an unknown unit do not count. Throws what reading a foreign channel throws.
[[nodiscard]] std::optional<double> nextFrequency(const ChannelStore& store, double from, double side);

}  // namespace kv::channels
