// Center and cursor: setting, nudging and turning them.
#include <limits>

#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using CenterCursorTest = RangeTest;

TEST_F(CenterCursorTest, CenterOfZeroOrBelowRecentersOnTheMiddle) {
    addTX(450.0);
    for (const double center : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
        scope.setDisplayCenterFreq(500.0);
        EXPECT_EQ(scope.DisplayCenterFreq(), 500.0);
        scope.setDisplayCenterFreq(center);
        EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
        EXPECT_EQ(ui.tdKnMovCenter.dVal(), 450.0);
    }
}

TEST_F(CenterCursorTest, ANewCenterMovesTheRangeOnlyWithTheNextDrawing) {
    addTX(450.0);
    expectRange(350.0, 550.0);
    scope.setDisplayCenterFreq(470.0);
    expectRange(350.0, 550.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(370.0, 570.0);
}

TEST_F(CenterCursorTest, ACenterSetBeforeTheFirstDrawingCountsInIt) {
    addTX(450.0);
    scope.setDisplayCenterFreq(470.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(370.0, 570.0);
    expectScale({370.0, 3.0, 200.0, -3.0});
}

TEST_F(CenterCursorTest, DrawNewCenterFreqShiftsTheRangeAndKeepsTheSpan) {
    addTX(450.0);
    scope.DrawDisplay();
    scope.setDisplayCenterFreq(1000.0);
    scope.DrawNewCenterFreq();
    expectRange(900.0, 1100.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 900.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(CenterCursorTest, JustDrawItDoesNotRecenter) {
    addTX(450.0);
    scope.DrawDisplay();
    scope.setDisplayCenterFreq(470.0);
    scope.JustDrawIt();
    expectRange(350.0, 550.0);
}

TEST_F(CenterCursorTest, ACenterTooFarForTheSpanIsAnErrorThatTheNextCenterRepairs) {
    addTX(450.0);
    scope.DrawDisplay();
    for (const double center : {1.0e18, 9.0e12, 1.0e300}) {
        scope.setDisplayCenterFreq(center);
        EXPECT_FALSE(scope.DrawDisplay());
        const RecordingErrors::Report report = takeReport();
        EXPECT_EQ(report.number, util::error_number::kOverflow);
        EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplay Flag 100");
    }
    scope.setDisplayCenterFreq(460.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(360.0, 560.0);
}

TEST_F(CenterCursorTest, TheCursorCanBeSetBeforeTheFirstDrawing) {
    addTX(450.0);
    scope.setCursorVal(460.0);
    EXPECT_EQ(scope.CursorVal(), 460.0);
}

TEST_F(CenterCursorTest, CursorOutsideTheRangeIsIgnored) {
    addTX(450.0);
    scope.DrawDisplay();
    scope.setCursorVal(460.0);
    EXPECT_EQ(scope.CursorVal(), 460.0);
    for (const double outside : {349.9, 550.1, std::numeric_limits<double>::quiet_NaN()}) {
        scope.setCursorVal(outside);
        EXPECT_EQ(scope.CursorVal(), 460.0);
    }
    scope.setCursorVal(350.0);
    EXPECT_EQ(scope.CursorVal(), 350.0);
    scope.setCursorVal(550.0);
    EXPECT_EQ(scope.CursorVal(), 550.0);
}

TEST_F(CenterCursorTest, NudgesMoveByATenthOfTheStepAndZeroMovesNothing) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnMovCenter.onValueChanged(0.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    ui.tdKnMovCenter.onValueChanged(1.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 449.0);
    expectRange(349.0, 549.0);
    ui.tdKnMovCenter.onValueChanged(-1.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    ui.tdKnMovCursor.onValueChanged(0.0);
    EXPECT_EQ(scope.CursorVal(), 0.0);
    ui.tdKnMovCursor.onValueChanged(2.0);
    EXPECT_EQ(scope.CursorVal(), 451.0);
    ui.tdKnMovCursor.onValueChanged(-2.0);
    EXPECT_EQ(scope.CursorVal(), 450.0);
}

TEST_F(CenterCursorTest, NudgesOnAnEmptyDisplayLeaveCenterAndCursorUnset) {
    for (const double turn : {1.0, -1.0}) {
        ui.tdKnMovCenter.onValueChanged(turn);
        EXPECT_EQ(scope.DisplayCenterFreq(), 0.0);
        ui.tdKnMovCursor.onValueChanged(turn);
        EXPECT_EQ(scope.CursorVal(), 0.0);
    }
    addTX(450.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(350.0, 550.0);
}

TEST_F(CenterCursorTest, EndOfACenterTurnTellsTheRange) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnCenter.onValueChanged(460.0);
    expectRange(360.0, 560.0);
    EXPECT_THAT(events.heard, IsEmpty());
    ui.tdKnCenter.onTurnEnd();
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 560"));
}

}  // namespace
}  // namespace kv::control
