// The grid knob, the grid-range box and the step between two grid lines.
#include <algorithm>
#include <limits>
#include <utility>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GridStepTest : public ScopeTest {
  protected:
    void choose(int index) {
        ui.cboGridRange.setListIndex(index);
        ui.cboGridRange.onClick();
    }
    std::vector<std::wstring> labels() const {
        std::vector<std::wstring> result;
        for (const turndial::KnobStop& stop : ui.tdKnGrid.stops())
            result.push_back(stop.sLabel);
        return result;
    }
    std::vector<double> steps() const {
        std::vector<double> result;
        for (const turndial::KnobStop& stop : ui.tdKnGrid.stops())
            result.push_back(stop.dValue);
        return result;
    }
    /// 350 to 550 MHz around 450.
    void showOneChannel() {
        addTX(450.0, 0.0, 30.0);
        scope.DrawDisplay();
    }
};

TEST_F(GridStepTest, DivisionsBelowOneReadAsTwenty) {
    EXPECT_EQ(scope.nGridX(), 20);
    scope.setNGridX(0);
    EXPECT_EQ(scope.nGridX(), 20);
    scope.setNGridX(-7);
    EXPECT_EQ(scope.nGridX(), 20);
    scope.setNGridX(1);
    EXPECT_EQ(scope.nGridX(), 1);
    scope.setNGridX(7);
    EXPECT_EQ(scope.nGridX(), 7);
}

TEST_F(GridStepTest, RangeBoxHoldsThreeUnitsAndStartsAtMHz) {
    EXPECT_THAT(ui.cboGridRange.items(), ElementsAre(L"KHz", L"MHz", L"GHz"));
    EXPECT_EQ(ui.cboGridRange.text(), L"MHz");
}

TEST_F(GridStepTest, KnobIsSetUpForTheMHzSlice) {
    EXPECT_EQ(ui.tdKnGrid.iKnobStyle, 0);
    EXPECT_FALSE(ui.tdKnGrid.bOption1);
    EXPECT_TRUE(ui.tdKnGrid.bOption2);
    EXPECT_TRUE(ui.tdKnGrid.bShowValue);
    EXPECT_EQ(ui.tdKnGrid.dStep, 10.0);
    EXPECT_EQ(ui.tdKnGrid.dMinVal, 0.5);
    EXPECT_EQ(ui.tdKnGrid.dMaxVal, 1000.0);
    EXPECT_EQ(ui.tdKnGrid.dVal(), 0.5);
    EXPECT_THAT(labels(),
                ElementsAre(L"500K", L"1M", L"2M", L"5M", L"10M", L"20M", L"50M", L"100M", L"200M", L"500M", L"1G"));
    EXPECT_THAT(steps(), ElementsAre(0.5, 1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0));
}

TEST_F(GridStepTest, KHzRunsFromHalfAKiloHertzToOneMegaHertzInElevenStops) {
    choose(0);
    EXPECT_EQ(ui.tdKnGrid.dMinVal, 0.0005);
    EXPECT_EQ(ui.tdKnGrid.dMaxVal, 1.0);
    EXPECT_THAT(labels(),
                ElementsAre(L"500", L"1K", L"2K", L"5K", L"10K", L"20K", L"50K", L"100K", L"200K", L"500K", L"1M"));
    EXPECT_THAT(steps(), ElementsAre(0.0005, 0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0));
}

TEST_F(GridStepTest, GHzHasItsGapsAfterTenAndAHundred) {
    choose(2);
    EXPECT_EQ(ui.tdKnGrid.dMinVal, 500.0);
    EXPECT_EQ(ui.tdKnGrid.dMaxVal, 10000000.0);
    EXPECT_THAT(labels(),
                ElementsAre(L"500M", L"1G", L"2G", L"5G", L"10G", L"50G", L"100G", L"1T", L"2T", L"5T", L"10T"));
    EXPECT_THAT(steps(), ElementsAre(500.0, 1000.0, 2000.0, 5000.0, 10000.0, 50000.0, 100000.0, 1000000.0, 2000000.0,
                                     5000000.0, 10000000.0));
}

TEST_F(GridStepTest, AChoiceKeepsTheKnobsValueEvenOutsideTheNewSlice) {
    ui.tdKnGrid.setDVal(20.0);
    choose(0);
    EXPECT_EQ(ui.tdKnGrid.dVal(), 20.0);
    EXPECT_EQ(ui.tdKnGrid.dMaxVal, 1.0);
}

TEST_F(GridStepTest, AChoiceOnAnEmptyDisplayRaisesItsEventAndDrawsNothing) {
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    choose(2);
    EXPECT_THAT(events.heard, ElementsAre("ChgGridRange"));
    EXPECT_THAT(canvas.lines(), IsEmpty());
}

TEST_F(GridStepTest, AChoiceThatChangesTheRangeTellsTheRangeFirst) {
    showOneChannel();
    ui.tdKnGrid.setDVal(2.0);
    choose(0);
    // Twenty divisions of 2 MHz around the center.
    EXPECT_EQ(scope.DisplayMinFreq(), 430.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 470.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 430 470", "ChgGridRange"));
}

TEST_F(GridStepTest, AChoiceThatLeavesTheRangeTellsOnlyItself) {
    showOneChannel();
    ui.tdKnGrid.setDVal(2.0);
    choose(0);
    events.heard.clear();
    choose(1);
    EXPECT_EQ(scope.DisplayMinFreq(), 430.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgGridRange"));
}

TEST_F(GridStepTest, AChoiceRedrawsWithoutRecentering) {
    showOneChannel();
    scope.setDisplayCenterFreq(460.0);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    ui.tdKnGrid.setDVal(10.0);
    choose(1);
    // The chosen step stands around the center that was set.
    EXPECT_EQ(scope.DisplayMinFreq(), 360.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 560.0);
    EXPECT_EQ(canvas.lines().at(0), "clear ffffff");
}

TEST_F(GridStepTest, AChoiceIsToldAlsoWhenItsRedrawFails) {
    const SlotRef channel = addTX(450.0, 0.0, 30.0);
    scope.DrawDisplay();
    channel->onRead = failsAt("drawRecord", 440);
    choose(2);
    EXPECT_EQ(takeReport().number, 440);
    EXPECT_EQ(events.heard.back(), "ChgGridRange");
}

TEST_F(GridStepTest, AChoiceDuringADrawingIsDrawnAfterIt) {
    showOneChannel();
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    bool chosen = false;
    const auto drawings = [&] { return std::count(canvas.lines().begin(), canvas.lines().end(), "clear ffffff"); };
    platform.onPump = [&] {
        if (std::exchange(chosen, true))
            return;
        choose(2);
        EXPECT_EQ(drawings(), 1);
    };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_TRUE(chosen);
    EXPECT_EQ(drawings(), 2);
    EXPECT_EQ(events.heard.back(), "ChgGridRange");
}

TEST_F(GridStepTest, ADrawingInsideADrawingLeavesTheOuterOneMarked) {
    showOneChannel();
    headless::RecordingCanvas canvas({400, 200});
    int depth = 0;
    platform.onPump = [&] {
        if (++depth > 1)
            return;
        scope.JustDrawIt();
        ui.picSpectrum.divert(&canvas);
        choose(2);
        ui.picSpectrum.divert(nullptr);
    };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    // The outer one, the one inside and the one for the choice.
    EXPECT_EQ(depth, 3);
    // The outer drawing still runs: no other one may be started.
    EXPECT_THAT(canvas.lines(), IsEmpty());
}

TEST_F(GridStepTest, AfterADrawingThatFailedTheNextOneMayStart) {
    showOneChannel();
    platform.onPump = [] { throw util::RuntimeError(util::error_number::kInternal); };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    EXPECT_EQ(takeReport().procedure, L"JustDrawIt");
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    choose(1);
    EXPECT_THAT(canvas.lines(), Not(IsEmpty()));
}

TEST_F(GridStepTest, TurningTheGridKnobZoomsAroundTheCenter) {
    showOneChannel();
    ui.tdKnGrid.onValueChanged(5.0);
    EXPECT_EQ(scope.DisplayMinFreq(), 400.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 500.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 400.0);
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), 100.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(GridStepTest, TheDivisionsCountInTheZoom) {
    showOneChannel();
    scope.setNGridX(10);
    ui.tdKnGrid.onValueChanged(5.0);
    EXPECT_EQ(scope.DisplayMinFreq(), 425.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 475.0);
}

TEST_F(GridStepTest, EndOfAGridTurnRescalesTheKnobsAndTellsTheRange) {
    showOneChannel();
    ui.tdKnGrid.setDVal(5.0);
    ui.tdKnGrid.onTurnEnd();
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 400 500"));
    for (const turndial::tdKnob* knob : {&ui.tdKnCenter, &ui.tdKnCursor}) {
        EXPECT_EQ(knob->dMinVal, 400.0);
        EXPECT_EQ(knob->dMaxVal, 500.0);
        EXPECT_EQ(knob->dStep, 10.0);
    }
}

TEST_F(GridStepTest, AKnobUnderTheUsersHandIsNotRescaled) {
    showOneChannel();
    ui.tdKnCenter.holdByUser(true);
    ui.tdKnGrid.setDVal(5.0);
    ui.tdKnGrid.onTurnEnd();
    EXPECT_EQ(ui.tdKnCenter.dMaxVal, 100.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 500.0);
}

TEST_F(GridStepTest, SettingTheKnobFromTheProgramRaisesNoEvent) {
    showOneChannel();
    int heard = 0;
    ui.tdKnGrid.onValueChanged = [&](double) { ++heard; };
    ui.tdKnGrid.onTurnEnd = [&] { ++heard; };
    ui.tdKnGrid.setDVal(5.0);
    EXPECT_EQ(heard, 0);
    EXPECT_EQ(scope.DisplayMinFreq(), 350.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(GridStepTest, AStepIsDerivedFromTheRangeAndTheDivisions) {
    showOneChannel();
    scope.setNGridX(8);
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 25.0);
    // Kept until the next reset, whatever the divisions are meanwhile.
    scope.setNGridX(10);
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 25.0);
    scope.DrawInitialDisplay();
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 20.0);
}

TEST_F(GridStepTest, RescalingAnEmptyDisplayLeavesTheKnobAlone) {
    scope.RescaleAll();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 0.5);
}

TEST_F(GridStepTest, AStepBeyondAllNumbersIsAnErrorAndKeepsTheRange) {
    showOneChannel();
    for (const double step : {1.0e308, std::numeric_limits<double>::infinity()}) {
        ui.tdKnGrid.onValueChanged(step);
        EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
        EXPECT_EQ(scope.DisplayMinFreq(), 350.0);
        EXPECT_EQ(scope.DisplayMaxFreq(), 550.0);
    }
}

TEST_F(GridStepTest, AStepTooSmallForTheCenterIsAnErrorAndKeepsTheRange) {
    showOneChannel();
    ui.tdKnGrid.onValueChanged(1.0e-300);
    EXPECT_EQ(takeReport().number, util::error_number::kOverflow);
    EXPECT_EQ(scope.DisplayMaxFreq(), 550.0);
}

TEST_F(GridStepTest, EscapeBringsBackTheDisplayOfADerivedStep) {
    addTX(450.0, 1.0, 2.0);
    scope.DrawByRange(400.0, 500.0);
    const double minimum = scope.DisplayMinFreq();
    const double maximum = scope.DisplayMaxFreq();
    const std::vector<std::uint32_t> before = pixelsOf(ui.picSpectrum);
    ui.tdKnGrid.keyDown(turndial::Key::Up, {});
    EXPECT_NE(scope.DisplayMaxFreq(), maximum);
    ui.tdKnGrid.keyDown(turndial::Key::Escape, {});
    EXPECT_EQ(scope.DisplayMinFreq(), minimum);
    EXPECT_EQ(scope.DisplayMaxFreq(), maximum);
    EXPECT_EQ(ui.tdKnGrid.dVal(), 0.5);
    EXPECT_EQ(pixelsOf(ui.picSpectrum), before);
    EXPECT_THAT(events.heard, IsEmpty());
}

}  // namespace
}  // namespace kv::control
