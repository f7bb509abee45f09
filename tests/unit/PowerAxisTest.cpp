// The power axis: its steps, its lines and its labels.
#include "control/PowerAxis.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "tests/unit/PartsFixture.h"

namespace kv::control {
namespace {

class PowerAxisTest : public PartsTest {
  protected:
    /// A picture of this size at this resolution, with these powers at its top and bottom.
    PowerAxis axisOf(double top, double bottom, int width = 400, int height = 200, int dpi = 96) {
        platform.dots = dpi;
        picture.setFontSize(8.0 * dpi / 96.0);  // the platform's texts do not grow with the resolution
        picture.move({0.0, 0.0, width * 1440.0 / dpi, height * 1440.0 / dpi});
        picture.setScaleTop(top);
        picture.setScaleHeight(bottom - top);
        OverlayInk ink(picture);
        return PowerAxis(picture, ink);
    }
    static std::vector<std::wstring> textsOf(const PowerAxis& axis) {
        std::vector<std::wstring> texts;
        for (const PowerAxis::Line& line : axis.lines())
            texts.push_back(line.text);
        return texts;
    }
};

TEST(NiceStep, IsTheNextOneTwoOrFiveTimesAPowerOfTen) {
    for (const auto& [least, step] : {std::pair{1.0, 1.0},
                                      {1.0001, 2.0},
                                      {2.0, 2.0},
                                      {2.1, 5.0},
                                      {5.0, 5.0},
                                      {5.1, 10.0},
                                      {0.03, 0.05},
                                      {0.001, 0.001},
                                      {7000.0, 10000.0},
                                      {1e-9, 1e-9},
                                      {3e200, 5e200}})
        EXPECT_DOUBLE_EQ(niceStep(least), step) << least;
}

TEST(NiceStep, IsZeroWithoutANumberToStartFrom) {
    for (const double least : {0.0, -1.0, std::nan(""), HUGE_VAL, 1.7e308})
        EXPECT_EQ(niceStep(least), 0.0) << least;
}

TEST_F(PowerAxisTest, LabelsNameThePowersAndTheUppermostAddsTheUnit) {
    const PowerAxis axis = axisOf(50.0, -130.0);
    EXPECT_EQ(axis.step(), 50.0);
    EXPECT_EQ(textsOf(axis), (std::vector<std::wstring>{L"-100", L"-50", L"0 dBm"}));
    // 200 rows for 180 dB.
    EXPECT_EQ(axis.lines().front().row, 167);
    EXPECT_EQ(axis.lines().back().row, 56);
}

TEST_F(PowerAxisTest, NumbersHaveTheDigitsOfTheStep) {
    EXPECT_EQ(textsOf(axisOf(-10.0, -10.5, 400, 150)),
              (std::vector<std::wstring>{L"-10.4", L"-10.3", L"-10.2", L"-10.1 dBm"}));
    EXPECT_EQ(textsOf(axisOf(3e-9, 0.0, 400, 120)), (std::vector<std::wstring>{L"1e-09", L"2e-09 dBm"}));
    EXPECT_EQ(textsOf(axisOf(3e12, -3e12, 400, 120)), (std::vector<std::wstring>{L"-2e+12", L"0", L"2e+12 dBm"}));
}

TEST_F(PowerAxisTest, ThereIsNoAxisWithoutRoomOrWithoutDifferentPowers) {
    EXPECT_TRUE(axisOf(50.0, -130.0, 400, 20).lines().empty());
    EXPECT_TRUE(axisOf(50.0, -130.0, 20, 200).lines().empty());
    EXPECT_TRUE(axisOf(50.0 + 1e-13, 50.0).lines().empty());
    EXPECT_TRUE(axisOf(1e300, 1e300 - 1e285).lines().empty());
    platform.noFonts = true;
    EXPECT_TRUE(axisOf(50.0, -130.0).lines().empty());
}

TEST_F(PowerAxisTest, PowersThatGrowDownwardsAreLabeledAsWell) {
    const PowerAxis axis = axisOf(-130.0, 50.0);
    EXPECT_EQ(textsOf(axis), (std::vector<std::wstring>{L"-100", L"-50", L"0 dBm"}));
    EXPECT_LT(axis.lines().front().row, axis.lines().back().row);
}

/// Everything that holds for any size, resolution and range.
void expectSound(const PowerAxis& axis, const formenv::PictureBox& picture) {
    const raster::PixelMap map = picture.pixelMap();
    const auto& lines = axis.lines();
    if (lines.empty())
        return;
    const double mantissa = axis.step() / std::pow(10.0, std::floor(std::log10(axis.step() * (1.0 + 1e-9))));
    EXPECT_TRUE(std::abs(mantissa - 1.0) < 1e-6 || std::abs(mantissa - 2.0) < 1e-6 || std::abs(mantissa - 5.0) < 1e-6)
        << axis.step();
    std::set<std::wstring> texts;
    int units = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const PowerAxis::Line& line = lines[i];
        EXPECT_EQ(line.row, map.y(line.power));
        EXPECT_TRUE(line.row > 0 && line.row < map.size.height);
        if (line.text.empty())
            continue;
        EXPECT_TRUE(texts.insert(line.text).second) << "twice";
        units += line.text.ends_with(L" dBm") ? 1 : 0;
        EXPECT_TRUE(line.label.left >= 0 && line.label.right <= map.size.width && line.label.top >= 0 &&
                    line.label.bottom <= map.size.height);
        EXPECT_TRUE(line.label.top <= line.row && line.row < line.label.bottom);
        for (std::size_t other = 0; other < i; ++other)
            EXPECT_FALSE(!lines[other].text.empty() && meet(lines[other].label, line.label));
    }
    EXPECT_EQ(units, 1);
}

TEST_F(PowerAxisTest, LabelsNeverOverlapAtAnySizeResolutionAndRange) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> exponent(-9.0, 9.0);
    std::uniform_real_distribution<double> share(-1.0, 1.0);
    std::uniform_int_distribution<int> pixels(1, 1200);
    std::uniform_int_distribution<int> dpi(96, 192);
    int axes = 0;
    for (int round = 0; round < 3000; ++round) {
        const double span = std::pow(10.0, exponent(random));
        const double bottom = share(random) * std::pow(10.0, exponent(random));
        if (bottom + span == bottom)
            continue;
        const PowerAxis axis = axisOf(bottom + span, bottom, pixels(random), pixels(random), dpi(random));
        expectSound(axis, picture);
        axes += axis.lines().empty() ? 0 : 1;
        if (HasFailure())
            FAIL() << "from " << bottom << ", " << span << " dB in " << picture.pixelSize().width << " x "
                   << picture.pixelSize().height;
    }
    EXPECT_GT(axes, 2000);
}

}  // namespace
}  // namespace kv::control
