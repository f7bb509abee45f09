// How many visible channels there are of each order, and their colors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "channels/ChannelKind.h"
#include "channels/ChannelList.h"
#include "channels/DrawRecord.h"
#include "channels/PlaceSet.h"

namespace kv::channels {

/// Channels of one order as `productOrder` gives it, `kNoProduct` for those that are no products.
struct ChannelGroup {
    int order = 0;
    std::uint32_t lColor = 0;  ///< the most frequent one, of equally frequent ones the smallest number
    std::int32_t count = 0;
    friend bool operator==(const ChannelGroup&, const ChannelGroup&) = default;
};

class GroupCounts {
  public:
    /// `change` may be negative. Throws std::bad_alloc and changes nothing.
    void add(int order, std::uint32_t lColor, std::int32_t change);
    void clear() noexcept { counts_.clear(); }
    void add(const GroupCounts& others);
    /// By order.
    [[nodiscard]] std::vector<ChannelGroup> groups() const;

  private:
    std::map<std::pair<int, std::uint32_t>, std::int32_t> counts_;  ///< by order and color; never 0
};

/// The counts of the records of our own class. Until they are first needed only a mark is kept for each block of
/// records. After a change only the block around it is counted again, because that reads labels all over the memory.
class GroupBlocks {
  public:
    /// Places below `size` are records from now on. Throws std::bad_alloc and changes nothing.
    void grow(std::size_t size) { stale_.grow(blocksFor(size)); }
    /// The record at `place` is new, gone, or has another label, color or visibility.
    void changed(std::size_t place) noexcept { stale_.insert(place / kSize); }
    /// All records have other places; there are `size` of them.
    void shorten(std::size_t size) noexcept;
    /// Counts the visible records at the places of `list` apart from those at `except`. Only TX channels can be
    /// products, so `kind` has to be the same in all calls. Throws std::bad_alloc.
    void update(ChannelKind kind, const ChannelList& list, const std::vector<DrawRecord>& records,
                const PlaceSet& except);
    /// Valid after `update`.
    [[nodiscard]] const GroupCounts& counts() const noexcept { return all_; }
    [[nodiscard]] const std::vector<ChannelGroup>& groups() const noexcept { return groups_; }
    /// Of what has been counted since the start, in records: what a change costs.
    [[nodiscard]] std::uint64_t countedRecords() const noexcept { return counted_; }

  private:
    static constexpr std::size_t kSize = 256;
    using Block = std::vector<ChannelGroup>;  ///< an element for each order and color

    [[nodiscard]] static std::size_t blocksFor(std::size_t records) noexcept { return (records + kSize - 1) / kSize; }
    void forgetCounts() noexcept;
    void count(ChannelKind kind, std::size_t block, const ChannelList& list, const std::vector<DrawRecord>& records,
               const PlaceSet& except);

    PlaceSet stale_;
    std::vector<Block> blocks_;  ///< of the blocks that have been counted
    GroupCounts all_;
    std::vector<ChannelGroup> groups_;  ///< of `all_`
    std::uint64_t counted_ = 0;
};

}  // namespace kv::channels
