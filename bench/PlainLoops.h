// The simplest loops that do the same work as the control: what its steps are compared with.
#pragma once

#include <cstddef>

#include "bench/ChannelSets.h"

namespace kv::bench {

/// Seconds for adding all channels of a set: a struct with its string in an array, its index in a hash map.
[[nodiscard]] double plainAddSeconds(const ChannelSet& set);
/// Seconds for `removals` of `count` channels: a look-up in a hash map and a move of the pointers behind. The median of
/// rounds.
[[nodiscard]] double plainRemovalSeconds(std::size_t count, std::size_t removals, int rounds);

}  // namespace kv::bench
