// The channels of a kind: many of our own at once, a few or foreign ones one by one.
#include <algorithm>

#include "control/HiddenChannels.h"
#include "control/SpectrumPainter.h"
#include "util/RuntimeError.h"

namespace kv::control {

using channels::ChannelKind;
using formenv::KeepDrawing;

void SpectrumPainter::drawCollection(ChannelKind kind, util::Step& step, std::int32_t& kChnl) {
    const KeepDrawing keep(picture_);
    const std::int32_t count = store_.count(kind);
    step = 200;
    if (count >= nMany_) {
        if (const std::optional<PaintedView> view = paintable(kind, false)) {
            paint(kind, *view, kChnl);
            step = 300;
            return;
        }
    }
    for (kChnl = 1; kChnl <= count; ++kChnl) {
        const channels::FreqSlotRef channel = store_.at(kind, kChnl - 1);
        if (!channel)
            throw util::RuntimeError(util::error_number::kSubscriptOutOfRange);
        if (channel->bVisible() && channel->dFreq() > 0.0)
            DrawChnl(*channel);
    }
    step = 300;
}

void SpectrumPainter::DrawChnl(channels::FreqSlot& channel) {
    const channels::DrawRecord record = channel.drawRecord();
    const double floor = range_.DisplayMinPwr();
    // A channel without power is drawn up to half of the highest power, a fixed mark rather than a flat box.
    const double top = record.dPwrDBM > floor ? record.dPwrDBM : range_.DisplayMaxPwr() / 2.0;
    const KeepDrawing keep(picture_);
    picture_.setFillStyle(record.iFillStyle);
    if (!record.bVisible && !record.bDrawn)
        return;
    picture_.setDrawMode(record.bVisible ? raster::DrawMode::CopyPen : raster::DrawMode::NotXorPen);
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    if (record.dFreqLo > maxFreq || record.dFreqHi < minFreq)
        return;
    picture_.setFillColor(record.lColor);
    const double low = record.dFreqLo < minFreq ? minFreq : record.dFreqLo;
    const double high = record.dFreqHi > maxFreq ? maxFreq : record.dFreqHi;
    picture_.box(low, floor, high, top, record.lColor);
    if (record.dFreq >= minFreq && record.dFreq <= maxFreq)
        picture_.line(record.dFreq, floor, record.dFreq, top, record.lColorLine);
    channel.setBDrawn(record.bVisible);
}

void SpectrumPainter::refreshCollection(ChannelKind kind) {
    const std::optional<PaintedView> view =
        store_.count(kind) >= nMany_ ? paintable(kind, true) : std::optional<PaintedView>();
    if (view) {
        std::int32_t kChnl = 0;
        paint(kind, *view, kChnl);
        return;
    }
    for (std::int32_t i = 0; const channels::FreqSlotRef channel = store_.at(kind, i); ++i)
        DrawChnl(*channel);
}

/// What painting the channels of a kind all at once needs; nothing when they have to be drawn one by one.
std::optional<PaintedView> SpectrumPainter::paintable(ChannelKind kind, bool refreshes) {
    if (!range_.isComplete())
        return std::nullopt;
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const raster::RasterCanvas* const canvas = picture_.raster();
    if (!canvas || !snapshot.update(store_, kind))
        return std::nullopt;
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    const PaintedView view{
        minFreq, maxFreq, {picture_.pixelMap(), range_.DisplayMinPwr(), range_.DisplayMaxPwr() / 2.0}, refreshes};
    if (!CollectionPainter::canPaint(picture_, *canvas, view))
        return std::nullopt;
    return view;
}

/// `kChnl` becomes the number of the channel, from 1, whose drawing ends with an error.
void SpectrumPainter::paint(ChannelKind kind, const PaintedView& view, std::int32_t& kChnl) {
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const std::size_t last = CollectionPainter::firstUnknownStyle(snapshot, view);
    if (view.refreshes) {
        HiddenChannels hidden(store_, kind, view, last);
        painter_.paint(picture_, *picture_.raster(), snapshot, view, last);
        hidden.keep();
    } else {
        painter_.paint(picture_, *picture_.raster(), snapshot, view, last);
    }
    if (last < snapshot.size()) {
        kChnl = snapshot.indexOf(last) + 1;
        DrawChnl(*store_.peek(kind, kChnl - 1));
    }
}

}  // namespace kv::control
