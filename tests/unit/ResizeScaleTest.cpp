// What a resize reads of the display besides placing the children.
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

class ResizeScaleTest : public RangeTest {
  protected:
    /// Moves the picture's scale away from the displayed range.
    void disturb() {
        ui.picSpectrum.setScaleLeft(1.0);
        ui.picSpectrum.setScaleWidth(2.0);
    }
    void expectScaleOfTheRange() {
        EXPECT_EQ(ui.picSpectrum.scaleLeft(), 350.0);
        EXPECT_EQ(ui.picSpectrum.scaleWidth(), 200.0);
    }
};

TEST_F(ResizeScaleTest, DerivesTheHighestFrequencyWhichThenStays) {
    addTX(450.0);
    scope.resize(12000.0, 9000.0);
    addTX(900.0);
    EXPECT_TRUE(scope.DrawDisplay());
    expectRange(350.0, 550.0);
}

TEST_F(ResizeScaleTest, AppliesTheScaleBeforeThePictureIsPlaced) {
    addTX(450.0);
    scope.DrawDisplay();
    disturb();
    const double before = ui.picSpectrum.width();
    platform.onPump = [&] {
        if (ui.picSpectrum.width() != before)
            expectScaleOfTheRange();
    };
    scope.resize(12000.0, 9000.0);
    platform.onPump = nullptr;
    EXPECT_NE(ui.picSpectrum.width(), before);
    expectScaleOfTheRange();
}

TEST_F(ResizeScaleTest, AppliesTheScaleAgainInTheNewSize) {
    addTX(450.0);
    scope.DrawDisplay();
    const double before = ui.picSpectrum.width();
    platform.onPump = [&] {
        if (ui.picSpectrum.width() != before)
            disturb();
    };
    scope.resize(12000.0, 9000.0);
    platform.onPump = nullptr;
    expectScaleOfTheRange();
}

TEST_F(ResizeScaleTest, WithoutTheWidthOfALabelThePictureBeginsAt60Twips) {
    platform.noFonts = true;
    scope.resize(12000.0, 9000.0);
    EXPECT_EQ(ui.picSpectrum.left(), 60.0);
    EXPECT_EQ(ui.picSpectrum.width(), ui.picUnits.width() - 60.0);
}

TEST_F(ResizeScaleTest, LabelsAreEightPointsWhateverTheStripHadBefore) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.picUnits.setFontSize(14.0);
    headless::RecordingCanvas units({600, 300});
    ui.picUnits.divert(&units);
    scope.DrawDisplay();
    EXPECT_EQ(ui.picUnits.font().points, 8.0);
    EXPECT_THAT(units.log(), ::testing::HasSubstr("\"370.000\" font \"Tahoma\" 8 color"));
}

}  // namespace
}  // namespace kv::control
