// The pointer at 0 MHz and outside the picture.
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using formenv::mouse_button::kLeft;

/// -50 to 150 MHz on 400 pixels of 15 twips.
class PointerEdgesTest : public RangeTest {
  protected:
    void SetUp() override {
        addTX(50.0, 10.0, 60.0);
        showTwoPixelsAUnit();
        scope.DrawByRange(50.0, 50.0);
        expectRange(-50.0, 150.0);
    }
    void pointAt(double x) { ui.picSpectrum.onMouseMove(0, 0, x, 50.0); }
    void pointAtStrip(double x) { ui.picUnits.onMouseMove(0, 0, ui.picSpectrum.left() + (x + 50.0) * 30.0, 0.0); }
};

TEST_F(PointerEdgesTest, AtOrBelowZeroTheReadOutsOfThePictureAreEmptied) {
    for (const double x : {0.0, -20.0}) {
        pointAt(1.0);
        EXPECT_EQ(ui.lblFMHz.caption(), L"1.00000 MHz");
        EXPECT_EQ(ui.lblFromCenter.caption(), L"49.00000- MHz from center");
        pointAt(x);
        EXPECT_EQ(ui.lblFMHz.caption(), L"");
        EXPECT_EQ(ui.lblFromCenter.caption(), L"");
    }
}

TEST_F(PointerEdgesTest, AtOrBelowZeroTheReadOutOfTheStripIsEmptied) {
    for (const double x : {0.0, -20.0}) {
        pointAtStrip(75.0);
        EXPECT_EQ(ui.lblFromCenter.caption(), L"25.00000+ MHz from center");
        pointAtStrip(x);
        EXPECT_EQ(ui.lblFromCenter.caption(), L"");
    }
}

TEST_F(PointerEdgesTest, TheReadOutsBecomeVisible) {
    ui.lblFMHz.setVisible(false);
    ui.lblFromCenter.setVisible(false);
    pointAt(-20.0);
    EXPECT_TRUE(ui.lblFMHz.visible());
    EXPECT_TRUE(ui.lblFromCenter.visible());
    ui.lblFromCenter.setVisible(false);
    pointAtStrip(75.0);
    EXPECT_TRUE(ui.lblFromCenter.visible());
}

TEST_F(PointerEdgesTest, ADragThatStartsOutsideBeginsAtTheEdge) {
    for (const auto& [outside, minimum, maximum] :
         {std::tuple{900.0, 100.0, 150.0}, std::tuple{-900.0, -50.0, 100.0}}) {
        scope.DrawByRange(50.0, 50.0);
        events.heard.clear();
        ui.picSpectrum.onMouseDown(kLeft, 0, outside, 50.0);
        ui.picSpectrum.onMouseMove(kLeft, 0, outside, 50.0);
        ui.picSpectrum.onMouseMove(kLeft, 0, 100.0, 50.0);
        ui.picSpectrum.onMouseUp(kLeft, 0, 100.0, 50.0);
        expectRange(minimum, maximum);
        EXPECT_EQ(events.heard.size(), 1U);
    }
}

}  // namespace
}  // namespace kv::control
