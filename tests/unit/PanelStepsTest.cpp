// The panel and the mouse report step by step: which step a failure names, and what very large windows make of heights.
#include "tests/unit/Keys.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PanelStepsTest : public ScopeTest {
  protected:
    /// Fails at the n-th yield from now on.
    void failAtYield(int n) {
        platform.onPump = [this, n, yields = 0]() mutable {
            if (++yields == n)
                throw util::RuntimeError(util::error_number::kAutomation);
        };
    }
    bool key(int code, int shift = 0) { return ui.picSpectrum.onKeyDown(code, shift); }
};

TEST_F(PanelStepsTest, ResizeNamesTheStepThatFailed) {
    const std::int16_t steps[] = {300, 400, 500, 800};
    for (int n = 1; n <= 4; ++n) {
        failAtYield(n);
        scope.resize(12000.0 + n, 9000.0);
        platform.onPump = nullptr;
        EXPECT_EQ(takeReport().flag, steps[n - 1]) << "yield " << n;
    }
}

TEST_F(PanelStepsTest, ToggleNamesTheStepThatFailed) {
    const double full = ui.userControl.height();
    // The yields of the resize, which reports for itself, come first.
    failAtYield(5);
    scope.ToggleControlsSection();
    platform.onPump = nullptr;
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"ToggleControlsSection");
    EXPECT_EQ(report.flag, 400);
    EXPECT_FALSE(scope.bSizing());
    scope.ToggleControlsSection();
    EXPECT_EQ(ui.userControl.height(), full);
}

TEST_F(PanelStepsTest, ToggleUpdatesTheControlBetweenItsTwoYields) {
    struct Window final : formenv::Peer {
        explicit Window(std::vector<std::string>& calls) : happened(calls) {}
        void changed(formenv::Change what) override {
            if (what == formenv::Change::Update)
                happened.emplace_back("update");
        }
        std::vector<std::string>& happened;
    };
    std::vector<std::string> happened;
    Window window(happened);
    ui.userControl.setPeer(&window);
    platform.onPump = [&] { happened.emplace_back("yield"); };
    scope.ToggleControlsSection();
    platform.onPump = nullptr;
    ui.userControl.setPeer(nullptr);
    ASSERT_GE(happened.size(), 3U);
    const std::vector<std::string> last(happened.end() - 3, happened.end());
    EXPECT_THAT(last, ElementsAre("yield", "update", "yield"));
}

TEST_F(PanelStepsTest, MouseReportNamesTheStepThatFailed) {
    const SlotRef tx = addTX(450.0, 10.0, 40.0);
    scope.DrawDisplay();
    scope.setBMouseInfo(true);
    tx->onRead = failsAt("sLabel", util::error_number::kAutomation);
    ui.picSpectrum.onMouseMove(0, 0, 450.0, 1.0);
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"BuildMouseReport");
    EXPECT_EQ(report.flag, 400);
}

TEST_F(PanelStepsTest, OpeningTheReportWithoutAPositionShowsNoOlderReport) {
    addTX(450.0, 10.0, 40.0);
    scope.DrawDisplay();
    scope.setBMouseInfo(true);
    ui.picSpectrum.onMouseMove(0, 0, 450.0, 1.0);
    EXPECT_NE(scope.mouseInfoWindow()->txtEdit.text(), L"");
    scope.setBMouseInfo(true);
    EXPECT_EQ(scope.mouseInfoWindow()->txtEdit.text(), L"");
    scope.setBMouseInfo(false);
    scope.setBMouseInfo(true);
    EXPECT_EQ(scope.mouseInfoWindow()->txtEdit.text(), L"");
}

TEST_F(PanelStepsTest, HeightBeyondSixteenBitsIsTheLargestThatTheEventHolds) {
    scope.resize(12000.0, 60000.0);
    scope.ToggleControlsSection();
    scope.ToggleControlsSection();
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 32767", "ChgHeight 32767"));
    EXPECT_EQ(ui.userControl.height(), 60000.0);
}

TEST_F(PanelStepsTest, KeyCTogglesThePanelWithAndWithoutChannels) {
    EXPECT_TRUE(key(key::kC));
    EXPECT_TRUE(scope.isCollapsed());
    addTX(450.0);
    scope.DrawDisplay();
    EXPECT_TRUE(key(key::kC));
    EXPECT_FALSE(scope.isCollapsed());
    EXPECT_EQ(events.heard.size(), 2U);
}

TEST_F(PanelStepsTest, KeyBZoomsToTheSpanBetweenTwoPlacesOfTheCursor) {
    addTX(450.0, 20.0, 40.0);
    showTwoPixelsAUnit();
    scope.setCursorVal(440.0);
    EXPECT_TRUE(key(key::kB));
    EXPECT_THAT(events.heard, IsEmpty());
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(key(key::kRight, key::kShift));
    EXPECT_TRUE(key(key::kB));
    EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), 440.0);
    EXPECT_DOUBLE_EQ(scope.DisplayMaxFreq(), 460.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 440 460"));
}

TEST_F(PanelStepsTest, EscapeDropsTheSpanAndItsBand) {
    addTX(450.0, 20.0, 40.0);
    showTwoPixelsAUnit();
    scope.setCursorVal(440.0);
    EXPECT_FALSE(ui.picSpectrum.wantsKey(key::kEscape));
    EXPECT_TRUE(key(key::kB));
    EXPECT_TRUE(ui.picSpectrum.wantsKey(key::kEscape));
    EXPECT_TRUE(key(key::kRight, key::kShift));
    EXPECT_TRUE(key(key::kEscape));
    EXPECT_FALSE(ui.picSpectrum.wantsKey(key::kEscape));
    const std::vector<std::uint32_t> after = pixelsOf(ui.picSpectrum);
    scope.setCursorVal(441.0);
    EXPECT_EQ(after, pixelsOf(ui.picSpectrum)) << "nothing but the cursor line was left";
    EXPECT_EQ(scope.DisplayMinFreq(), 350.0);
    // The next one begins anew.
    EXPECT_TRUE(key(key::kB));
    EXPECT_EQ(scope.DisplayMinFreq(), 350.0);
}

}  // namespace
}  // namespace kv::control
