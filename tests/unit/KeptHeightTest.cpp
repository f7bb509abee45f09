// The panel's collapse in a window whose owner keeps the control's height.
#include <utility>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kWidth = 12000.0;  // twips
constexpr double kHeight = 9000.0;
constexpr double kFullPanel = 2280.0;
constexpr double kStrip = 315.0;

class KeptHeight : public ScopeTest, private formenv::Peer {
  protected:
    double granted = kHeight;    ///< what the control gets when it wants another height; 0 for what it wants
    std::vector<double> wanted;  ///< heights

    void SetUp() override {
        scope.resize(kWidth, kHeight);
        addTX(450.0, 1.0, 2.0);
        scope.DrawDisplay();
        ui.userControl.setPeer(this);
    }
    void TearDown() override { ui.userControl.setPeer(nullptr); }
    void toggle() { ui.fraControl.onMouseDown(formenv::mouse_button::kRight, 0, 10.0, 10.0); }
    void expectLaidOutFor(double height, double panel) const {
        EXPECT_EQ(ui.userControl.height(), height);
        EXPECT_EQ(ui.fraPic.height(), height - 60.0 - panel - 60.0);
        EXPECT_EQ(ui.fraControl.top(), height - panel - 60.0);
        EXPECT_EQ(ui.fraControl.height(), panel);
        EXPECT_EQ(ui.picSpectrum.height(), ui.fraPic.height() - 330.0 - 360.0);
    }

  private:
    void changed(formenv::Change what) override {
        if (what != formenv::Change::Place || !scope.bSizing())
            return;
        const double height = ui.userControl.height();
        if (granted == 0.0 || height == granted)
            return;
        wanted.push_back(height);
        ui.userControl.setHeight(granted);
    }
};

TEST_F(KeptHeight, ThePictureTakesTheRoomOfThePanelAndGivesItBack) {
    for (int round = 0; round < 2; ++round) {
        toggle();
        expectLaidOutFor(kHeight, kStrip);
        toggle();
        expectLaidOutFor(kHeight, kFullPanel);
    }
    EXPECT_THAT(wanted, ElementsAre(kHeight - kFullPanel + kStrip, kHeight - kFullPanel + kStrip))
        << "the expansion needs no more than there is";
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 9000", "ChgHeight 9000", "ChgHeight 9000", "ChgHeight 9000"));
    EXPECT_FALSE(scope.bSizing());
}

TEST_F(KeptHeight, ThePictureIsDrawnForItsNewHeight) {
    toggle();
    const raster::PixelBuffer pixels = ui.picSpectrum.surface().pixels();
    const std::vector<std::uint32_t> first(pixels.pixels, pixels.pixels + pixels.stride * pixels.height);
    scope.JustDrawIt();
    EXPECT_TRUE(std::equal(first.begin(), first.end(), ui.picSpectrum.surface().pixels().pixels));
}

TEST_F(KeptHeight, AGrantedCollapseAsksForTheRoomAgain) {
    granted = 0.0;
    toggle();
    expectLaidOutFor(kHeight - kFullPanel + kStrip, kStrip);
    toggle();
    expectLaidOutFor(kHeight, kFullPanel);
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 7035", "ChgHeight 9000"));
}

TEST_F(KeptHeight, AHostThatResizesTheCollapsedControlIsAskedAgain) {
    toggle();
    scope.resize(kWidth, 8000.0);
    expectLaidOutFor(8000.0, kStrip);
    granted = 8000.0;
    toggle();
    expectLaidOutFor(8000.0, kFullPanel);
    EXPECT_THAT(wanted, ElementsAre(kHeight - kFullPanel + kStrip, 8000.0 - kStrip + kFullPanel));
}

TEST_F(KeptHeight, AnyOtherHeightIsTakenAsWell) {
    granted = 8500.0;
    toggle();
    expectLaidOutFor(8500.0, kStrip);
    EXPECT_THAT(events.heard, ElementsAre("ChgHeight 8500"));
    EXPECT_THAT(errors.reports, IsEmpty());
}

TEST_F(KeptHeight, TheLeastHeightLeavesTheSpectrumNoRoomToSpare) {
    ui.userControl.setPeer(nullptr);
    scope.resize(kWidth, scope.leastHeight(false));
    EXPECT_EQ(ui.picSpectrum.height(), 0.0);
    EXPECT_THAT(errors.reports, IsEmpty());
    scope.resize(kWidth, kHeight);
    toggle();
    scope.resize(kWidth, scope.leastHeight(true));
    EXPECT_EQ(ui.picSpectrum.height(), 0.0);
    EXPECT_THAT(errors.reports, IsEmpty());
    scope.resize(kWidth, scope.leastHeight(true) - 1.0);
    EXPECT_THAT(errors.reports, ::testing::Not(IsEmpty()));
}

}  // namespace
}  // namespace kv::control
