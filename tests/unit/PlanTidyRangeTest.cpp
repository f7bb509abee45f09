// Ranges with round grid lines.
#include "host/plan/TidyRange.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

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

/// A range that the control can show.
void expectUsable(const TidyRange& range) {
    EXPECT_GE(range.lowest, 0.0);
    EXPECT_LT(range.lowest, range.highest);
    EXPECT_LT(range.highest, 1.2e12);
    EXPECT_GE(range.divisions, 8);
    EXPECT_LE(range.divisions, 24);
    EXPECT_EQ(range.divisions % 2, 0);
    const double step = (range.highest - range.lowest) / range.divisions;
    EXPECT_GT(range.lowest + step, range.lowest);
    EXPECT_LT(range.highest - step, range.highest);
}

std::vector<double> unusualValues() {
    using Limits = std::numeric_limits<double>;
    std::vector<double> values = {0.0,
                                  Limits::infinity(),
                                  Limits::quiet_NaN(),
                                  Limits::max(),
                                  Limits::min(),
                                  1e308,
                                  8888888888888.0,
                                  1e12,
                                  1e-9,
                                  462.55,
                                  1.0,
                                  Limits::denorm_min(),
                                  std::nextafter(462.55, 1e3),
                                  3e6};
    for (std::size_t i = 0, count = values.size(); i < count; ++i) {
        values.push_back(-values[i]);
    }
    return values;
}

TEST(TidyRange, IsUsableForEveryPairOfUnusualValues) {
    for (const double a : unusualValues()) {
        for (const double b : unusualValues()) {
            SCOPED_TRACE(testing::Message() << a << " " << b);
            expectUsable(tidyRange(a, b));
        }
    }
}

TEST(TidyRange, IsUsableForAnyBits) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 20000; ++i) {
        const auto a = std::bit_cast<double>(random());
        const auto b = std::bit_cast<double>(random());
        SCOPED_TRACE(testing::Message() << a << " " << b);
        expectUsable(tidyRange(a, b));
    }
}

TEST(TidyRange, TheOrderOfTheEndsDoesNotMatter) {
    const TidyRange range = tidyRange(462.358125, 462.916875);
    const TidyRange reversed = tidyRange(462.916875, 462.358125);
    expectRange(reversed, range.lowest, range.highest, range.divisions);
}

TEST(TidyRange, HoldsAValueThatIsGivenTwice) {
    for (const double value : {0.0, 1e-6, 462.55, 3e6}) {
        const TidyRange range = tidyRange(value, value);
        EXPECT_LE(range.lowest, value);
        EXPECT_GT(range.highest, value);
        EXPECT_LE(range.highest - range.lowest, std::max(value, 1.0) * 2e-9);
    }
}

}  // namespace
