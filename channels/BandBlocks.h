// What is known of each block of records, so that drawing can skip whole blocks.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "channels/DrawRecord.h"

namespace kv::channels {

struct BandBlock {
    double lowest = 0.0;             ///< MHz, of the regular records; above `highest` without any
    double highest = 0.0;            ///< MHz
    double widest = 0.0;             ///< MHz
    bool hasIrregular = false;       ///< a shown record is not regular and may be anywhere
    bool undrawn = false;            ///< a record may be visible and not yet marked as drawn
    bool hasUnknownStyle = false;    ///< a record may have a fill style that the picture box does not have
    bool hasHiddenButDrawn = false;  ///< a record may be marked as drawn and not visible any more
};

class BandBlocks {
  public:
    static constexpr std::size_t kSize = 256;  ///< records in a block

    /// How many blocks a number of records makes.
    [[nodiscard]] static constexpr std::size_t countFor(std::size_t records) noexcept {
        return (records + kSize - 1) / kSize;
    }
    /// There are this many records now. Callers must derive each block that is new or has another number of records.
    void resize(std::size_t records) {
        blocks_.resize(countFor(records));
        hidden_.resize(countFor(records));
    }
    /// A record of the block has changed.
    void derive(const std::vector<DrawRecord>& records, std::size_t block) noexcept;
    [[nodiscard]] const std::vector<BandBlock>& blocks() const noexcept { return blocks_; }
    /// Calls `visit(place)` in order for each record of the block that may be marked as drawn and not visible any more.
    template <class Visit>
    void forHiddenButDrawn(std::size_t block, Visit&& visit) const {
        for (std::size_t word = 0; word < kWords; ++word) {
            for (std::uint64_t bits = hidden_[block][word]; bits != 0; bits &= bits - 1)
                visit(block * kSize + word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits)));
        }
    }
    /// No record of the block is left that is visible and not marked as drawn.
    void allDrawn(std::size_t block) noexcept { blocks_[block].undrawn = false; }

  private:
    static constexpr std::size_t kWordBits = 64;
    static constexpr std::size_t kWords = kSize / kWordBits;

    std::vector<BandBlock> blocks_;
    std::vector<std::array<std::uint64_t, kWords>> hidden_;  ///< by block, a bit a record: hidden but drawn
};

/// The records of one block.
[[nodiscard]] inline std::span<const DrawRecord> blockOf(const std::vector<DrawRecord>& records,
                                                         std::size_t block) noexcept {
    const std::size_t first = block * BandBlocks::kSize;
    return std::span(records).subspan(first, std::min(BandBlocks::kSize, records.size() - first));
}

}  // namespace kv::channels
