#include "formenv/PictureBox.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "raster/Twips.h"
#include "util/RuntimeError.h"

namespace kv::formenv {

using util::RuntimeError;
using util::error_number::kInvalidPropertyValue;
using util::error_number::kOverflow;

namespace {

double finite(double value) {
    if (!std::isfinite(value))
        throw RuntimeError(kOverflow);
    return value;
}

double extent(double value) {
    if (finite(value) == 0.0)
        throw RuntimeError(kInvalidPropertyValue);
    return value;
}

/// Rows of the old picture into the new one, as far as both reach.
void copyOverlap(raster::PixelBuffer from, raster::PixelBuffer to) {
    const int width = std::min(from.width, to.width);
    const int height = std::min(from.height, to.height);
    for (int y = 0; y < height; ++y) {
        const std::uint32_t* source = from.pixels + static_cast<std::ptrdiff_t>(y) * from.stride;
        std::copy(source, source + width, to.pixels + static_cast<std::ptrdiff_t>(y) * to.stride);
    }
}

}  // namespace

PictureBox::PictureBox(Platform& platform, Widget* parent, std::wstring name)
    : Widget(WidgetKind::PictureBox, parent, std::move(name)), platform_(platform) {}

PictureBox::~PictureBox() = default;

raster::PixelSize PictureBox::pixelSize() const noexcept {
    // The edges are rounded, not the size, so that neighbors meet without a gap at any resolution.
    const int dpi = platform_.dpi();
    return {raster::twipsToPixels(left() + width(), dpi) - raster::twipsToPixels(left(), dpi),
            raster::twipsToPixels(top() + height(), dpi) - raster::twipsToPixels(top(), dpi)};
}

raster::PixelSize PictureBox::keptSize() const noexcept {
    const raster::PixelSize size = pixelSize();
    return {std::max(size.width, 1), std::max(size.height, 1)};
}

void PictureBox::setUserScaleMode() noexcept {
    if (userScale_)
        return;
    scale_ = scale();
    if (scale_.width == 0.0)
        scale_.width = 1.0;
    if (scale_.height == 0.0)
        scale_.height = 1.0;
    userScale_ = true;
}

raster::UserScale PictureBox::scale() const noexcept {
    return userScale_ ? scale_ : raster::UserScale{0.0, 0.0, width(), height()};
}

void PictureBox::setScaleLeft(double value) {
    finite(value);
    setUserScaleMode();
    scale_.left = value;
}

void PictureBox::setScaleTop(double value) {
    finite(value);
    setUserScaleMode();
    scale_.top = value;
}

void PictureBox::setScaleWidth(double value) {
    extent(value);
    setUserScaleMode();
    scale_.width = value;
}

void PictureBox::setScaleHeight(double value) {
    extent(value);
    setUserScaleMode();
    scale_.height = value;
}

void PictureBox::setFillStyle(int style) {
    if (style < 0 || style > 7)
        throw RuntimeError(kInvalidPropertyValue);
    drawing_.fillStyle = static_cast<raster::FillStyle>(style);
}

void PictureBox::setDrawWidth(int width) {
    if (width < 1)
        throw RuntimeError(kInvalidPropertyValue);
    drawing_.drawWidth = width;
}

void PictureBox::setFontSize(double points) {
    if (!(points > 0.0))
        throw RuntimeError(kInvalidPropertyValue);
    raster::Font changed = font();
    changed.points = points;
    setFont(changed);
}

Surface& PictureBox::surface() {
    if (!surface_) {
        std::unique_ptr<Surface> made = platform_.createSurface(keptSize());
        made->canvas().clear(platform_.resolve(backColor()));
        if (outgrown_)
            copyOverlap(outgrown_->pixels(), made->pixels());
        outgrown_.reset();
        surface_ = std::move(made);
    }
    return *surface_;
}

raster::Canvas& PictureBox::target() {
    return diverted_ ? *diverted_ : surface().canvas();
}

raster::RasterCanvas* PictureBox::raster() {
    return dynamic_cast<raster::RasterCanvas*>(&target());
}

void PictureBox::storedUpTo(double x, double y) {
    currentX = x;
    currentY = y;
    touched();
}

void PictureBox::placed() {
    if (!surface_)
        return;
    const raster::PixelBuffer old = surface_->pixels();
    if (raster::PixelSize{old.width, old.height} == keptSize())
        return;
    outgrown_ = std::move(surface_);
    try {
        static_cast<void>(surface());
    } catch (...) {
        // The box has its new place all the same, and its window has to be told. The picture is made when it is next
        // drawn on or shown. If there is still no memory, that call fails.
    }
    changed();
}

void PictureBox::touched() {
    blank_ = false;
    changed();
}

void PictureBox::changed() {
    ++changes_;
    if (dirty_) {
        countChange(Change::Picture);
        return;
    }
    if (holds_ > 0) {
        heldBack_ = true;
        countChange(Change::Picture);
        return;
    }
    heldBack_ = false;
    dirty_ = peer() != nullptr;
    tellPeer(Change::Picture);
}

// The change was counted when it was held back.
void PictureBox::showHeldBack() {
    if (!std::exchange(heldBack_, false) || !peer())
        return;
    dirty_ = true;
    peer()->changed(Change::PictureNow);
}

void PictureBox::cls() {
    currentX = scaleLeft();
    currentY = scaleTop();
    target().clear(platform_.resolve(backColor()));
    blank_ = true;
    changed();
}

void PictureBox::setBackColor(raster::OleColor color) {
    Widget::setBackColor(color);
    cls();
}

double PictureBox::userX(int pixel) const noexcept {
    const raster::UserScale s = scale();
    return s.left + pixel * s.width / keptSize().width;
}

double PictureBox::userY(int pixel) const noexcept {
    const raster::UserScale s = scale();
    return s.top + pixel * s.height / keptSize().height;
}

void PictureBox::line(double x1, double y1, double x2, double y2, raster::OleColor color) {
    const raster::PixelMap map = pixelMap();
    target().line({map.x(x1), map.y(y1)}, {map.x(x2), map.y(y2)}, {platform_.resolve(color), drawing_.drawWidth},
                  drawing_.drawMode);
    currentX = x2;
    currentY = y2;
    touched();
}

void PictureBox::box(double x1, double y1, double x2, double y2, raster::OleColor color) {
    drawBox(x1, y1, x2, y2, color, {drawing_.fillStyle, platform_.resolve(drawing_.fillColor)});
}

void PictureBox::filledBox(double x1, double y1, double x2, double y2, raster::OleColor color) {
    drawBox(x1, y1, x2, y2, color, {raster::FillStyle::Solid, platform_.resolve(color)});
}

void PictureBox::drawBox(double x1, double y1, double x2, double y2, raster::OleColor color,
                         const raster::Brush& brush) {
    const raster::PixelMap map = pixelMap();
    const auto [left, right] = std::minmax({map.x(x1), map.x(x2)});
    const auto [top, bottom] = std::minmax({map.y(y1), map.y(y2)});
    target().rectangle({left, top, right + 1, bottom + 1}, {platform_.resolve(color), drawing_.drawWidth}, brush,
                       drawing_.drawMode);
    currentX = x2;
    currentY = y2;
    touched();
}

void PictureBox::strokeLine(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen,
                            raster::DrawMode mode) {
    target().line(from, to, pen, mode);
    touched();
}

void PictureBox::strokeBox(const raster::PixelRect& box, const raster::Pen& pen, const raster::Brush& brush,
                           raster::DrawMode mode) {
    target().rectangle(box, pen, brush, mode);
    touched();
}

void PictureBox::strokeText(raster::PixelPoint at, std::wstring_view text, raster::Rgb color) {
    target().text(at, text, font(), color);
    touched();
}

void PictureBox::print(std::wstring_view text, raster::PixelSize size) {
    const raster::PixelMap map = pixelMap();
    target().text({map.x(currentX), map.y(currentY)}, text, font(), platform_.resolve(foreColor()));
    const double down = scaleHeight() < 0.0 ? -1.0 : 1.0;
    currentX = scaleLeft();
    currentY += down * heightOf(size);
    touched();
}

double PictureBox::widthOf(raster::PixelSize size) const {
    return userScale_ ? std::abs(scale_.width) * size.width / keptSize().width
                      : raster::pixelsToTwips(size.width, platform_.dpi());
}

double PictureBox::heightOf(raster::PixelSize size) const {
    return userScale_ ? std::abs(scale_.height) * size.height / keptSize().height
                      : raster::pixelsToTwips(size.height, platform_.dpi());
}

}  // namespace kv::formenv
