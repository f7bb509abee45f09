// A copy, in flat arrays, of what drawing reads of the records of one kind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "channels/EdgeIndex.h"
#include "channels/FreqSlot.h"
#include "raster/PixelMap.h"

namespace kv::channels {

class ChannelStore;
enum class ChannelKind;

/// Half a million records lie all over the memory; a drawing that asked each of them would take as long as painting.
/// The copy is kept while nothing changes: an append reads the new records only, a removal leaves a hole, any change of
/// a record reads all of them again. Records of a foreign class tell no changes; with one of them there is no copy.
class ChannelSnapshot {
  public:
    /// So many records share what is known of their band edges.
    static constexpr std::size_t kBlock = 256;
    struct Block {
        double lowest = 0.0;   ///< MHz, of the regular records; above `highest` without any
        double highest = 0.0;  ///< MHz
        double widest = 0.0;   ///< MHz
        bool hasOdd = false;   ///< one may be anywhere
        bool undrawn = false;  ///< one may be visible and not yet marked as drawn
    };
    /// The lower band edges as whole numbers: 0 at `origin`, a step of `unit` MHz each.
    struct Grid {
        double origin = 0.0;
        double unit = 1.0;
    };
    static constexpr int kGridBits = 30;
    /// What turns powers into pixel rows.
    struct PowerMap {
        raster::PixelMap pixels;
        double floor = 0.0;       ///< dBm; at or below it a record has the height of the mark
        double markHeight = 0.0;  ///< dBm
        [[nodiscard]] double top(const DrawRecord& record) const noexcept {
            return record.dPwrDBM > floor ? record.dPwrDBM : markHeight;
        }
        [[nodiscard]] bool sameRows(const PowerMap& other) const noexcept;
    };
    // In place of a row. No row of a picture is above the first or below the second.
    static constexpr std::int16_t kOdd = -1;
    static constexpr std::int16_t kNotShown = 0x7FFF;

    /// Brings the copy up to date. False when there is none: a record is foreign, or the memory is short.
    [[nodiscard]] bool update(const ChannelStore& store, ChannelKind kind) noexcept;

    /// What follows is valid after `update` until the store or a record changes.
    [[nodiscard]] std::size_t size() const noexcept { return records_.size(); }  ///< with the holes
    /// By place: in the store's order, with holes, which are not visible.
    [[nodiscard]] const std::vector<DrawRecord>& records() const noexcept { return records_; }
    [[nodiscard]] const std::vector<Block>& blocks() const noexcept { return blocks_; }
    [[nodiscard]] const Grid& grid() const noexcept { return grid_; }
    /// By place; means nothing for an odd record.
    [[nodiscard]] const std::vector<std::int32_t>& lowOnGrid() const noexcept { return low_; }
    /// By place: the row of the top, limited to those from 0 up to `kNotShown`; `kOdd` for a record that may be
    /// anywhere.
    [[nodiscard]] const std::vector<std::int16_t>& rows(const PowerMap& map);
    /// The band edges in MHz, sorted for searching; null on the first call after a change, because what is asked once
    /// is faster answered by looking at each record, and when a frequency cannot be told in MHz. Throws std::bad_alloc.
    [[nodiscard]] const EdgeIndex* edges();
    /// A fill style that no picture knows is among the records.
    [[nodiscard]] bool hasOddStyle() const noexcept { return oddStyles_ != 0; }
    /// Changes with every change of the copy but marks as drawn.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    /// No hole.
    [[nodiscard]] bool isLive(std::size_t place) const noexcept { return (live_[place / 64] >> (place % 64) & 1) != 0; }
    [[nodiscard]] bool isHiddenButDrawn(std::size_t place) const noexcept {
        return records_[place].bDrawn && !records_[place].bVisible;
    }
    /// The store's index of the record at a place that is no hole, and the place of an index.
    [[nodiscard]] std::int32_t indexOf(std::size_t place) const noexcept;
    [[nodiscard]] std::size_t placeOf(std::int32_t index) const noexcept;

    /// Visible, at a frequency above 0 and inside its band, whose edges are no further from 0 than 1e15 MHz.
    [[nodiscard]] static bool isRegular(const DrawRecord& record) noexcept;
    /// Sets `bDrawn` in the record and in the copy.
    void markDrawn(std::size_t place) noexcept {
        records_[place].bDrawn = true;
        fields_[place]->bDrawn = true;
    }
    /// None of the block's records is left that is visible and not marked as drawn.
    void allDrawn(std::size_t block) noexcept { blocks_[block].undrawn = false; }

    /// Nothing of the copy holds any more.
    void drop() noexcept;

    /// Stands while a record is taken out of the store: there is no copy meanwhile, and none after an error.
    class Removal {
      public:
        explicit Removal(ChannelSnapshot& snapshot) noexcept : snapshot_(snapshot), before_(snapshot.version_) {
            ++snapshot_.removals_;
        }
        ~Removal();
        Removal(const Removal&) = delete;
        Removal& operator=(const Removal&) = delete;
        /// The record at `index` is gone, the later ones have moved down by one.
        void done(std::int32_t index) noexcept;

      private:
        ChannelSnapshot& snapshot_;
        std::uint64_t before_;
        bool done_ = false;
    };

  private:
    void removed(std::int32_t index) noexcept;
    void append(FreqSlot& channel);
    void readAgain();
    void derive(std::size_t from);
    void deriveBlock(std::size_t block) noexcept;
    void deriveGrid(std::size_t from);

    std::vector<DrawRecord> records_;
    std::vector<FreqSlotFields*> fields_;  ///< null in holes and for foreign records
    std::vector<std::uint64_t> live_;      ///< a bit a place, clear in holes
    std::vector<Block> blocks_;
    std::vector<std::int32_t> low_;
    Grid grid_;
    std::vector<std::int16_t> rows_;  ///< of as many records as have one by `rowMap_`
    PowerMap rowMap_;
    std::optional<EdgeIndex> edges_;
    std::uint64_t edgesAsked_ = 0;  ///< the version at the last call; versions begin at 1
    std::uint64_t edgesVersion_ = 0;
    std::size_t liveCount_ = 0;
    std::size_t foreign_ = 0;
    std::size_t oddStyles_ = 0;
    std::uint64_t revision_ = 0;
    std::uint64_t version_ = 1;
    int removals_ = 0;  ///< that are under way
};

}  // namespace kv::channels
