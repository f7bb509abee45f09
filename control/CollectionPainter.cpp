#include "control/CollectionPainter.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "util/Prefetch.h"

namespace kv::control {

using formenv::PictureBox;
using raster::StandingBoxes;

namespace {

constexpr std::size_t kBlock = channels::ChannelSnapshot::kBlock;
constexpr double kCoarsest = 0.1;       // pixels a step of the grid
constexpr double kFloatMargin = 0.005;  // pixels; columns are reckoned in single precision
constexpr std::size_t kAhead = 16;      // records that are being loaded while one is marked

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
                              const PaintedView& view, std::size_t last, const Tops& tops) {
    snapshot_ = &snapshot;
    tops_ = tops;
    picture_ = &picture;
    view_ = view;
    map_ = view.powers.pixels;
    if (!moveToLast(picture, last))
        return;
    rows_ = snapshot.rows(view.powers).data();
    floor_ = map_.y(view.powers.floor);
    leftEnd_ = map_.x(view.minFreq);
    rightEnd_ = map_.x(view.maxFreq);
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
            static_cast<float>(baseColumn + StandingBoxes::kGuard + 0.5 - marginOf(perStep)),
            static_cast<float>(width_ + StandingBoxes::kGuard)};
}

void CollectionPainter::paintBlock(std::size_t block, Places places) {
    const channels::ChannelSnapshot::Block& known = snapshot_->blocks()[block];
    if (isOut(known))
        return;
    if (const Span span = spanOf(block); span.level != kNoLevel) {
        paintUncoveredByWindows(block, span.level, places);
    } else {
        paintUncoveredBySegments(block, span, places);
    }
    if (known.undrawn && view_.tells)
        markDrawn(block, places);
}

CollectionPainter::BlockColumns CollectionPainter::columnsIn(std::size_t block, Places places) const noexcept {
    const std::int32_t* const low = snapshot_->lowOnGrid().data() + places.first;
    const Columns to = columnsOf(block);
    BlockColumns columns;
    for (std::size_t i = 0; i < places.last - places.first; ++i)
        columns[i] = to.column(low[i]);
    return columns;
}

// Without a branch in the loop, because which record is covered cannot be predicted.
template <class IsUncovered>
CollectionPainter::Found CollectionPainter::find(Places places, IsUncovered&& isUncovered) {
    Found found;
    for (std::size_t i = places.last - places.first; i-- > 0;) {
        found.positions[found.count] = static_cast<std::uint16_t>(i);
        found.count += isUncovered(i) ? 1U : 0U;
    }
    return found;
}

template <class IsUncovered>
void CollectionPainter::paintFound(const Found& found, Places places, IsUncovered&& isUncovered) {
    const channels::DrawRecord* const records = snapshot_->records().data() + places.first;
    for (std::size_t i = 0; i < found.count; ++i) {
        const channels::DrawRecord* const record = records + found.positions[i];
        util::prefetch(record);
        util::prefetch(&record->bDrawn);
    }
    for (std::size_t i = 0; i < found.count; ++i) {
        // Those that were painted meanwhile may cover it.
        if (isUncovered(found.positions[i]))
            paintRecord(places.first + found.positions[i]);
    }
}

void CollectionPainter::paintUncoveredByWindows(std::size_t block, int level, Places places) {
    const BlockColumns columns = columnsIn(block, places);
    const std::int16_t* const rows = rows_ + places.first;
    const std::int16_t* const cover = boxes_.cover(level) - StandingBoxes::kGuard;
    const auto isUncovered = [=, &columns](std::size_t i) { return rows[i] < cover[columns[i]]; };
    paintFound(find(places, isUncovered), places, isUncovered);
}

void CollectionPainter::paintUncoveredBySegments(std::size_t block, const Span& span, Places places) {
    const std::int32_t* const low = snapshot_->lowOnGrid().data() + places.first;
    const std::int16_t* const rows = rows_ + places.first;
    const std::int16_t* const cover = boxes_.segments().segments(span.segments);
    const std::int16_t* const anywhere = boxes_.segments().segments(boxes_.segments().highest());
    const auto isUncoveredAnywhere = [=](std::size_t i) { return rows[i] < *anywhere; };
    Found found = find(places, isUncoveredAnywhere);
    if (cover == anywhere) {
        // The columns are not looked at, because the grid of the block may be too coarse for them.
        paintFound(found, places, isUncoveredAnywhere);
        return;
    }
    const Columns to = columnsOf(block);
    const auto isUncovered = [=, this](std::size_t i) {
        const int column = to.column(low[i]) - StandingBoxes::kGuard;
        const int first = std::max(column, 0) >> span.segments;
        const int last = std::min(column + span.reach, width_ - 1) >> span.segments;
        std::int16_t below = 0;
        for (int segment = first; segment <= last; ++segment)
            below = std::max(below, cover[segment]);
        return rows[i] < below;
    };
    found.keepIf(isUncovered);
    paintFound(found, places, isUncovered);
}

void CollectionPainter::paintRecord(std::size_t place) {
    const channels::DrawRecord& record = snapshot_->records()[place];
    if (!view_.reaches(record))
        return;
    // The row of a top above the picture is limited to 0.
    const int row = rows_[place];
    const int top = row > 0 ? row : map_.y(view_.powers.top(record));
    if (top > floor_)
        return;
    const int low = record.dFreqLo < view_.minFreq ? leftEnd_ : map_.x(record.dFreqLo);
    const int high = record.dFreqHi > view_.maxFreq ? rightEnd_ : map_.x(record.dFreqHi);
    const auto [left, right] = std::minmax(low, high);
    const auto style = static_cast<raster::FillStyle>(record.iFillStyle);
    const raster::Rgb color = picture_->platform().resolve(record.lColor);
    const bool hasLine = record.dFreq >= view_.minFreq && record.dFreq <= view_.maxFreq;
    const raster::Rgb lineColor = hasLine ? picture_->platform().resolve(record.lColorLine) : 0;
    const int column = map_.x(record.dFreq);
    if (record.bVisible) {
        if (hasLine)
            boxes_.line(column, top, lineColor);
        boxes_.box(left, right, top, style, color);
        if (tops_.tops && hasLine)
            tops_.tops->offer(column, {view_.powers.top(record), top, left, right, tops_.kind, place});
    } else {
        if (hasLine)
            boxes_.invertLine(column, top, lineColor);
        boxes_.invertBox(left, right, top, style, color);
    }
}

void CollectionPainter::markDrawn(std::size_t block, Places places) {
    bool left = places.last != std::min((block + 1) * kBlock, snapshot_->size());
    for (std::size_t place = places.first; place < places.last; ++place) {
        const channels::DrawRecord& record = snapshot_->records()[place];
        if (!record.bVisible || record.bDrawn)
            continue;
        snapshot_->prefetch(place + kAhead);
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
