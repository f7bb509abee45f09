// Paints many channels of one kind at once, and of them only what can be seen.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "channels/ChannelSnapshot.h"
#include "formenv/PictureBox.h"
#include "raster/StandingBoxes.h"

namespace kv::control {

/// What the picture shows and which of the visible records are to be drawn.
struct PaintedView {
    double minFreq = 0.0;  ///< MHz, the picture's left edge
    double maxFreq = 0.0;  ///< MHz, its right edge
    channels::ChannelSnapshot::PowerMap powers;
    bool onlyFrequencies = true;  ///< those at a frequency above 0 alone
};

/// Leaves the picture, its current position and the marks `bDrawn` as drawing one record after the other does. Works
/// from the last record to the first, so that nearly all of a large set is found hidden by two small numbers a record:
/// its lower edge and the row of its top.
class CollectionPainter {
  public:
    /// Can this be painted here? Needs fill styles that there are, one scale for frequencies and picture, and powers
    /// that grow upwards.
    [[nodiscard]] static bool canPaint(const formenv::PictureBox& picture, const raster::RasterCanvas& canvas,
                                       const channels::ChannelSnapshot& snapshot, const PaintedView& view);

    /// Paints the visible records at places from `first` up to, without, `last`.
    void paint(formenv::PictureBox& picture, raster::RasterCanvas& canvas, channels::ChannelSnapshot& snapshot,
               const PaintedView& view, std::size_t first, std::size_t last);

  private:
    struct Places {
        std::size_t first;
        std::size_t last;  ///< left out
    };
    /// From lower edges on the grid of a block to columns, never too far to the right.
    struct Columns {
        std::int32_t base = 0;
        float perStep = 0.0F;
        float offset = 0.0F;
        int level = 0;  ///< of the windows that hold every box of the block, wherever its first column begins
    };

    [[nodiscard]] bool isOut(const channels::ChannelSnapshot::Block& block) const noexcept;
    [[nodiscard]] bool reaches(const channels::DrawRecord& record) const noexcept;
    /// Places the current position; false when no record reaches the picture.
    bool moveToLast(formenv::PictureBox& picture, Places places) const;
    [[nodiscard]] int levelOf(std::size_t block) const noexcept;
    [[nodiscard]] int highestLevel() const noexcept;
    [[nodiscard]] Columns columnsOf(std::size_t block) const noexcept;
    void paintBlock(std::size_t block, Places places);
    void paintAll(Places places);
    void paintUncovered(const Columns& to, Places places);
    void paintRecord(const channels::DrawRecord& record);
    void markDrawn(std::size_t block, Places places);

    formenv::PictureBox* picture_ = nullptr;
    channels::ChannelSnapshot* snapshot_ = nullptr;
    PaintedView view_;
    raster::PixelMap map_;
    double perMHz_ = 0.0;  ///< pixels
    float limit_ = 0.0F;   ///< the first column outside the picture, counted from the first one of the covers
    const std::int16_t* rows_ = nullptr;
    raster::StandingBoxes boxes_;
};

}  // namespace kv::control
