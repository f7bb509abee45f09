// The index of the band edges, built when it is worth it and kept until a record changes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "channels/EdgeIndex.h"
#include "channels/FreqSlot.h"

namespace kv::channels {

class EdgeIndexCache {
  public:
    /// The band edges in MHz of the records behind `fields`, by position; null entries are left out. `version` is above
    /// 0 and changes with the records.
    ///
    /// Null on the first call after a change, because a single search is faster without building an index, and when
    /// an edge cannot be converted to MHz. Throws std::bad_alloc.
    [[nodiscard]] const EdgeIndex* find(std::uint64_t version, const std::vector<FreqSlotFields*>& fields);

  private:
    std::optional<EdgeIndex> index_;
    std::uint64_t askedFor_ = 0;  ///< the version at the last call
    std::uint64_t builtFor_ = 0;  ///< the version that `index_` belongs to, also when it could not be built
};

}  // namespace kv::channels
