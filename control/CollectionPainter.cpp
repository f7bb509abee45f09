#include "control/CollectionPainter.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kv::control {

using formenv::PictureBox;
using raster::StandingBoxes;

namespace {

constexpr std::size_t kBlock = channels::ChannelSnapshot::kBlock;
constexpr double kCoarsest = 0.1;       // pixels a step of the grid
constexpr double kFloatMargin = 0.005;  // pixels; columns are reckoned in single precision
constexpr int kNoLevel = -1;

/// By how many pixels a column may be off.
constexpr double marginOf(double perStep) noexcept {
    return perStep + kFloatMargin;
}

}  // namespace

bool CollectionPainter::canPaint(const PictureBox& picture, const raster::RasterCanvas& canvas,
                                 const channels::ChannelSnapshot& snapshot, const PaintedView& view) {
    const raster::PixelMap& map = view.powers.pixels;
    const raster::PixelBuffer& pixels = canvas.pixels();
    const double span = view.maxFreq - view.minFreq;
    return !snapshot.hasUnknownFillStyle() && picture.drawWidth() == 1 && !pixels.empty() &&
           pixels.width <= StandingBoxes::kMost && pixels.height <= StandingBoxes::kMost && map.size.width > 0 &&
           map.size.height > 0 && span > 0.0 && std::isfinite(span) && map.scale.left == view.minFreq &&
           map.scale.width == span && map.scale.height < 0.0 && std::isfinite(view.powers.floor) &&
           map.y(view.powers.markHeight) <= map.y(view.powers.floor);
}

void CollectionPainter::paint(PictureBox& picture, raster::RasterCanvas& canvas, channels::ChannelSnapshot& snapshot,
                              const PaintedView& view, std::size_t first, std::size_t last) {
    snapshot_ = &snapshot;
    picture_ = &picture;
    view_ = view;
    map_ = view.powers.pixels;
    if (!moveToLast(picture, {first, last}))
        return;
    rows_ = snapshot.rows(view.powers).data();
    perMHz_ = map_.size.width / map_.scale.width;
    limit_ = static_cast<float>(canvas.pixels().width + StandingBoxes::kGuard);
    boxes_.begin(canvas.pixels(), canvas.tiles(), map_.y(view.powers.floor), highestLevel());
    for (std::size_t block = (last + kBlock - 1) / kBlock; block-- > first / kBlock;)
        paintBlock(block, {std::max(first, block * kBlock), std::min(last, (block + 1) * kBlock)});
    boxes_.end();
}

bool CollectionPainter::isOut(const channels::ChannelSnapshot::Block& block) const noexcept {
    return !block.hasIrregular && (block.lowest > view_.maxFreq || block.highest < view_.minFreq);
}

bool CollectionPainter::reaches(const channels::DrawRecord& record) const noexcept {
    return record.bVisible && (!view_.onlyFrequencies || record.dFreq > 0.0) &&
           !(record.dFreqLo > view_.maxFreq || record.dFreqHi < view_.minFreq);
}

bool CollectionPainter::moveToLast(PictureBox& picture, Places places) const {
    for (std::size_t place = places.last; place-- > places.first;) {
        const std::size_t block = place / kBlock;
        if (isOut(snapshot_->blocks()[block])) {
            place = std::max(block * kBlock, places.first);
            continue;
        }
        const channels::DrawRecord& record = snapshot_->records()[place];
        if (!reaches(record))
            continue;
        const bool hasLine = record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq;
        const double high = record.dFreqHi > view_.maxFreq ? view_.maxFreq : record.dFreqHi;
        picture.storedUpTo(hasLine ? record.dFreq : high, view_.powers.top(record));
        return true;
    }
    return false;
}

int CollectionPainter::levelOf(std::size_t block) const noexcept {
    const double perStep = snapshot_->grid(block).unit * perMHz_;
    const double width = snapshot_->blocks()[block].widest * perMHz_ + 2.0 * marginOf(perStep);
    if (!(perStep <= kCoarsest) || !(width < (1 << StandingBoxes::kLevels) - 2))
        return kNoLevel;
    return static_cast<int>(std::bit_width(static_cast<unsigned>(width) + 1U));
}

int CollectionPainter::highestLevel() const noexcept {
    int highest = 0;
    for (std::size_t block = 0; block < snapshot_->blocks().size(); ++block)
        highest = std::max(highest, isOut(snapshot_->blocks()[block]) ? 0 : levelOf(block));
    return highest;
}

// Columns count from the grid's step next to the left edge, where single precision is at its best.
CollectionPainter::Columns CollectionPainter::columnsOf(std::size_t block) const noexcept {
    const channels::ChannelSnapshot::Grid& grid = snapshot_->grid(block);
    constexpr double kLast = 1 << channels::ChannelSnapshot::kGridBits;
    const auto base = static_cast<std::int32_t>(std::clamp((view_.minFreq - grid.origin) / grid.unit, 0.0, kLast));
    const double baseColumn = (grid.origin - view_.minFreq + base * grid.unit) * perMHz_;
    const double perStep = grid.unit * perMHz_;
    return {base, static_cast<float>(perStep),
            static_cast<float>(baseColumn + StandingBoxes::kGuard + 0.5 - marginOf(perStep)), levelOf(block)};
}

void CollectionPainter::paintBlock(std::size_t block, Places places) {
    const channels::ChannelSnapshot::Block& known = snapshot_->blocks()[block];
    if (isOut(known))
        return;
    const Columns to = columnsOf(block);
    if (to.level == kNoLevel) {
        paintAll(places);
    } else {
        paintUncovered(to, places);
    }
    if (known.undrawn)
        markDrawn(block, places);
}

void CollectionPainter::paintAll(Places places) {
    const channels::DrawRecord* const records = snapshot_->records().data();
    for (std::size_t place = places.last; place-- > places.first;) {
        if (rows_[place] != channels::ChannelSnapshot::kNotShown)
            paintRecord(records[place]);
    }
}

void CollectionPainter::paintUncovered(const Columns& to, Places places) {
    const std::int32_t* const low = snapshot_->lowOnGrid().data() + places.first;
    const std::size_t count = places.last - places.first;
    std::array<std::int32_t, kBlock> columns;
    for (std::size_t i = 0; i < count; ++i) {
        const float column = static_cast<float>(low[i] - to.base) * to.perStep + to.offset;
        const float least = column > 0.0F ? column : 0.0F;
        columns[i] = static_cast<std::int32_t>(least < limit_ ? least : limit_);
    }
    const channels::DrawRecord* const records = snapshot_->records().data() + places.first;
    const std::int16_t* const rows = rows_ + places.first;
    const std::int16_t* const cover = boxes_.cover(to.level) - StandingBoxes::kGuard;
    for (std::size_t i = count; i-- > 0;) {
        if (rows[i] < cover[columns[i]])
            paintRecord(records[i]);
    }
}

void CollectionPainter::paintRecord(const channels::DrawRecord& record) {
    if (!reaches(record))
        return;
    const int top = map_.y(view_.powers.top(record));
    if (record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq)
        boxes_.line(map_.x(record.dFreq), top, picture_->platform().resolve(record.lColorLine));
    const int low = map_.x(record.dFreqLo < view_.minFreq ? view_.minFreq : record.dFreqLo);
    const int high = map_.x(record.dFreqHi > view_.maxFreq ? view_.maxFreq : record.dFreqHi);
    boxes_.box(std::min(low, high), std::max(low, high), top, static_cast<raster::FillStyle>(record.iFillStyle),
               picture_->platform().resolve(record.lColor));
}

void CollectionPainter::markDrawn(std::size_t block, Places places) {
    bool left = places.first != block * kBlock || places.last != std::min((block + 1) * kBlock, snapshot_->size());
    for (std::size_t place = places.first; place < places.last; ++place) {
        const channels::DrawRecord& record = snapshot_->records()[place];
        if (!record.bVisible || record.bDrawn)
            continue;
        if (reaches(record)) {
            snapshot_->markDrawn(place);
        } else {
            left = true;
        }
    }
    if (!left)
        snapshot_->allDrawn(block);
}

}  // namespace kv::control
