// What inverting strokes do to pixels that are painted from the topmost stroke down.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "raster/PixelBuffer.h"

namespace kv::raster {

/// A mask of bits for each pixel of a picture. Strokes exchange bits of the masks of what is not painted yet. At the
/// end a pixel's mask is exchanged in whatever was painted below these strokes.
///
/// Nearly all strokes are runs of a column. Of a run only its two ends are noted, so that it takes the same time
/// whatever its length: the mask of a pixel is that of the pixel above it, except where a run starts or ends.
class InvertedPixels {
  public:
    /// All masks are empty.
    void begin(int width, int height);
    /// Exchanges `bits` in the rows from `top` to `bottom`, which is left out; 0 <= `top`, `bottom` <= the height.
    void run(int x, int top, int bottom, std::uint32_t bits) noexcept;
    /// The same in every eighth row from `top` on. Throws std::bad_alloc.
    void everyEighth(int x, int top, int bottom, std::uint32_t bits);
    /// The mask of a pixel now. Its cost grows with `y`.
    [[nodiscard]] std::uint32_t at(int x, int y) const noexcept;
    /// Exchanges the masks in the pixels that have no mark. `marks` has a bit a pixel, a row of `marksStride` words, or
    /// is null. Then the masks are used up.
    void exchangeIn(const PixelBuffer& pixels, const std::uint64_t* marks, std::size_t marksStride) noexcept;

  private:
    static constexpr std::size_t kGroup = 8;  ///< columns
    static constexpr std::size_t kWord = 64;  ///< marks
    static constexpr int kPhases = 8;

    [[nodiscard]] std::size_t eighth(int x, int y) const noexcept;
    void note(int x, int row) noexcept;
    void addUp(std::size_t x) noexcept;

    int width_ = 0;
    int height_ = 0;
    std::size_t columnStride_ = 0;
    std::size_t phaseStride_ = 0;
    std::vector<std::int16_t> first_;  ///< by column: the first row that may have a mask; the height without one
    bool hasEighths_ = false;          ///< `eighths_` is in use; most sets have no hatched boxes
    // Column by column: what is exchanged from a row on, in all rows and in every eighth row.
    std::vector<std::uint32_t> changes_;
    std::vector<std::uint32_t> eighths_;  ///< phase by phase in the column
};

}  // namespace kv::raster
