// The channels of a kind: many of our own at once, a few or foreign ones one by one.
#include <algorithm>

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
        if (const std::optional<PaintedView> view = paintable(kind, true)) {
            paint(kind, *view, 0, store_.snapshot(kind).size());
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
        store_.count(kind) >= nMany_ ? paintable(kind, false) : std::optional<PaintedView>();
    if (!view) {
        for (std::int32_t i = 0; const channels::FreqSlotRef channel = store_.at(kind, i); ++i)
            DrawChnl(*channel);
        return;
    }
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const std::size_t size = snapshot.size();
    // A channel that was hidden since it was drawn is inverted into what the channels before it have painted. It has
    // to be drawn in its turn.
    for (std::size_t first = 0; first < size;) {
        std::size_t last = first;
        while (last < size && !snapshot.isHiddenButDrawn(last))
            ++last;
        if (last - first >= static_cast<std::size_t>(nMany_)) {
            paint(kind, *view, first, last);
            first = last;
        }
        last = std::min(last + 1, size);
        for (; first < last; ++first) {
            if (snapshot.isLive(first))
                DrawChnl(*store_.peek(kind, snapshot.indexOf(first)));
        }
    }
}

/// What painting the channels of a kind all at once needs; nothing when they have to be drawn one by one.
std::optional<PaintedView> SpectrumPainter::paintable(ChannelKind kind, bool onlyFrequencies) {
    if (!range_.isComplete())
        return std::nullopt;
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const raster::RasterCanvas* const canvas = picture_.raster();
    if (!canvas || !snapshot.update(store_, kind))
        return std::nullopt;
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    const PaintedView view{
        minFreq, maxFreq, {picture_.pixelMap(), range_.DisplayMinPwr(), range_.DisplayMaxPwr() / 2.0}, onlyFrequencies};
    if (!CollectionPainter::canPaint(picture_, *canvas, snapshot, view))
        return std::nullopt;
    return view;
}

void SpectrumPainter::paint(ChannelKind kind, const PaintedView& view, std::size_t first, std::size_t last) {
    painter_.paint(picture_, *picture_.raster(), store_.snapshot(kind), view, first, last);
}

}  // namespace kv::control
