// The reference marker, what is read out of it, and what attracts it and the cursor.
#include "control/Marker.h"

#include "control/Spoken.h"
#include "control/View.h"
#include "tests/unit/Keys.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::HasSubstr;

TEST(DifferenceTextTest, TheUnitFitsTheDifference) {
    EXPECT_EQ(differenceText(2.5, 0.1), L"+2.5 MHz");
    EXPECT_EQ(differenceText(-2.5, 0.1), L"-2.5 MHz");
    EXPECT_EQ(differenceText(0.0125, 0.0001), L"+12.5 kHz");
    EXPECT_EQ(differenceText(-0.00025, 0.000001), L"-250 Hz");
    EXPECT_EQ(differenceText(1.0, 0.5), L"+1.0 MHz");
    EXPECT_EQ(differenceText(0.001, 0.0005), L"+1.0 kHz");
}

TEST(DifferenceTextTest, TheLastDigitIsAtMostAPixel) {
    EXPECT_EQ(differenceText(2.123456789, 1.0), L"+2 MHz");
    EXPECT_EQ(differenceText(2.123456789, 0.5), L"+2.1 MHz");
    EXPECT_EQ(differenceText(2.123456789, 0.01), L"+2.12 MHz");
    EXPECT_EQ(differenceText(2.123456789, 0.009), L"+2.123 MHz");
    EXPECT_EQ(differenceText(0.5, 0.005), L"+500 kHz");
    EXPECT_EQ(differenceText(1234.5, 100.0), L"+1235 MHz") << "whole numbers stay whole";
}

TEST(DifferenceTextTest, WhatIsRoundedToAThousandIsInTheNextUnit) {
    EXPECT_EQ(differenceText(0.9999996, 0.001), L"+1.000 MHz");
    EXPECT_EQ(differenceText(0.000999996, 0.00001), L"+1.00 kHz");
}

TEST(DifferenceTextTest, NoDifferenceHasNoSignAndTheUnitOfAPixel) {
    EXPECT_EQ(differenceText(0.0, 0.5), L"0 kHz");
    EXPECT_EQ(differenceText(0.0, 2.0), L"0 MHz");
    EXPECT_EQ(differenceText(0.0, 1e-7), L"0.0 Hz");
    EXPECT_EQ(differenceText(1e-9, 0.000001), L"0 Hz");
}

/// 350 to 550 MHz on 400 pixels, 0 to 100 dBm on 200, with a box from 440 to 460 MHz and one from 490 to 510.
class MarkerTest : public RangeTest {
  protected:
    void SetUp() override {
        first = addTX(450.0, 10.0, 60.0);
        addRX(500.0, 10.0, 60.0);
        showTwoPixelsAUnit();
        scope.setLCursorColor(0x00A0F0);
        scope.DrawDisplay();
        plain = pixelsOf(ui.picSpectrum);
    }
    bool press(int key, int shift = 0) { return ui.picSpectrum.onKeyDown(key, shift); }
    void click(double x, int shift) {
        ui.picSpectrum.onMouseDown(kLeftButton, shift, x, 50.0);
        ui.picSpectrum.onMouseUp(kLeftButton, shift, x, 50.0);
    }
    /// The columns that differ from the picture without marks.
    std::vector<int> changedColumns() {
        const std::vector<std::uint32_t> now = pixelsOf(ui.picSpectrum);
        std::vector<int> columns;
        for (int x = 0; x < 400; ++x) {
            for (int y = 0; y < 200; ++y) {
                const auto i = static_cast<std::size_t>(y * 400 + x);
                if (now[i] != plain[i]) {
                    columns.push_back(x);
                    break;
                }
            }
        }
        return columns;
    }
    bool isPlain() { return pixelsOf(ui.picSpectrum) == plain; }

    SlotRef first;
    std::vector<std::uint32_t> plain;
    View view{scope};
};

TEST_F(MarkerTest, DPutsItAtTheCursorAndTakesItAwayWithoutATrace) {
    scope.setCursorVal(445.0);
    scope.DrawDisplay();
    EXPECT_TRUE(press(key::kD));
    EXPECT_TRUE(view.isMarkerVisible());
    EXPECT_EQ(view.marker(), 445.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{190});
    EXPECT_TRUE(press(key::kD));
    EXPECT_FALSE(view.isMarkerVisible());
    EXPECT_TRUE(isPlain());
}

TEST_F(MarkerTest, WithoutACursorItAppearsInTheCenter) {
    ui.tdKnMovCursor.setDVal(0.0);
    press(key::kD);
    EXPECT_EQ(view.marker(), 450.0);
}

TEST_F(MarkerTest, AClickWithCtrlPutsItUnderThePointer) {
    click(460.0, 0);
    EXPECT_FALSE(view.isMarkerVisible());
    click(460.0, key::kCtrl);
    EXPECT_TRUE(view.isMarkerVisible());
    EXPECT_EQ(view.marker(), 460.0);
    click(470.0, key::kCtrl);
    EXPECT_EQ(view.marker(), 470.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{240});
    events.heard.clear();
    EXPECT_TRUE(events.heard.empty());
}

TEST_F(MarkerTest, ADragWithCtrlZoomsAndPutsNoMarker) {
    ui.picSpectrum.onMouseDown(kLeftButton, key::kCtrl, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(kLeftButton, key::kCtrl, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(kLeftButton, key::kCtrl, 500.0, 50.0);
    ui.picSpectrum.onMouseUp(kLeftButton, key::kCtrl, 500.0, 50.0);
    EXPECT_FALSE(view.isMarkerVisible());
    expectRange(400.0, 500.0);
}

TEST_F(MarkerTest, AReleaseWithoutAPressIsNoClick) {
    ui.picSpectrum.onMouseUp(kLeftButton, key::kCtrl, 460.0, 50.0);
    EXPECT_FALSE(view.isMarkerVisible());
}

TEST_F(MarkerTest, ItIsDrawnWithEveryDrawing) {
    view.setMarker(470.0);
    view.setMarkerVisible(true);
    scope.DrawDisplay();
    EXPECT_EQ(changedColumns(), std::vector<int>{240});
    scope.Refresh();
    scope.DrawDisplay();
    EXPECT_EQ(changedColumns(), std::vector<int>{240});
    ui.tdKnMovCursor.setDVal(0.0);
    scope.JustDrawIt();
    EXPECT_EQ(changedColumns(), std::vector<int>{240});
}

TEST_F(MarkerTest, ItLeavesNoTraceInAnyEventOfADrawing) {
    for (int event = 1; event <= 8; ++event) {
        view.setMarker(445.5);
        view.setMarkerVisible(true);
        int pumps = 0;
        platform.onPump = [&] {
            if (++pumps == event)
                view.setMarker(495.5);
        };
        scope.DrawDisplay();
        platform.onPump = nullptr;
        ASSERT_GE(pumps, event);
        view.setMarkerVisible(false);
        EXPECT_TRUE(isPlain()) << event;
    }
}

TEST_F(MarkerTest, ItLeavesNoTraceWhateverChangesInBetween) {
    scope.ReDrawChnl(asChannel(first));
    plain = pixelsOf(ui.picSpectrum);
    view.setMarker(445.0);
    view.setMarkerVisible(true);
    scope.setLCursorColor(0x123456);
    scope.setDisplayMaxPwr(80.0);
    scope.setDisplayMaxPwr(100.0);
    scope.ReDrawChnl(asChannel(first));
    EXPECT_EQ(changedColumns(), std::vector<int>{190});
    scope.setCursorVal(445.0);
    EXPECT_EQ(changedColumns(), std::vector<int>{190}) << "both are in one column";
    scope.setCursorVal(400.0);
    EXPECT_EQ(changedColumns(), (std::vector<int>{100, 190}));
    view.setMarkerVisible(false);
    EXPECT_EQ(changedColumns(), std::vector<int>{100});
}

TEST_F(MarkerTest, OutsideOfTheRangeItIsNotDrawnButKept) {
    view.setMarker(600.0);
    view.setMarkerVisible(true);
    EXPECT_TRUE(isPlain());
    view.panBy(100.0);
    scope.DrawByRange(450.0, 450.0);
    EXPECT_EQ(view.marker(), 600.0);
    EXPECT_TRUE(view.isMarkerVisible());
}

TEST_F(MarkerTest, TheReadOutIsTheCursorMinusTheMarker) {
    nameParts(scope);
    scope.setCursorVal(452.5);
    EXPECT_FALSE(ui.lblMarker.visible());
    view.setMarker(450.0);
    view.setMarkerVisible(true);
    EXPECT_TRUE(ui.lblMarker.visible());
    EXPECT_EQ(ui.lblMarker.caption(), L"Cursor - marker: +2.5 MHz");
    scope.setCursorVal(449.5);
    EXPECT_EQ(ui.lblMarker.caption(), L"Cursor - marker: -500 kHz");
    view.showRange(449.0, 451.0);
    EXPECT_EQ(ui.lblMarker.caption(), L"Cursor - marker: -500 kHz");
    view.showRange(449.49, 450.01);
    EXPECT_EQ(ui.lblMarker.caption(), L"Cursor - marker: -500 kHz");
    EXPECT_THAT(ui.picSpectrum.spoken.value(), HasSubstr(L"marker at 450.00000 MHz, Cursor - marker: -500 kHz"));
    view.setMarkerVisible(false);
    EXPECT_FALSE(ui.lblMarker.visible());
}

TEST_F(MarkerTest, TheReadOutStaysInsideThePicture) {
    scope.setCursorVal(452.5);
    view.setMarkerVisible(true);
    for (const double frequency : {350.0, 450.0, 549.0, 200.0, 900.0}) {
        view.setMarker(frequency);
        EXPECT_GE(ui.lblMarker.left(), 0.0) << frequency;
        EXPECT_LE(ui.lblMarker.left() + ui.lblMarker.width(), 6000.0) << frequency;
    }
    view.setMarker(450.0);
    EXPECT_GT(ui.lblMarker.left(), 200 * 15.0) << "beside the line, not over it";
    view.setMarker(540.0);
    EXPECT_LT(ui.lblMarker.left() + ui.lblMarker.width(), 380 * 15.0);
}

TEST_F(MarkerTest, SnappingIsOffAtTheStart) {
    EXPECT_FALSE(view.snapToChannels());
    click(441.0, key::kCtrl);
    EXPECT_EQ(view.marker(), 441.0);
}

TEST_F(MarkerTest, ChannelsWithinSixPixelsAttractTheMarker) {
    view.setSnapToChannels(true);
    click(442.5, key::kCtrl);
    EXPECT_EQ(view.marker(), 440.0) << "an edge";
    click(448.0, key::kCtrl);
    EXPECT_EQ(view.marker(), 450.0) << "a center";
    click(457.5, key::kCtrl);
    EXPECT_EQ(view.marker(), 460.0);
    click(463.0, key::kCtrl);
    EXPECT_EQ(view.marker(), 460.0) << "exactly six pixels";
    click(463.5, key::kCtrl);
    EXPECT_EQ(view.marker(), 463.5);
    first->fields().bVisible = false;
    click(448.0, key::kCtrl);
    EXPECT_EQ(view.marker(), 448.0) << "not seen";
}

TEST_F(MarkerTest, TheNearestOneAttracts) {
    addTX(452.0, 0.5, 10.0);
    view.setSnapToChannels(true);
    click(450.7, key::kCtrl);
    EXPECT_EQ(view.marker(), 450.0);
    click(451.1, key::kCtrl);
    EXPECT_EQ(view.marker(), 451.5);
}

TEST_F(MarkerTest, AStepOfTheCursorIsAttractedAheadAndNeverSticks) {
    view.setSnapToChannels(true);
    scope.setCursorVal(438.0);
    press(key::kRight, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 440.0);
    press(key::kRight, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 441.0) << "the edge is behind";
    for (int i = 0; i < 6; ++i)
        press(key::kRight, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 450.0);
    press(key::kLeft, key::kShift);
    EXPECT_EQ(scope.CursorVal(), 449.0);
    ui.tdKnMovCursor.onValueChanged(1.0);
    EXPECT_EQ(scope.CursorVal(), 450.0);
    ui.tdKnMovCursor.onValueChanged(1.0);
    EXPECT_EQ(scope.CursorVal(), 451.0);
}

TEST_F(MarkerTest, WhatTheHostSetsStaysExact) {
    view.setSnapToChannels(true);
    scope.setCursorVal(441.0);
    EXPECT_EQ(scope.CursorVal(), 441.0);
    view.setMarker(441.0);
    EXPECT_EQ(view.marker(), 441.0);
}

TEST_F(MarkerTest, ARecordThatFailsOnlyEndsTheClick) {
    view.setSnapToChannels(true);
    first->onRead = failsAt("dFreqHi", 440);
    click(448.0, key::kCtrl);
    first->onRead = nullptr;
    EXPECT_FALSE(view.isMarkerVisible());
    ASSERT_FALSE(errors.reports.empty());
    EXPECT_EQ(errors.reports.back().procedure, L"picSpectrum_MouseUp");
    errors.reports.clear();
}

}  // namespace
}  // namespace kv::control
