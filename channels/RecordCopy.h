// A copy, in a flat array, of what drawing reads of the records of one list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/ChannelList.h"
#include "channels/DrawRecord.h"
#include "channels/PlaceSet.h"

namespace kv::channels {

/// Half a million records are scattered over the memory. A drawing that read each of them would take as long as
/// painting. The copy grows with the list, while a new record is at hand; later only what has changed is read again.
/// Records of a foreign class report no changes. A drawing reads them, which runs the host's code, and puts them here.
class RecordCopy {
  public:
    /// A record was appended to the list. It is hidden until it is read. Throws std::bad_alloc and changes nothing.
    void append(bool isForeign);
    void takeBack() noexcept;
    /// The record at `place` has to be read again.
    void changes(std::size_t place) noexcept;
    /// The record at `place` has left the list.
    void remove(std::size_t place) noexcept;
    /// What reading a foreign record has given.
    void put(std::size_t place, const DrawRecord& record) noexcept;
    /// Reads a record of our own class. False when it is up to date.
    bool read(const ChannelList& list, std::size_t place) noexcept;
    /// The first record at `from` or after it that has to be read, PlaceSet::kNone without one.
    [[nodiscard]] std::size_t nextChanged(std::size_t from) const noexcept { return changed_.next(from); }
    void move(std::size_t from, std::size_t to) noexcept;
    void shorten(std::size_t places) noexcept;

    /// By place; what is in a hole is not visible.
    [[nodiscard]] const std::vector<DrawRecord>& records() const noexcept { return records_; }
    [[nodiscard]] std::size_t size() const noexcept { return records_.size(); }
    [[nodiscard]] const PlaceSet& foreign() const noexcept { return foreign_; }
    /// Records with an edge that is finite in its unit, but not in MHz.
    [[nodiscard]] bool hasTooLargeEdges() const noexcept { return tooLarge_ != 0; }

    void markDrawn(std::size_t place) noexcept { records_[place].bDrawn = true; }
    void forgetDrawn(std::size_t place) noexcept { records_[place].bDrawn = false; }

  private:
    std::vector<DrawRecord> records_;
    PlaceSet changed_;
    PlaceSet foreign_;
    std::size_t tooLarge_ = 0;
};

}  // namespace kv::channels
