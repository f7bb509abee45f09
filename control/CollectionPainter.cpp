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

int bitsOf(int number) noexcept {
    return static_cast<int>(std::bit_width(static_cast<unsigned>(number)));
}

/// By how many pixels a column may be off.
constexpr double marginOf(double perStep) noexcept {
    return perStep + kFloatMargin;
}

}  // namespace

bool CollectionPainter::canPaint(const PictureBox& picture, const raster::RasterCanvas& canvas,
                                 const PaintedView& view) {
    const raster::PixelMap& map = view.powers.pixels;
    const raster::PixelBuffer& pixels = canvas.pixels();
    const double span = view.maxFreq - view.minFreq;
    // The mark of a record without power may be below the floor. Its box is then below the picture, unless the floor
    // is inside.
    const int floor = map.y(view.powers.floor);
    return picture.drawWidth() == 1 && !pixels.empty() && pixels.width <= StandingBoxes::kMost &&
           pixels.height <= StandingBoxes::kMost && map.size.width > 0 && map.size.height > 0 && span > 0.0 &&
           std::isfinite(span) && map.scale.left == view.minFreq && map.scale.width == span && map.scale.height < 0.0 &&
           std::isfinite(view.powers.floor) && (map.y(view.powers.markHeight) <= floor || floor >= pixels.height);
}

std::size_t CollectionPainter::firstUnknownStyle(const channels::ChannelSnapshot& snapshot, const PaintedView& view) {
    const std::vector<channels::DrawRecord>& records = snapshot.records();
    for (std::size_t block = 0; block < snapshot.blocks().size(); ++block) {
        if (!snapshot.blocks()[block].hasUnknownStyle)
            continue;
        const std::size_t end = std::min((block + 1) * kBlock, records.size());
        for (std::size_t place = block * kBlock; place < end; ++place) {
            // Refreshing sets the style of each record, before it finds that the record is not shown.
            if (hasUnknownFillStyle(records[place]) && (view.refreshes || view.takes(records[place])))
                return place;
        }
    }
    return records.size();
}

void CollectionPainter::paint(PictureBox& picture, raster::RasterCanvas& canvas, channels::ChannelSnapshot& snapshot,
                              const PaintedView& view, std::size_t last) {
    snapshot_ = &snapshot;
    picture_ = &picture;
    view_ = view;
    map_ = view.powers.pixels;
    if (!moveToLast(picture, last))
        return;
    rows_ = snapshot.rows(view.powers).data();
    floor_ = map_.y(view.powers.floor);
    width_ = canvas.pixels().width;
    perMHz_ = map_.size.width / map_.scale.width;
    boxes_.begin(canvas.pixels(), canvas.tiles(), floor_, neededCovers());
    for (std::size_t block = (last + kBlock - 1) / kBlock; block-- > 0;)
        paintBlock(block, {block * kBlock, std::min(last, (block + 1) * kBlock)});
    boxes_.end();
}

bool CollectionPainter::isOut(const channels::ChannelSnapshot::Block& block) const noexcept {
    return !block.hasIrregular && (block.lowest > view_.maxFreq || block.highest < view_.minFreq);
}

bool CollectionPainter::moveToLast(PictureBox& picture, std::size_t last) const {
    for (std::size_t place = last; place-- > 0;) {
        const std::size_t block = place / kBlock;
        if (isOut(snapshot_->blocks()[block])) {
            place = block * kBlock;
            continue;
        }
        const channels::DrawRecord& record = snapshot_->records()[place];
        if (!view_.reaches(record))
            continue;
        const bool hasLine = record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq;
        const double high = record.dFreqHi > view_.maxFreq ? view_.maxFreq : record.dFreqHi;
        picture.storedUpTo(hasLine ? record.dFreq : high, view_.powers.top(record));
        return true;
    }
    return false;
}

StandingBoxes::Covers CollectionPainter::neededCovers() const noexcept {
    StandingBoxes::Covers covers;
    for (std::size_t block = 0; block < snapshot_->blocks().size(); ++block) {
        if (isOut(snapshot_->blocks()[block]))
            continue;
        const int level = spanOf(block).level;
        covers.levels = std::max(covers.levels, level);
        covers.segments = covers.segments || level == kNoLevel;
    }
    return covers;
}

CollectionPainter::Span CollectionPainter::spanOf(std::size_t block) const noexcept {
    constexpr int kSegmentBits = 3;  // a span of segments has up to 2 to this power and two
    constexpr double kWidest = StandingBoxes::kMost + StandingBoxes::kGuard;
    const double perStep = snapshot_->grid(block).unit * perMHz_;
    const double width = snapshot_->blocks()[block].widest * perMHz_ + 2.0 * marginOf(perStep);
    const int highest = std::max(bitsOf(width_ - 1), raster::ColumnMaxima::kLowest);
    if (!(perStep <= kCoarsest))
        return {kNoLevel, highest, width_};
    if (width < (1 << StandingBoxes::kLevels) - 2)
        return {bitsOf(static_cast<int>(width) + 1), 0, 0};
    const int reach = static_cast<int>(std::min(width, kWidest)) + 1;
    const int segments = bitsOf(reach) - kSegmentBits;
    return {kNoLevel, std::clamp(segments, raster::ColumnMaxima::kLowest, highest), reach};
}

// Columns count from the grid's step next to the left edge, where single precision is at its best.
CollectionPainter::Columns CollectionPainter::columnsOf(std::size_t block) const noexcept {
    const channels::ChannelSnapshot::Grid& grid = snapshot_->grid(block);
    constexpr double kLast = 1 << channels::ChannelSnapshot::kGridBits;
    const auto base = static_cast<std::int32_t>(std::clamp((view_.minFreq - grid.origin) / grid.unit, 0.0, kLast));
    const double baseColumn = (grid.origin - view_.minFreq + base * grid.unit) * perMHz_;
    const double perStep = grid.unit * perMHz_;
    return {base, static_cast<float>(perStep),
            static_cast<float>(baseColumn + StandingBoxes::kGuard + 0.5 - marginOf(perStep))};
}

void CollectionPainter::paintBlock(std::size_t block, Places places) {
    const channels::ChannelSnapshot::Block& known = snapshot_->blocks()[block];
    if (isOut(known))
        return;
    const std::int32_t* const low = snapshot_->lowOnGrid().data() + places.first;
    const Columns to = columnsOf(block);
    const auto limit = static_cast<float>(width_ + StandingBoxes::kGuard);
    BlockColumns columns;
    for (std::size_t i = 0; i < places.last - places.first; ++i) {
        const float column = static_cast<float>(low[i] - to.base) * to.perStep + to.offset;
        const float least = column > 0.0F ? column : 0.0F;
        columns[i] = static_cast<std::int32_t>(least < limit ? least : limit);
    }
    if (const Span span = spanOf(block); span.level != kNoLevel) {
        paintUncoveredByWindows(columns, span.level, places);
    } else {
        paintUncoveredBySegments(columns, span, places);
    }
    if (known.undrawn)
        markDrawn(block, places);
}

void CollectionPainter::paintUncoveredByWindows(const BlockColumns& columns, int level, Places places) {
    const channels::DrawRecord* const records = snapshot_->records().data() + places.first;
    const std::int16_t* const rows = rows_ + places.first;
    const std::int16_t* const cover = boxes_.cover(level) - StandingBoxes::kGuard;
    for (std::size_t i = places.last - places.first; i-- > 0;) {
        if (rows[i] < cover[columns[i]])
            paintRecord(records[i]);
    }
}

void CollectionPainter::paintUncoveredBySegments(const BlockColumns& columns, const Span& span, Places places) {
    const channels::DrawRecord* const records = snapshot_->records().data() + places.first;
    const std::int16_t* const rows = rows_ + places.first;
    const std::int16_t* const cover = boxes_.segments().segments(span.segments);
    const bool whole = span.segments == boxes_.segments().highest();
    for (std::size_t i = places.last - places.first; i-- > 0;) {
        const int column = columns[i] - StandingBoxes::kGuard;
        const int first = whole ? 0 : std::max(column, 0) >> span.segments;
        const int last = whole ? 0 : std::min(column + span.reach, width_ - 1) >> span.segments;
        std::int16_t below = 0;
        for (int segment = first; segment <= last; ++segment)
            below = std::max(below, cover[segment]);
        if (rows[i] < below)
            paintRecord(records[i]);
    }
}

void CollectionPainter::paintRecord(const channels::DrawRecord& record) {
    if (!view_.reaches(record))
        return;
    const int top = map_.y(view_.powers.top(record));
    if (top > floor_)
        return;
    const int low = map_.x(record.dFreqLo < view_.minFreq ? view_.minFreq : record.dFreqLo);
    const int high = map_.x(record.dFreqHi > view_.maxFreq ? view_.maxFreq : record.dFreqHi);
    const auto [left, right] = std::minmax(low, high);
    const auto style = static_cast<raster::FillStyle>(record.iFillStyle);
    const raster::Rgb color = picture_->platform().resolve(record.lColor);
    const bool hasLine = record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq;
    const raster::Rgb lineColor = hasLine ? picture_->platform().resolve(record.lColorLine) : 0;
    if (record.bVisible) {
        if (hasLine)
            boxes_.line(map_.x(record.dFreq), top, lineColor);
        boxes_.box(left, right, top, style, color);
    } else {
        if (hasLine)
            boxes_.invertLine(map_.x(record.dFreq), top, lineColor);
        boxes_.invertBox(left, right, top, style, color);
    }
}

void CollectionPainter::markDrawn(std::size_t block, Places places) {
    bool left = places.last != std::min((block + 1) * kBlock, snapshot_->size());
    for (std::size_t place = places.first; place < places.last; ++place) {
        const channels::DrawRecord& record = snapshot_->records()[place];
        if (!record.bVisible || record.bDrawn)
            continue;
        if (view_.reaches(record)) {
            snapshot_->markDrawn(place);
        } else {
            left = true;
        }
    }
    if (!left)
        snapshot_->allDrawn(block);
}

}  // namespace kv::control
