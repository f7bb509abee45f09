// Which channels are at a frequency.
#pragma once

#include <cstdint>
#include <functional>

#include "channels/ChannelStore.h"

namespace kv::channels {

/// Calls `found` with the indices, in rising order, of the channels of a kind whose band, in MHz, meets
/// [x - tolerance, x + tolerance], until it returns false. Reading a foreign channel runs the host's code, which may
/// change the store meanwhile. Throws what reading a channel throws, and RuntimeError 6 for an edge too large in MHz.
void forEachChannelAt(const ChannelStore& store, ChannelKind kind, double x, double tolerance,
                      const std::function<bool(std::int32_t index)>& found);

}  // namespace kv::channels
