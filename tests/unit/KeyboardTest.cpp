// The spectrum by keyboard.
#include "tests/unit/Keys.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// 350 to 550 MHz in 20 divisions of 10.
class KeyboardTest : public RangeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 5.0, 60.0);
        addRX(470.0, 5.0, 60.0);
        addTX(430.0, 5.0, 60.0);
        showTwoPixelsAUnit();
        expectRange(350.0, 550.0);
        events.heard.clear();
    }
    bool press(int key, int shift = 0) { return ui.picSpectrum.onKeyDown(key, shift); }
};

TEST_F(KeyboardTest, TheArrowsPanByADivision) {
    EXPECT_TRUE(press(key::kRight));
    expectRange(360.0, 560.0);
    EXPECT_TRUE(press(key::kLeft));
    EXPECT_TRUE(press(key::kLeft));
    expectRange(340.0, 540.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 360 560", "ChgFreqRange 350 550", "ChgFreqRange 340 540"));
}

TEST_F(KeyboardTest, ThePageKeysPanByHalfADisplay) {
    press(key::kPageDown);
    expectRange(450.0, 650.0);
    press(key::kPageUp);
    press(key::kPageUp);
    expectRange(250.0, 450.0);
}

TEST_F(KeyboardTest, PanningStopsBeforeTheCenterReachesZero) {
    for (int i = 0; i < 10; ++i)
        press(key::kPageUp);
    expectRange(-50.0, 150.0);
    EXPECT_DOUBLE_EQ(scope.DisplayCenterFreq(), 50.0);
}

TEST_F(KeyboardTest, UpAndDownZoomAroundTheCenter) {
    press(key::kUp);
    expectRange(400.0, 500.0);
    EXPECT_DOUBLE_EQ(ui.tdKnGrid.dVal(), 5.0);
    press(key::kDown);
    press(key::kDown);
    expectRange(250.0, 650.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 400 500", "ChgFreqRange 350 550", "ChgFreqRange 250 650"));
    press(key::kPlus);
    expectRange(350.0, 550.0);
    press(key::kMinus);
    expectRange(250.0, 650.0);
}

TEST_F(KeyboardTest, HomeShowsAllChannels) {
    for (int i = 0; i < 4; ++i)
        press(key::kUp);
    events.heard.clear();
    press(key::kHome);
    EXPECT_LE(scope.DisplayMinFreq(), 430.0);
    EXPECT_GE(scope.DisplayMaxFreq(), 470.0);
    EXPECT_EQ(events.heard.size(), 1U);
}

TEST_F(KeyboardTest, CtrlAndAnArrowPutTheCursorOnTheNextChannel) {
    scope.setCursorVal(431.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 450.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 470.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 470.0) << "there is none beyond";
    press(key::kLeft, key::kCtrl);
    press(key::kLeft, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 430.0);
    EXPECT_EQ(ui.lblFMHz.caption(), L"430.00000 MHz");
    expectRange(350.0, 550.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(KeyboardTest, ThePictureFollowsTheCursorToAChannelOutsideOfIt) {
    press(key::kUp);
    press(key::kUp);
    press(key::kUp);
    expectRange(437.5, 462.5);
    events.heard.clear();
    scope.setCursorVal(455.0);
    press(key::kRight, key::kCtrl);
    EXPECT_EQ(scope.CursorVal(), 470.0);
    expectRange(457.5, 482.5);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 457.5 482.5"));
}

TEST_F(KeyboardTest, ShiftAndAnArrowNudgeTheCursor) {
    scope.setCursorVal(440.0);
    press(key::kRight, key::kShift);
    EXPECT_DOUBLE_EQ(scope.CursorVal(), 441.0);
    press(key::kLeft, key::kShift);
    press(key::kLeft, key::kShift);
    EXPECT_DOUBLE_EQ(scope.CursorVal(), 439.0);
}

TEST_F(KeyboardTest, SpaceRecentersOnTheCursor) {
    scope.setCursorVal(470.0);
    press(key::kSpace);
    expectRange(370.0, 570.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 370 570"));
}

TEST_F(KeyboardTest, MOpensAndClosesTheReportOfWhatIsUnderTheCursor) {
    scope.setCursorVal(470.0);
    press(key::kM);
    EXPECT_EQ(ui.chkShowMouse.value(), 1);
    ASSERT_TRUE(scope.mouseInfoWindow());
    EXPECT_TRUE(scope.mouseInfoWindow()->isVisible());
    EXPECT_TRUE(scope.mouseInfoWindow()->text().starts_with(L"Mouse Location:\r\n470.00000 MHz\r\n\r\nRX Channels:"));
    press(key::kLeft, key::kCtrl);
    EXPECT_TRUE(scope.mouseInfoWindow()->text().starts_with(L"Mouse Location:\r\n450.00000 MHz\r\n\r\nTX Channels:"));
    press(key::kM);
    EXPECT_EQ(ui.chkShowMouse.value(), 0);
    EXPECT_FALSE(scope.mouseInfoWindow()->isVisible());
}

TEST_F(KeyboardTest, TheKeysOfAFormAreLeftToIt) {
    for (const int key : {int{key::kTab}, int{key::kEnter}, int{key::kEscape}, 112, 65}) {
        EXPECT_FALSE(ui.picSpectrum.wantsKey(key)) << key;
        EXPECT_FALSE(press(key)) << key;
    }
    EXPECT_FALSE(press(key::kUp, key::kAlt));
    expectRange(350.0, 550.0);
}

TEST_F(KeyboardTest, WithoutChannelsTheKeysDoNothing) {
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    for (const int key : {int{key::kLeft}, int{key::kRight}, int{key::kUp}, int{key::kDown}, int{key::kHome},
                          int{key::kSpace}, int{key::kPageUp}})
        EXPECT_TRUE(press(key));
    press(key::kRight, key::kCtrl);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(KeyboardTest, ZoomEndsAtAHertzAndAtTheWidestRange) {
    for (int i = 0; i < 60; ++i)
        press(key::kUp);
    EXPECT_GE(scope.DisplayMaxFreq() - scope.DisplayMinFreq(), 0.999e-6);
    for (int i = 0; i < 120; ++i)
        press(key::kDown);
    EXPECT_LE(scope.DisplayMaxFreq() - scope.DisplayMinFreq(), 1e8);
    EXPECT_NEAR(scope.DisplayCenterFreq(), 450.0, 1e-3);
}

}  // namespace
}  // namespace kv::control
