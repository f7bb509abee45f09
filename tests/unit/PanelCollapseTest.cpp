// The collapse of the panel at its bounds, and the order of what it does.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;

class PanelCollapseTest : public ScopeTest {
  protected:
    void toggle() { ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0); }
    std::wstring tip() {
        ui.fraControl.onMouseMove(0, 0, 10.0, 10.0);
        return ui.fraControl.toolTip();
    }
};

TEST_F(PanelCollapseTest, ThePanelCountsAsCollapsedUpTo315Twips) {
    const double full = ui.fraControl.height();
    for (const auto& [height, collapsed] : {std::pair{315.0, true}, {300.0, true}, {316.0, false}, {2000.0, false}}) {
        ui.fraControl.setHeight(height);
        EXPECT_EQ(scope.isCollapsed(), collapsed) << height;
        toggle();
        EXPECT_EQ(ui.fraControl.height(), collapsed ? full : 315.0) << height;
        EXPECT_EQ(ui.fraControl.caption(), collapsed ? L"-" : L"+") << height;
        EXPECT_EQ(ui.tdKnGrid.visible(), collapsed) << height;
    }
}

TEST_F(PanelCollapseTest, TheTooltipOffersToExpandUpTo325Twips) {
    ui.fraControl.setHeight(325.0);
    EXPECT_EQ(tip(), L"Right-Click to expand controls section.");
    ui.fraControl.setHeight(326.0);
    EXPECT_EQ(tip(), L"Right-Click to collapse controls section.");
}

TEST_F(PanelCollapseTest, EventsRunTwiceInTheNewHeightBeforeTheHostHearsOfIt) {
    std::vector<double> heights;
    std::vector<std::size_t> heard;
    platform.onPump = [&] {
        // The resize inside lets events run as well, while the panel sizes the control.
        if (scope.bSizing())
            return;
        heights.push_back(ui.userControl.height());
        heard.push_back(events.heard.size());
    };
    toggle();
    EXPECT_THAT(heights, ElementsAre(5235.0, 5235.0));
    EXPECT_THAT(heard, ElementsAre(0U, 0U));
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 5235"));
}

TEST_F(PanelCollapseTest, TheLargestHeightOfTheEventsTypeIsCarried) {
    // Collapsing takes 1965 twips.
    scope.resize(10800.0, 32767.0 + 1965.0);
    toggle();
    EXPECT_EQ(ui.userControl.height(), 32767.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 32767"));
}

TEST_F(PanelCollapseTest, TheEventCarriesTheHeightThatTheControlHasThen) {
    int pumps = 0;
    platform.onPump = [&] {
        if (!scope.bSizing() && ++pumps == 2)
            ui.userControl.setHeight(5300.4);
    };
    toggle();
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 5300"));
}

}  // namespace
}  // namespace kv::control
