// Moving by wheel, by a drag of the frequency scale, and back and forward.
#include "control/View.h"
#include "tests/unit/Keys.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kNotch = 120;

/// 350 to 550 MHz in 20 divisions of 10, on 400 pixels.
class NavigationTest : public RangeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 0.0, 60.0);
        showTwoPixelsAUnit();
        events.heard.clear();
    }
    bool wheel(int delta, double x, int shift = 0) { return ui.picSpectrum.onWheel(delta, shift, x); }
    bool press(int key, int shift = 0) { return ui.picSpectrum.onKeyDown(key, shift); }
    /// Drags the scale by pixels, two of which are 1 MHz.
    void dragScale(std::initializer_list<int> pixels) {
        ui.picUnits.onMouseDown(kLeftButton, 0, 3000.0, 10.0);
        for (const int x : pixels)
            ui.picUnits.onMouseMove(kLeftButton, 0, 3000.0 + 15.0 * x, 10.0);
    }
    void releaseScale() { ui.picUnits.onMouseUp(kLeftButton, 0, 0.0, 0.0); }

    View view{scope};
};

TEST_F(NavigationTest, TheWheelZoomsAroundThePointer) {
    EXPECT_TRUE(wheel(kNotch, 400.0));
    expectRange(360.0, 520.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 520"));
    EXPECT_TRUE(wheel(-kNotch, 400.0));
    expectRange(350.0, 550.0);
    EXPECT_EQ(events.heard.size(), 2U);
}

TEST_F(NavigationTest, TwoNotchesAtOnceAreOneChange) {
    wheel(2 * kNotch, 350.0);
    expectRange(350.0, 350.0 + 200.0 / 1.5625);
    EXPECT_EQ(events.heard.size(), 1U);
}

TEST_F(NavigationTest, TheWheelZoomsFinelyWithCtrl) {
    wheel(kNotch, 350.0, key::kCtrl);
    expectRange(350.0, 350.0 + 200.0 / 1.05);
}

TEST_F(NavigationTest, TheWheelPansByADivisionWithShift) {
    wheel(-kNotch, 400.0, key::kShift);
    expectRange(360.0, 560.0);
    wheel(2 * kNotch, 400.0, key::kShift);
    expectRange(340.0, 540.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 560", "ChgFreqRange 340 540"));
}

TEST_F(NavigationTest, PartsOfANotchAddUp) {
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(wheel(30, 400.0));
    expectRange(350.0, 550.0);
    EXPECT_THAT(events.heard, IsEmpty());
    wheel(30, 400.0);
    expectRange(360.0, 520.0);
    EXPECT_EQ(events.heard.size(), 1U);
}

TEST_F(NavigationTest, PartsOfANotchAreDroppedWhenTheDirectionChanges) {
    wheel(110, 400.0);
    wheel(-110, 400.0);
    wheel(100, 400.0);
    expectRange(350.0, 550.0);
}

TEST_F(NavigationTest, TheWheelIsLeftToTheParentWhenItIsSwitchedOff) {
    EXPECT_TRUE(view.wheelZoom());
    view.setWheelZoom(false);
    EXPECT_FALSE(wheel(kNotch, 400.0));
    expectRange(350.0, 550.0);
    view.setWheelZoom(true);
    EXPECT_TRUE(wheel(kNotch, 400.0));
}

TEST_F(NavigationTest, TheWheelIsLeftToTheParentWithoutAUsableRange) {
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    EXPECT_FALSE(wheel(kNotch, 400.0));
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_FALSE(wheel(kNotch, 400.0, key::kShift));
}

TEST_F(NavigationTest, TheWheelWithAltIsNotUsed) {
    EXPECT_FALSE(wheel(kNotch, 400.0, key::kAlt));
    expectRange(350.0, 550.0);
}

TEST_F(NavigationTest, ZoomingEndsAtTheNarrowestAndTheWidestRange) {
    for (int i = 0; i < 200; ++i)
        wheel(kNotch, 450.0);
    const auto [low, high] = scope.displaySpan();
    EXPECT_GE(high - low, 1e-6);
    EXPECT_LT(high - low, 1.3e-6);
    for (int i = 0; i < 400; ++i)
        wheel(-kNotch, 450.0);
    EXPECT_LE(scope.displaySpan().second - scope.displaySpan().first, 1e8);
    EXPECT_GT(scope.displaySpan().second - scope.displaySpan().first, 0.7e8);
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(NavigationTest, TheCursorStaysWhereItIs) {
    scope.setCursorVal(420.0);
    wheel(kNotch, 400.0);
    EXPECT_EQ(scope.CursorVal(), 420.0);
}

TEST_F(NavigationTest, DraggingTheScaleMovesThePictureAndTellsTheHostAtTheEnd) {
    dragScale({10, 20});
    expectRange(340.0, 540.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 340.0);
    releaseScale();
    events.heard.clear();
    dragScale({-10, -40});
    expectRange(360.0, 560.0);
    EXPECT_THAT(events.heard, IsEmpty());
    releaseScale();
    expectRange(360.0, 560.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 560"));
    ui.picUnits.onMouseMove(0, 0, 100.0, 10.0);
    expectRange(360.0, 560.0);
}

TEST_F(NavigationTest, AnUnsteadyClickOnTheScaleIsNoDrag) {
    dragScale({2, -2, 0});
    releaseScale();
    expectRange(350.0, 550.0);
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_FALSE(view.canGoBack());
}

TEST_F(NavigationTest, ADragOfTheScaleIsGivenUpByEscapeAndByTheRightButton) {
    dragScale({40});
    expectRange(330.0, 530.0);
    EXPECT_TRUE(ui.picSpectrum.wantsKey(key::kEscape));
    EXPECT_TRUE(press(key::kEscape));
    expectRange(350.0, 550.0);
    ui.picUnits.onMouseMove(kLeftButton, 0, 100.0, 10.0);
    expectRange(350.0, 550.0);
    releaseScale();
    dragScale({40});
    ui.picUnits.onMouseDown(kRightButton, 0, 3000.0, 10.0);
    expectRange(350.0, 550.0);
    releaseScale();
    EXPECT_THAT(events.heard, IsEmpty());
    EXPECT_FALSE(view.canGoBack());
}

TEST_F(NavigationTest, ADragOfTheScaleThatLosesTheMouseEndsWhereItIs) {
    dragScale({40});
    ui.picUnits.onMouseLost();
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 330 530"));
    ui.picUnits.onMouseMove(kLeftButton, 0, 100.0, 10.0);
    expectRange(330.0, 530.0);
}

TEST_F(NavigationTest, TheScaleDoesNotMoveBeyondACenterOf0MHz) {
    dragScale({800, 1000, 4});
    expectRange(348.0, 548.0);
    dragScale({});
    releaseScale();
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(NavigationTest, EachActionIsAStepBack) {
    wheel(kNotch, 400.0);
    press(key::kRight);
    dragScale({10, 20, 30});
    releaseScale();
    ui.picSpectrum.onDblClick(kLeftButton, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseDown(kLeftButton, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(kLeftButton, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(kLeftButton, 0, 420.0, 50.0);
    ui.picSpectrum.onMouseUp(kLeftButton, 0, 420.0, 50.0);
    expectRange(400.0, 420.0);
    events.heard.clear();
    EXPECT_TRUE(press(key::kLeft, key::kAlt));
    expectRange(320.0, 480.0);
    EXPECT_TRUE(press(key::kLeft, key::kAlt));
    expectRange(356.0, 516.0);
    EXPECT_TRUE(press(key::kLeft, key::kAlt));
    expectRange(368.0, 528.0);
    EXPECT_TRUE(press(key::kLeft, key::kAlt));
    expectRange(360.0, 520.0);
    EXPECT_TRUE(press(key::kLeft, key::kAlt));
    expectRange(350.0, 550.0);
    EXPECT_EQ(events.heard.size(), 5U);
    EXPECT_FALSE(view.canGoBack());
    EXPECT_TRUE(press(key::kLeft, key::kAlt)) << "not the form's, though there is nothing to go back to";
    EXPECT_EQ(events.heard.size(), 5U);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(press(key::kRight, key::kAlt));
    expectRange(400.0, 420.0);
    EXPECT_FALSE(view.canGoForward());
}

TEST_F(NavigationTest, AnActionAfterGoingBackEndsTheWayForward) {
    wheel(kNotch, 400.0);
    ui.picSpectrum.onBack();
    expectRange(350.0, 550.0);
    EXPECT_TRUE(view.canGoForward());
    press(key::kRight);
    EXPECT_FALSE(view.canGoForward());
    ui.picUnits.onBack();
    expectRange(350.0, 550.0);
    ui.picUnits.onForward();
    expectRange(360.0, 560.0);
}

TEST_F(NavigationTest, ATurnOfAKnobIsOneStep) {
    ui.tdKnMovCenter.onValueChanged(1.0);
    ui.tdKnMovCenter.onValueChanged(1.0);
    ui.tdKnMovCenter.onTurnEnd();
    expectRange(348.0, 548.0);
    ui.tdKnGrid.onTurnBegin();
    ui.tdKnGrid.onValueChanged(5.0);
    ui.tdKnGrid.onValueChanged(2.0);
    ui.tdKnGrid.setDVal(2.0);
    ui.tdKnGrid.onTurnEnd();
    expectRange(428.0, 468.0);
    EXPECT_TRUE(view.back());
    expectRange(348.0, 548.0);
    EXPECT_TRUE(view.back());
    expectRange(350.0, 550.0);
    EXPECT_FALSE(view.back());
}

TEST_F(NavigationTest, AGivenUpTurnIsNoStep) {
    ui.tdKnGrid.onTurnBegin();
    ui.tdKnGrid.onValueChanged(5.0);
    ui.tdKnGrid.onGivenUp();
    EXPECT_FALSE(view.canGoBack());
    scope.DrawByRange(400.0, 400.0);
    wheel(kNotch, 400.0);
    view.back();
    expectRange(300.0, 500.0);
}

TEST_F(NavigationTest, WhatTheHostShowsIsNoStepButIsGoneBackTo) {
    scope.DrawByRange(400.0, 400.0);
    EXPECT_FALSE(view.canGoBack());
    press(key::kUp);
    expectRange(350.0, 450.0);
    view.showRange(100.0, 110.0);
    EXPECT_TRUE(view.back());
    expectRange(300.0, 500.0);
    EXPECT_TRUE(view.forward());
    expectRange(100.0, 110.0);
}

TEST_F(NavigationTest, FiftyStepsAreKept) {
    for (int i = 0; i < 60; ++i)
        press(key::kRight);
    int steps = 0;
    while (view.back())
        ++steps;
    EXPECT_EQ(steps, 50);
    expectRange(450.0, 650.0);
}

TEST_F(NavigationTest, GoingBackByMemberRaisesNoEvent) {
    wheel(kNotch, 400.0);
    events.heard.clear();
    EXPECT_TRUE(view.back());
    EXPECT_TRUE(view.forward());
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(NavigationTest, AKeyThatChangesNothingIsNoStep) {
    press(key::kHome);
    const bool before = view.canGoBack();
    press(key::kHome);
    EXPECT_EQ(view.canGoBack(), before);
}

}  // namespace
}  // namespace kv::control
