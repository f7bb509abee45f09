#include "control/SpectrumPainter.h"

#include <algorithm>

#include "util/NumberFormat.h"
#include "util/Raised.h"

namespace kv::control {

using formenv::KeepDrawing;

namespace {

constexpr int kCrossHatch = 6;
constexpr int kHeavy = 3;  // pixels: middle grid line and ticks
constexpr double kLabelPoints = 8.0;
constexpr double kLabelRoom = 300.0;  // twips under the spectrum
constexpr int kMostDrawings = 8;

/// Draws upright lines in one color. A line in the same pixels as the one before is left out, because most of them are
/// when there are more divisions than columns. The current position moves all the same.
class UprightLines {
  public:
    UprightLines(formenv::PictureBox& picture, raster::OleColor color)
        : picture_(picture), color_(color), map_(picture.pixelMap()) {}

    void draw(double x, double from, double to, int width) {
        const int column = map_.x(x);
        if (column == column_ && width == width_) {
            picture_.currentX = x;
            picture_.currentY = to;
            return;
        }
        picture_.setDrawWidth(width);
        picture_.line(x, from, x, to, color_);
        column_ = column;
        width_ = width;
    }

  private:
    formenv::PictureBox& picture_;
    raster::OleColor color_;
    raster::PixelMap map_;
    int column_ = 0;  ///< of the line before
    int width_ = 0;   ///< of the line before, pixels; 0 without one
};

}  // namespace

void SpectrumPainter::repeatWhileOutdated(const std::function<void()>& draw) {
    if (bDrawing_) {
        draw();
        return;
    }
    int drawings = 0;
    do {
        bAgain_ = false;
        draw();
    } while (bAgain_ && drawnSpan_ != range_.span() && ++drawings < kMostDrawings);
    bAgain_ = false;
}

void SpectrumPainter::whileDrawing(const std::function<void()>& body) {
    const util::Raised drawing(bDrawing_);
    body();
}

void SpectrumPainter::holdingBack(const std::function<void()>& step) {
    const formenv::HoldBack picture(picture_);
    const formenv::HoldBack strip(strip_);
    step();
}

void SpectrumPainter::showHeldBack() {
    picture_.showHeldBack();
    strip_.showHeldBack();
}

std::optional<SpectrumPainter::Source> SpectrumPainter::source(const Cursor& cursor) {
    Source now{range_.span(),
               {range_.DisplayMinPwr(), range_.DisplayMaxPwr()},
               range_.nGridX(),
               picture_.scale(),
               GridColor_,
               picture_.foreColor(),
               strip_.foreColor(),
               cursor,
               overlays_.source(store_)};
    for (const auto& [kind, version] :
         {std::pair{channels::ChannelKind::TX, &now.tx}, std::pair{channels::ChannelKind::RX, &now.rx}}) {
        channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
        if (!snapshot.foreign().empty() || !snapshot.update())
            return std::nullopt;
        *version = snapshot.version();
    }
    return now;
}

// The source is that of the beginning, because what changes while the channels are drawn may not be in the picture.
void SpectrumPainter::beginPicture(const Cursor& cursor) {
    drawn_.reset();
    drawing_ = source(cursor);
}

void SpectrumPainter::endPicture() noexcept {
    drawn_ = drawing_;
    drawnStrokes_ = strokes();
}

void SpectrumPainter::amongEvents(const std::function<void()>& events) {
    const Strokes before = strokes();
    events();
    if (strokes() != before)
        drawing_.reset();
}

bool SpectrumPainter::isPictureCurrent(const Cursor& cursor) {
    return drawn_ && drawnStrokes_ == strokes() && drawn_ == source(cursor);
}

void SpectrumPainter::clearPicture() {
    picture_.cls();
    tops_.begin(overlays_.hasChannelLabels() ? picture_.pixelSize().width : 0);
}

void SpectrumPainter::drawOverlays() {
    overlays_.draw(picture_, store_, tops_, [this] { marks_.takeOff(); });
}

bool SpectrumPainter::DrawGrid() {
    const double minPwr = range_.DisplayMinPwr();
    const double maxPwr = range_.DisplayMaxPwr();
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    if (!(maxFreq > minFreq))
        return false;
    paintGrid(minFreq, maxFreq, minPwr, maxPwr);
    return true;
}

void SpectrumPainter::paintGrid(double minFreq, double maxFreq, double minPwr, double maxPwr) {
    const KeepDrawing keep(picture_);
    UprightLines lines(picture_, GridColor_);
    const std::int16_t divisions = range_.nGridX();
    const double step = (maxFreq - minFreq) / divisions;
    for (int i = 0; i <= divisions; ++i) {
        const double x = i * step + minFreq;
        if (x >= 0.0)
            lines.draw(x, minPwr, maxPwr, i == divisions / 2.0 ? kHeavy : 1);
    }
    if (minFreq < 0.0) {
        picture_.setDrawWidth(1);
        picture_.setFillStyle(kCrossHatch);
        picture_.setFillColor(GridColor_);
        picture_.box(minFreq, minPwr, 0.0, maxPwr, GridColor_);
    }
}

// Text takes longer than all the rest of a drawing with few channels.
void SpectrumPainter::DrawFreqLbls() {
    strip_.setFontSize(kLabelPoints);
    const bool areCurrent = drawnLabels_ && *drawnLabels_ == labelSource();
    if (!areCurrent) {
        drawnLabels_.reset();
        strip_.cls();
    }
    paintFreqLbls({.picture = true, .labels = !areCurrent});
    drawnLabels_ = labelSource();
}

SpectrumPainter::LabelSource SpectrumPainter::labelSource() {
    const formenv::Platform& platform = strip_.platform();
    return {{range_.DisplayMinFreq(), range_.DisplayMaxFreq()},
            range_.nGridX(),
            {picture_.left(), picture_.top(), picture_.width(), picture_.height()},
            strip_.scale(),
            strip_.pixelSize(),
            platform.dpi(),
            strip_.font(),
            platform.resolve(strip_.foreColor()),
            platform.resolve(strip_.backColor()),
            strip_.changes()};
}

void SpectrumPainter::paintFreqLbls(const Parts& parts) {
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    strip_.setFontSize(kLabelPoints);
    if (!(maxFreq > minFreq))
        return;
    const KeepDrawing keep(picture_);
    UprightLines ticks(picture_, picture_.foreColor());
    const double bottom = picture_.scaleTop() + picture_.scaleHeight();
    const double top = bottom - picture_.scaleHeight() / 20.0;
    const std::int16_t divisions = range_.nGridX();
    const double step = (maxFreq - minFreq) / divisions;
    for (int i = 0; i <= divisions; i += 2) {
        const double x = i * step + minFreq;
        if (x >= 0.0) {
            if (parts.picture)
                ticks.draw(x, bottom, top, kHeavy);
            if (parts.labels)
                drawFreqLabel(x);
        }
    }
}

void SpectrumPainter::drawFreqLabel(double x) {
    util::formatNumber(x, FreqLblFormat(), label_);
    const raster::PixelSize size = strip_.textPixels(label_);
    const double width = strip_.widthOf(size);
    const auto [minFreq, maxFreq] = range_.span();
    const double share = (x - minFreq) / (maxFreq - minFreq);
    // A long label at the left end would lose its first digit at the strip's edge.
    const double left = std::max(picture_.left() + share * picture_.width() - width / 2.0, 0.0);
    if (left + width > picture_.left() + picture_.width())
        return;
    strip_.currentX = left;
    strip_.currentY = picture_.top() + picture_.height() + (kLabelRoom - strip_.heightOf(size)) / 2.0;
    strip_.print(label_, size);
}

}  // namespace kv::control
