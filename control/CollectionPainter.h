// Paints many channels of one kind at once, and of them only what can be seen.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "channels/ChannelSnapshot.h"
#include "control/BoxTops.h"
#include "formenv/PictureBox.h"
#include "raster/StandingBoxes.h"

namespace kv::control {

/// What the picture shows and which of the records are to be drawn.
struct PaintedView {
    double minFreq = 0.0;  ///< MHz, the picture's left edge
    double maxFreq = 0.0;  ///< MHz, its right edge
    channels::ChannelSnapshot::PowerMap powers;
    /// The visible records at any frequency, and those that were hidden since they were drawn, which are inverted.
    /// Otherwise the visible ones at a frequency above 0 alone.
    bool refreshes = false;
    bool tells = true;  ///< the records that are drawn are marked so

    friend bool operator==(const PaintedView&, const PaintedView&) = default;
    [[nodiscard]] bool takes(const channels::DrawRecord& record) const noexcept {
        return refreshes ? isShown(record) : record.bVisible && record.dFreq > 0.0;
    }
    [[nodiscard]] bool reaches(const channels::DrawRecord& record) const noexcept {
        return takes(record) && !(record.dFreqLo > maxFreq || record.dFreqHi < minFreq);
    }
};

/// Leaves the picture, its current position and the marks `bDrawn` of visible records as drawing one record after the
/// other does. Works from the last record to the first, so that nearly all of a large set is found hidden by two small
/// numbers a record: its lower edge and the row of its top.
class CollectionPainter {
  public:
    /// Can this be painted here? Needs one scale for frequencies and picture, powers that grow upwards, and no box that
    /// hangs from the floor into the picture.
    [[nodiscard]] static bool canPaint(const formenv::PictureBox& picture, const raster::RasterCanvas& canvas,
                                       const PaintedView& view);
    /// The place of the first record whose drawing ends with an error, because it has a fill style that the picture box
    /// does not have; the number of places without one.
    [[nodiscard]] static std::size_t firstUnknownStyle(const channels::ChannelSnapshot& snapshot,
                                                       const PaintedView& view);

    /// What the boxes that can be seen are offered to.
    struct Tops {
        BoxTops* tops = nullptr;  ///< null if no labels are drawn
        channels::ChannelKind kind{};
    };
    /// Paints the records at the places up to, without, `last`. None of them has an unknown fill style.
    void paint(formenv::PictureBox& picture, raster::RasterCanvas& canvas, channels::ChannelSnapshot& snapshot,
               const PaintedView& view, std::size_t last, const Tops& tops);

  private:
    struct Places {
        std::size_t first;
        std::size_t last;  ///< left out
    };
    /// The columns that hold every box of a block, wherever its first column begins: a window of 2 to the `level`
    /// columns, or else segments of 2 to the `segments` columns from that of the first column up to that of the column
    /// that is `reach` further right.
    struct Span {
        int level = 0;  ///< `kNoLevel` for segments
        int segments = 0;
        int reach = 0;
    };
    /// From lower edges on the grid of a block to columns, never too far to the right.
    struct Columns {
        std::int32_t base = 0;
        float perStep = 0.0F;
        float offset = 0.0F;
        float limit = 0.0F;  ///< the last column there is
        /// Counted from the first column of the windows that are kept.
        [[nodiscard]] std::int32_t column(std::int32_t low) const noexcept {
            const float exact = static_cast<float>(low - base) * perStep + offset;
            const float least = exact > 0.0F ? exact : 0.0F;
            return static_cast<std::int32_t>(least < limit ? least : limit);
        }
    };
    using BlockColumns = std::array<std::int32_t, channels::ChannelSnapshot::kBlock>;
    /// Records of a block, from the last to the first.
    struct Found {
        std::array<std::uint16_t, channels::ChannelSnapshot::kBlock> positions;  ///< in `Places`
        std::size_t count = 0;
        template <class Predicate>
        void keepIf(Predicate&& predicate) {
            const auto end = positions.begin() + static_cast<std::ptrdiff_t>(count);
            const auto kept = std::remove_if(positions.begin(), end, [&](std::size_t i) { return !predicate(i); });
            count = static_cast<std::size_t>(kept - positions.begin());
        }
    };
    static constexpr int kNoLevel = -1;

    [[nodiscard]] bool isOut(const channels::ChannelSnapshot::Block& block) const noexcept;
    /// Places the current position; false when no record reaches the picture.
    bool moveToLast(formenv::PictureBox& picture, std::size_t last) const;
    [[nodiscard]] raster::StandingBoxes::Covers neededCovers() const noexcept;
    [[nodiscard]] Span spanOf(std::size_t block) const noexcept;
    [[nodiscard]] Columns columnsOf(std::size_t block) const noexcept;
    void paintBlock(std::size_t block, Places places);
    [[nodiscard]] BlockColumns columnsIn(std::size_t block, Places places) const noexcept;
    template <class IsUncovered>
    [[nodiscard]] static Found find(Places places, IsUncovered&& isUncovered);
    /// Paints those of the records for which `isUncovered(position)` still holds when their turn comes.
    template <class IsUncovered>
    void paintFound(const Found& found, Places places, IsUncovered&& isUncovered);
    void paintUncoveredByWindows(std::size_t block, int level, Places places);
    void paintUncoveredBySegments(std::size_t block, const Span& span, Places places);
    void paintRecord(std::size_t place);
    void markDrawn(std::size_t block, Places places);

    formenv::PictureBox* picture_ = nullptr;
    channels::ChannelSnapshot* snapshot_ = nullptr;
    PaintedView view_;
    raster::PixelMap map_;
    int floor_ = 0;    ///< row
    int width_ = 0;    ///< pixels
    int leftEnd_ = 0;  ///< columns of the ends of the view
    int rightEnd_ = 0;
    double perMHz_ = 0.0;  ///< pixels
    const std::int16_t* rows_ = nullptr;
    raster::StandingBoxes boxes_;
    Tops tops_;
};

}  // namespace kv::control
