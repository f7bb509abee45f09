// What works on the display range before anything has drawn or read it, and on the powers of an empty store.
#include <limits>

#include "tests/unit/Keys.h"
#include "tests/unit/Numbers.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UnreadRangeTest : public RangeTest {};

TEST_F(UnreadRangeTest, NewCenterShiftsTheRangeThatTheChannelsGive) {
    addTX(450.0);
    scope.setDisplayCenterFreq(470.0);
    scope.DrawNewCenterFreq();
    expectRange(370.0, 570.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 470.0);
    scope.DrawDisplay();
    expectRange(370.0, 570.0);
}

TEST_F(UnreadRangeTest, CenterMoverNudgesBeforeTheFirstDrawing) {
    addTX(450.0);
    ui.tdKnMovCenter.onValueChanged(-1.0);
    // A tenth of a twentieth of 200 MHz.
    EXPECT_DOUBLE_EQ(scope.DisplayCenterFreq(), 451.0);
    expectRange(351.0, 551.0);
}

TEST_F(UnreadRangeTest, CursorMoverNudgesBeforeTheFirstDrawing) {
    addTX(450.0);
    ui.tdKnMovCursor.onValueChanged(1.0);
    EXPECT_DOUBLE_EQ(scope.CursorVal(), 451.0);
}

TEST_F(UnreadRangeTest, ArrowKeyPansBeforeTheFirstDrawing) {
    addTX(450.0);
    EXPECT_TRUE(ui.picSpectrum.onKeyDown(key::kRight, 0));
    expectRange(360.0, 560.0);
}

TEST_F(UnreadRangeTest, GridStepChosenBeforeTheFirstDrawingIsDrawnAtOnce) {
    addTX(450.0);
    ui.tdKnGrid.setDVal(1.0);
    ui.tdKnGrid.onValueChanged(1.0);
    expectRange(440.0, 460.0);
}

TEST_F(UnreadRangeTest, StepKeptByTheGridRangeBoxIsDrawnAtOnce) {
    addTX(450.0);
    ui.tdKnGrid.setDVal(2.0);
    ui.cboGridRange.onClick();
    expectRange(430.0, 470.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 430 470", "ChgGridRange"));
}

TEST_F(UnreadRangeTest, EndOfATurnOfTheCenterMoverTellsTheRange) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnMovCenter.onValueChanged(-1.0);
    EXPECT_THAT(events.heard, IsEmpty());
    ui.tdKnMovCenter.onTurnEnd();
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 351 551"));
}

TEST_F(UnreadRangeTest, DoubleClickWithoutARangeDoesNothing) {
    ui.picSpectrum.onDblClick(1, 0, 100.0, 1.0);
    EXPECT_THAT(events.heard, IsEmpty());
    addTX(450.0);
    ui.picSpectrum.onDblClick(1, 0, 100.0, 1.0);
    EXPECT_THAT(events.heard, IsEmpty());
    scope.DrawDisplay();
    expectRange(350.0, 550.0);
}

TEST_F(UnreadRangeTest, PowersReadFromAnEmptyStoreAreDerivedAgain) {
    scope.Refresh();
    EXPECT_EQ(scope.DisplayMinPwr(), 0.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), 3.0);
    addTX(450.0, 1.0, 47.0);
    addTX(451.0, 1.0, -20.0);
    scope.DrawDisplay();
    EXPECT_EQ(scope.DisplayMaxPwr(), 47.0);
    EXPECT_EQ(scope.DisplayMinPwr(), -20.0);
    expectScale({350.0 - 1.0, 47.0, 203.0, -67.0});
    // Those of a channel are kept.
    addTX(452.0, 1.0, 60.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), 47.0);
}

TEST_F(UnreadRangeTest, PowersThatTheHostSetOnAnEmptyStoreAreKept) {
    scope.setDisplayMaxPwr(10.0);
    scope.setDisplayMinPwr(-10.0);
    addTX(450.0, 1.0, 47.0);
    scope.DrawDisplay();
    EXPECT_EQ(scope.DisplayMaxPwr(), 10.0);
    EXPECT_EQ(scope.DisplayMinPwr(), -10.0);
}

TEST_F(UnreadRangeTest, PowerOfZeroWattsIsNoExtreme) {
    addTX(450.0, 1.0, -kInfinity);
    addTX(460.0, 1.0, 20.0);
    addTX(470.0, 1.0, kInfinity);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMin, 20.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, 20.0);
    EXPECT_EQ(scope.extremes().dPwrMin, 0.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 20.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.extremes().dTXPwrDBMMin, 20.0);
    scope.ClearAllChnls();
    addTX(450.0, 1.0, 10.0);
    scope.DrawInitialDisplay();
    EXPECT_EQ(scope.DisplayMinPwr(), 0.0);
}

TEST_F(UnreadRangeTest, DrawByRangeSetsTheScaleOfTheChannelsWhereTheBoundsGiveNone) {
    addTX(440.0);
    addTX(460.0);
    scope.setFreqEndBuffer(100.0);
    scope.DrawByRange(550.0, 350.0);
    EXPECT_EQ(scope.DisplayMinFreq(), 450.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 450.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 440.0);
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), 20.0);
}

TEST_F(UnreadRangeTest, DrawingShowsTheCenterOnItsKnob) {
    addTX(450.0);
    scope.DrawDisplay();
    EXPECT_EQ(ui.tdKnMovCenter.sValText(), L"450.00000");
    scope.DrawInitialDisplay();
    EXPECT_EQ(ui.tdKnMovCenter.sValText(), L"450.00000");
    addTX(550.0);
    scope.DrawInitialDisplay();
    EXPECT_EQ(ui.tdKnMovCenter.sValText(), L"500.00000");
    scope.JustDrawIt();
    EXPECT_EQ(ui.tdKnMovCenter.sValText(), L"500.00000");
}

TEST_F(UnreadRangeTest, ShowAllResetsTheKnobRangesFirst) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnCursor.dMinVal = 7.0;
    ui.tdKnCursor.dMaxVal = 8.0;
    ui.tdKnCursor.dStep = 9.0;
    // No range can be made with this margin: the error comes after the knobs were reset.
    addTX(700.0);
    scope.setFreqEndBuffer(std::numeric_limits<double>::infinity());
    scope.setShowAll(true);
    EXPECT_EQ(takeReport().procedure, L"ShowAll");
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 0.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 1000.0);
    EXPECT_EQ(ui.tdKnCursor.dStep, 100.0);
}

TEST_F(UnreadRangeTest, ShowAllLeavesTheKnobsAtTheNewRange) {
    addTX(450.0);
    scope.DrawDisplay();
    addTX(800.0);
    scope.setShowAll(true);
    EXPECT_EQ(ui.tdKnCursor.dMinVal, scope.DisplayMinFreq());
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, scope.DisplayMaxFreq());
}

class ViewAllTest : public RangeTest {
  protected:
    void tick(bool on) {
        ui.chkViewAllxx.setValue(on ? 1 : 0);
        ui.chkViewAllxx.onClick();
    }
};

TEST_F(ViewAllTest, TickingShowsAllChannelsAndClearingGoesBack) {
    addTX(450.0);
    addTX(460.0);
    scope.setFreqEndBuffer(1.0);
    scope.DrawByRange(452.0, 455.0);
    expectRange(451.0, 456.0);
    tick(true);
    expectRange(449.0, 461.0);
    EXPECT_DOUBLE_EQ(scope.DisplayCenterFreq(), 455.0);
    tick(false);
    expectRange(451.0, 456.0);
    EXPECT_DOUBLE_EQ(scope.DisplayCenterFreq(), 453.5);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 449 461", "ChgFreqRange 451 456"));
    EXPECT_THAT(platform.messages, IsEmpty());
}

TEST_F(ViewAllTest, TickingAnEmptyControlDoesNothing) {
    tick(true);
    tick(false);
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_EQ(scope.DisplayMinFreq(), channels::FREQ_UNSET);
}

TEST_F(ViewAllTest, TickingChangesNothingWhileTheChannelsSpanNoFrequencies) {
    addTX(450.0);
    scope.DrawByRange(440.0, 470.0);
    const auto before = scope.displaySpan();
    tick(true);
    EXPECT_EQ(scope.displaySpan(), before);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(ViewAllTest, TheConfigurationMenuIsThereAndHasOneItem) {
    EXPECT_EQ(ui.mnuConfig.caption(), L"Configuration");
    ASSERT_EQ(ui.mnuConfig.items().size(), 1U);
    EXPECT_EQ(ui.mnuConfig.items()[0]->name(), L"mnuConfigBColor");
    EXPECT_EQ(ui.mnuConfig.items()[0]->caption(), L"Display Background Color");
}

}  // namespace
}  // namespace kv::control
