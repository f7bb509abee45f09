// The records of one kind of channel as drawing and searching need them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/BandBlocks.h"
#include "channels/ChannelKind.h"
#include "channels/DrawRecord.h"
#include "channels/EdgeIndexCache.h"
#include "channels/FrequencyGrid.h"
#include "channels/PowerRows.h"
#include "channels/RecordCopy.h"
#include "util/Raised.h"

namespace kv::channels {

class ChannelStore;

/// Keeps the copy of the records and what is derived from it up to date together, and follows removals.
class ChannelSnapshot {
  public:
    using Block = BandBlock;
    using Grid = FrequencyGrid::Scale;
    using PowerMap = channels::PowerMap;
    static constexpr std::size_t kBlock = BandBlocks::kSize;
    static constexpr int kGridBits = FrequencyGrid::kBits;
    static constexpr std::int16_t kIrregular = PowerRows::kIrregular;
    static constexpr std::int16_t kNotShown = PowerRows::kNotShown;

    /// Brings the copy up to date. False when there is none: a record is foreign, a record is being removed, or the
    /// memory is short.
    [[nodiscard]] bool update(const ChannelStore& store, ChannelKind kind) noexcept;

    /// What follows is valid after `update` until the store or a record changes. Positions are those of RecordCopy.
    [[nodiscard]] std::size_t size() const noexcept { return copy_.size(); }
    [[nodiscard]] const std::vector<DrawRecord>& records() const noexcept { return copy_.records(); }
    [[nodiscard]] const std::vector<Block>& blocks() const noexcept { return blocks_.blocks(); }
    [[nodiscard]] const Grid& grid(std::size_t block) const noexcept { return grid_.scale(block); }
    [[nodiscard]] const std::vector<std::int32_t>& lowOnGrid() const noexcept { return grid_.low(); }
    [[nodiscard]] const std::vector<std::int16_t>& rows(const PowerMap& map) {
        return rows_.rows(copy_.records(), map);
    }
    /// As EdgeIndexCache::find.
    [[nodiscard]] const EdgeIndex* edges() { return edges_.find(version_, copy_.fields()); }
    [[nodiscard]] bool hasUnknownFillStyle() const noexcept { return copy_.hasUnknownFillStyle(); }
    /// Changes with every change of the copy except marks as drawn.
    [[nodiscard]] std::uint64_t version() const noexcept { return version_; }
    [[nodiscard]] bool isLive(std::size_t position) const noexcept { return !copy_.isHole(position); }
    [[nodiscard]] bool isHiddenButDrawn(std::size_t position) const noexcept {
        return records()[position].bDrawn && !records()[position].bVisible;
    }
    [[nodiscard]] std::int32_t indexOf(std::size_t position) const noexcept { return copy_.indexOf(position); }
    [[nodiscard]] std::size_t positionOf(std::int32_t index) const noexcept { return copy_.positionOf(index); }

    void markDrawn(std::size_t position) noexcept { copy_.markDrawn(position); }
    /// The record was taken off the picture in the meantime: only the copy says that it is drawn.
    void forgetDrawn(std::size_t position) noexcept { copy_.forgetDrawn(position); }
    void allDrawn(std::size_t block) noexcept { blocks_.allDrawn(block); }

    /// Discards the copy. The next update reads all records.
    void drop() noexcept;

    /// Lasts while a record is removed from the store: there is no copy meanwhile, and none after an error.
    class Removal {
      public:
        explicit Removal(ChannelSnapshot& snapshot) noexcept
            : snapshot_(snapshot), removing_(snapshot.removing_), before_(snapshot.version_) {}
        ~Removal();
        Removal(const Removal&) = delete;
        Removal& operator=(const Removal&) = delete;
        /// The record at `index` was removed; the later ones have moved down by one.
        void done(std::int32_t index) noexcept;

      private:
        ChannelSnapshot& snapshot_;
        util::Raised removing_;
        std::uint64_t before_;
        bool done_ = false;
    };

  private:
    /// Everything that is derived from the records of a block.
    void derive(std::size_t block) noexcept;
    void removed(std::int32_t index) noexcept;

    RecordCopy copy_;
    BandBlocks blocks_;
    FrequencyGrid grid_;
    PowerRows rows_;
    EdgeIndexCache edges_;
    std::uint64_t version_ = 1;
    bool removing_ = false;
};

}  // namespace kv::channels
