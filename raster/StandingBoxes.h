// Boxes and lines that all stand on one row, painted from the topmost of them down, so that no pixel is stored twice.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "raster/Canvas.h"
#include "raster/ColumnMaxima.h"
#include "raster/HatchTiles.h"
#include "raster/InvertedPixels.h"
#include "raster/PixelBuffer.h"

namespace kv::raster {

/// Paints what Canvas::rectangle and Canvas::line paint of a sequence of shapes, given in the opposite order: of two
/// shapes, the one given first lies on top. All shapes stand on one row, the floor, which may lie below the picture.
/// Shapes are painted in CopyPen or inverted in NotXorPen.
///
/// Narrow boxes, solid boxes, edges and lines are runs of a column down to the floor, so that one number a column, the
/// top of what is painted without a gap, says which part of a run can still be seen. Top edges and hatches are
/// no runs and are marked pixel by pixel. The runs are stored at the end, row by row, which is the order of the memory.
/// Inverted shapes change what is not painted yet, whatever is painted there afterwards.
class StandingBoxes {
  public:
    /// More columns or rows than this cannot be painted.
    static constexpr int kMost = 16384;
    /// Windows of up to 2 to this power columns have their cover kept.
    static constexpr int kLevels = 7;
    /// Covers include windows that start up to this many columns outside the picture.
    static constexpr int kGuard = 160;

    /// Which covers are kept.
    struct Covers {
        int levels = 0;         ///< those of windows of up to 2 to this power columns
        bool segments = false;  ///< `segments`
    };

    /// Starts a sequence of shapes for these pixels, which must not move until `end`.
    void begin(const PixelBuffer& pixels, const HatchTiles& tiles, int floor, Covers covers);
    /// From the floor up to `top`, which is left out.
    void line(int x, int top, Rgb color) { run(x, top + 1, toPixel(color)); }
    /// Outline and filling of one color, all edges included; `left` <= `right`, `top` <= the floor.
    void box(int left, int right, int top, FillStyle style, Rgb color);
    /// The same shapes inverted.
    void invertLine(int x, int top, Rgb color);
    void invertBox(int left, int right, int top, FillStyle style, Rgb color);
    /// Stores the runs and what was inverted.
    void end();

    /// By window: the rows from the element on, down to the floor, are painted in all its columns. The element at x is
    /// the window of 2 to the `level` columns from column x on. Windows outside the picture hide everything.
    [[nodiscard]] const std::int16_t* cover(int level) const noexcept {
        return covers_[static_cast<std::size_t>(level)].data() + kGuard;
    }
    /// The same by segments of columns of the picture, for boxes that are wider than the largest window.
    [[nodiscard]] const ColumnMaxima& segments() const noexcept { return segments_; }

  private:
    /// From one row of column `x` on, the column has this pixel value.
    struct Step {
        std::uint32_t pixel;
        std::int16_t x;
        std::int32_t next;  ///< of the same row
    };
    static constexpr std::size_t kHatches = 6;
    static constexpr std::size_t kGroup = 8;  ///< columns; their marks are one byte
    static constexpr int kWord = 64;          ///< columns

    /// What the hatches of one style have painted.
    struct Hatched {
        std::vector<std::int16_t> tops;  ///< by column: from this row on
        std::vector<std::int16_t> open;  ///< by `kWord` columns: from this row on there is nothing left to hatch
        std::int16_t openAnywhere = 0;   ///< the greatest of them
    };

    /// Columns of one row that lie side by side; empty at the start.
    struct Stretch {
        std::int16_t first = 1;
        std::int16_t last = 0;
        /// Joins the columns from `left` to `right` with these, or keeps the longer stretch of the two.
        void add(int left, int right) noexcept;
    };

    void run(int x, int top, std::uint32_t pixel);
    void opaque(int left, int right, int top, std::uint32_t pixel);
    void raiseCover(int x, std::int16_t before) noexcept;
    void row(int y, int left, int right, std::uint32_t pixel);
    void hatch(int left, int right, int top, FillStyle style, std::uint32_t pixel);
    void hatchColumn(int x, int first, int bottom, unsigned rows, std::uint32_t pixel);
    void updateOpen(Hatched& hatched, std::size_t word) noexcept;
    void invertRun(int x, int top, std::uint32_t bits) noexcept;
    void invertPixel(int x, int y, std::uint32_t bits) noexcept;
    void invertRow(int y, int left, int right, std::uint32_t bits) noexcept;
    void invertHatch(int left, int right, int top, FillStyle style, std::uint32_t bits);
    std::uint32_t invertedBits(Rgb color);
    void lone(int x, int y, std::uint32_t pixel);
    /// The columns from `kWord` times `word` on that have a bit.
    void loneWord(int y, int word, std::uint64_t columns, std::uint32_t pixel);
    /// Where the bits of these columns of row `y` are.
    [[nodiscard]] std::size_t wordAt(int y, int word) const noexcept {
        return static_cast<std::size_t>(y) * rowStride_ + static_cast<std::size_t>(word);
    }
    void prepareLone();
    void storeRow(int y);

    PixelBuffer pixels_;
    HatchTiles tiles_;
    int floor_ = 0;
    Covers kept_;
    std::array<std::vector<std::int16_t>, kLevels + 1> covers_;
    ColumnMaxima segments_;
    std::vector<std::int32_t> heads_;  ///< by row: the first step
    std::vector<Step> steps_;
    std::vector<std::uint32_t> ink_;   ///< by column: the value that is being stored, top byte set; 0 for none
    std::vector<std::uint8_t> inked_;  ///< by group of columns: there is ink
    bool hasLone_ = false;
    std::size_t rowStride_ = 0;            ///< words
    std::vector<std::uint64_t> lone_;      ///< a bit a pixel, row by row
    std::vector<std::uint64_t> rowsSeen_;  ///< the same: no row needs to look at this pixel any more
    std::vector<Stretch> stretches_;       ///< by row: columns whose bits are all set in `rowsSeen_`
    std::array<Hatched, kHatches> hatched_;
    bool hasInverted_ = false;
    InvertedPixels inverted_;
};

}  // namespace kv::raster
