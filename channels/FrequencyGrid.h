// The lower band edges as whole numbers, which drawing turns into columns much faster than frequencies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/BandBlocks.h"
#include "channels/DrawRecord.h"

namespace kv::channels {

/// Each block of records has a grid of its own, which spans the bands of its regular records in 2^30 steps. A band that
/// reaches unusually far therefore makes the grid coarse for its own block only.
class FrequencyGrid {
  public:
    /// Step 0 is at `origin`, each step is `unit` MHz.
    struct Scale {
        double origin = 0.0;
        double unit = 1.0;
    };
    static constexpr int kBits = 30;

    /// There are this many records now. Callers must derive each block that is new or has another number of records.
    void resize(std::size_t records);
    /// A record of the block has changed; `known` describes the block.
    void derive(const std::vector<DrawRecord>& records, const BandBlock& known, std::size_t block) noexcept;
    [[nodiscard]] const Scale& scale(std::size_t block) const noexcept { return scales_[block]; }
    /// By position; undefined for a record that is not regular.
    [[nodiscard]] const std::vector<std::int32_t>& low() const noexcept { return low_; }

  private:
    std::vector<Scale> scales_;  ///< by block
    std::vector<std::int32_t> low_;
};

}  // namespace kv::channels
