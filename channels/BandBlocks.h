// What is known of the band edges of each block of records, so that drawing can skip whole blocks.
#pragma once

#include <cstddef>
#include <vector>

#include "channels/DrawRecord.h"

namespace kv::channels {

struct BandBlock {
    double lowest = 0.0;        ///< MHz, of the regular records; above `highest` without any
    double highest = 0.0;       ///< MHz
    double widest = 0.0;        ///< MHz
    bool hasIrregular = false;  ///< a visible record is not regular and may be anywhere
    bool undrawn = false;       ///< a record may be visible and not yet marked as drawn
};

class BandBlocks {
  public:
    static constexpr std::size_t kSize = 256;  ///< records in a block

    /// The records from `from` on have changed; the list may have grown or shrunk.
    void derive(const std::vector<DrawRecord>& records, std::size_t from);
    [[nodiscard]] const std::vector<BandBlock>& blocks() const noexcept { return blocks_; }
    /// No record of the block is left that is visible and not marked as drawn.
    void allDrawn(std::size_t block) noexcept { blocks_[block].undrawn = false; }

  private:
    std::vector<BandBlock> blocks_;
};

}  // namespace kv::channels
