// Finds a receive channel that equals another one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/ChannelList.h"
#include "channels/PlaceSet.h"

namespace kv::channels {

/// A hash table of the channels of our own class, whose lists are in the order of the places. What was added or changed
/// is taken in by the next search, so that it costs nothing without one.
class MatchIndex {
  public:
    static constexpr std::size_t kNone = PlaceSet::kNone;

    /// A channel was appended to the list. Throws std::bad_alloc and changes nothing.
    void append(bool isOwn);
    void takeBack() noexcept;
    /// The channel at `place` is another one now.
    void changed(std::size_t place) noexcept;
    /// The channel at `place` has left the list.
    void remove(std::size_t place) noexcept;
    /// The holes of `list` were closed: all channels have new places, `places` of them.
    void closed(std::size_t places, const ChannelList& list) noexcept;

    /// The place of the first channel of `list`, of our own class, that equals `wanted` in frequencies, bandwidth,
    /// units and label; `kNone` without one. Throws std::bad_alloc.
    [[nodiscard]] std::size_t find(const ChannelList& list, const FreqSlotFields& wanted);

  private:
    static constexpr std::int32_t kEnd = -1;
    static constexpr std::int32_t kOut = -2;

    struct Node {
        std::uint32_t hash = 0;
        std::int32_t before = kOut;  ///< the last one of the list for the first one
        std::int32_t after = kEnd;
    };
    [[nodiscard]] Node& node(std::int32_t place) noexcept { return nodes_[static_cast<std::size_t>(place)]; }
    [[nodiscard]] std::int32_t& firstOf(std::uint32_t hash) noexcept { return firsts_[hash & (firsts_.size() - 1)]; }
    void takeIn(const ChannelList& list);
    void makeRoom();
    void enter(std::int32_t place, std::int32_t behind) noexcept;
    void leave(std::int32_t place) noexcept;

    std::vector<Node> nodes_;           ///< by place
    std::vector<std::int32_t> firsts_;  ///< by hash; a power of 2 of them
    PlaceSet changed_;
    std::size_t places_ = 0;
};

/// Equal in what `MatchIndex::find` compares.
[[nodiscard]] bool isEqualChannel(const FreqSlotFields& a, const FreqSlotFields& b);

}  // namespace kv::channels
