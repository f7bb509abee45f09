// Drawing the picture of the display once more, at another size or on another canvas.
#include <random>

#include "control/PictureCopy.h"
#include "control/View.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

/// A canvas that does not tell that it has pixels. It counts the strokes.
class HiddenPixels final : public raster::Canvas {
  public:
    explicit HiddenPixels(formenv::Surface& surface) : canvas_(surface.canvas()) {}
    [[nodiscard]] raster::PixelSize size() const override { return canvas_.size(); }
    void clear(raster::Rgb color) override { canvas_.clear(color); }
    void line(raster::PixelPoint from, raster::PixelPoint to, const raster::Pen& pen, raster::DrawMode mode) override {
        ++strokes;
        canvas_.line(from, to, pen, mode);
    }
    void rectangle(raster::PixelRect box, const raster::Pen& pen, const raster::Brush& brush,
                   raster::DrawMode mode) override {
        ++strokes;
        canvas_.rectangle(box, pen, brush, mode);
    }
    [[nodiscard]] raster::PixelSize textSize(std::wstring_view text, const raster::Font& font) override {
        return canvas_.textSize(text, font);
    }
    void text(raster::PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) override {
        canvas_.text(at, text, font, color);
    }
    int strokes = 0;

  private:
    raster::Canvas& canvas_;
};

class PictureCopyTest : public ScopeTest {
  protected:
    /// As large as on the screen.
    [[nodiscard]] CopySize shownSize() const { return {ui.picUnits.width(), ui.picUnits.height()}; }
    [[nodiscard]] std::unique_ptr<PictureCopy> copy() {
        return std::make_unique<PictureCopy>(scope.shown(), shownSize(), 96);
    }
    /// The pixels of the spectrum that the strokes of a copy give.
    std::vector<std::uint32_t> drawnByStrokes() {
        const auto made = copy();
        const auto strip = platform.createSurface(made->size());
        const raster::PixelRect place = made->inner();
        const auto inner = platform.createSurface({place.right - place.left, place.bottom - place.top});
        HiddenPixels onStrip(*strip);
        HiddenPixels onInner(*inner);
        made->drawOn(onStrip, onInner, 1.0);
        strokes = onInner.strokes;
        EXPECT_EQ(headless::pixelsOf(strip->pixels()), pixelsOf(ui.picUnits)) << "the strip";
        return headless::pixelsOf(inner->pixels());
    }
    void addRandom(int count, int seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        const auto between = [&](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        for (int i = 0; i < count; ++i) {
            // Narrow ones mostly, as products are.
            const double half = i % 7 == 0 ? between(0.0, 20.0) : between(0.0, 0.3);
            const SlotRef slot = (i % 3 == 0 ? addRX(between(340.0, 560.0), half, between(-20.0, 110.0))
                                             : addTX(between(340.0, 560.0), half, between(-20.0, 110.0)));
            channels::FreqSlotFields& fields = slot->fields();
            fields.lColor = 0x101010U * static_cast<unsigned>(i % 13);
            fields.lColorLine = 0x0000FFU + 0x000500U * static_cast<unsigned>(i % 11);
            fields.iFillStyle = static_cast<std::int16_t>(i % 8);
            fields.bVisible = i % 17 != 0;
        }
    }
    int strokes = 0;
};

TEST_F(PictureCopyTest, HasThePixelsOfTheDisplayAtItsSize) {
    addRandom(60, 1);
    scope.DrawByRange(400.0, 500.0);
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels);
    scope.setMany(1);
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "painted all at once";
}

TEST_F(PictureCopyTest, OfManyChannelsOnlyWhatCanBeSeenIsDrawnAndThePictureIsTheSame) {
    for (const int seed : {1, 2, 3, 4}) {
        scope.ClearAllChnls();
        addRandom(3000, seed);
        scope.DrawByRange(400.0, 500.0);
        EXPECT_EQ(drawnByStrokes(), pixelsOf(ui.picSpectrum)) << "seed " << seed;
        EXPECT_LT(strokes, 3000) << "seed " << seed;
    }
}

TEST_F(PictureCopyTest, NothingIsSkippedOfAFew) {
    addRandom(300, 5);
    scope.DrawByRange(400.0, 500.0);
    EXPECT_EQ(drawnByStrokes(), pixelsOf(ui.picSpectrum));
}

TEST_F(PictureCopyTest, OverlaysAndTheMarkerAreCopied) {
    for (const int count : {20, 3000}) {
        scope.ClearAllChnls();
        addRandom(count, 6);
        for (int i = 0; i < 20; ++i)
            addTX(400.0 + 5.0 * i, 0.1, 60.0 + i)->fields().sLabel = L"TX " + std::to_wstring(i);
        Overlays overlays;
        overlays.setPowerAxis(true);
        overlays.setLegend(true);
        overlays.setChannelLabels(true);
        scope.DrawByRange(400.0, 500.0);
        const std::vector<std::uint32_t> plain = pixelsOf(ui.picSpectrum);
        scope.setOverlays(overlays);
        scope.setMarker(450.0, true);
        EXPECT_NE(pixelsOf(ui.picSpectrum), plain);
        EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << count;
        EXPECT_EQ(drawnByStrokes(), pixelsOf(ui.picSpectrum)) << count << " by strokes";
        scope.setOverlays({});
    }
}

TEST_F(PictureCopyTest, TheDisplayAndItsRecordsStayAsTheyAre) {
    const SlotRef slot = addTX(450.0, 5.0, 30.0);
    scope.DrawDisplay();
    const SlotRef added = addTX(452.0, 5.0, 20.0);
    const std::vector<std::uint32_t> before = pixelsOf(ui.picSpectrum);
    const double time = scope.renderTimeMs();
    const int pumps = platform.pumps;
    const std::uint64_t changes = ui.picSpectrum.changes();
    for (const int many : {400, 1}) {
        scope.setMany(many);
        static_cast<void>(copy()->pixels());
        drawnByStrokes();
        EXPECT_FALSE(added->bDrawn());
    }
    EXPECT_TRUE(slot->bDrawn());
    EXPECT_EQ(pixelsOf(ui.picSpectrum), before);
    EXPECT_EQ(ui.picSpectrum.changes(), changes);
    EXPECT_EQ(scope.renderTimeMs(), time);
    EXPECT_EQ(platform.pumps, pumps);
    EXPECT_TRUE(events.heard.empty());
}

TEST_F(PictureCopyTest, TheCursorLineIsDrawnIfItIsOnThePicture) {
    addTX(450.0, 5.0, 30.0);
    scope.DrawDisplay();
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "without it";
    scope.setCursorVal(440.0);
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "with it";
    scope.setLCursorColor(0x00FF00);
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "in the color it has";
}

TEST_F(PictureCopyTest, TheMarkerIsDrawnWithItsDashesAsLongAsOnTheScreen) {
    addTX(450.0, 5.0, 30.0);
    scope.JustDrawIt();
    View view(scope);
    view.setMarker(446.0);
    view.setMarkerVisible(true);
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels);
    const formenv::VectorPicture picture = PictureCopy::vectors(scope.shown(), shownSize(), 960);
    headless::RecordingCanvas strip(picture.size);
    headless::RecordingCanvas inner(
        {picture.inner.right - picture.inner.left, picture.inner.bottom - picture.inner.top});
    picture.draw(strip, inner);
    const raster::PixelMap map{ui.picSpectrum.scale(), inner.size()};
    const std::string x = std::to_string(map.x(446.0));
    EXPECT_THAT(inner.lines(), Contains(HasSubstr("line " + x + ",80 " + x + ",120 pen")));
}

TEST_F(PictureCopyTest, WhatTheHostHasClearedStaysEmpty) {
    addTX(450.0, 5.0, 30.0);
    scope.JustDrawIt();
    scope.ClearDisplayLabels();
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "the labels";
    scope.JustDrawIt();
    scope.ClearDisplay();
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "the spectrum";
    scope.ClearDisplayLabels();
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels) << "both";
}

TEST_F(PictureCopyTest, ABeginningDisplayIsEmpty) {
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels);
    EXPECT_TRUE(channels::isUnsetFrequency(scope.displaySpan().second)) << "no range was derived";
}

TEST_F(PictureCopyTest, AChannelThatEndsTheDrawingEndsTheCopyInTheSameWay) {
    addTX(440.0, 5.0, 30.0);
    addTX(450.0, 5.0, 30.0)->fields().iFillStyle = 99;
    addTX(460.0, 5.0, 30.0);
    scope.DrawInitialDisplay();
    takeReport();
    EXPECT_EQ(copy()->pixels().pixels, PictureCopy::shownPixels(scope.shown()).pixels);
}

TEST_F(PictureCopyTest, MemoryThatRunsOutEndsTheCopy) {
    addTX(440.0, 5.0, 30.0);
    scope.DrawInitialDisplay();
    platform.before = [](std::string_view call) {
        if (call == "createSurface")
            throw util::RuntimeError(util::error_number::kOutOfMemory);
    };
    EXPECT_THROW(static_cast<void>(copy()->pixels()), util::RuntimeError);
    platform.before = nullptr;
}

TEST_F(PictureCopyTest, InVectorsEdgesAreWhereTheMappingOfTheFinerUnitsSays) {
    addTX(450.0, 7.0, 30.0);
    addTX(460.0, 1.0, 0.0);
    scope.DrawByRange(430.0, 470.0);
    const formenv::VectorPicture picture = PictureCopy::vectors(scope.shown(), shownSize(), 600);
    EXPECT_EQ(picture.scale, 6.25);
    const raster::PixelSize inner{picture.inner.right - picture.inner.left, picture.inner.bottom - picture.inner.top};
    const raster::PixelMap map{ui.picSpectrum.scale(), inner};
    EXPECT_NEAR(inner.width, ui.picSpectrum.pixelSize().width * 6.25, 6.25);
    headless::RecordingCanvas strip(picture.size);
    headless::RecordingCanvas onPicture(inner);
    picture.draw(strip, onPicture);
    const std::string edges = "rectangle " + std::to_string(map.x(443.0)) + "," + std::to_string(map.y(30.0)) + " " +
                              std::to_string(map.x(457.0) + 1) + ",";
    EXPECT_THAT(onPicture.lines(), Contains(HasSubstr(edges)));
}

TEST_F(PictureCopyTest, OnAnotherSizeTheSpectrumKeepsItsDistancesToTheEdges) {
    addTX(450.0, 5.0, 30.0);
    scope.DrawInitialDisplay();
    const PictureCopy larger(scope.shown(), {15.0 * 1000, 15.0 * 700}, 96);
    EXPECT_EQ(larger.size(), (raster::PixelSize{1000, 700}));
    const raster::PixelRect place = larger.inner();
    const raster::PixelSize strip = ui.picUnits.pixelSize();
    const raster::PixelSize spectrum = ui.picSpectrum.pixelSize();
    EXPECT_NEAR(1000 - (place.right - place.left), strip.width - spectrum.width, 1);
    EXPECT_NEAR(700 - (place.bottom - place.top), strip.height - spectrum.height, 1);
    EXPECT_EQ(place.left, raster::twipsToPixels(ui.picSpectrum.left(), 96));
    EXPECT_EQ(place.top, raster::twipsToPixels(ui.picSpectrum.top(), 96));
}

}  // namespace
}  // namespace kv::control
