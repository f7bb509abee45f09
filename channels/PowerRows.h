// The pixel rows of the tops of the records' boxes, kept for as long as the picture's vertical scale stays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/BandBlocks.h"
#include "channels/DrawRecord.h"
#include "raster/PixelMap.h"

namespace kv::channels {

/// What turns powers into pixel rows.
struct PowerMap {
    raster::PixelMap pixels;
    double floor = 0.0;       ///< dBm; at or below it a record has the height of the mark
    double markHeight = 0.0;  ///< dBm
    [[nodiscard]] double top(const DrawRecord& record) const noexcept {
        return record.dPwrDBM > floor ? record.dPwrDBM : markHeight;
    }
    friend bool operator==(const PowerMap&, const PowerMap&) = default;
    [[nodiscard]] bool sameRows(const PowerMap& other) const noexcept;
};

class PowerRows {
  public:
    // Instead of a row. No row of a picture is above the first or below the second.
    static constexpr std::int16_t kIrregular = -1;
    static constexpr std::int16_t kNotShown = 0x7FFF;

    /// By position: the row of the top, limited to 0 to `kNotShown` - 1; `kIrregular` for a record that is not regular
    /// and may be anywhere. Only rows that are not known yet are computed.
    [[nodiscard]] const std::vector<std::int16_t>& rows(const std::vector<DrawRecord>& records, const PowerMap& map);
    /// A record of the block has changed. Rows of added records are not known, in any case.
    void forget(std::size_t block) noexcept;
    /// The record at `position` is not visible any more.
    void hide(std::size_t position) noexcept;

  private:
    void resize(std::size_t records);
    void compute(const std::vector<DrawRecord>& records, std::size_t block) noexcept;

    std::vector<std::int16_t> rows_;   ///< by `map_`, in the blocks that are known
    std::vector<std::uint8_t> known_;  ///< by block: not 0 when its rows are known
    PowerMap map_;
};

}  // namespace kv::channels
