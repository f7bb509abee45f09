// The displayed range where a bound is met exactly: the markers for "not set", a third of a span, equality.
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr double kUnset = 8888888888888.0;

using RangeBoundsTest = RangeTest;

TEST_F(RangeBoundsTest, ALowestChannelOneUnitBelowTheMarkerCountsAsNone) {
    scope.setFreqEndBuffer(0.0);
    addTX(kUnset - 1.0);
    EXPECT_EQ(scope.extremes().dFreqMin, kUnset - 1.0);
    EXPECT_EQ(scope.DisplayMinFreq(), kUnset);
    scope.ClearAllChnls();
    addTX(kUnset - 2.0);
    EXPECT_EQ(scope.DisplayMinFreq(), kUnset - 2.0);
}

TEST_F(RangeBoundsTest, ADisplayedMinimumLessThanOneUnitBelowTheMarkerIsSet) {
    scope.setFreqEndBuffer(0.0);
    addTX(kUnset - 8.0);
    addTX(kUnset + 2.0);
    expectRange(kUnset - 8.0, kUnset + 2.0);
    scope.setDisplayCenterFreq(kUnset + 4.5);
    scope.DrawNewCenterFreq();
    expectRange(kUnset - 0.5, kUnset + 9.5);
}

TEST_F(RangeBoundsTest, ADisplayedMinimumAtTheMarkerIsAnError) {
    scope.setFreqEndBuffer(0.0);
    addTX(kUnset - 8.0);
    addTX(kUnset + 2.0);
    expectRange(kUnset - 8.0, kUnset + 2.0);
    scope.setDisplayCenterFreq(kUnset + 5.0);
    scope.DrawNewCenterFreq();
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    expectRange(kUnset - 8.0, kUnset + 2.0);
}

TEST_F(RangeBoundsTest, TheEndBufferIsHalvedWhileItIsAboveAThirdOfTheSpan) {
    const std::pair<double, double> cases[] = {{20.0, 20.0}, {20.5, 10.25}, {22.0, 11.0}, {40.0, 20.0}, {41.0, 10.25}};
    for (const auto& [before, after] : cases) {
        scope.setFreqEndBuffer(before);
        scope.DrawByRange(400.0, 460.0);
        EXPECT_EQ(scope.FreqEndBuffer(), after) << before;
        expectRange(400.0 - after, 460.0 + after);
    }
}

TEST_F(RangeBoundsTest, ShowAllTellsWhenTheBoundsAreExactlyThoseOfTheChannels) {
    scope.setFreqEndBuffer(0.0);
    addTX(400.0);
    addTX(460.0);
    scope.DrawDisplay();
    expectRange(400.0, 460.0);
    scope.setShowAll(true);
    EXPECT_EQ(platform.messages.size(), 1U);
    expectRange(400.0, 460.0);
}

TEST_F(RangeBoundsTest, ShowAllRebuildsWhenEitherEndIsOutside) {
    for (const double outside : {300.0, 700.0}) {
        scope.ClearAllChnls();
        scope.setFreqEndBuffer(0.0);
        addTX(400.0);
        addTX(460.0);
        scope.DrawInitialDisplay();
        expectRange(400.0, 460.0);
        addTX(outside);
        scope.setShowAll(true);
        EXPECT_THAT(platform.messages, IsEmpty());
        expectRange(std::min(outside, 400.0), std::max(outside, 460.0));
    }
}

TEST_F(RangeBoundsTest, ACenterOfZeroIsShownAtOnceAsTheMiddle) {
    addTX(450.0);
    expectRange(350.0, 550.0);
    scope.setDisplayCenterFreq(500.0);
    scope.setDisplayCenterFreq(0.0);
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 450.0);
}

TEST_F(RangeBoundsTest, DrawByRangeDerivesTheExtremesFromTheRecordsAgain) {
    scope.setFreqEndBuffer(0.0);
    const SlotRef channel = addTX(450.0, 10.0, 30.0);
    channel->fields().dFreqLo = 400.0;
    channel->fields().dFreqHi = 500.0;
    channel->fields().dPwrDBM = 60.0;
    scope.DrawByRange(0.0, 0.0);
    expectRange(400.0, 500.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, 60.0);
}

TEST_F(RangeBoundsTest, ReadingTheLowestPowerScalesThePicture) {
    addTX(450.0, 0.0, 47.0);
    addTX(460.0, 0.0, -20.0);
    EXPECT_EQ(scope.DisplayMinPwr(), -20.0);
    EXPECT_EQ(ui.picSpectrum.scaleTop(), 47.0);
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -67.0);
    // Once it is set, reading it scales nothing any more.
    ui.picSpectrum.setScaleHeight(-5.0);
    EXPECT_EQ(scope.DisplayMinPwr(), -20.0);
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -5.0);
}

TEST_F(RangeBoundsTest, TheEndOfAGridTurnDrawsTheRangeOfTheKnobsStep) {
    addTX(450.0, 0.0, 30.0);
    scope.DrawDisplay();
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    ui.tdKnGrid.setDVal(5.0);
    ui.tdKnGrid.onTurnEnd();
    expectRange(400.0, 500.0);
    EXPECT_THAT(canvas.lines(), Contains("clear ffffff"));
    EXPECT_THAT(canvas.log(), HasSubstr("rectangle"));
}

}  // namespace
}  // namespace kv::control
