// Finds a receive channel that equals another one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "channels/ChannelList.h"

namespace kv::channels {

/// Built at the first search and kept while no record changes; later channels are added by the next search. For
/// channels of our own class only.
class MatchIndex {
  public:
    /// Index of the first channel of `list` equal in frequencies, bandwidth, units and label; -1 when there is none.
    [[nodiscard]] std::int32_t find(const ChannelList& list, const FreqSlotFields& wanted);
    /// The channels of the list have moved.
    void drop() noexcept;

  private:
    void append(const ChannelList& list);

    std::unordered_multimap<std::size_t, std::int32_t> indexes_;  ///< by hash, the first of equal channels only
    std::size_t known_ = 0;                                       ///< the number of channels in it
    std::uint64_t revision_ = 0;
};

}  // namespace kv::channels
