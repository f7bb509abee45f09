// Lower band edges as steps of a grid.
#include "channels/FrequencyGrid.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace kv::channels {
namespace {

constexpr std::int32_t kSteps = 1 << FrequencyGrid::kBits;
constexpr double kLeastUnit = 1e-9;  // MHz

class FrequencyGridTest : public ::testing::Test {
  protected:
    void append(double low, double high) {
        DrawRecord made;
        made.dFreq = high;
        made.dFreqLo = low;
        made.dFreqHi = high;
        records_.push_back(made);
    }
    void derive(std::size_t block = 0) {
        blocks_.resize(records_.size());
        grid_.resize(records_.size());
        blocks_.derive(records_, block);
        grid_.derive(records_, blocks_.blocks()[block], block);
    }

    std::vector<DrawRecord> records_;
    BandBlocks blocks_;
    FrequencyGrid grid_;
};

TEST_F(FrequencyGridTest, SpansTheBandsOfAllRecordsOfABlock) {
    append(100.0, 110.0);
    append(150.0, 200.0);
    derive();
    EXPECT_EQ(grid_.scale(0).origin, 100.0);
    EXPECT_EQ(grid_.scale(0).unit, 100.0 / kSteps);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, kSteps / 2}));
    append(0.0, 100.0);
    derive();
    EXPECT_EQ(grid_.scale(0).origin, 0.0);
    EXPECT_EQ(grid_.scale(0).unit, 200.0 / kSteps);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({kSteps / 2, kSteps / 4 * 3, 0}));
}

TEST_F(FrequencyGridTest, ABandFarAwayMakesItsOwnBlockCoarseOnly) {
    for (std::size_t i = 0; i < BandBlocks::kSize; ++i)
        append(100.0, 200.0);
    append(-1e9, 150.0);
    append(199.9, 200.0);
    derive(0);
    derive(1);
    EXPECT_EQ(grid_.scale(0).origin, 100.0);
    EXPECT_EQ(grid_.scale(0).unit, 100.0 / kSteps);
    EXPECT_EQ(grid_.low()[BandBlocks::kSize - 1], 0);
    EXPECT_EQ(grid_.scale(1).origin, -1e9);
    EXPECT_EQ(grid_.low()[BandBlocks::kSize], 0);
    EXPECT_EQ(grid_.low()[BandBlocks::kSize + 1], kSteps - 1) << "a tenth of a MHz is less than a step";
}

TEST_F(FrequencyGridTest, ABlockThatIsNotDerivedKeepsItsGrid) {
    for (std::size_t i = 0; i < BandBlocks::kSize; ++i)
        append(100.0, 200.0);
    append(300.0, 400.0);
    derive(0);
    records_[0].dFreqLo = 50.0;
    derive(1);
    EXPECT_EQ(grid_.scale(0).origin, 100.0);
    EXPECT_EQ(grid_.scale(1).origin, 300.0);
    derive(0);
    EXPECT_EQ(grid_.scale(0).origin, 50.0);
}

TEST_F(FrequencyGridTest, HasTheLeastUnitWithoutASpan) {
    append(-5.0, -4.0);
    derive();
    EXPECT_EQ(grid_.scale(0).origin, 0.0);
    EXPECT_EQ(grid_.scale(0).unit, kLeastUnit);
    for (const double low : {0.0, 1e-300}) {
        records_.clear();
        append(low, 1e-300);
        derive();
        EXPECT_EQ(grid_.scale(0).origin, low);
        EXPECT_EQ(grid_.scale(0).unit, kLeastUnit) << "a unit must have a reciprocal";
        EXPECT_EQ(grid_.low()[0], 0);
    }
}

TEST_F(FrequencyGridTest, RecordsThatAreNotRegularKeepToItsEnds) {
    append(100.0, 200.0);
    append(std::numeric_limits<double>::quiet_NaN(), 150.0);
    append(-1e300, 150.0);
    append(1e300, 150.0);
    derive();
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, 0, 0, kSteps}));
}

}  // namespace
}  // namespace kv::channels
