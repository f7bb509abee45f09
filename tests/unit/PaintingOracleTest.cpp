// The picture of random channel sets against a naive painter that draws one thing after the other, as drawing is
// described, with pixels of its own.
#include <algorithm>
#include <cmath>
#include <optional>
#include <random>

#include "headless/BlockTextPainter.h"
#include "raster/RasterCanvas.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using raster::Brush;
using raster::DrawMode;
using raster::FillStyle;
using raster::Pen;

constexpr raster::Rgb kBackground = 0xFFFFFF;
constexpr raster::Rgb kTick = 0x808080;

/// What the picture shows, and the picture.
class NaivePainter {
  public:
    NaivePainter(int width, int height)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
          canvas_(letters_, {pixels_.data(), width, height, width}) {}

    double minFreq = 0.0;
    double maxFreq = 0.0;
    double minPwr = 0.0;
    double maxPwr = 0.0;
    int divisions = 20;
    raster::Rgb gridColor = 0;

    void clear() { canvas_.clear(kBackground); }

    void collection(const std::vector<SlotRef>& slots) {
        for (const SlotRef& slot : slots) {
            if (slot->fields().bVisible && slot->fields().dFreq > 0.0)
                channel(slot->fields());
        }
    }

    /// Draws one record and answers what becomes of its drawn flag.
    bool channel(const channels::FreqSlotFields& f) {
        if (!f.bVisible && !f.bDrawn)
            return f.bDrawn;
        if (f.dFreqLo > maxFreq || f.dFreqHi < minFreq)
            return f.bDrawn;
        const DrawMode mode = f.bVisible ? DrawMode::CopyPen : DrawMode::NotXorPen;
        const double top = f.dPwrDBM <= minPwr ? maxPwr / 2.0 : f.dPwrDBM;
        const double low = std::max(f.dFreqLo, minFreq);
        const double high = std::min(f.dFreqHi, maxFreq);
        box(low, minPwr, high, top, f.lColor, static_cast<FillStyle>(f.iFillStyle), mode);
        if (minFreq <= f.dFreq && f.dFreq <= maxFreq)
            line(f.dFreq, minPwr, f.dFreq, top, f.lColorLine, 1, mode);
        return f.bVisible;
    }

    void grid() {
        for (int i = 0; i <= divisions; ++i) {
            const double x = gridX(i);
            if (x >= 0.0)
                line(x, minPwr, x, maxPwr, gridColor, 2 * i == divisions ? 3 : 1, DrawMode::CopyPen);
        }
        if (minFreq < 0.0)
            box(minFreq, minPwr, 0.0, maxPwr, gridColor, FillStyle::Cross, DrawMode::CopyPen);
    }

    void ticks() {
        const double length = (maxPwr - minPwr) / 20.0;
        for (int i = 0; i <= divisions; i += 2) {
            const double x = gridX(i);
            if (x >= 0.0)
                line(x, minPwr, x, minPwr + length, kTick, 3, DrawMode::CopyPen);
        }
    }

    void cursor(double frequency, raster::Rgb color) {
        if (frequency >= minFreq && frequency <= maxFreq)
            line(frequency, minPwr, frequency, maxPwr, color, 1, DrawMode::NotXorPen);
    }

    const std::vector<std::uint32_t>& pixels() const { return pixels_; }

  private:
    double gridX(int i) const { return i * ((maxFreq - minFreq) / divisions) + minFreq; }
    static int rounded(double value) { return static_cast<int>(std::floor(std::clamp(value, -1e6, 1e6) + 0.5)); }
    int px(double frequency) const { return rounded((frequency - minFreq) / (maxFreq - minFreq) * width_); }
    int py(double power) const { return rounded((power - maxPwr) / (minPwr - maxPwr) * height_); }

    void line(double x1, double y1, double x2, double y2, raster::Rgb color, int width, DrawMode mode) {
        canvas_.line({px(x1), py(y1)}, {px(x2), py(y2)}, Pen{color, width}, mode);
    }
    void box(double x1, double y1, double x2, double y2, raster::Rgb color, FillStyle style, DrawMode mode) {
        const int left = std::min(px(x1), px(x2));
        const int right = std::max(px(x1), px(x2));
        const int top = std::min(py(y1), py(y2));
        const int bottom = std::max(py(y1), py(y2));
        canvas_.rectangle({left, top, right + 1, bottom + 1}, Pen{color, 1}, Brush{style, color}, mode);
    }

    int width_;
    int height_;
    std::vector<std::uint32_t> pixels_;
    headless::BlockTextPainter letters_;
    raster::RasterCanvas canvas_;
};

class PaintingOracleTest : public ScopeTest {
  protected:
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
    bool oneIn(unsigned n) { return random_() % n == 0; }
    std::uint32_t anyColor() { return static_cast<std::uint32_t>(random_()) & 0xFFFFFFU; }

    SlotRef anyChannel(double center, double span, const std::wstring& key) {
        const double frequency = oneIn(12) ? 0.0 : center + between(-0.8, 0.8) * span;
        const double halfBand = oneIn(3) ? between(0.0, 0.002) * span : between(0.0, 0.5) * span;
        const SlotRef slot = makeSlot(frequency, 0.0, between(-30.0, 70.0), key);
        channels::FreqSlotFields& f = slot->fields();
        f.dBW = halfBand * 1000.0;
        if (oneIn(6)) {
            f.dFreqLo = center - between(0.0, 1.2) * span;
            f.dFreqHi = center + between(0.0, 1.2) * span;
        }
        if (oneIn(8))
            f.dPwrDBM = oneIn(2) ? -20.0 : -1000.0;
        f.lColor = anyColor();
        f.lColorLine = anyColor();
        f.bVisible = !oneIn(6);
        f.bDrawn = oneIn(3);
        return slot;
    }

    void fillStore() {
        scope.ClearAllChnls();
        tx_.clear();
        rx_.clear();
        const double center = oneIn(4) ? between(1.0, 60.0) : between(100.0, 6000.0);
        const double span = oneIn(3) ? between(0.01, 1.0) : between(1.0, 150.0);
        const int channels = static_cast<int>(random_() % 12);
        for (int i = 0; i < channels; ++i) {
            const bool tx = oneIn(2);
            const SlotRef slot = anyChannel(center, span, (tx ? L"TX" : L"RX") + std::to_wstring(i));
            (tx ? tx_ : rx_).push_back(slot);
            if (tx)
                scope.AddTXChnl(asChannel(slot));
            else
                scope.AddRXChnl(asChannel(slot));
            // The host may choose another style once the store has set its own.
            if (oneIn(3))
                slot->fields().iFillStyle = static_cast<std::int16_t>(random_() % 8);
        }
        scope.setNGridX(static_cast<std::int16_t>(1 + random_() % 30));
        scope.setFreqEndBuffer(span);
        scope.DrawByRange(std::max(center - span / 2.0, 0.001), center + span / 2.0);
        scope.setGridColor(anyColor());
    }

    NaivePainter painterNow() {
        const raster::PixelBuffer buffer = ui.picSpectrum.surface().pixels();
        NaivePainter painter(buffer.width, buffer.height);
        painter.minFreq = scope.DisplayMinFreq();
        painter.maxFreq = scope.DisplayMaxFreq();
        painter.minPwr = -20.0;
        painter.maxPwr = 60.0;
        painter.divisions = scope.nGridX();
        painter.gridColor = scope.GridColor();
        painter.clear();
        return painter;
    }

    void drawAndCompare() {
        NaivePainter painter = painterNow();
        switch (random_() % 3) {
            case 0:
                painter.collection(tx_);
                painter.collection(rx_);
                painter.grid();
                painter.ticks();
                scope.DrawDisplay();
                break;
            case 1: {
                const std::uint32_t color = anyColor();
                const double cursor = between(painter.minFreq, painter.maxFreq);
                scope.setLCursorColor(color);
                scope.setCursorVal(cursor);
                painter.collection(tx_);
                painter.collection(rx_);
                painter.grid();
                painter.ticks();
                painter.cursor(cursor, color);
                scope.JustDrawIt();
                break;
            }
            default:
                painter.grid();
                painter.ticks();
                refresh(painter);
        }
        const std::vector<std::uint32_t> shown = pixelsOf(ui.picSpectrum);
        const auto [here, there] = std::mismatch(shown.begin(), shown.end(), painter.pixels().begin());
        ASSERT_EQ(shown.size(), painter.pixels().size());
        if (here != shown.end()) {
            const auto at = here - shown.begin();
            const int width = ui.picSpectrum.pixelSize().width;
            FAIL() << "first difference at " << at % width << ',' << at / width << ": " << *here << " and " << *there
                   << ", " << painter.minFreq << " to " << painter.maxFreq << " MHz";
        }
    }

    void refresh(NaivePainter& painter) {
        std::vector<bool> drawn;
        for (const std::vector<SlotRef>* list : {&tx_, &rx_}) {
            for (const SlotRef& slot : *list)
                drawn.push_back(painter.channel(slot->fields()));
        }
        scope.Refresh();
        std::vector<bool> answered;
        for (const std::vector<SlotRef>* list : {&tx_, &rx_}) {
            for (const SlotRef& slot : *list)
                answered.push_back(slot->fields().bDrawn);
        }
        ASSERT_EQ(answered, drawn);
    }

    std::mt19937 random_{19690720};
    std::vector<SlotRef> tx_;
    std::vector<SlotRef> rx_;
};

TEST_F(PaintingOracleTest, RandomChannelSetsMakeTheNaivePaintersPicture) {
    scope.setDisplayMaxPwr(60.0);
    scope.setDisplayMinPwr(-20.0);
    for (int round = 0; round < 1500; ++round) {
        if (round % 50 == 0)
            ui.picSpectrum.move({0.0, 0.0, between(30.0, 4000.0), between(30.0, 2000.0)});
        fillStore();
        ASSERT_LT(scope.DisplayMinFreq(), scope.DisplayMaxFreq());
        for (int drawing = 0; drawing < 2; ++drawing)
            ASSERT_NO_FATAL_FAILURE(drawAndCompare()) << "round " << round;
    }
}

}  // namespace
}  // namespace kv::control
