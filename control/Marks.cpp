#include "control/Marks.h"

#include <algorithm>
#include <utility>

namespace kv::control {

using raster::DrawMode;
using raster::FillStyle;

namespace {

constexpr int kMarkerDash = 4;  // pixels

}  // namespace

std::optional<Marks::Stroked> Marks::placed(const CursorLine& line) const {
    const raster::UserScale scale = picture_.scale();
    if (!(line.frequency >= scale.left && line.frequency <= scale.left + scale.width))
        return std::nullopt;
    const int x = picture_.pixelX(line.frequency);
    return Stroked{
        line, {x, picture_.pixelY(line.from)}, {x, picture_.pixelY(line.to)}, picture_.platform().resolve(line.color)};
}

void Marks::drawCursor(const CursorLine& line) {
    takeCursorOff();
    if (const std::optional<Stroked> drawn = placed(line)) {
        stroke(*drawn);
        cursor_ = drawn;
    }
}

void Marks::takeCursorOff() {
    if (const std::optional<Stroked> drawn = std::exchange(cursor_, std::nullopt))
        stroke(*drawn);
}

void Marks::drawMarker(const CursorLine& line) {
    takeMarkerOff();
    if (const std::optional<Stroked> drawn = placed(line)) {
        strokeDashes(*drawn);
        marker_ = drawn;
    }
}

void Marks::takeMarkerOff() {
    if (const std::optional<Stroked> drawn = std::exchange(marker_, std::nullopt))
        strokeDashes(*drawn);
}

void Marks::drawBand(double from, double to) {
    takeBandOff();
    const auto [left, right] = std::minmax({picture_.pixelX(from), picture_.pixelX(to)});
    const Band drawn{from, to, {left, 0, right + 1, picture_.pixelSize().height}};
    stroke(drawn);
    band_ = drawn;
}

void Marks::takeBandOff() {
    if (const std::optional<Band> drawn = std::exchange(band_, std::nullopt))
        stroke(*drawn);
}

void Marks::copyFrom(const Marks& other, double scale) {
    scale_ = scale;
    if (other.cursor_)
        drawCursor(other.cursor_->line);
    if (other.marker_)
        drawMarker(other.marker_->line);
}

void Marks::takeOff() {
    takeCursorOff();
    takeMarkerOff();
    takeBandOff();
}

void Marks::forget() noexcept {
    cursor_.reset();
    marker_.reset();
    band_.reset();
    ++clearings_;
}

void Marks::stroke(const Stroked& cursor) {
    picture_.strokeLine(cursor.from, cursor.to, {cursor.color, 1}, DrawMode::NotXorPen);
}

void Marks::strokeDashes(const Stroked& marker) {
    const int top = std::min(marker.from.y, marker.to.y);
    const int bottom = std::max(marker.from.y, marker.to.y);
    // Nothing shows outside of the picture, however long the line is.
    const int last = std::min(bottom, picture_.pixelSize().height);
    const int dash = std::max(1, raster::toNearestPixel(kMarkerDash * scale_));
    for (int y = std::max(top, 0); y < last; y += 2 * dash) {
        picture_.strokeLine({marker.from.x, y}, {marker.from.x, std::min(y + dash, last)}, {marker.color, 1},
                            DrawMode::NotXorPen);
    }
}

void Marks::stroke(const Band& band) {
    picture_.strokeBox(band.box, {picture_.platform().resolve(picture_.foreColor()), 1}, {FillStyle::Transparent, 0},
                       DrawMode::Invert);
}

Marks::Aside::Aside(Marks& marks) : marks_(marks), clearings_(marks.clearings_) {
    if (marks.cursor_)
        cursor_ = marks.cursor_->line;
    if (marks.marker_)
        marker_ = marks.marker_->line;
    if (marks.band_)
        band_ = std::pair(marks.band_->from, marks.band_->to);
    marks.takeOff();
}

Marks::Aside::~Aside() {
    try {
        putBack();
    } catch (...) {
        // Without memory for the picture there is nothing that a mark could be on.
        marks_.forget();
    }
}

void Marks::Aside::putBack() {
    if (marks_.clearings_ != clearings_)
        return;
    if (cursor_ && !marks_.cursor_)
        marks_.drawCursor(*cursor_);
    if (marker_ && !marks_.marker_)
        marks_.drawMarker(*marker_);
    if (band_ && !marks_.band_)
        marks_.drawBand(band_->first, band_->second);
}

}  // namespace kv::control
