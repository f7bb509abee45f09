// The drawing procedures: their steps in order, with the moments at which events run.
#include <string>

#include "control/Bandscope.h"

namespace kv::control {

using channels::ChannelKind;

bool Bandscope::DrawDisplay() {
    return util::reported(
        services_.errors, L"DrawDisplay", [&](Step& step) { drawDisplay(step); },
        [](Step step) { return L"kvBandscope.DrawDisplay Flag " + std::to_wstring(step); });
}

void Bandscope::drawDisplay(Step& step) {
    if (!range_.ScaleDisplay())
        return;
    services_.platform.pumpEvents();
    try {
        drawInSteps(step);
    } catch (...) {
        painter_.showHeldBack();
        throw;
    }
    painter_.showHeldBack();
    services_.platform.pumpEvents();
    step = 1600;
    marks_.takeOff();
    knobs_.showRange();
}

// What the steps draw is shown when all are done. What an event draws in between is shown at once.
void Bandscope::drawInSteps(Step& step) {
    step = 1100;
    // The cursor line and the rubber band are cleared with the picture, before an event can move them.
    painter_.holdingBack([this] { ClearDisplay(); });
    pumpEventsAndTakeMarksOff();
    step = 1200;
    drawCollection(ChannelKind::TX, L"DrawDisplayTX", Showing::Later);
    pumpEventsAndTakeMarksOff();
    step = 1300;
    drawCollection(ChannelKind::RX, L"DrawDisplayRX", Showing::Later);
    services_.platform.pumpEvents();
    pumpEventsAndTakeMarksOff();
    step = 1400;
    bool drawn = false;
    painter_.holdingBack([&] { drawn = painter_.DrawGrid(); });
    if (drawn)
        services_.platform.pumpEvents();
    pumpEventsAndTakeMarksOff();
    step = 1500;
    painter_.holdingBack([this] { painter_.DrawFreqLbls(); });
}

void Bandscope::pumpEventsAndTakeMarksOff() {
    services_.platform.pumpEvents();
    marks_.takeOff();
}

void Bandscope::JustDrawIt() {
    painter_.repeatWhileOutdated([this] { drawOnce(); });
}

void Bandscope::drawOnce() {
    reported(L"JustDrawIt", [&](Step& step) { painter_.whileDrawing([&] { drawInOrder(step); }); });
}

void Bandscope::drawInOrder(Step& step) {
    const bool scaled = range_.applyScale();
    painter_.noteDrawnSpan();
    step = 200;
    ClearDisplay();
    ClearDisplayLabels();
    if (!scaled || !range_.isUsable())
        return;
    painter_.beginPicture({CursorVal(), lCursorColor_});
    step = 300;
    DrawDisplayTX();
    step = 400;
    DrawDisplayRX();
    step = 500;
    DrawGrid();
    step = 600;
    // An event may have drawn the line or the rubber band; a second stroke would take it away.
    marks_.takeOff();
    painter_.DrawFreqLbls();
    step = 700;
    if (range_.contains(CursorVal()))
        drawCursorAt(CursorVal());
    painter_.endPicture();
    knobs_.showRange();
}

void Bandscope::drawUnlessDrawing() {
    if (painter_.bDrawing()) {
        painter_.drawAgain();
    } else {
        JustDrawIt();
    }
}

// Events run as they do in a drawing, so that the window shows the picture before the host hears of it.
void Bandscope::drawUnlessCurrent() {
    if (painter_.bDrawing() || !painter_.isPictureCurrent({CursorVal(), lCursorColor_})) {
        drawUnlessDrawing();
        return;
    }
    reported(L"JustDrawIt", [&](Step&) {
        services_.platform.pumpEvents();
        knobs_.showRange();
    });
}

void Bandscope::drawOrClear() {
    DrawDisplay();
    if (range_.hasSpan())
        return;
    ClearDisplay();
    ClearDisplayLabels();
}

void Bandscope::DrawInitialDisplay() {
    reported(L"DrawInitialDisplay", [&](Step& step) {
        range_.unset();
        step = 200;
        ReScaleChannels();
        step = 300;
        drawOrClear();
    });
}

// Here the grid is under the channels, in a full repaint it is over them; hosts rely on the difference.
void Bandscope::Refresh() {
    reported(
        L"Refresh",
        [&](Step& step) {
            ClearDisplay();
            step = 200;
            DrawGrid();
            // Drawing the grid lets events run, which may draw the marks.
            marks_.takeOff();
            step = 300;
            painter_.DrawFreqLbls();
            step = 400;
            recalculateRanges();
            step = 500;
            showSummaries();
            step = 600;
            for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX})
                painter_.refreshCollection(kind);
            knobs_.showRange();
        },
        L"Error Refreshing Bandscope Display");
}

bool Bandscope::ReDrawChnl(const channels::FreqSlotRef& chnl) {
    try {
        if (chnl) {
            const Marks::Aside aside(marks_);
            painter_.DrawChnl(*chnl);
        }
    } catch (...) {
        // A host redraws single channels at will; one that cannot be drawn is simply not there.
        return true;
    }
    return true;
}

void Bandscope::ClearDisplay() {
    painter_.clearPicture();
    marks_.forget();
}

void Bandscope::drawCollection(ChannelKind kind, const wchar_t* procedure, Showing showing) {
    std::int32_t kChnl = 0;
    util::reported(
        services_.errors, procedure,
        [&](Step& step) {
            const auto draw = [&] { painter_.drawCollection(kind, step, kChnl); };
            // Inside the report, because nothing is held back while its message box is open.
            if (showing == Showing::Later) {
                painter_.holdingBack(draw);
            } else {
                draw();
            }
        },
        [&](Step step) {
            return std::wstring(L"kvBandscope.") + procedure + L" Flag " + std::to_wstring(step) + L" kChnl " +
                   std::to_wstring(kChnl) + L" of " + std::to_wstring(store_.count(kind));
        });
}

// Only after the grid, with the picture's drawing properties back in place, may events draw.
void Bandscope::DrawGrid() {
    if (painter_.DrawGrid())
        painter_.amongEvents([this] { services_.platform.pumpEvents(); });
}

void Bandscope::DrawCursorLine(double frequency, raster::OleColor color) {
    const CursorLine line{frequency, DisplayMinPwr(), DisplayMaxPwr(), color};
    // Before the first range the picture's scale means no frequencies.
    if (range_.hasSpan())
        marks_.drawCursor(line);
}

}  // namespace kv::control
