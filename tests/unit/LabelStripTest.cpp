// The frequency labels are written again only when they would differ. Each case compares the strip with one that was
// cleared first, so that every label has to be written.
#include <functional>
#include <ostream>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Values;

class LabelStripTest : public ScopeTest {
  protected:
    void SetUp() override {
        scope.resize(10800.0, 7200.0);
        scope.DrawByRange(450.0, 450.0);
        scope.DrawDisplay();
    }

    [[nodiscard]] std::vector<std::uint32_t> strip() { return pixelsOf(ui.picUnits); }
    [[nodiscard]] std::vector<std::uint32_t> stripFromScratch() {
        ui.picUnits.cls();
        scope.DrawDisplay();
        return strip();
    }
};

TEST_F(LabelStripTest, StaysWhenNothingChanged) {
    const std::uint64_t before = ui.picUnits.changes();
    const std::vector<std::uint32_t> pixels = strip();
    addTX(450.0, 1.0, 20.0)->fields().bVisible = true;
    scope.DrawDisplay();
    scope.Refresh();
    EXPECT_EQ(ui.picUnits.changes(), before);
    EXPECT_EQ(strip(), pixels);
    EXPECT_EQ(stripFromScratch(), pixels);
}

TEST_F(LabelStripTest, TicksAreDrawnAllTheSame) {
    headless::RecordingCanvas spectrum{{400, 200}};
    ui.picSpectrum.divert(&spectrum);
    scope.setNGridX(2);
    scope.DrawDisplay();
    spectrum.forget();
    const std::uint64_t before = ui.picUnits.changes();
    scope.DrawDisplay();
    EXPECT_EQ(ui.picUnits.changes(), before);
    EXPECT_THAT(spectrum.lines(), ::testing::Contains(::testing::HasSubstr("pen 808080 w3")).Times(2));
}

TEST_F(LabelStripTest, ComesBackAfterTheLabelsWereCleared) {
    const std::vector<std::uint32_t> pixels = strip();
    scope.ClearDisplayLabels();
    ASSERT_NE(strip(), pixels);
    scope.DrawDisplay();
    EXPECT_EQ(strip(), pixels);
}

TEST_F(LabelStripTest, LosesWhatWasWrittenOverIt) {
    const std::vector<std::uint32_t> pixels = strip();
    ui.picUnits.strokeText({5, 5}, L"x", 0);
    ASSERT_NE(strip(), pixels);
    scope.DrawDisplay();
    EXPECT_EQ(strip(), pixels);
}

/// What is different, and how it is made so.
struct Difference {
    const char* name;
    std::function<void(Bandscope&, headless::HeadlessPlatform&)> make;
    friend std::ostream& operator<<(std::ostream& out, const Difference& difference) { return out << difference.name; }
};

class ChangedLabelStripTest : public LabelStripTest, public ::testing::WithParamInterface<Difference> {};

TEST_P(ChangedLabelStripTest, IsWrittenAgain) {
    const std::vector<std::uint32_t> before = strip();
    GetParam().make(scope, platform);
    scope.DrawDisplay();
    const std::vector<std::uint32_t> after = strip();
    EXPECT_NE(after, before);
    EXPECT_EQ(stripFromScratch(), after);
}

formenv::PictureBox& stripOf(Bandscope& scope) {
    return scope.children().picUnits;
}

INSTANTIATE_TEST_SUITE_P(
    All, ChangedLabelStripTest,
    Values(Difference{"Range", [](Bandscope& scope, auto&) { scope.DrawByRange(950.0, 950.0); }},
           Difference{"Divisions", [](Bandscope& scope, auto&) { scope.setNGridX(6); }},
           Difference{"Size", [](Bandscope& scope, auto&) { scope.resize(12000.0, 7200.0); }},
           Difference{"Height", [](Bandscope& scope, auto&) { scope.resize(10800.0, 6000.0); }},
           Difference{"PictureMoved",
                      [](Bandscope& scope, auto&) {
                          formenv::PictureBox& picture = scope.children().picSpectrum;
                          picture.move({picture.left() + 30.0, picture.top(), picture.width(), picture.height()});
                      }},
           Difference{"TextColor", [](Bandscope& scope, auto&) { stripOf(scope).setForeColor(0x0000FF); }},
           Difference{"SystemColorOfTexts",
                      [](Bandscope& scope, headless::HeadlessPlatform& platform) {
                          platform.systemColors[stripOf(scope).foreColor()] = 0x123456;
                      }},
           Difference{"SystemColorOfTheStrip",
                      [](Bandscope& scope, headless::HeadlessPlatform& platform) {
                          platform.systemColors[stripOf(scope).backColor()] = 0x123456;
                      }},
           Difference{"Font",
                      [](Bandscope& scope, auto&) {
                          raster::Font font = stripOf(scope).font();
                          font.bold = true;
                          stripOf(scope).setFont(font);
                      }}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace kv::control
