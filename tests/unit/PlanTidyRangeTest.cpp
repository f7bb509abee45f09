// Ranges with round grid lines.
#include "host/plan/TidyRange.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using kv::host::TidyRange;
using kv::host::tidyRange;

void expectRange(const TidyRange& range, double lowest, double highest, int divisions) {
    EXPECT_NEAR(range.lowest, lowest, 1e-9);
    EXPECT_NEAR(range.highest, highest, 1e-9);
    EXPECT_EQ(range.divisions, divisions);
}

TEST(TidyRange, Examples) {
    expectRange(tidyRange(462.358125, 462.916875), 462.35, 462.95, 24);
    expectRange(tidyRange(0.0, 10.0), 0.0, 11.0, 22);
    expectRange(tidyRange(100.0, 200.0), 95.0, 205.0, 22);
    expectRange(tidyRange(127.4, 195.85), 120.0, 200.0, 16);
}

TEST(TidyRange, HoldsTheSpanInFewRoundSteps) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> exponent(-6.0, 6.0);
    for (int i = 0; i < 5000; ++i) {
        const double lowest = std::pow(10.0, exponent(random));
        const double highest = lowest + std::max(std::pow(10.0, exponent(random)), lowest * 1e-6);
        const TidyRange range = tidyRange(lowest, highest);
        ASSERT_GE(range.lowest, 0.0);
        ASSERT_LE(range.lowest, lowest);
        ASSERT_GE(range.highest, highest);
        ASSERT_LE(range.divisions, 24);
        ASSERT_GE(range.divisions, 8);
        ASSERT_EQ(range.divisions % 2, 0);
        const double step = (range.highest - range.lowest) / range.divisions;
        const double digits = step / std::pow(10.0, std::floor(std::log10(step * 1.0000001)));
        ASSERT_THAT(digits, testing::AnyOf(testing::DoubleNear(1.0, 1e-3), testing::DoubleNear(2.0, 1e-3),
                                           testing::DoubleNear(2.5, 1e-3), testing::DoubleNear(5.0, 1e-3)))
            << lowest << " " << highest;
        // The step is a difference, so that its error grows with the number of steps from 0.
        const double lines = range.lowest / step;
        ASSERT_NEAR(lines, std::round(lines), 1e-3 + lines * 1e-9);
    }
}

}  // namespace
