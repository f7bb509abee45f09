// Pointing at the spectrum: the read-outs, the report of what is under the pointer, and its window.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using testing::HasSubstr;

/// 350 to 550 MHz on 400 pixels: a pixel and a half is 0.75 MHz.
class MouseInfoTest : public ScopeTest {
  protected:
    void pointAt(double x, double y = 1.0) { ui.picSpectrum.onMouseMove(0, 0, x, y); }
    void tick(bool on) {
        ui.chkShowMouse.setValue(on ? 1 : 0);
        ui.chkShowMouse.onClick();
    }
    [[nodiscard]] bool isOpen() const { return scope.mouseInfoWindow() && scope.mouseInfoWindow()->isVisible(); }
    [[nodiscard]] std::wstring shown() const {
        return scope.mouseInfoWindow() ? scope.mouseInfoWindow()->text() : std::wstring();
    }
};

TEST_F(MouseInfoTest, ReadsOutFrequencyAndDistance) {
    addTX(450.0);
    showTwoPixelsAUnit();
    pointAt(452.5);
    EXPECT_EQ(ui.lblFMHz.caption(), L"452.50000 MHz");
    EXPECT_EQ(ui.lblFromCenter.caption(), L"2.50000+ MHz from center");
    pointAt(449.0);
    EXPECT_EQ(ui.lblFromCenter.caption(), L"1.00000- MHz from center");
    EXPECT_TRUE(ui.lblFMHz.visible());
    EXPECT_TRUE(ui.lblFromCenter.visible());
}

TEST_F(MouseInfoTest, APointerAtOrBelowZeroReadsOutNothingAndBuildsNoReport) {
    addTX(50.0, 100.0);
    showTwoPixelsAUnit();
    scope.DrawByRange(50.0, 50.0);
    ASSERT_EQ(scope.DisplayMinFreq(), -50.0);
    tick(true);
    for (const double x : {0.0, -20.0}) {
        pointAt(x);
        EXPECT_EQ(ui.lblFMHz.caption(), L"");
        EXPECT_EQ(ui.lblFromCenter.caption(), L"");
        EXPECT_EQ(shown(), L"");
    }
    pointAt(1.0);
    EXPECT_THAT(shown(), HasSubstr(L"TX Channels:"));
}

TEST_F(MouseInfoTest, TheHostOpensTheWindowWithoutAReport) {
    addTX(450.0);
    showTwoPixelsAUnit();
    scope.setBMouseInfo(true);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(shown(), L"");
    EXPECT_EQ(ui.chkShowMouse.value(), 1);
}

TEST_F(MouseInfoTest, SwitchingItOffOnAFreshControlOpensNothing) {
    scope.setBMouseInfo(false);
    EXPECT_EQ(scope.mouseInfoWindow(), nullptr);
}

TEST_F(MouseInfoTest, WithoutATickPointingReportsNothing) {
    addTX(450.0);
    showTwoPixelsAUnit();
    pointAt(450.0);
    EXPECT_EQ(scope.mouseInfoWindow(), nullptr);
}

TEST_F(MouseInfoTest, TwoChannelsCloserThanTheReachAreBothListed) {
    addRX(450.0);
    addRX(450.7);
    addTX(450.2);
    showTwoPixelsAUnit();
    tick(true);
    pointAt(450.3);
    EXPECT_THAT(shown(), HasSubstr(L"\r\n450.00000 "));
    EXPECT_THAT(shown(), HasSubstr(L"\r\n450.70000 "));
    EXPECT_THAT(shown(), HasSubstr(L"\r\n450.20000 "));
    EXPECT_TRUE(shown().starts_with(L"Mouse Location:\r\n450.30000 MHz\r\n\r\nRX Channels:"));
}

TEST_F(MouseInfoTest, AChannelIsHitAPixelAndAHalfAroundItsBand) {
    addRX(450.0, 1.0);
    showTwoPixelsAUnit();
    tick(true);
    // The band is 449.5 to 450.5 or wider; its edges are taken from the channel as the control completed it.
    const double low = scope.GetRXChnl(0)->dFreqLo();
    const double high = scope.GetRXChnl(0)->dFreqHi();
    for (const double x : {low - 0.75, low, 450.0, high, high + 0.75}) {
        pointAt(x);
        EXPECT_THAT(shown(), HasSubstr(L"450.00000")) << x;
    }
    for (const double x : {low - 0.76, high + 0.76}) {
        pointAt(x);
        EXPECT_EQ(shown(), L"") << x;
    }
}

TEST_F(MouseInfoTest, TheReachFollowsTheZoom) {
    addRX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    pointAt(450.7);
    EXPECT_NE(shown(), L"");
    scope.setFreqEndBuffer(10.0);
    scope.DrawByRange(450.0, 450.0);
    ASSERT_EQ(scope.DisplayMaxFreq(), 460.0);
    pointAt(450.7);
    EXPECT_EQ(shown(), L"") << "a pixel and a half is 0.075 MHz now";
    pointAt(450.07);
    EXPECT_NE(shown(), L"");
}

TEST_F(MouseInfoTest, BandsInOtherUnitsAreComparedInMegahertz) {
    const SlotRef slot = addRX(0.45);
    slot->fields().sFreqUnits = L"GHz";
    slot->fields().dFreqLo = 0.449;
    slot->fields().dFreqHi = 0.451;
    addTX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    pointAt(451.5);
    EXPECT_THAT(shown(), HasSubstr(L"\r\n0.45000 GHz"));
    // An unknown unit gives edges that no pointer reaches.
    slot->fields().sFreqUnits = L"khz";
    pointAt(451.5);
    EXPECT_EQ(shown(), L"");
}

TEST_F(MouseInfoTest, BelowTheLimitEveryChannelUnderThePointerIsListed) {
    for (int i = 0; i < 100; ++i)
        addTX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    pointAt(450.0);
    int lines = 0;
    for (std::size_t at = shown().find(L"\r\n450.00000 "); at != std::wstring::npos;
         at = shown().find(L"\r\n450.00000 ", at + 1))
        ++lines;
    // One more: the pointer's own location.
    EXPECT_EQ(lines, 101);
}

TEST_F(MouseInfoTest, AFullReportStopsReadingChannels) {
    int read = 0;
    std::vector<SlotRef> slots;
    for (int i = 0; i < 5000; ++i)
        slots.push_back(addTX(450.0));
    for (const SlotRef& slot : slots)
        slot->onRead = [&read](std::string_view member) { read += member == "dFreqHi" ? 1 : 0; };
    showTwoPixelsAUnit();
    tick(true);
    read = 0;
    pointAt(450.0);
    EXPECT_TRUE(shown().ends_with(L"\r\n\r\n ====== Max text length exceeded ======"));
    EXPECT_GT(read, 100);
    EXPECT_LT(read, 1000);
}

TEST_F(MouseInfoTest, TheWindowFollowsTheTick) {
    addTX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    pointAt(450.0);
    EXPECT_TRUE(isOpen());
    const std::wstring text = shown();
    EXPECT_NE(text, L"");
    tick(false);
    EXPECT_FALSE(isOpen());
    pointAt(500.0);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(shown(), text) << "not updated while unticked";
    scope.setBMouseInfo(true);
    EXPECT_TRUE(isOpen());
}

TEST_F(MouseInfoTest, AClosedWindowIsSetUpAgain) {
    addTX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    scope.closeMouseInfo();
    EXPECT_EQ(scope.mouseInfoWindow(), nullptr);
    pointAt(450.0);
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(scope.mouseInfoWindow()->Mode(), L"Mouse Information");
    EXPECT_THAT(shown(), HasSubstr(L"TX Channels:"));
}

TEST_F(MouseInfoTest, AnErrorInAChannelIsReportedAndTheReadOutsStay) {
    const SlotRef broken = addTX(450.0);
    showTwoPixelsAUnit();
    tick(true);
    broken->onRead = failsAt("sLabel", 440);
    pointAt(450.0);
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"BuildMouseReport");
    EXPECT_EQ(report.flag, 400);
    EXPECT_EQ(report.number, 440);
    EXPECT_EQ(ui.lblFMHz.caption(), L"450.00000 MHz");
}

TEST_F(MouseInfoTest, ChannelsMayBeRemovedWhileTheyAreRead) {
    std::vector<SlotRef> slots;
    for (int i = 0; i < 10; ++i)
        slots.push_back(addTX(450.0));
    for (const SlotRef& slot : slots)
        slot->onRead = [this](std::string_view member) {
            if (member == "sLabel")
                scope.ClearAllChnls();
        };
    showTwoPixelsAUnit();
    tick(true);
    pointAt(450.0);
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_THAT(shown(), HasSubstr(L"450.00000"));
}

TEST_F(MouseInfoTest, TheStripReadsOutTheDistanceOnly) {
    addTX(450.0);
    showTwoPixelsAUnit();
    pointAt(450.0);
    // Twips: the picture begins at the strip's left edge, 15 twips a pixel, half a megahertz each.
    ui.picUnits.onMouseMove(0, 0, ui.picSpectrum.left() + 220.0 * 15.0, 0.0);
    EXPECT_EQ(ui.lblFromCenter.caption(), L"10.00000+ MHz from center");
    EXPECT_EQ(ui.lblFMHz.caption(), L"450.00000 MHz");
}

}  // namespace
}  // namespace kv::control
