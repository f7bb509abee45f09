// The rotary center and cursor knobs in place of the movers: their set-up, what turning them does, and how they follow
// the displayed range.
#include "control/KnobRescale.h"
#include "tests/unit/RangeFixture.h"
#include "tests/unit/WidgetFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// 350 to 550 MHz once something is drawn.
class KnobModeTest : public RangeTest {
  protected:
    void SetUp() override { scope.setBUseMovers(false); }

    /// Nothing of a set-up is left in the knob.
    static void spoil(turndial::tdKnob& knob) {
        knob.setVisible(false);
        knob.setSCaption(L"?");
        knob.sFormat = L"0";
        knob.iKnobStyle = 2;
        knob.bShowValue = false;
        knob.dMinVal = -1.0;
        knob.dMaxVal = 7.0;
        knob.dStep = 3.0;
        knob.bOption1 = false;
        knob.bOption2 = true;
        knob.bOption3 = true;
    }
    static void spoil(turndial::tdKnMover& mover) {
        mover.setVisible(false);
        mover.setSCaption(L"?");
        mover.sFormat = L"0";
        mover.bShowValue = false;
    }
    /// Which of the two kinds are shown: center knob, cursor knob, center mover, cursor mover.
    std::vector<bool> shown() const {
        return {ui.tdKnCenter.visible(), ui.tdKnCursor.visible(), ui.tdKnMovCenter.visible(),
                ui.tdKnMovCursor.visible()};
    }
    void toggle() { ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0); }
    void showOneChannel() {
        addTX(450.0, 0.0, 30.0);
        scope.DrawDisplay();
    }
};

TEST_F(KnobModeTest, TheCenterKnobIsSetUpFromZeroTo1500) {
    spoil(ui.tdKnCenter);
    formenv::RecordingPeer window;
    ui.tdKnCenter.setPeer(&window);
    scope.setBUseMovers(false);
    ui.tdKnCenter.setPeer(nullptr);
    EXPECT_TRUE(ui.tdKnCenter.visible());
    EXPECT_EQ(ui.tdKnCenter.sCaption(), L"Center Freq");
    EXPECT_EQ(ui.tdKnCenter.iKnobStyle, 0);
    EXPECT_TRUE(ui.tdKnCenter.bShowValue);
    EXPECT_EQ(ui.tdKnCenter.sFormat, L"##0.00000");
    EXPECT_EQ(ui.tdKnCenter.dMinVal, 0.0);
    EXPECT_EQ(ui.tdKnCenter.dMaxVal, 1500.0);
    EXPECT_EQ(ui.tdKnCenter.dStep, 100.0);
    EXPECT_TRUE(ui.tdKnCenter.bOption1);
    EXPECT_FALSE(ui.tdKnCenter.bOption2);
    EXPECT_FALSE(ui.tdKnCenter.bOption3);
    EXPECT_THAT(window.changes, Contains(formenv::Change::Picture));
}

TEST_F(KnobModeTest, TheCursorKnobIsSetUpFromZeroTo1000) {
    spoil(ui.tdKnCursor);
    formenv::RecordingPeer window;
    ui.tdKnCursor.setPeer(&window);
    scope.setBUseMovers(false);
    ui.tdKnCursor.setPeer(nullptr);
    EXPECT_TRUE(ui.tdKnCursor.visible());
    EXPECT_EQ(ui.tdKnCursor.sCaption(), L"Cursor (MHz)");
    EXPECT_EQ(ui.tdKnCursor.iKnobStyle, 0);
    EXPECT_TRUE(ui.tdKnCursor.bShowValue);
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 0.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 1000.0);
    EXPECT_EQ(ui.tdKnCursor.dStep, 100.0);
    EXPECT_TRUE(ui.tdKnCursor.bOption1);
    EXPECT_THAT(window.changes, Contains(formenv::Change::Picture));
}

TEST_F(KnobModeTest, TheMoversAreSetUpWhenTheyAreChosenAgain) {
    for (turndial::tdKnMover* mover : {&ui.tdKnMovCenter, &ui.tdKnMovCursor}) {
        spoil(*mover);
        formenv::RecordingPeer window;
        mover->setPeer(&window);
        scope.setBUseMovers(true);
        mover->setPeer(nullptr);
        EXPECT_TRUE(mover->visible());
        EXPECT_TRUE(mover->bShowValue);
        EXPECT_EQ(mover->sFormat, L"##0.00000");
        EXPECT_THAT(window.changes, Contains(formenv::Change::Picture));
    }
    EXPECT_EQ(ui.tdKnMovCenter.sCaption(), L"Center Freq (MHz)");
    EXPECT_EQ(ui.tdKnMovCursor.sCaption(), L"Cursor Freq (MHz)");
}

TEST_F(KnobModeTest, OnlyTheChosenKindOfKnobIsShown) {
    EXPECT_THAT(shown(), ElementsAre(true, true, false, false));
    scope.setBUseMovers(true);
    EXPECT_THAT(shown(), ElementsAre(false, false, true, true));
}

TEST_F(KnobModeTest, TheCenterButtonIsPlacedBesideTheCursorMover) {
    ui.tdKnMovCursor.setLeft(3000.0);
    ui.tdKnMovCursor.setWidth(1200.0);
    const double before = ui.cmdCenterCursor.left();
    scope.setBUseMovers(false);
    EXPECT_EQ(ui.cmdCenterCursor.left(), before) << "the rotary knobs leave the button alone";
    scope.setBUseMovers(true);
    EXPECT_EQ(ui.cmdCenterCursor.left(), 4230.0) << "30 twips beside the mover";
}

TEST_F(KnobModeTest, ACollapseHidesTheRotaryKnobsAndLeavesTheMovers) {
    toggle();
    EXPECT_THAT(shown(), ElementsAre(false, false, false, false));
    ui.tdKnMovCenter.setVisible(true);
    ui.tdKnMovCursor.setVisible(true);
    toggle();
    EXPECT_THAT(shown(), ElementsAre(true, true, true, true));
    toggle();
    EXPECT_THAT(shown(), ElementsAre(false, false, true, true));
}

TEST_F(KnobModeTest, OnACollapsedPanelANewCenterShowsNoKnob) {
    toggle();
    scope.setDisplayCenterFreq(450.0);
    EXPECT_THAT(shown(), ElementsAre(false, false, false, false));
    scope.setBUseMovers(false);
    EXPECT_THAT(shown(), ElementsAre(false, false, false, false));
}

TEST_F(KnobModeTest, TheCenterKnobShowsTheCenterAndTheMoverKeepsItsValue) {
    addTX(450.0);
    ui.tdKnMovCenter.setDVal(1.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 450.0);
    EXPECT_EQ(ui.tdKnCenter.dVal(), 450.0);
    scope.setDisplayCenterFreq(470.0);
    EXPECT_EQ(ui.tdKnCenter.dVal(), 470.0);
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 1.0);
}

TEST_F(KnobModeTest, TurningTheCenterKnobMovesTheRangeAndItsEndTellsIt) {
    showOneChannel();
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    ui.tdKnCenter.onValueChanged(460.0);
    expectRange(360.0, 560.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 460.0);
    EXPECT_THAT(canvas.lines(), Contains("clear ffffff"));
    EXPECT_THAT(events.heard, IsEmpty());
    ui.tdKnCenter.onTurnEnd();
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 560"));
    EXPECT_EQ(ui.tdKnCenter.dMinVal, 360.0);
    EXPECT_EQ(ui.tdKnCenter.dMaxVal, 560.0);
}

TEST_F(KnobModeTest, TurningTheCursorKnobMovesTheCursorLine) {
    showOneChannel();
    scope.setLCursorColor(0xFF00FF);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    ui.tdKnCursor.onValueChanged(460.0);
    EXPECT_EQ(scope.CursorVal(), 460.0);
    EXPECT_THAT(canvas.log(), HasSubstr("pen ff00ff w1 mode 10"));
}

TEST_F(KnobModeTest, CursorValIsThatOfTheRotaryKnob) {
    showOneChannel();
    scope.setLCursorColor(0xFF00FF);
    ui.tdKnMovCursor.setDVal(1.0);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.setCursorVal(460.0);
    EXPECT_EQ(ui.tdKnCursor.dVal(), 460.0);
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 1.0);
    EXPECT_EQ(scope.CursorVal(), 460.0);
    EXPECT_THAT(canvas.log(), HasSubstr("pen ff00ff w1 mode 10"));
    scope.setCursorVal(551.0);
    EXPECT_EQ(scope.CursorVal(), 460.0);
    scope.setBUseMovers(true);
    EXPECT_EQ(scope.CursorVal(), 1.0);
}

TEST_F(KnobModeTest, TheCenterButtonMovesTheLineAndSetsTheMoverAlone) {
    showOneChannel();
    ui.tdKnCursor.setDVal(400.0);
    scope.setLCursorColor(0xFF00FF);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    ui.cmdCenterCursor.onClick();
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 450.0);
    EXPECT_EQ(ui.tdKnCursor.dVal(), 400.0);
    EXPECT_THAT(canvas.log(), HasSubstr("pen ff00ff w1 mode 10"));
}

TEST_F(KnobModeTest, ReScaleChannelsRescalesTheCursorKnobAndPutsItOnTheCenter) {
    addTX(450.0);
    ui.tdKnMovCursor.setDVal(1.0);
    ui.tdKnCursor.setDVal(7.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 350.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 550.0);
    EXPECT_EQ(ui.tdKnCursor.dStep, 20.0) << "a tenth of the display with 20 divisions";
    EXPECT_EQ(ui.tdKnCursor.dVal(), 450.0);
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 1.0);
}

TEST_F(KnobModeTest, WithTheMoversReScaleChannelsLeavesTheRotaryKnobs) {
    scope.setBUseMovers(true);
    addTX(450.0);
    ui.tdKnCursor.setDVal(7.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 450.0);
    EXPECT_EQ(ui.tdKnCursor.dVal(), 7.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 1000.0);
}

TEST_F(KnobModeTest, HalfOfTheDivisionsIsRoundedToTheEvenNumber) {
    addTX(450.0);
    const std::pair<std::int16_t, double> cases[] = {{3, 100.0}, {5, 100.0}, {6, 200.0 / 3.0},
                                                     {7, 50.0},  {8, 50.0},  {1, 20.0}};  // none left: ten detents
    for (const auto& [divisions, step] : cases) {
        scope.setNGridX(divisions);
        scope.ReScaleChannels();
        EXPECT_DOUBLE_EQ(ui.tdKnCursor.dStep, step) << divisions;
    }
}

TEST_F(KnobModeTest, ADisplayBelowZeroStartsTheKnobAtZeroAndCountsWhole) {
    addTX(50.0);
    scope.ReScaleChannels();
    expectRange(-50.0, 150.0);
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 0.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 150.0);
    EXPECT_EQ(ui.tdKnCursor.dStep, 20.0);
}

TEST_F(KnobModeTest, JustDrawItDrawsTheCursorOfTheRotaryKnob) {
    showOneChannel();
    scope.setLCursorColor(0xFF00FF);
    ui.tdKnMovCursor.setDVal(460.0);
    ui.tdKnCursor.setDVal(900.0);
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.JustDrawIt();
    EXPECT_THAT(canvas.log(), Not(HasSubstr("ff00ff")));
    ui.tdKnCursor.setDVal(460.0);
    scope.JustDrawIt();
    EXPECT_THAT(canvas.log(), HasSubstr("ff00ff"));
}

class KnobRescale : public testing::Test {
  protected:
    void rescale(double dMin, double dMax, double dStepIn) { ReScaleknob(knob, dMin, dMax, dStepIn, nSteps); }

    turndial::tdKnob knob{nullptr, L"tdKn"};
    std::int16_t nSteps = 4;
};

TEST_F(KnobRescale, TakesTheRangeAndOnePartOfIt) {
    formenv::RecordingPeer window;
    knob.setPeer(&window);
    rescale(400.0, 460.0, 0.0);
    EXPECT_EQ(knob.dMinVal, 400.0);
    EXPECT_EQ(knob.dMaxVal, 460.0);
    EXPECT_EQ(knob.dStep, 15.0);
    EXPECT_EQ(nSteps, 4);
    EXPECT_THAT(window.changes, ElementsAre(formenv::Change::Picture));
}

TEST_F(KnobRescale, AGivenStepIsTaken) {
    nSteps = 0;
    rescale(400.0, 460.0, 0.25);
    EXPECT_EQ(knob.dStep, 0.25);
    EXPECT_EQ(nSteps, 0) << "the number of steps is not needed, and stays";
    EXPECT_EQ(knob.dMaxVal, 460.0);
}

TEST_F(KnobRescale, AGivenStepThatIsNotAboveZeroIsNone) {
    rescale(400.0, 460.0, -2.5);
    EXPECT_EQ(knob.dStep, 15.0);
}

TEST_F(KnobRescale, WithoutANumberOfStepsThereAreTenAndTheCallerSeesIt) {
    for (const int none : {0, -1, -4}) {
        nSteps = static_cast<std::int16_t>(none);
        knob.dStep = 0.0;
        rescale(400.0, 460.0, 0.0);
        EXPECT_EQ(knob.dStep, 6.0);
        EXPECT_EQ(nSteps, 10);
    }
    nSteps = 1;
    rescale(400.0, 460.0, 0.0);
    EXPECT_EQ(knob.dStep, 60.0);
}

TEST_F(KnobRescale, BelowZeroTheKnobStartsAtZeroAndTheStepCountsTheWholeSpan) {
    rescale(-100.0, 60.0, 0.0);
    EXPECT_EQ(knob.dMinVal, 0.0);
    EXPECT_EQ(knob.dStep, 40.0);
    rescale(0.5, 60.0, 0.0);
    EXPECT_EQ(knob.dMinVal, 0.5);
}

TEST_F(KnobRescale, AKnobInTheUsersHandStays) {
    knob.holdByUser(true);
    nSteps = 0;
    rescale(400.0, 460.0, 2.5);
    EXPECT_EQ(knob.dMinVal, 0.0);
    EXPECT_EQ(knob.dMaxVal, 100.0);
    EXPECT_EQ(knob.dStep, 1.0);
    EXPECT_EQ(nSteps, 0);
}

}  // namespace
}  // namespace kv::control
