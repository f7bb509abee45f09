// The lower band edges as whole numbers, which drawing turns into columns much faster than frequencies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/BandBlocks.h"
#include "channels/DrawRecord.h"

namespace kv::channels {

/// The grid spans the bands of all regular records in 2^30 steps. It is computed again when a band is outside.
class FrequencyGrid {
  public:
    /// Step 0 is at `origin`, each step is `unit` MHz.
    struct Scale {
        double origin = 0.0;
        double unit = 1.0;
    };
    static constexpr int kBits = 30;

    /// The records from `from` on have changed; `blocks` describes all of them.
    void derive(const std::vector<DrawRecord>& records, const std::vector<BandBlock>& blocks, std::size_t from);
    [[nodiscard]] const Scale& scale() const noexcept { return scale_; }
    /// By position; undefined for a record that is not regular.
    [[nodiscard]] const std::vector<std::int32_t>& low() const noexcept { return low_; }

  private:
    Scale scale_;
    std::vector<std::int32_t> low_;
};

}  // namespace kv::channels
