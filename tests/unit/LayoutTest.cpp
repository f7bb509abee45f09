// Where the children stand, and the panel's collapse to a strip.
#include <limits>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kFullPanel = 2280.0;  // twips
constexpr double kStrip = 315.0;

class LayoutTest : public ScopeTest {
  protected:
    void rightClick(double x, double y) { ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, x, y); }
    std::wstring tipAt(double x, double y) {
        ui.fraControl.onMouseMove(0, 0, x, y);
        return ui.fraControl.toolTip();
    }
    bool collapsed() const { return ui.fraControl.height() == kStrip; }
};

TEST_F(LayoutTest, AResizePlacesTheChildrenByItsArithmetic) {
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.fraPic.place(), (formenv::Place{60.0, 0.0, 11880.0, 9000.0 - 60.0 - kFullPanel - 60.0}));
    EXPECT_EQ(ui.fraControl.place(), (formenv::Place{60.0, 6660.0, 11880.0, kFullPanel}));
    EXPECT_EQ(ui.picUnits.place(), (formenv::Place{75.0, 165.0, 11880.0 - 150.0, 6600.0 - 330.0}));
    const double half = ui.picUnits.textWidth(L"0.000") / 2.0;
    EXPECT_GT(half, 0.0);
    EXPECT_EQ(ui.picSpectrum.place(), (formenv::Place{half, 60.0, 11730.0 - 2.0 * half, 6270.0 - 60.0 - 300.0}));
}

TEST_F(LayoutTest, AWidthBelowTheLeastIsWidenedAndALowerHeightAccepted) {
    scope.resize(5000.0, 6000.0);
    EXPECT_EQ(ui.userControl.width(), scope.MinWid());
    EXPECT_EQ(ui.userControl.height(), 6000.0);
    EXPECT_EQ(ui.fraPic.width(), scope.MinWid() - 120.0);
    EXPECT_LT(6000, scope.MinHgt());
    scope.resize(20000.0, 9000.0);
    EXPECT_EQ(scope.MinWid(), 10800);
    EXPECT_EQ(scope.MinHgt(), 7200);
}

TEST_F(LayoutTest, AResizeBeforeAnyRangeSetsNoHorizontalScale) {
    const raster::UserScale before = ui.picSpectrum.scale();
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.picSpectrum.scale(), before);
}

TEST_F(LayoutTest, AResizeGivesTheStoredRangeItsScaleAndDrawsNothing) {
    addTX(450.0, 1.0, 2.0);
    scope.DrawDisplay();
    const std::uint32_t corner = pixelAt(ui.picSpectrum, 100, 100);
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), scope.DisplayMinFreq());
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), scope.DisplayMaxFreq() - scope.DisplayMinFreq());
    EXPECT_EQ(pixelAt(ui.picSpectrum, 100, 100), corner);
}

TEST_F(LayoutTest, AHeightWithoutRoomEndsInTheReportAndKeepsWhatWasPlaced) {
    scope.resize(12000.0, 1000.0);
    EXPECT_EQ(takeReport().number, util::error_number::kInvalidPropertyValue);
    EXPECT_EQ(ui.fraPic.width(), 11880.0);
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.fraControl.top(), 6660.0);
}

TEST_F(LayoutTest, AResizeFromAnEventOvertakesTheOneThatLetItRun) {
    bool once = true;
    platform.onPump = [&] {
        if (std::exchange(once, false))
            scope.resize(15000.0, 9000.0);
    };
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.fraPic.width(), 15000.0 - 120.0);
    EXPECT_EQ(ui.fraControl.width(), 15000.0 - 120.0);
    EXPECT_EQ(ui.picUnits.width(), 15000.0 - 120.0 - 150.0);
}

TEST_F(LayoutTest, ARightClickInTheCornerTogglesBoundsIncluded) {
    rightClick(400.5, 315.0);
    rightClick(400.0, 315.5);
    ui.fraControl.onMouseDown(formenv::mouse_button::kLeft, 0, 10.0, 10.0);
    EXPECT_FALSE(collapsed());
    EXPECT_THAT(events.heard, IsEmpty());
    rightClick(400.0, 315.0);
    EXPECT_TRUE(collapsed());
    rightClick(0.0, 0.0);
    EXPECT_FALSE(collapsed());
}

TEST_F(LayoutTest, CollapsingAndExpandingTwiceComesBackToTheFullHeight) {
    scope.resize(10800.0, 7200.0);
    for (int i = 0; i < 2; ++i) {
        rightClick(10.0, 10.0);
        EXPECT_EQ(ui.fraControl.caption(), L"+");
        EXPECT_EQ(ui.fraControl.height(), kStrip);
        rightClick(10.0, 10.0);
        EXPECT_EQ(ui.fraControl.caption(), L"-");
        EXPECT_EQ(ui.fraControl.height(), kFullPanel);
    }
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 5235", "ChgHeight 7200", "ChgHeight 5235", "ChgHeight 7200"));
    EXPECT_FALSE(scope.bSizing());
}

TEST_F(LayoutTest, TheSpectrumKeepsItsHeightThroughACollapse) {
    scope.resize(10800.0, 7200.0);
    const formenv::Place before = ui.picSpectrum.place();
    rightClick(10.0, 10.0);
    EXPECT_EQ(ui.picSpectrum.place(), before);
    EXPECT_EQ(ui.userControl.height(), 5235.0);
}

TEST_F(LayoutTest, ACollapseHidesTheKnobsAndCountsAndRotaryKnobsStayHidden) {
    const auto shown = [&] {
        return std::vector<bool>{ui.tdKnMovCursor.visible(), ui.tdKnMovCenter.visible(), ui.tdKnGrid.visible(),
                                 ui.lblNumTX.visible(),      ui.lblNumRX.visible(),      ui.tdKnCursor.visible(),
                                 ui.tdKnCenter.visible()};
    };
    rightClick(10.0, 10.0);
    EXPECT_THAT(shown(), ElementsAre(false, false, false, false, false, false, false));
    scope.setDisplayCenterFreq(450.0);
    EXPECT_THAT(shown(), ElementsAre(false, false, false, false, false, false, false));
    rightClick(10.0, 10.0);
    EXPECT_THAT(shown(), ElementsAre(true, true, true, true, true, false, false));
}

TEST_F(LayoutTest, TheCornerHasItsTooltipAndTheRestHasNone) {
    EXPECT_EQ(tipAt(400.0, 315.0), L"Right-Click to collapse controls section.");
    EXPECT_EQ(tipAt(400.5, 315.0), L"");
    EXPECT_EQ(tipAt(400.0, 315.5), L"");
    rightClick(10.0, 10.0);
    EXPECT_EQ(tipAt(10.0, 10.0), L"Right-Click to expand controls section.");
}

TEST_F(LayoutTest, CaptionsAndTooltipsAreTheirOwn) {
    EXPECT_EQ(ui.cmdCenterCursor.toolTip(), L"Move cursor to center frequency");
    EXPECT_EQ(ui.cmdCenterCursor.caption(), L"");
    EXPECT_EQ(ui.chkViewAllxx.caption(), L"View All");
    EXPECT_EQ(ui.chkViewAllxx.toolTip(), L"View entire range of frequencies");
    EXPECT_EQ(ui.chkShowMouse.caption(), L"Show Mouse Info");
    EXPECT_EQ(ui.cmdDrawTX.caption(), L"Draw TX");
    EXPECT_EQ(ui.cmdDrawRX.caption(), L"DrawRX");
    EXPECT_EQ(ui.cmdClear.caption(), L"Clear");
    EXPECT_EQ(ui.chkOrder.caption(), L"Order");
    EXPECT_EQ(ui.lblGridRange.caption(), L"Grid Step");
    EXPECT_EQ(ui.Command1.caption(), L"Resize Test");
    EXPECT_EQ(ui.Command2.caption(), L"Redraw Test");
    EXPECT_EQ(ui.Command3.caption(), L"Add Test Freqs");
    EXPECT_EQ(ui.Command4.caption(), L"Labels Test");
    EXPECT_EQ(ui.Text4.text(), L"grid step");
    EXPECT_EQ(ui.Text5.text(), L"c freq");
    EXPECT_EQ(ui.Label1.caption(), L"");
    EXPECT_THAT(ui.cboGridRange.items(), ElementsAre(L"KHz", L"MHz", L"GHz"));
    EXPECT_EQ(ui.cboGridRange.text(), L"MHz");
}

/// What the user sees at once of the panel; the summary labels count as if they had something to say.
std::vector<formenv::Widget*> panelWidgets(Children& ui) {
    std::vector<formenv::Widget*> shown;
    for (formenv::Widget* child : ui.fraControl.children()) {
        const bool label = child->kind() == formenv::WidgetKind::Label && child != &ui.Label1;
        if (child->visible() || label)
            shown.push_back(child);
    }
    return shown;
}

/// The drop-down list of a combo box counts with its closed height.
double bottomOf(const formenv::Widget& widget) {
    return widget.top() + (widget.kind() == formenv::WidgetKind::ComboBox ? 345.0 : widget.height());
}

TEST_F(LayoutTest, PanelControlsDoNotOverlapAndKeepOutOfTheStrip) {
    const std::vector<formenv::Widget*> shown = panelWidgets(ui);
    EXPECT_GE(shown.size(), 18U);
    for (const formenv::Widget* a : shown) {
        EXPECT_GE(a->top(), kStrip) << ::testing::PrintToString(a->name());
        EXPECT_GE(a->left(), 0.0);
        EXPECT_LE(a->left() + a->width(), scope.MinWid() - 120.0) << ::testing::PrintToString(a->name());
        EXPECT_LE(bottomOf(*a), kFullPanel) << ::testing::PrintToString(a->name());
        for (const formenv::Widget* b : shown) {
            const bool apart = a->left() + a->width() <= b->left() || b->left() + b->width() <= a->left() ||
                               bottomOf(*a) <= b->top() || bottomOf(*b) <= a->top();
            EXPECT_TRUE(a == b || apart) << ::testing::PrintToString(a->name()) << " and "
                                         << ::testing::PrintToString(b->name());
        }
    }
}

TEST_F(LayoutTest, DevelopmentAidsAreHidden) {
    for (const formenv::Widget* aid : std::initializer_list<const formenv::Widget*>{
             &ui.Command1, &ui.Command2, &ui.Command3, &ui.Command4, &ui.Text1, &ui.Text2, &ui.Text3, &ui.Text4,
             &ui.Text5, &ui.Label1, &ui.cmdDebug0, &ui.cmdDebug1})
        EXPECT_FALSE(aid->visible()) << ::testing::PrintToString(aid->name());
}

/// Twips are twips: other screens change nothing but the label's width.
class LayoutAtDpi : public ::testing::TestWithParam<int> {};

TEST_P(LayoutAtDpi, HasTheSamePlacesInTwips) {
    headless::HeadlessPlatform platform;
    platform.dots = GetParam();
    RecordingEvents events;
    RecordingErrors errors;
    MemoryFiles files;
    Bandscope scope(
        Services{platform, events, errors, files, [] { return util::Ref<channels::FreqSlotBase>(new PlainSlot); }});
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(scope.children().fraPic.place(), (formenv::Place{60.0, 0.0, 11880.0, 6600.0}));
    EXPECT_EQ(scope.children().picUnits.place(), (formenv::Place{75.0, 165.0, 11730.0, 6270.0}));
    const raster::PixelSize size = scope.children().picUnits.pixelSize();
    EXPECT_NEAR(size.width, 11730.0 * GetParam() / 1440.0, 1.0);
    EXPECT_NEAR(size.height, 6270.0 * GetParam() / 1440.0, 1.0);
    EXPECT_TRUE(errors.reports.empty());
}

INSTANTIATE_TEST_SUITE_P(Screens, LayoutAtDpi, ::testing::Values(96, 120, 144, 192));

}  // namespace
}  // namespace kv::control
