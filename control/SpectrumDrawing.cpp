// Draws the display: grid, labels, cursor line and, by CollectionDrawing.cpp, the channels. Everything is in user units
// of the picture, MHz and dBm; the picture box turns them into pixels.
#include <algorithm>
#include <string>

#include "control/Bandscope.h"
#include "util/NumberFormat.h"
#include "util/Raised.h"
#include "util/RuntimeError.h"

namespace kv::control {

using formenv::KeepDrawing;
using formenv::PictureBox;

namespace {

constexpr int kCrossHatch = 6;
constexpr int kHeavy = 3;  // pixels: middle grid line and ticks
constexpr double kLabelPoints = 8.0;
constexpr double kLabelRoom = 300.0;  // twips under the spectrum
// A host may change the range whenever one of its channels is read: drawing again has to end some time.
constexpr int kMostRepeats = 8;

std::wstring number(std::int32_t value) {
    return std::to_wstring(value);
}

}  // namespace

const std::wstring& Bandscope::FreqLblFormat() {
    if (drawing_.FreqLblFormat.empty())
        drawing_.FreqLblFormat = L"0.000";
    return drawing_.FreqLblFormat;
}

bool Bandscope::DrawDisplay() {
    std::int16_t flag = 100;
    try {
        if (!ScaleDisplay())
            return true;
        formenv::Platform& platform = services_.platform;
        platform.pumpEvents();
        flag = 1100;
        // With the picture go the cursor line and the rubber band, before an event can move them.
        ClearDisplay();
        platform.pumpEvents();
        marks_.takeOff();
        flag = 1200;
        DrawDisplayTX();
        platform.pumpEvents();
        marks_.takeOff();
        flag = 1300;
        DrawDisplayRX();
        platform.pumpEvents();
        platform.pumpEvents();
        marks_.takeOff();
        flag = 1400;
        DrawGrid();
        platform.pumpEvents();
        marks_.takeOff();
        flag = 1500;
        DrawFreqLbls();
        platform.pumpEvents();
        flag = 1600;
        marks_.takeOff();
        showOnKnobs();
        return true;
    } catch (...) {
        services_.errors.ErrHand(flag, L"DrawDisplay", L"kvBandscope.DrawDisplay Flag " + number(flag),
                                 util::currentError());
        return false;
    }
}

void Bandscope::showOnKnobs() {
    showCenter();
    showGridStep();
}

void Bandscope::JustDrawIt() {
    // Called from within a drawing, by an event: the outer one takes care of what comes meanwhile.
    if (drawing_.bDrawing) {
        drawOnce();
        return;
    }
    int repeats = 0;
    do {
        drawing_.bAgain = false;
        drawOnce();
    } while (drawing_.bAgain && drawing_.drawnSpan != displaySpan() && ++repeats < kMostRepeats);
    drawing_.bAgain = false;
}

void Bandscope::drawOnce() {
    std::int16_t flag = 100;
    reported(L"JustDrawIt", L"", flag, [&] {
        const util::Raised drawing(drawing_.bDrawing);
        const bool scaled = applyScale();
        drawing_.drawnSpan = displaySpan();
        flag = 200;
        ClearDisplay();
        ClearDisplayLabels();
        if (!scaled || !hasUsableRange())
            return;
        flag = 300;
        DrawDisplayTX();
        flag = 400;
        DrawDisplayRX();
        flag = 500;
        DrawGrid();
        flag = 600;
        // An event may have drawn the line or the rubber band; a second stroke would take it away.
        marks_.takeOff();
        DrawFreqLbls();
        flag = 700;
        const double cursor = CursorVal();
        if (cursor >= range_.minFreq && cursor <= range_.maxFreq)
            DrawCursorLine(cursor, look_.lCursorColor);
        showOnKnobs();
    });
}

void Bandscope::drawOrClear() {
    DrawDisplay();
    if (range_.maxFreq > range_.minFreq)
        return;
    ClearDisplay();
    ClearDisplayLabels();
}

void Bandscope::DrawInitialDisplay() {
    std::int16_t flag = 100;
    reported(L"DrawInitialDisplay", L"", flag, [&] {
        unsetRange();
        grid_.step = 0.0;
        flag = 200;
        ReScaleChannels();
        flag = 300;
        drawOrClear();
    });
}

// Here the grid lies under the channels, in a full repaint over them; hosts rely on the difference.
void Bandscope::Refresh() {
    std::int16_t flag = 100;
    reported(L"Refresh", L"Error Refreshing Bandscope Display", flag, [&] {
        ClearDisplay();
        flag = 200;
        DrawGrid();
        // Drawing the grid lets events run, which may draw the marks.
        marks_.takeOff();
        flag = 300;
        DrawFreqLbls();
        flag = 400;
        store_.RecalcTXFreqRange();
        store_.RecalcRXFreqRange();
        store_.RecalcFreqRange();
        flag = 500;
        ShowTXLabels(L"");
        ShowRXLabels();
        flag = 600;
        for (const channels::ChannelKind kind : {channels::ChannelKind::TX, channels::ChannelKind::RX})
            refreshCollection(kind);
        showOnKnobs();
    });
}

bool Bandscope::ReDrawChnl(const channels::FreqSlotRef& chnl) {
    try {
        if (chnl) {
            const Marks::Aside aside(marks_);
            DrawChnl(*chnl);
        }
    } catch (...) {
        // A host redraws single channels at will; one that cannot be drawn is simply not there.
        return true;
    }
    return true;
}

void Bandscope::ClearDisplay() {
    ui_.picSpectrum.cls();
    marks_.forget();
}

void Bandscope::ClearDisplayLabels() {
    ui_.picUnits.cls();
}

void Bandscope::DrawGrid() {
    const double minPwr = DisplayMinPwr();
    const double maxPwr = DisplayMaxPwr();
    const double minFreq = DisplayMinFreq();
    const double maxFreq = DisplayMaxFreq();
    if (!(maxFreq > minFreq))
        return;
    paintGrid(minFreq, maxFreq, minPwr, maxPwr);
    // Only now, with the picture's drawing properties back in place, may events draw.
    services_.platform.pumpEvents();
}

void Bandscope::paintGrid(double minFreq, double maxFreq, double minPwr, double maxPwr) {
    PictureBox& picture = ui_.picSpectrum;
    const KeepDrawing keep(picture);
    const std::int16_t divisions = nGridX();
    const double step = (maxFreq - minFreq) / divisions;
    for (int i = 0; i <= divisions; ++i) {
        picture.setDrawWidth(i == divisions / 2.0 ? kHeavy : 1);
        const double x = i * step + minFreq;
        if (x >= 0.0)
            picture.line(x, minPwr, x, maxPwr, look_.GridColor);
    }
    if (minFreq < 0.0) {
        picture.setDrawWidth(1);
        picture.setFillStyle(kCrossHatch);
        picture.setFillColor(look_.GridColor);
        picture.box(minFreq, minPwr, 0.0, maxPwr, look_.GridColor);
    }
}

void Bandscope::DrawFreqLbls() {
    const double minFreq = DisplayMinFreq();
    const double maxFreq = DisplayMaxFreq();
    ui_.picUnits.cls();
    ui_.picUnits.setFontSize(kLabelPoints);
    if (!(maxFreq > minFreq))
        return;
    const KeepDrawing keep(ui_.picSpectrum);
    ui_.picSpectrum.setDrawWidth(kHeavy);
    const std::int16_t divisions = nGridX();
    const double step = (maxFreq - minFreq) / divisions;
    for (int i = 0; i <= divisions; i += 2) {
        const double x = i * step + minFreq;
        if (x >= 0.0)
            drawFreqLabel(x);
    }
}

void Bandscope::drawFreqLabel(double x) {
    PictureBox& picture = ui_.picSpectrum;
    PictureBox& strip = ui_.picUnits;
    const double bottom = picture.scaleTop() + picture.scaleHeight();
    picture.line(x, bottom, x, bottom - picture.scaleHeight() / 20.0, picture.foreColor());
    const std::wstring text = util::formatNumber(x, FreqLblFormat());
    const double width = strip.textWidth(text);
    const double share = (x - range_.minFreq) / (range_.maxFreq - range_.minFreq);
    // A long label at the left end would lose its first digit at the strip's edge.
    const double left = std::max(picture.left() + share * picture.width() - width / 2.0, 0.0);
    if (left + width > picture.left() + picture.width())
        return;
    strip.currentX = left;
    strip.currentY = picture.top() + picture.height() + (kLabelRoom - strip.textHeight(text)) / 2.0;
    strip.print(text);
}

void Bandscope::DrawCursorLine(double frequency, raster::OleColor color) {
    const CursorLine line{frequency, DisplayMinPwr(), DisplayMaxPwr(), color};
    // Before the first range the picture's scale means no frequencies.
    if (range_.maxFreq > range_.minFreq)
        marks_.drawCursor(line);
}

}  // namespace kv::control
