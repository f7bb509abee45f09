// Draws the channels of a kind: many at once, a few or foreign ones one by one.
#include <algorithm>
#include <optional>
#include <string>

#include "control/Bandscope.h"
#include "util/RuntimeError.h"

namespace kv::control {

using formenv::KeepDrawing;
using formenv::PictureBox;

namespace {

std::wstring number(std::int32_t value) {
    return std::to_wstring(value);
}

}  // namespace

void Bandscope::DrawDisplayTX() {
    std::int16_t flag = 100;
    std::int32_t kChnl = 0;
    try {
        drawCollection(channels::ChannelKind::TX, flag, kChnl);
    } catch (...) {
        services_.errors.ErrHand(
            flag, L"DrawDisplayTX",
            L"kvBandscope.DrawDisplayTX Flag " + number(flag) + L" kChnl " + number(kChnl) + L" of " + number(NumTX()),
            util::currentError());
    }
}

void Bandscope::DrawDisplayRX() {
    std::int16_t flag = 100;
    std::int32_t kChnl = 0;
    try {
        drawCollection(channels::ChannelKind::RX, flag, kChnl);
    } catch (...) {
        services_.errors.ErrHand(
            flag, L"DrawDisplayRX",
            L"kvBandscope.DrawDisplayRX Flag " + number(flag) + L" kChnl " + number(kChnl) + L" of " + number(NumRX()),
            util::currentError());
    }
}

void Bandscope::drawCollection(channels::ChannelKind kind, std::int16_t& flag, std::int32_t& kChnl) {
    const KeepDrawing keep(ui_.picSpectrum);
    const std::int32_t count = store_.count(kind);
    flag = 200;
    if (count >= drawing_.nMany) {
        if (const std::optional<PaintedView> view = paintable(kind, true)) {
            painter_.paint(ui_.picSpectrum, *ui_.picSpectrum.raster(), store_.snapshot(kind), *view, 0,
                           store_.snapshot(kind).size());
            flag = 300;
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
    flag = 300;
}

void Bandscope::DrawChnl(channels::FreqSlot& channel) {
    const channels::DrawRecord record = channel.drawRecord();
    const double floor = DisplayMinPwr();
    // A channel without power is drawn up to half of the highest power, a fixed mark rather than a flat box.
    const double top = record.dPwrDBM > floor ? record.dPwrDBM : DisplayMaxPwr() / 2.0;
    PictureBox& picture = ui_.picSpectrum;
    const KeepDrawing keep(picture);
    picture.setFillStyle(record.iFillStyle);
    if (!record.bVisible && !record.bDrawn)
        return;
    picture.setDrawMode(record.bVisible ? raster::DrawMode::CopyPen : raster::DrawMode::NotXorPen);
    const double minFreq = DisplayMinFreq();
    const double maxFreq = DisplayMaxFreq();
    if (record.dFreqLo > maxFreq || record.dFreqHi < minFreq)
        return;
    picture.setFillColor(record.lColor);
    const double low = record.dFreqLo < minFreq ? minFreq : record.dFreqLo;
    const double high = record.dFreqHi > maxFreq ? maxFreq : record.dFreqHi;
    picture.box(low, floor, high, top, record.lColor);
    if (record.dFreq >= minFreq && record.dFreq <= maxFreq)
        picture.line(record.dFreq, floor, record.dFreq, top, record.lColorLine);
    channel.setBDrawn(record.bVisible);
}

void Bandscope::refreshCollection(channels::ChannelKind kind) {
    const std::optional<PaintedView> view =
        store_.count(kind) >= drawing_.nMany ? paintable(kind, false) : std::optional<PaintedView>();
    if (!view) {
        for (std::int32_t i = 0; const channels::FreqSlotRef channel = store_.at(kind, i); ++i)
            DrawChnl(*channel);
        return;
    }
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const std::size_t size = snapshot.size();
    // A channel hidden since it was drawn is exchanged with what those before it have painted, hence in its turn.
    for (std::size_t first = 0; first < size;) {
        std::size_t last = first;
        while (last < size && !snapshot.isHiddenButDrawn(last))
            ++last;
        if (last - first >= static_cast<std::size_t>(drawing_.nMany)) {
            painter_.paint(ui_.picSpectrum, *ui_.picSpectrum.raster(), snapshot, *view, first, last);
            first = last;
        }
        last = std::min(last + 1, size);
        for (; first < last; ++first) {
            if (snapshot.isLive(first))
                DrawChnl(*store_.peek(kind, snapshot.indexOf(first)));
        }
    }
}

std::optional<PaintedView> Bandscope::paintable(channels::ChannelKind kind, bool onlyFrequencies) {
    PictureBox& picture = ui_.picSpectrum;
    if (channels::isUnsetMinimum(range_.minFreq) || channels::isUnsetFrequency(range_.maxFreq) ||
        channels::isUnsetMinimum(range_.minPwr) || channels::isUnsetMaxPower(range_.maxPwr) ||
        !(range_.maxFreq > range_.minFreq))
        return std::nullopt;
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind);
    const raster::RasterCanvas* const canvas = picture.raster();
    if (!canvas || !snapshot.update(store_, kind))
        return std::nullopt;
    const double minFreq = DisplayMinFreq();
    const double maxFreq = DisplayMaxFreq();
    const PaintedView view{
        minFreq, maxFreq, {picture.pixelMap(), DisplayMinPwr(), DisplayMaxPwr() / 2.0}, onlyFrequencies};
    if (!CollectionPainter::canPaint(picture, *canvas, snapshot, view))
        return std::nullopt;
    return view;
}

}  // namespace kv::control
