// Grid lines, ticks and frequency labels in the picture.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kRed = 0x000000FF;

class GridDrawing : public testing::Test {
  protected:
    /// A display from `low` to `high` MHz with `divisions`.
    void show(double low, double high, short divisions = 10) {
        scope.setFreqEndBuffer(0.0);
        scope.setNGridX(divisions);
        // A white cursor line, drawn in not-XOR, is not to be seen.
        scope.setLCursorColor(0x00FFFFFF);
        scope.AddTXChnl(channel({.freq = low, .key = L"TXlow", .visible = false}));
        scope.AddTXChnl(channel({.freq = high, .key = L"TXhigh", .visible = false}));
        scope.DrawInitialDisplay();
        ASSERT_EQ(scope.DisplayMinFreq(), low);
        ASSERT_EQ(scope.DisplayMaxFreq(), high);
    }
    /// A display that begins below 0 MHz: -50 to 150.
    void showBelowZero() {
        scope.setFreqEndBuffer(100.0);
        scope.setNGridX(10);
        scope.AddTXChnl(channel({.freq = 50.0, .key = L"TX1", .visible = false}));
        scope.DrawInitialDisplay();
        ASSERT_EQ(scope.DisplayMinFreq(), -50.0);
        ASSERT_EQ(scope.DisplayMaxFreq(), 150.0);
    }
    /// The grid columns at a frequency's place, which may be a pixel off.
    int lineWidthAt(const Picture& picture, double frequency) {
        const int x = plot.column(frequency);
        int width = 0;
        for (int at = x - 3; at <= x + 3; ++at)
            width += plot.isGridColumn(picture, at) ? 1 : 0;
        return width;
    }
    /// Pixels of label text from `left` to `right`.
    int inkIn(const Picture& picture, int left, int right) {
        const Area strip = plot.strip(picture);
        const Area part{std::max(left, 0), strip.top, std::min(right, picture.width - 1), strip.bottom};
        return part.width() * part.height() - picture.count(Plot::kStrip, part);
    }
    int inkAt(const Picture& picture, double frequency) {
        const int x = plot.column(frequency);
        return inkIn(picture, x - 5, x + 5);
    }
    int ticksAt(const Picture& picture, double frequency) {
        const int x = plot.column(frequency);
        return picture.count(Plot::kTick, {std::max(x - 3, plot.spectrum.left), plot.spectrum.top,
                                           std::min(x + 3, plot.spectrum.right), plot.spectrum.bottom});
    }
    Plot plot;
    Scope& scope = plot.scope;
};

TEST_F(GridDrawing, LinesStandAtEveryDivision) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    for (int i = 1; i < 10; ++i)
        EXPECT_EQ(lineWidthAt(picture, 400.0 + 10.0 * i), i == 5 ? 3 : 1) << i;
    EXPECT_EQ(lineWidthAt(picture, 400.0), 1);
    EXPECT_EQ(lineWidthAt(picture, 405.0), 0);
}

TEST_F(GridDrawing, OddNumberOfDivisionsHasNoHeavyLine) {
    show(400.0, 500.0, 5);
    const Picture picture = plot.picture();
    for (int i = 1; i < 5; ++i)
        EXPECT_EQ(lineWidthAt(picture, 400.0 + 20.0 * i), 1) << i;
    EXPECT_EQ(lineWidthAt(picture, 450.0), 0);
}

TEST_F(GridDrawing, HeavyLineMarksTheCenter) {
    show(400.0, 500.0);
    scope.setDisplayCenterFreq(430.0);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(lineWidthAt(plot.picture(), 430.0), 3);
}

TEST_F(GridDrawing, OneDivisionHasItsEdgesOnly) {
    show(400.0, 500.0, 1);
    const Picture picture = plot.picture();
    EXPECT_TRUE(plot.isGridColumn(picture, plot.spectrum.left));
    for (int x = plot.spectrum.left + 1; x < plot.spectrum.right; ++x)
        ASSERT_FALSE(plot.isGridColumn(picture, x)) << x;
}

TEST_F(GridDrawing, ThereAreNoHorizontalLines) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    const int between = plot.column(405.0);
    const Area gap{between - 5, plot.spectrum.top, between + 5, plot.spectrum.bottom};
    EXPECT_EQ(picture.count(Plot::kBack, gap), gap.width() * gap.height());
}

TEST_F(GridDrawing, GridLiesOverTheChannelsInAFullRepaint) {
    show(400.0, 500.0);
    const auto slot =
        channel({.freq = 424.0, .lo = 412.0, .hi = 438.0, .power = 2.0, .key = L"TX1", .color = kRed, .line = kRed});
    scope.AddTXChnl(slot);
    slot->put_iFillStyle(0);
    ASSERT_TRUE(scope.DrawDisplay());
    Picture picture = plot.picture();
    EXPECT_EQ(lineWidthAt(picture, 420.0), 1);
    EXPECT_EQ(lineWidthAt(picture, 430.0), 1);
    scope.JustDrawIt();
    EXPECT_TRUE(plot.picture() == picture);
}

TEST_F(GridDrawing, GridLiesUnderTheChannelsAfterARefresh) {
    show(400.0, 500.0);
    const auto slot =
        channel({.freq = 424.0, .lo = 412.0, .hi = 438.0, .power = 2.0, .key = L"TX1", .color = kRed, .line = kRed});
    scope.AddTXChnl(slot);
    slot->put_iFillStyle(0);
    scope.Refresh();
    const Picture picture = plot.picture();
    EXPECT_EQ(lineWidthAt(picture, 420.0), 0);
    EXPECT_EQ(lineWidthAt(picture, 430.0), 0);
    EXPECT_EQ(lineWidthAt(picture, 440.0), 1);
    const Area box = *picture.find(kRed, plot.spectrum);
    EXPECT_EQ(picture.count(kRed, box), box.width() * box.height());
}

TEST_F(GridDrawing, RefreshBringsTheLabelsBack) {
    show(400.0, 500.0);
    const Picture drawn = plot.picture();
    scope.ClearDisplay();
    scope.ClearDisplayLabels();
    scope.Refresh();
    EXPECT_TRUE(plot.picture() == drawn);
}

TEST_F(GridDrawing, NoLineStandsBelowZeroAndAFigureMarksIt) {
    showBelowZero();
    const Picture picture = plot.picture();
    const int zero = plot.column(0.0);
    // The figure's hatch has full columns too, but every eighth pixel and nowhere else.
    int hatch = -1;
    for (int x = plot.spectrum.left + 2; x < zero - 1; ++x) {
        if (!plot.isGridColumn(picture, x))
            continue;
        hatch = hatch < 0 ? x % 8 : hatch;
        EXPECT_EQ(x % 8, hatch) << x;
    }
    const Area below{plot.spectrum.left, plot.spectrum.top, zero - 2, plot.spectrum.bottom};
    EXPECT_GT(picture.count(Plot::kGrid, below), below.width() * below.height() / 20);
    EXPECT_GT(picture.count(Plot::kBack, below), below.width() * below.height() / 4);
    for (const double line : {10.0, 30.0, 70.0, 130.0})
        EXPECT_EQ(lineWidthAt(picture, line), 1) << line;
    const int between = plot.column(20.0);
    EXPECT_EQ(picture.count(Plot::kGrid, {between - 3, plot.spectrum.top, between + 3, plot.spectrum.bottom}), 0);
}

TEST_F(GridDrawing, RangeFromZeroUpHasNoFigure) {
    scope.setFreqEndBuffer(50.0);
    scope.setNGridX(10);
    scope.AddTXChnl(channel({.freq = 50.0, .key = L"TX1", .visible = false}));
    scope.DrawInitialDisplay();
    ASSERT_EQ(scope.DisplayMinFreq(), 0.0);
    const Picture picture = plot.picture();
    const Area gap{plot.spectrum.left + 3, plot.spectrum.top, plot.column(10.0) - 3, plot.spectrum.bottom};
    EXPECT_EQ(picture.count(Plot::kGrid, gap), 0);
}

TEST_F(GridDrawing, LabelsStandUnderEverySecondLine) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    for (int i = 0; i < 10; i += 2)
        EXPECT_GT(inkAt(picture, 400.0 + 10.0 * i), 5) << i;
    for (int i = 1; i < 10; i += 2)
        EXPECT_EQ(inkAt(picture, 400.0 + 10.0 * i), 0) << i;
}

TEST_F(GridDrawing, LabelThatWouldPassTheRightEdgeIsLeftOut) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    // Half of the label at 500 MHz would stand right of the spectrum: nothing of it is printed.
    EXPECT_EQ(inkAt(picture, 500.0), 0);
    EXPECT_EQ(inkIn(picture, plot.column(490.0), picture.width - 1), 0);
}

TEST_F(GridDrawing, LabelsBelowZeroAreLeftOut) {
    showBelowZero();
    const Picture picture = plot.picture();
    EXPECT_EQ(inkAt(picture, -50.0), 0);
    EXPECT_EQ(inkAt(picture, -10.0), 0);
    EXPECT_GT(inkAt(picture, 30.0), 5);
    EXPECT_GT(inkAt(picture, 70.0), 5);
}

TEST_F(GridDrawing, TicksStandOverTheLabelsAtTheBottom) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    const int length = plot.spectrum.height() / 20;
    for (int i = 2; i < 10; i += 2)
        EXPECT_NEAR(ticksAt(picture, 400.0 + 10.0 * i), 3 * length, 3 * 3) << i;
    for (int i = 1; i < 10; i += 2)
        EXPECT_EQ(ticksAt(picture, 400.0 + 10.0 * i), 0) << i;
    const Area upper{plot.spectrum.left, plot.spectrum.top, plot.spectrum.right, plot.spectrum.bottom - length - 3};
    EXPECT_EQ(picture.count(Plot::kTick, upper), 0);
}

TEST_F(GridDrawing, LabelsOfTheSameFrequencyLookTheSame) {
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    scope.ClearDisplayLabels();
    EXPECT_EQ(inkIn(plot.picture(), 0, picture.width - 1), 0);
    scope.JustDrawIt();
    EXPECT_TRUE(plot.picture() == picture);
}

TEST_F(GridDrawing, EmptyStoreDrawsNothing) {
    const Picture before = plot.picture();
    ASSERT_TRUE(scope.DrawDisplay());
    scope.Refresh();
    scope.JustDrawIt();
    scope.DrawInitialDisplay();
    scope.DrawNewCenterFreq();
    const Picture picture = plot.picture();
    EXPECT_TRUE(picture == before);
    EXPECT_EQ(picture.count(Plot::kBack, plot.spectrum), plot.spectrum.width() * plot.spectrum.height());
}

TEST_F(GridDrawing, SystemColoursAreResolved) {
    scope.setGridColor(0x8000000DU);
    show(400.0, 500.0);
    const Picture picture = plot.picture();
    EXPECT_GT(picture.count(GetSysColor(COLOR_HIGHLIGHT), plot.spectrum), 5 * plot.spectrum.height());
}

}  // namespace
}  // namespace kv::test
