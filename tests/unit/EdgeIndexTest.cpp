// Bands that meet a range of frequencies, found in few steps.
#include "channels/EdgeIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace kv::channels {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<std::int32_t> meeting(const EdgeIndex& index, double lowest, double highest) {
    std::vector<std::int32_t> positions;
    index.meet(lowest, highest, positions);
    return positions;
}

TEST(EdgeIndex, BothEndsOfTheRangeCount) {
    const EdgeIndex index({{5.0, 6.0, 0}, {1.0, 2.0, 1}, {2.0, 9.0, 2}, {-kInfinity, kInfinity, 3}});
    EXPECT_THAT(meeting(index, 2.0, 2.0), UnorderedElementsAre(1, 2, 3));
    EXPECT_THAT(meeting(index, 3.0, 5.0), UnorderedElementsAre(0, 2, 3));
    EXPECT_THAT(meeting(index, 10.0, 11.0), ElementsAre(3));
    EXPECT_THAT(meeting(EdgeIndex({}), 0.0, 1.0), ElementsAre());
}

TEST(EdgeIndex, WhatIsNotANumberMeetsNothing) {
    EXPECT_THAT(meeting(EdgeIndex({{kNaN, 2.0, 0}, {1.0, kNaN, 1}, {1.0, 2.0, 2}}), 1.0, 2.0), ElementsAre(2));
    EXPECT_THAT(meeting(EdgeIndex({{1.0, 2.0, 0}}), kNaN, kNaN), ElementsAre());
}

TEST(EdgeIndex, GroupsOf4096AndOf64BandsAreSkipped) {
    std::vector<EdgeIndex::Band> bands;
    for (int i = 0; i < 10'000; ++i)
        bands.push_back({static_cast<double>(i), i + 0.5, i});
    std::vector<std::int32_t> positions;
    // Two groups of 4096, then twelve of 64, then the bands from 8960 to 9000.
    EXPECT_EQ(EdgeIndex(bands).meet(9000.25, 9000.75, positions), 2U + 12U + 41U);
    EXPECT_THAT(positions, ElementsAre(9000));
    // A band in the second group of 4096 reaches the range.
    bands[4096].high = 9000.25;
    positions.clear();
    EXPECT_EQ(EdgeIndex(bands).meet(9000.25, 9000.75, positions), 1U + 64U + 63U + 12U + 41U);
    EXPECT_THAT(positions, UnorderedElementsAre(4096, 9000));
}

}  // namespace
}  // namespace kv::channels
