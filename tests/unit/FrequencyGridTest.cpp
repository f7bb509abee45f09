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
    void derive(std::size_t from) {
        blocks_.derive(records_, from);
        grid_.derive(records_, blocks_.blocks(), from);
    }

    std::vector<DrawRecord> records_;
    BandBlocks blocks_;
    FrequencyGrid grid_;
};

TEST_F(FrequencyGridTest, SpansTheBandsOfAllRecords) {
    append(100.0, 110.0);
    append(150.0, 200.0);
    derive(0);
    EXPECT_EQ(grid_.scale().origin, 100.0);
    EXPECT_EQ(grid_.scale().unit, 100.0 / kSteps);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, kSteps / 2}));
}

TEST_F(FrequencyGridTest, StaysWhileNewBandsAreInside) {
    append(100.0, 200.0);
    derive(0);
    append(100.0, 200.0);
    append(125.0, 130.0);
    derive(1);
    EXPECT_EQ(grid_.scale().unit, 100.0 / kSteps);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, 0, kSteps / 4}));
}

TEST_F(FrequencyGridTest, IsComputedAgainForABandOutside) {
    append(100.0, 200.0);
    derive(0);
    append(150.0, 300.0);
    derive(1);
    EXPECT_EQ(grid_.scale().origin, 100.0);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, kSteps / 4}));
    append(0.0, 100.0);
    derive(2);
    EXPECT_EQ(grid_.scale().origin, 0.0);
    EXPECT_EQ(grid_.scale().unit, 300.0 / kSteps);
    EXPECT_EQ(grid_.low()[2], 0);
    EXPECT_NEAR(grid_.low()[0], kSteps / 3.0, 1.0);
}

TEST_F(FrequencyGridTest, IsComputedAgainWhenAllRecordsHaveChanged) {
    append(100.0, 200.0);
    derive(0);
    records_.clear();
    append(140.0, 150.0);
    derive(0);
    EXPECT_EQ(grid_.scale().origin, 140.0);
    EXPECT_EQ(grid_.scale().unit, 10.0 / kSteps);
}

TEST_F(FrequencyGridTest, HasTheLeastUnitWithoutASpan) {
    append(-5.0, -4.0);
    derive(0);
    EXPECT_EQ(grid_.scale().origin, 0.0);
    EXPECT_EQ(grid_.scale().unit, kLeastUnit);
    records_.clear();
    append(100.0, 100.0);
    derive(0);
    EXPECT_EQ(grid_.scale().origin, 100.0);
    EXPECT_EQ(grid_.scale().unit, kLeastUnit);
    EXPECT_EQ(grid_.low()[0], 0);
}

TEST_F(FrequencyGridTest, RecordsThatAreNotRegularKeepToItsEnds) {
    append(100.0, 200.0);
    append(std::numeric_limits<double>::quiet_NaN(), 150.0);
    append(-1e300, 150.0);
    append(1e300, 150.0);
    derive(0);
    EXPECT_EQ(grid_.low(), std::vector<std::int32_t>({0, 0, 0, kSteps}));
}

}  // namespace
}  // namespace kv::channels
