// The panel by itself: no range, no drawing and no channels.
#include <gtest/gtest.h>

#include "control/Panel.h"
#include "headless/HeadlessPlatform.h"

namespace kv::control {
namespace {

class PanelPartTest : public ::testing::Test {
  protected:
    PanelPartTest() {
        panel.initialize();
        panel.setUpCursorKnob();
        panel.SetCenterFreqKnob(0.0);
        panel.SetGridKnob();
    }
    /// All steps of a layout.
    void layOut() {
        panel.placeDisplay();
        if (panel.displayFollowsHeight())
            panel.sizeDisplay();
        panel.placeControls();
        panel.placeLabelStrip();
        panel.measureLabels(L"0.000");
        panel.placeSpectrum();
    }
    headless::HeadlessPlatform platform;
    Panel panel{platform};
    Children& ui = panel.parts();
};

TEST_F(PanelPartTest, TheControlIsNeverNarrowerThanItsStartSize) {
    const double least = panel.MinWid();
    EXPECT_EQ(least, ui.userControl.width());
    panel.takeSize(least - 15.0, 6000.0);
    EXPECT_TRUE(panel.widenToLeast());
    EXPECT_EQ(ui.userControl.width(), least);
    EXPECT_FALSE(panel.widenToLeast());
}

TEST_F(PanelPartTest, TheDisplayTakesTheHeightThatThePanelLeaves) {
    panel.takeSize(12000.0, 9000.0);
    layOut();
    EXPECT_EQ(ui.fraPic.height(), 9000.0 - 60.0 - ui.fraControl.height() - 60.0);
    EXPECT_EQ(ui.fraControl.top(), ui.fraPic.height() + 60.0);
    EXPECT_EQ(ui.fraControl.width(), 12000.0 - 120.0);
    EXPECT_GT(ui.picSpectrum.left(), 0.0);
    EXPECT_EQ(ui.picSpectrum.left() * 2.0 + ui.picSpectrum.width(), ui.picUnits.width()) << "half a label at each side";
}

TEST_F(PanelPartTest, ALayoutThatAnotherOneOvertookIsOutdated) {
    const std::uint64_t first = panel.beginLayout();
    EXPECT_FALSE(panel.isOvertaken(first));
    const std::uint64_t second = panel.beginLayout();
    EXPECT_TRUE(panel.isOvertaken(first));
    EXPECT_FALSE(panel.isOvertaken(second));
}

TEST_F(PanelPartTest, CollapsingHidesTheKnobsThatAreInUse) {
    const double expanded = ui.fraControl.height();
    panel.showSection(false);
    EXPECT_TRUE(panel.isCollapsed());
    EXPECT_EQ(ui.fraControl.height(), 315.0);
    EXPECT_EQ(ui.fraControl.caption(), L"+");
    EXPECT_FALSE(ui.tdKnMovCenter.visible());
    EXPECT_FALSE(ui.tdKnGrid.visible());
    panel.showSection(true);
    EXPECT_FALSE(panel.isCollapsed());
    EXPECT_EQ(ui.fraControl.height(), expanded);
    EXPECT_TRUE(ui.tdKnMovCenter.visible());
    EXPECT_FALSE(ui.tdKnCenter.visible());
}

TEST_F(PanelPartTest, AHeightChangeSetsTheControlsHeightAndMarksTheTime) {
    layOut();
    panel.showSection(false);
    {
        Panel::HeightChange change(panel, false);
        EXPECT_TRUE(panel.bSizing());
        change.fitHeight();
        EXPECT_FALSE(change.isKept());
        EXPECT_FALSE(panel.displayFollowsHeight());
    }
    EXPECT_FALSE(panel.bSizing());
    EXPECT_EQ(ui.userControl.height(), ui.fraControl.top() + 315.0 + 60.0);
}

TEST_F(PanelPartTest, OnlyTheUpperLeftCornerOfThePanelCollapsesIt) {
    EXPECT_TRUE(Panel::isToggle(400.0, 315.0));
    EXPECT_FALSE(Panel::isToggle(401.0, 315.0));
    EXPECT_FALSE(Panel::isToggle(400.0, 316.0));
    panel.showToolTipAt(10.0, 10.0);
    EXPECT_EQ(ui.fraControl.toolTip(), L"Right-Click to collapse controls section.");
    panel.showToolTipAt(1000.0, 10.0);
    EXPECT_EQ(ui.fraControl.toolTip(), L"");
}

TEST_F(PanelPartTest, AStepBeyondTheKnobsStopsSelectsAnotherUnit) {
    panel.selectGridRange(0.001);
    EXPECT_EQ(ui.cboGridRange.text(), L"KHz");
    EXPECT_EQ(ui.tdKnGrid.dVal(), 0.001);
    panel.selectGridRange(0.7);
    EXPECT_EQ(ui.cboGridRange.text(), L"KHz") << "its stops still reach around the step";
    panel.selectGridRange(2000.0);
    EXPECT_EQ(ui.cboGridRange.text(), L"GHz");
}

TEST_F(PanelPartTest, CenterAndCursorAreOnTheKnobsInUse) {
    panel.showCursor(440.0);
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 440.0);
    EXPECT_EQ(panel.CursorVal(), 440.0);
    panel.setBUseMovers(false);
    panel.setUpCursorKnob();
    panel.SetCenterFreqKnob(450.0);
    EXPECT_EQ(ui.tdKnCenter.dVal(), 450.0);
    panel.showCursor(460.0);
    EXPECT_EQ(panel.CursorVal(), 460.0);
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 440.0);
}

}  // namespace
}  // namespace kv::control
