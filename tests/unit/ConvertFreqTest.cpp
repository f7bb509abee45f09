#include "util/ConvertFreq.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string_view>

#include "util/RuntimeError.h"

namespace kv::util {
namespace {

constexpr std::array<std::wstring_view, 4> kUnits{L"Hz", L"KHz", L"MHz", L"GHz"};

/// Converts where no error is expected.
double convert(std::wstring_view from, std::wstring_view to, double value) {
    bool failed = true;
    const double result = ConvertFreq(from, to, value, failed);
    EXPECT_FALSE(failed);
    return result;
}

TEST(ConvertFreqTest, EqualTextsReturnTheValueEvenWhenUnknown) {
    EXPECT_EQ(convert(L"furlong", L"furlong", 7.0), 7.0);
    EXPECT_EQ(convert(L"", L"", 7.0), 7.0);
    for (const std::wstring_view unit : kUnits)
        EXPECT_EQ(convert(unit, unit, 0.1), 0.1);
}

TEST(ConvertFreqTest, EveryPairOfUnits) {
    // 2.5 GHz and its equals; all are exact, because they are whole multiples of powers of two.
    const std::array<double, 4> same{2.5e9, 2.5e6, 2.5e3, 2.5};
    for (std::size_t from = 0; from < kUnits.size(); ++from) {
        for (std::size_t to = 0; to < kUnits.size(); ++to)
            EXPECT_EQ(convert(kUnits[from], kUnits[to], same[from]), same[to]) << from << " to " << to;
    }
}

TEST(ConvertFreqTest, UnknownUnitOnEitherSide) {
    for (const std::wstring_view unknown :
         {L"", L"THz", L"hz", L"khz", L"kHz", L"KHZ", L"mhz", L"Mhz", L"ghz", L" MHz", L"MHz "}) {
        bool failed = false;
        EXPECT_EQ(ConvertFreq(unknown, L"MHz", 5.0, failed), -88.0);
        EXPECT_TRUE(failed);
        failed = false;
        EXPECT_EQ(ConvertFreq(L"MHz", unknown, 5.0, failed), -88.0);
        EXPECT_TRUE(failed);
    }
}

TEST(ConvertFreqTest, ToMHzNeedsNoSecondUnit) {
    EXPECT_EQ(toMHz(L"GHz", 2.5), 2500.0);
    EXPECT_EQ(toMHz(L"MHz", 2.5), 2.5);
    EXPECT_EQ(toMHz(L"furlongs", 2.5), -88.0);
    EXPECT_THROW(static_cast<void>(toMHz(L"GHz", 1e308)), RuntimeError);
}

TEST(ConvertFreqTest, TheFlagForAnUnknownUnitCanBeOmitted) {
    EXPECT_EQ(ConvertFreq(L"KHz", L"GHz", 2.5e6), 2.5);
    EXPECT_EQ(ConvertFreq(L"KHz", L"furlongs", 2.5), -88.0);
    EXPECT_THROW(static_cast<void>(ConvertFreq(L"GHz", L"Hz", 1e308)), RuntimeError);
}

TEST(ConvertFreqTest, TheNextConversionClearsTheError) {
    bool failed = false;
    EXPECT_EQ(ConvertFreq(L"x", L"y", 1.0, failed), -88.0);
    ASSERT_TRUE(failed);
    EXPECT_EQ(ConvertFreq(L"GHz", L"MHz", 1.0, failed), 1000.0);
    EXPECT_FALSE(failed);
}

TEST(ConvertFreqTest, TheInvalidValueIsConvertedLikeAnyOther) {
    EXPECT_EQ(convert(L"MHz", L"KHz", kInvalidFreq), -88000.0);
}

TEST(ConvertFreqTest, StepsByOneThousandAtATime) {
    // Dividing by 1000 twice does not give the same double as dividing by 1000000 for every value.
    int differences = 0;
    for (int hz = 1; hz <= 2000; ++hz) {
        volatile double kHz = hz / 1000.0;
        volatile double mHz = kHz / 1000.0;
        EXPECT_EQ(convert(L"Hz", L"MHz", hz), mHz) << hz;
        volatile double atOnce = hz / 1e6;
        differences += atOnce != mHz ? 1 : 0;
    }
    EXPECT_GT(differences, 0);
}

TEST(ConvertFreqTest, OverflowIsARuntimeError) {
    const double largest = std::numeric_limits<double>::max();
    for (const double value : {largest, -largest}) {
        bool failed = true;
        try {
            const double result = ConvertFreq(L"MHz", L"Hz", value, failed);
            ADD_FAILURE() << "no error, but " << result;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), 6);
            EXPECT_EQ(error.text(), L"Overflow");
        }
        EXPECT_FALSE(failed);
    }
    EXPECT_EQ(convert(L"Hz", L"MHz", largest), largest / 1000.0 / 1000.0);
}

TEST(ConvertFreqTest, OverflowOnTheWayToMHzCounts) {
    // The result would fit, but the value in MHz, through which it passes, does not.
    bool failed = false;
    EXPECT_EQ(convert(L"GHz", L"GHz", 1e307), 1e307);
    EXPECT_THROW(static_cast<void>(ConvertFreq(L"GHz", L"KHz", 1e307, failed)), RuntimeError);
}

TEST(ConvertFreqTest, NumbersThatAreNotFinitePassThrough) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(convert(L"MHz", L"Hz", infinity), infinity);
    EXPECT_EQ(convert(L"Hz", L"MHz", -infinity), -infinity);
    EXPECT_TRUE(std::isnan(convert(L"KHz", L"GHz", std::numeric_limits<double>::quiet_NaN())));
}

TEST(ConvertFreqTest, TheSmallestValuesBecomeZero) {
    EXPECT_EQ(convert(L"Hz", L"MHz", std::numeric_limits<double>::denorm_min()), 0.0);
}

TEST(ConvertFreqTest, RoundTripsReturnTheValue) {
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> exponent(-12.0, 15.0);
    for (int i = 0; i < 20000; ++i) {
        const double value = std::pow(10.0, exponent(random)) * ((i & 1) != 0 ? -1.0 : 1.0);
        const std::wstring_view from = kUnits[random() % kUnits.size()];
        const std::wstring_view to = kUnits[random() % kUnits.size()];
        // At most three steps each way, and each rounds by half a unit in the last place.
        const double tolerance = std::fabs(value) * 6.0 * std::numeric_limits<double>::epsilon();
        EXPECT_NEAR(convert(to, from, convert(from, to, value)), value, tolerance);
    }
}

}  // namespace
}  // namespace kv::util
