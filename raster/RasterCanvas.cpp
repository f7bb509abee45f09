#include "raster/RasterCanvas.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "raster/PixelWriter.h"

namespace kv::raster {
namespace {

bool isVisible(const PixelRect& area, const PixelBuffer& pixels) {
    return area.left < pixels.width && area.top < pixels.height && area.right > 0 && area.bottom > 0;
}

/// A box of one pixel's width or height; it is not empty.
void drawFlatOutline(const PixelWriter& ink, const PixelRect& box, DrawMode mode) {
    const PixelPoint last{box.right - 1, box.bottom - 1};
    if (last.x == box.left && last.y == box.top) {
        return;
    }
    if (PixelWriter::inverts(mode)) {
        ink.pixel(box.left, box.top);
        ink.pixel(last.x, last.y);
    } else {
        ink.box(box);
    }
}

void drawThinOutline(const PixelWriter& ink, const PixelRect& box) {
    ink.span(box.top, box.left, box.right);
    ink.span(box.bottom - 1, box.left, box.right);
    ink.column(box.left, box.top + 1, box.bottom - 1);
    ink.column(box.right - 1, box.top + 1, box.bottom - 1);
}

/// What an outline of `tip` leaves of the box, seen in a surface; empty where the outline covers all. 64-bit
/// arithmetic, because the box may end where int ends.
PixelRect insideWideOutline(const PixelRect& box, const RoundTip& tip, const PixelBuffer& pixels) {
    const auto clamped = [](std::int64_t value, int limit) {
        return static_cast<int>(std::clamp<std::int64_t>(value, 0, limit));
    };
    return {clamped(std::int64_t{box.left} + tip.after(), pixels.width),
            clamped(std::int64_t{box.top} + tip.after(), pixels.height),
            clamped(std::int64_t{box.right} - 1 - tip.before(), pixels.width),
            clamped(std::int64_t{box.bottom} - 1 - tip.before(), pixels.height)};
}

}  // namespace

RasterCanvas::RasterCanvas(TextPainter& texts, PixelBuffer pixels, const HatchTiles& tiles)
    : texts_(texts), pixels_(pixels.empty() ? PixelBuffer{} : pixels), tiles_(tiles) {}

void RasterCanvas::attach(PixelBuffer pixels) noexcept {
    pixels_ = pixels.empty() ? PixelBuffer{} : pixels;
}

PixelSize RasterCanvas::size() const {
    return {pixels_.width, pixels_.height};
}

void RasterCanvas::clear(Rgb color) {
    PixelWriter(pixels_, color, DrawMode::CopyPen).box({0, 0, pixels_.width, pixels_.height});
}

void RasterCanvas::line(PixelPoint from, PixelPoint to, const Pen& pen, DrawMode mode) {
    const PixelWriter ink(pixels_, pen.color, mode);
    if (pen.width <= 1) {
        drawThinLine(ink, from, to);
    } else {
        tip_.setWidth(pen.width);
        drawWideLine(ink, from, to, tip_);
    }
}

void RasterCanvas::rectangle(PixelRect box, const Pen& pen, const Brush& brush, DrawMode mode) {
    if (box.left > box.right) {
        std::swap(box.left, box.right);
    }
    if (box.top > box.bottom) {
        std::swap(box.top, box.bottom);
    }
    if (box.left == box.right || box.top == box.bottom) {
        return;
    }
    const PixelWriter ink(pixels_, pen.color, mode);
    if (pen.width > 1) {
        tip_.setWidth(pen.width);
        fill(insideWideOutline(box, tip_, pixels_), brush, mode);
        drawWideOutline(ink, {box.left, box.top}, {box.right - 1, box.bottom - 1}, tip_);
        return;
    }
    if (!isVisible(box, pixels_)) {
        return;
    }
    // All coordinates differ by one pixel or more here, so that adding or subtracting one stays in range.
    if (box.right - 1 == box.left || box.bottom - 1 == box.top) {
        drawFlatOutline(ink, box, mode);
    } else if (box.right - 2 == box.left || box.bottom - 2 == box.top) {
        ink.box(box);
    } else {
        drawThinOutline(ink, box);
        fill({box.left + 1, box.top + 1, box.right - 1, box.bottom - 1}, brush, mode);
    }
}

PixelSize RasterCanvas::textSize(std::wstring_view text, const Font& font) {
    return texts_.textSize(text, font);
}

void RasterCanvas::text(PixelPoint at, std::wstring_view text, const Font& font, Rgb color) {
    if (!pixels_.empty()) {
        texts_.draw(pixels_, at, text, font, color);
    }
}

void RasterCanvas::fill(const PixelRect& area, const Brush& brush, DrawMode mode) const {
    if (area.left >= area.right || area.top >= area.bottom) {
        return;
    }
    if (brush.style == FillStyle::Solid) {
        PixelWriter(pixels_, brush.color, mode).box(area);
    } else if (const HatchTile* const tile = tiles_.of(brush.style)) {
        PixelWriter(pixels_, brush.color, mode).hatch(area, *tile);
    }
}

}  // namespace kv::raster
