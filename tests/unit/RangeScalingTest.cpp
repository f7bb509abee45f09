// The range that the picture shows: derived from the channels, set by the host, shifted onto a center.
#include <limits>

#include "tests/unit/Numbers.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

using RangeScalingTest = RangeTest;

TEST_F(RangeScalingTest, WithoutChannelsTheRangeStaysUnsetAndNoScaleIsApplied) {
    const raster::UserScale before = ui.picSpectrum.scale();
    EXPECT_EQ(scope.DisplayMinFreq(), 8888888888888.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), -8888888888888.0);
    EXPECT_EQ(ui.picSpectrum.scale(), before);
}

TEST_F(RangeScalingTest, OneChannelAt450ShowsAHundredMegaHertzOnEachSide) {
    addTX(450.0);
    expectRange(350.0, 550.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 350.0);
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), 200.0);
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 450.0);
}

TEST_F(RangeScalingTest, ReadingOnlyTheMinimumAppliesNoScaleYet) {
    const raster::UserScale before = ui.picSpectrum.scale();
    addTX(450.0);
    EXPECT_EQ(scope.DisplayMinFreq(), 350.0);
    EXPECT_EQ(ui.picSpectrum.scale(), before);
}

TEST_F(RangeScalingTest, ARangeOnceComputedStaysWhateverChannelsFollow) {
    addTX(450.0);
    expectRange(350.0, 550.0);
    addTX(900.0);
    addTX(100.0);
    expectRange(350.0, 550.0);
    scope.DrawInitialDisplay();
    expectRange(0.0, 1000.0);
}

TEST_F(RangeScalingTest, EndBufferOfMinusOneReadsAsAHundred) {
    scope.setFreqEndBuffer(-1.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
}

TEST_F(RangeScalingTest, TheRangeDoesNotCreepFromDrawingToDrawing) {
    for (int i = 1; i <= 200; ++i) {
        scope.DrawByRange(4.0 + 0.37 * i, 4.0 + 0.37 * i + 33.3 / i);
        const double minimum = scope.DisplayMinFreq();
        const double maximum = scope.DisplayMaxFreq();
        scope.DrawDisplay();
        scope.DrawNewCenterFreq();
        ASSERT_EQ(scope.DisplayMinFreq(), minimum) << i;
        ASSERT_EQ(scope.DisplayMaxFreq(), maximum) << i;
    }
}

TEST_F(RangeScalingTest, DrawByRangeHalvesTheBufferToAThirdOfTheSpan) {
    addTX(450.0);
    ASSERT_EQ(scope.FreqEndBuffer(), 100.0);
    scope.DrawByRange(400.0, 460.0);
    expectRange(387.5, 472.5);
    EXPECT_EQ(scope.FreqEndBuffer(), 12.5);
    EXPECT_EQ(scope.DisplayCenterFreq(), 430.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 387.5);
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), 85.0);
}

TEST_F(RangeScalingTest, DrawByRangeWithANegativeBufferHalvesNothing) {
    scope.DrawByRange(400.0, 460.0);
    expectRange(300.0, 560.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 100.0);
}

TEST_F(RangeScalingTest, DrawByRangeLeavesTheBufferAloneForAnEmptySpan) {
    scope.setFreqEndBuffer(40.0);
    scope.DrawByRange(450.0, 450.0);
    expectRange(410.0, 490.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 40.0);
    scope.DrawByRange(460.0, 440.0);
    expectRange(420.0, 480.0);
    EXPECT_EQ(scope.FreqEndBuffer(), 40.0);
}

TEST_F(RangeScalingTest, DrawByRangeTakesMissingBoundsFromTheChannels) {
    addTX(400.0);
    addRX(700.0);
    scope.DrawByRange(0.0, 0.0);
    expectRange(300.0, 800.0);
    scope.DrawByRange(-1.0, 550.0);
    expectRange(350.0, 600.0);
    scope.setFreqEndBuffer(10.0);
    scope.DrawByRange(500.0, 0.0);
    expectRange(490.0, 710.0);
}

TEST_F(RangeScalingTest, DrawByRangeWithoutChannelsAndBoundsStaysUnset) {
    scope.DrawByRange(0.0, 0.0);
    expectRange(8888888888888.0, -8888888888888.0);
    EXPECT_THAT(pixelsOf(ui.picSpectrum), ::testing::Each(0xFFFFFFU));
}

TEST_F(RangeScalingTest, DrawByRangeResetsCenterAndStepAndRedraws) {
    addTX(450.0, 10.0, 3.0);
    scope.DrawDisplay();
    scope.setDisplayCenterFreq(600.0);
    ui.tdKnGrid.onValueChanged(1.0);
    expectRange(590.0, 610.0);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.DrawByRange(300.0, 600.0);
    expectRange(200.0, 700.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 25.0);
    EXPECT_EQ(canvas.lines().at(0), "clear ffffff");
    EXPECT_THAT(canvas.log(), HasSubstr("rectangle"));
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(RangeScalingTest, DrawByRangeDuringADrawingIsDrawnOnceAfterIt) {
    addTX(450.0);
    scope.DrawDisplay();
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    platform.onPump = [&] { scope.DrawByRange(300.0, 600.0); };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_EQ(std::count(canvas.lines().begin(), canvas.lines().end(), "clear ffffff"), 2);
    expectRange(200.0, 700.0);
}

TEST_F(RangeScalingTest, HalvingStopsWithOverflowForWhatIsNotFinite) {
    addTX(450.0);
    scope.DrawDisplay();
    scope.DrawByRange(400.0, kInfinity);
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    scope.setFreqEndBuffer(kInfinity);
    scope.DrawByRange(400.0, 460.0);
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.number, util::error_number::kOverflow);
    EXPECT_EQ(report.procedure, L"DrawByRange");
    scope.setFreqEndBuffer(std::numeric_limits<double>::quiet_NaN());
    scope.DrawByRange(400.0, 460.0);
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    expectRange(350.0, 550.0);
}

TEST_F(RangeScalingTest, AnInfiniteBufferStopsTheFirstDrawingWithOverflow) {
    addTX(450.0);
    scope.setFreqEndBuffer(kInfinity);
    EXPECT_FALSE(scope.DrawDisplay());
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    scope.setFreqEndBuffer(10.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(440.0, 460.0);
}

TEST_F(RangeScalingTest, TheWholeScaleIsTopDownFromTheHighestPower) {
    addTX(450.0, 0.0, 47.0);
    addTX(460.0, 0.0, -20.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMinPwr(), -20.0);
    EXPECT_EQ(scope.DisplayMaxPwr(), 47.0);
    expectScale({350.0, 47.0, 210.0, -67.0});
}

TEST_F(RangeScalingTest, SettingThePowersScalesAtOnceAndDrawsNothing) {
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.setDisplayMaxPwr(60.0);
    EXPECT_EQ(ui.picSpectrum.scaleTop(), 60.0);
    scope.setDisplayMinPwr(-40.0);
    EXPECT_EQ(ui.picSpectrum.scaleTop(), 60.0);
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -100.0);
    EXPECT_THAT(canvas.lines(), IsEmpty());
}

TEST_F(RangeScalingTest, AHigherTopChangesTheHeightWithTheNextDrawing) {
    addTX(450.0, 0.0, 47.0);
    scope.DrawDisplay();
    scope.setDisplayMaxPwr(100.0);
    EXPECT_EQ(ui.picSpectrum.scaleTop(), 100.0);
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -47.0);
    scope.JustDrawIt();
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -100.0);
    scope.setDisplayMaxPwr(200.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), -200.0);
}

TEST_F(RangeScalingTest, AFloorAboveTheTopTurnsThePictureUpsideDown) {
    addTX(450.0, 0.0, 2.0);
    scope.setDisplayMaxPwr(-10.0);
    scope.setDisplayMinPwr(30.0);
    EXPECT_EQ(ui.picSpectrum.scaleHeight(), 40.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectScale({350.0, -10.0, 200.0, 40.0});
}

TEST_F(RangeScalingTest, EqualPowersAreNoError) {
    addTX(450.0, 0.0, 2.0);
    scope.setDisplayMaxPwr(0.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMinPwr(), 0.0);
    scope.setDisplayMinPwr(0.0);
    scope.JustDrawIt();
}

TEST_F(RangeScalingTest, ADrawingBeforeTheFirstChannelDoesNotFixThePowers) {
    scope.setLColorSpecBack(0x00FFFF);
    EXPECT_TRUE(scope.DrawDisplay());
    addTX(450.0, 0.0, 47.0);
    EXPECT_TRUE(scope.DrawDisplay());
    EXPECT_EQ(scope.DisplayMaxPwr(), 47.0);
    EXPECT_EQ(ui.picSpectrum.scaleTop(), 47.0);
}

TEST_F(RangeScalingTest, ReScaleChannelsRederivesTheExtremesAndLeavesTheRange) {
    const SlotRef channel = addTX(450.0, 10.0, 30.0);
    scope.DrawDisplay();
    channel->fields().dFreqHi = 520.0;
    channel->fields().dFreqLo = 500.0;
    channel->fields().dPwrDBM = 60.0;
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.extremes().dTXFreqMin, 500.0);
    EXPECT_EQ(scope.extremes().dFreqMax, 520.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMin, 60.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, 60.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 60.0);
    expectRange(340.0, 560.0);
}

TEST_F(RangeScalingTest, ReScaleChannelsPutsTheCursorOnTheCenterWithoutAnEvent) {
    addTX(450.0);
    int heard = 0;
    ui.tdKnMovCursor.onValueChanged = [&](double) { ++heard; };
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(scope.CursorVal(), 450.0);
    EXPECT_EQ(heard, 0);
}

TEST_F(RangeScalingTest, ReScaleChannelsReportsAnErrorAndReturnsFalse) {
    const SlotRef channel = addTX(450.0);
    channel->onRead = failsAt("dFreqHi", 440);
    EXPECT_FALSE(scope.ReScaleChannels());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.number, 440);
    EXPECT_EQ(report.procedure, L"ReScaleChannels");
    EXPECT_EQ(report.detail, L"Error Re-scaling Bandscope Channels");
    EXPECT_EQ(report.flag, 100);
}

TEST_F(RangeScalingTest, DrawInitialDisplayResetsRangeCenterAndStep) {
    addTX(450.0, 0.0, 30.0);
    scope.DrawDisplay();
    scope.setDisplayCenterFreq(600.0);
    ui.tdKnGrid.onValueChanged(1.0);
    expectRange(590.0, 610.0);
    addRX(500.0);
    scope.DrawInitialDisplay();
    expectRange(350.0, 600.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 475.0);
    EXPECT_EQ(scope.CursorVal(), 475.0);
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 12.5);
}

TEST_F(RangeScalingTest, ShowAllDoesNothingWhenFalseOrWithoutASpan) {
    addTX(450.0);
    scope.DrawDisplay();
    scope.setShowAll(false);
    EXPECT_FALSE(scope.ShowAll());
    scope.setShowAll(true);  // one channel without a bandwidth: no span
    EXPECT_TRUE(scope.ShowAll());
    EXPECT_THAT(platform.messages, IsEmpty());
    expectRange(350.0, 550.0);
}

TEST_F(RangeScalingTest, ShowAllSaysWhenAllIsShownAlready) {
    addTX(450.0);
    addTX(460.5);
    scope.DrawDisplay();
    scope.setShowAll(true);
    ASSERT_EQ(platform.messages.size(), 1U);
    const auto& message = platform.messages.front();
    EXPECT_EQ(message.title, L"All Frequencies in Current Range");
    EXPECT_EQ(message.text,
              L"The current display range is:350.00000 to 560.50000\r\n\r\nThis range includes all the frequencies "
              L"currently selected:450.00000 to 460.50000");
    EXPECT_EQ(message.icon, formenv::MessageIcon::Information);
    EXPECT_EQ(message.buttons, formenv::MessageButtons::Ok);
    expectRange(350.0, 560.5);
}

TEST_F(RangeScalingTest, ShowAllRebuildsTheRangeFromTheChannels) {
    addTX(400.0);
    scope.DrawDisplay();
    addTX(1000.0);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.setShowAll(true);
    EXPECT_THAT(platform.messages, IsEmpty());
    expectRange(300.0, 1100.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 700.0);
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 700.0);
    EXPECT_EQ(ui.tdKnGrid.dVal(), 40.0);
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 300.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 1100.0);
    EXPECT_EQ(canvas.lines().at(0), "clear ffffff");
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(RangeScalingTest, ShowAllResetsAChosenCenterAndStep) {
    addTX(400.0);
    addTX(1000.0);
    scope.DrawDisplay();
    scope.setDisplayCenterFreq(500.0);
    ui.tdKnGrid.onValueChanged(1.0);
    scope.setShowAll(true);
    expectRange(300.0, 1100.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 700.0);
    EXPECT_EQ(ui.tdKnGrid.dVal(), 40.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(300.0, 1100.0);
}

}  // namespace
}  // namespace kv::control
