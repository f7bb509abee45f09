// The channels of a kind: many are painted all at once, a few are drawn one by one.
#include <algorithm>

#include "control/ForeignChannels.h"
#include "control/HiddenChannels.h"
#include "control/SpectrumPainter.h"
#include "control/VisibleChannels.h"
#include "util/RuntimeError.h"

namespace kv::control {

using channels::ChannelKind;
using formenv::KeepDrawing;

void SpectrumPainter::drawCollection(ChannelKind kind, util::Step& step, std::int32_t& kChnl) {
    const KeepDrawing keep(picture_);
    const std::int32_t count = store_.count(kind);
    step = 200;
    tops_.beginKind(kind, store_.arrangement(kind));
    if (count >= nMany_)
        paintAtOnce(kind, false, kChnl);
    while (++kChnl <= count) {
        const std::size_t place = placeForTop(kind, kChnl - 1);
        const channels::FreqSlotRef channel = store_.at(kind, kChnl - 1);
        if (!channel)
            throw util::RuntimeError(util::error_number::kSubscriptOutOfRange);
        const channels::DrawRecord record = channel->visibleRecord();
        if (record.bVisible && record.dFreq > 0.0) {
            DrawChnl(*channel, record);
            offerTop(kind, place, record);
        }
    }
    step = 300;
}

std::size_t SpectrumPainter::placeForTop(ChannelKind kind, std::int32_t index) const noexcept {
    const channels::ChannelList& list = store_.list(kind);
    const auto at = static_cast<std::size_t>(index);
    return tops_.columns() > 0 && at < list.size() ? list.placeOf(at) : 0;
}

void SpectrumPainter::offerTop(ChannelKind kind, std::size_t place, const channels::DrawRecord& record) {
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    if (tops_.columns() == 0 || !record.bVisible || !(record.dFreq >= minFreq && record.dFreq <= maxFreq) ||
        record.dFreqLo > maxFreq || record.dFreqHi < minFreq)
        return;
    const double floor = range_.DisplayMinPwr();
    const double top = record.dPwrDBM > floor ? record.dPwrDBM : range_.DisplayMaxPwr() / 2.0;
    const raster::PixelMap map = picture_.pixelMap();
    const auto [left, right] = std::minmax({map.x(record.dFreqLo), map.x(record.dFreqHi)});
    tops_.offer(map.x(record.dFreq), {top, map.y(top), left, right, kind, place});
}

void SpectrumPainter::DrawChnl(channels::FreqSlot& channel) {
    DrawChnl(channel, channel.drawRecord());
}

void SpectrumPainter::DrawChnl(channels::FreqSlot& channel, const channels::DrawRecord& record) {
    // The host's code that was asked for the record may have drawn them.
    marks_.takeOff();
    if (drawRecord(record) && !isCopy_)
        channel.setBDrawn(record.bVisible);
}

/// False for a record that is not in the picture.
bool SpectrumPainter::drawRecord(const channels::DrawRecord& record) {
    const double floor = range_.DisplayMinPwr();
    // A channel without power is drawn up to half of the highest power, a fixed mark rather than a flat box.
    const double top = record.dPwrDBM > floor ? record.dPwrDBM : range_.DisplayMaxPwr() / 2.0;
    const KeepDrawing keep(picture_);
    picture_.setFillStyle(record.iFillStyle);
    if (!record.bVisible && !record.bDrawn)
        return false;
    picture_.setDrawMode(record.bVisible ? raster::DrawMode::CopyPen : raster::DrawMode::NotXorPen);
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    if (record.dFreqLo > maxFreq || record.dFreqHi < minFreq)
        return false;
    picture_.setFillColor(record.lColor);
    const double low = record.dFreqLo < minFreq ? minFreq : record.dFreqLo;
    const double high = record.dFreqHi > maxFreq ? maxFreq : record.dFreqHi;
    picture_.box(low, floor, high, top, record.lColor);
    if (record.dFreq >= minFreq && record.dFreq <= maxFreq)
        picture_.line(record.dFreq, floor, record.dFreq, top, record.lColorLine);
    return true;
}

void SpectrumPainter::refreshCollection(ChannelKind kind) {
    std::int32_t done = 0;
    tops_.beginKind(kind, store_.arrangement(kind));
    if (store_.count(kind) >= nMany_)
        paintAtOnce(kind, true, done);
    for (; const channels::FreqSlotRef channel = store_.at(kind, done); ++done) {
        const std::size_t place = placeForTop(kind, done);
        const channels::DrawRecord record = channel->drawRecord();
        DrawChnl(*channel, record);
        offerTop(kind, place, record);
    }
}

/// Paints the channels of a kind all at once, as far as that goes. `done` becomes the number of those that have been
/// dealt with; the others have to be drawn one by one. When one of them ends the drawing with an error, `done` is its
/// number, from 1.
void SpectrumPainter::paintAtOnce(ChannelKind kind, bool refreshes, std::int32_t& done) {
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    snapshot.forgetForeign();
    const std::optional<PaintedView> view = paintable(kind, refreshes);
    if (!view)
        return;
    const std::uint64_t arrangement = store_.arrangement(kind);
    const bool hasForeign = !snapshot.foreign().empty();
    const ForeignRead read =
        readForeignChannels(store_, kind, *view, CollectionPainter::firstUnknownStyle(snapshot, *view));
    // The host's code may have changed the range and the places. What it was told belongs to the range from before.
    const bool isAsBefore =
        store_.arrangement(kind) == arrangement && (!hasForeign || view == paintable(kind, refreshes));
    if (isAsBefore) {
        marks_.takeOff();
        const std::size_t last = std::min(read.last, CollectionPainter::firstUnknownStyle(snapshot, *view));
        paint(kind, *view, last);
        done = snapshot.indexOf(last);
    }
    if (read.failed) {
        done = isAsBefore ? snapshot.indexOf(read.stoppedAt) + 1 : 0;
        std::rethrow_exception(read.failed);
    }
}

/// What painting the channels of a kind all at once needs; nothing when they have to be drawn one by one.
std::optional<PaintedView> SpectrumPainter::paintable(ChannelKind kind, bool refreshes) {
    if (!range_.isComplete())
        return std::nullopt;
    const raster::RasterCanvas* const canvas = picture_.raster();
    if ((!canvas && !isCopy_) || !store_.snapshot(kind).update())
        return std::nullopt;
    const double minFreq = range_.DisplayMinFreq();
    const double maxFreq = range_.DisplayMaxFreq();
    const PaintedView view{minFreq,
                           maxFreq,
                           {picture_.pixelMap(), range_.DisplayMinPwr(), range_.DisplayMaxPwr() / 2.0},
                           refreshes,
                           !isCopy_};
    if (canvas && !CollectionPainter::canPaint(picture_, *canvas, view))
        return std::nullopt;
    return view;
}

void SpectrumPainter::paint(ChannelKind kind, const PaintedView& view, std::size_t last) {
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    if (!picture_.raster()) {
        drawVisible(kind, view, last);
        return;
    }
    const CollectionPainter::Tops tops{tops_.columns() > 0 ? &tops_ : nullptr, kind};
    if (!view.refreshes) {
        painter_.paint(picture_, *picture_.raster(), snapshot, view, last, tops);
        return;
    }
    HiddenChannels hidden(store_, kind, view, last);
    painter_.paint(picture_, *picture_.raster(), snapshot, view, last, tops);
    hidden.keep();
}

/// On a canvas without pixels: one stroke after the other, but only what can be seen.
void SpectrumPainter::drawVisible(ChannelKind kind, const PaintedView& view, std::size_t last) {
    const channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    marks_.takeOff();
    for (const std::size_t place : visiblePlaces(snapshot, view, reach_, last)) {
        drawRecord(snapshot.records()[place]);
        offerTop(kind, place, snapshot.records()[place]);
    }
}

}  // namespace kv::control
