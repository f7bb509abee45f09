// The records of one kind of channel as drawing and searching need them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/BandBlocks.h"
#include "channels/ChannelList.h"
#include "channels/DrawRecord.h"
#include "channels/EdgeIndex.h"
#include "channels/FrequencyGrid.h"
#include "channels/GroupCounts.h"
#include "channels/PlaceSet.h"
#include "channels/PowerRows.h"
#include "channels/RangeBlocks.h"
#include "channels/RecordCopy.h"

namespace kv::channels {

/// Keeps the copy of the records and what is derived from it up to date together, so that a change costs what its block
/// of records costs.
class ChannelSnapshot {
  public:
    using Block = BandBlock;
    using Grid = FrequencyGrid::Scale;
    using PowerMap = channels::PowerMap;
    static constexpr std::size_t kBlock = BandBlocks::kSize;
    static constexpr int kGridBits = FrequencyGrid::kBits;
    static constexpr std::int16_t kIrregular = PowerRows::kIrregular;
    static constexpr std::int16_t kNotShown = PowerRows::kNotShown;

    explicit ChannelSnapshot(const ChannelList& list) noexcept : list_(list) {}

    // What happens to the list. `append` throws std::bad_alloc and changes nothing.
    void append(bool isForeign);
    void takeBack() noexcept;
    /// Reads the record that was appended last, while it is at hand.
    void readLast() noexcept;
    void recordChanges(std::size_t place) noexcept { copy_.changes(place); }
    /// The label or the components of the record at `place` change.
    void groupChanges(std::size_t place) noexcept {
        groups_.changed(place);
        ++labelVersion_;
    }
    void remove(std::size_t place) noexcept;
    void move(std::size_t from, std::size_t to) noexcept { copy_.move(from, to); }
    /// After all moves: the places left.
    void closed(std::size_t places) noexcept;
    void clear() noexcept;

    /// Brings everything up to date for drawing. False when the memory is short: then channels have to be drawn one by
    /// one. Foreign records are what `putForeign` has given.
    [[nodiscard]] bool update() noexcept;
    void putForeign(std::size_t place, const DrawRecord& record) noexcept;
    /// Hides what earlier drawings have put.
    void forgetForeign() noexcept;
    /// Moves with `forgetForeign`: another drawing has begun.
    [[nodiscard]] std::uint64_t foreignRound() const noexcept { return foreignRound_; }

    /// What follows is valid after `update` until the list or a record changes. By place, as in the list.
    [[nodiscard]] std::size_t size() const noexcept { return copy_.size(); }
    [[nodiscard]] const std::vector<DrawRecord>& records() const noexcept { return copy_.records(); }
    [[nodiscard]] const std::vector<Block>& blocks() const noexcept { return blocks_.blocks(); }
    [[nodiscard]] const Grid& grid(std::size_t block) const noexcept { return grid_.scale(block); }
    [[nodiscard]] const std::vector<std::int32_t>& lowOnGrid() const noexcept { return grid_.low(); }
    [[nodiscard]] const std::vector<std::int16_t>& rows(const PowerMap& map) {
        return rows_.rows(copy_.records(), map);
    }
    [[nodiscard]] const PlaceSet& foreign() const noexcept { return copy_.foreign(); }
    [[nodiscard]] bool isHiddenButDrawn(std::size_t place) const noexcept {
        return records()[place].bDrawn && !records()[place].bVisible;
    }
    [[nodiscard]] bool isLive(std::size_t place) const noexcept { return list_.at(place) != nullptr; }
    [[nodiscard]] std::int32_t indexOf(std::size_t place) const noexcept { return list_.indexOf(place); }
    [[nodiscard]] std::size_t positionOf(std::int32_t index) const noexcept {
        return list_.placeOf(static_cast<std::size_t>(index));
    }

    /// Calls `visit(place)` in order for each record of the block for which `isHiddenButDrawn` may hold.
    template <class Visit>
    void forHiddenButDrawn(std::size_t block, Visit&& visit) const {
        blocks_.forHiddenButDrawn(block, visit);
    }

    /// The record at `place`, which may be beyond the end, is needed soon.
    void prefetch(std::size_t place) const noexcept { list_.prefetch(place); }
    /// Sets `bDrawn` in the copy and in a record of our own class. A foreign one was told when it was read.
    void markDrawn(std::size_t place);
    /// The record was taken off the picture in the meantime: only the copy says that it is drawn.
    void forgetDrawn(std::size_t place) noexcept { copy_.forgetDrawn(place); }
    void allDrawn(std::size_t block) noexcept { blocks_.allDrawn(block); }

    /// The records as they are now, without what is derived from them for drawing. Foreign ones and holes are not up to
    /// date.
    [[nodiscard]] const std::vector<DrawRecord>& currentRecords() noexcept {
        readChanges();
        return copy_.records();
    }
    /// The extremes of the records of our own class.
    [[nodiscard]] const CountedRange& range() noexcept;
    /// How many visible records of our own class there are of each order. `kind` is that of the list. Throws
    /// std::bad_alloc.
    [[nodiscard]] const GroupBlocks& groups(ChannelKind kind);
    /// The places, in no order, of the records of our own class whose band meets [lowest, highest], MHz. The first
    /// search of many records goes through the copy, which is faster than building an index for it. Throws
    /// std::bad_alloc.
    [[nodiscard]] std::vector<std::int32_t> placesAt(double lowest, double highest);
    /// A record of our own class has an edge that is finite in its unit, but not in MHz.
    [[nodiscard]] bool hasTooLargeEdges() noexcept;

    /// Moves with each change of what drawing reads, apart from marks as drawn and foreign records; valid after
    /// `update`.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    /// Moves with each change of a label or of the components of a record of our own class.
    [[nodiscard]] std::uint64_t labelVersion() const noexcept { return labelVersion_; }
    /// Of what has been derived for drawing since the start, in records: what a change costs.
    [[nodiscard]] std::uint64_t derivedRecords() const noexcept { return derived_; }
    /// Of what the last `placesAt` compared.
    [[nodiscard]] std::size_t searchSteps() const noexcept { return searchSteps_; }
    /// Of what has been counted for `groups` since the start, in records.
    [[nodiscard]] std::uint64_t countedRecords() const noexcept { return groups_.countedRecords(); }

  private:
    void readChanges() noexcept;
    void read(std::size_t place) noexcept;
    void derive();

    const ChannelList& list_;
    RecordCopy copy_;
    PlaceSet stale_;  ///< blocks to be derived again
    BandBlocks blocks_;
    FrequencyGrid grid_;
    PowerRows rows_;
    RangeBlocks ranges_;
    GroupBlocks groups_;
    EdgeIndex edges_;
    bool searched_ = false;
    std::uint64_t version_ = 0;
    std::uint64_t labelVersion_ = 0;
    std::uint64_t foreignRound_ = 0;
    std::uint64_t derived_ = 0;
    std::size_t searchSteps_ = 0;
};

}  // namespace kv::channels
