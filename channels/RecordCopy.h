// A copy, in flat arrays, of what drawing reads of the records of one list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "channels/ChannelList.h"
#include "channels/DrawRecord.h"
#include "channels/FreqSlot.h"
#include "channels/RankedBits.h"

namespace kv::channels {

/// Half a million records are scattered over the memory. A drawing that read each of them would take as long as
/// painting. The copy is kept while nothing changes: after an append only the new records are read, a removal leaves a
/// hole, and after any change of a record all of them are read again. Records of a foreign class report no changes, so
/// there is no copy while one of them is in the list.
class RecordCopy {
  public:
    /// Reads what has changed. Returns the first position of what was read, which is `size` when nothing was, and
    /// nothing when a record is foreign.
    std::optional<std::size_t> update(const ChannelList& list);
    /// The record at `index` has been removed from the list. Returns the position of the new hole, and nothing when the
    /// record had not been read. There must be no foreign record. Throws std::bad_alloc.
    std::optional<std::size_t> remove(std::int32_t index);

    /// With the holes.
    [[nodiscard]] std::size_t size() const noexcept { return records_.size(); }
    /// By position: in the order of the list, with holes, which are not visible.
    [[nodiscard]] const std::vector<DrawRecord>& records() const noexcept { return records_; }
    /// By position; null in holes and for foreign records.
    [[nodiscard]] const std::vector<FreqSlotFields*>& fields() const noexcept { return fields_; }
    [[nodiscard]] bool isHole(std::size_t position) const noexcept { return holes_.test(position); }
    /// So many that it is better to read the list again without them.
    [[nodiscard]] bool hasManyHoles() const noexcept;
    [[nodiscard]] bool hasForeign() const noexcept { return hasForeign_; }
    [[nodiscard]] bool hasUnknownFillStyle() const noexcept { return unknownStyles_ != 0; }

    /// The index in the list of the record at a position that is no hole.
    [[nodiscard]] std::int32_t indexOf(std::size_t position) const noexcept {
        return static_cast<std::int32_t>(holes_.clearBefore(position));
    }
    [[nodiscard]] std::size_t positionOf(std::int32_t index) const noexcept {
        return holes_.positionOfClear(static_cast<std::size_t>(index));
    }

    /// Sets `bDrawn` in the record and in the copy.
    void markDrawn(std::size_t position) noexcept {
        records_[position].bDrawn = true;
        fields_[position]->bDrawn = true;
    }
    /// Resets `bDrawn` in the copy alone.
    void forgetDrawn(std::size_t position) noexcept { records_[position].bDrawn = false; }

  private:
    [[nodiscard]] std::size_t liveCount() const noexcept { return records_.size() - holes_.count(); }
    void append(FreqSlot& channel);
    void readAgain();

    std::vector<DrawRecord> records_;
    std::vector<FreqSlotFields*> fields_;
    RankedBits holes_;
    bool hasForeign_ = false;
    std::size_t unknownStyles_ = 0;
    std::uint64_t revision_ = 0;
};

}  // namespace kv::channels
