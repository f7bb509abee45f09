#include "turndial/KnobScale.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using kv::turndial::KnobScale;
using testing::DoubleEq;
using testing::Optional;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

KnobScale range(double min, double max, double step) {
    return {min, max, step, {}, false, false};
}
KnobScale smoothRange(double min, double max, double step) {
    return {min, max, step, {}, true, false};
}
KnobScale decades() {
    KnobScale scale;
    for (const double value : {0.5, 1.0, 2.0, 5.0, 10.0})
        scale.stops.push_back({L"", value});
    return scale;
}

TEST(KnobScale, PlacesRunFromTheLowEndToTheHighEnd) {
    const KnobScale scale = range(430.0, 450.0, 2.0);
    EXPECT_EQ(scale.placeOf(430.0), 0.0);
    EXPECT_EQ(scale.placeOf(435.0), 0.25);
    EXPECT_EQ(scale.placeOf(450.0), 1.0);
    EXPECT_LT(scale.placeOf(429.0), 0.0);
    EXPECT_GT(scale.placeOf(451.0), 1.0);
    EXPECT_LT(scale.placeOf(std::nan("")), 0.0);
    EXPECT_EQ(scale.detents(), 10.0);
}

TEST(KnobScale, StopsStandAtEvenDistances) {
    const KnobScale scale = decades();
    EXPECT_EQ(scale.placeOf(0.5), 0.0);
    EXPECT_EQ(scale.placeOf(2.0), 0.5);
    EXPECT_EQ(scale.placeOf(10.0), 1.0);
    EXPECT_DOUBLE_EQ(scale.placeOf(7.5), 0.875);
    EXPECT_LT(scale.placeOf(0.1), 0.0);
    EXPECT_GT(scale.placeOf(11.0), 1.0);
    EXPECT_EQ(scale.detents(), 4.0);
}

TEST(KnobScale, AHandMeetsDetents) {
    const KnobScale scale = range(430.0, 450.0, 2.0);
    EXPECT_EQ(scale.valueAt(0.0, false), 430.0);
    EXPECT_EQ(scale.valueAt(0.04, false), 430.0);
    EXPECT_EQ(scale.valueAt(0.06, false), 432.0);
    EXPECT_EQ(scale.valueAt(1.0, false), 450.0);
    // The last detent is cut short: the end is a place to stand all the same.
    const KnobScale uneven = range(0.0, 10.0, 4.0);
    EXPECT_EQ(uneven.valueAt(0.85, false), 8.0);
    EXPECT_EQ(uneven.valueAt(0.95, false), 10.0);
    EXPECT_EQ(decades().valueAt(0.3, false), 1.0);
    EXPECT_EQ(decades().valueAt(0.4, false), 2.0);
}

TEST(KnobScale, ASmoothHandReadsTidyNumbers) {
    const KnobScale scale = smoothRange(430.0, 450.0, 2.0);
    EXPECT_EQ(scale.valueAt(1.0 / 3.0, false), 436.67);
    EXPECT_EQ(scale.valueAt(1.0 / 3.0, true), 436.667);
    EXPECT_EQ(smoothRange(0.0, 2e6, 1000.0).valueAt(1.0 / 3.0, false), 666670.0);
    EXPECT_EQ(scale.valueAt(1e-9, false), 430.0);
}

TEST(KnobScale, StepsAreDetents) {
    const KnobScale scale = range(0.0, 1.0, 0.1);
    EXPECT_THAT(scale.stepped(0.2, 1, false), Optional(0.3));
    EXPECT_THAT(scale.stepped(0.3, -1, false), Optional(0.2));
    EXPECT_THAT(scale.stepped(0.2, 5, false), Optional(0.7));
    EXPECT_THAT(scale.stepped(0.9, 5, false), Optional(1.0));
    EXPECT_EQ(scale.stepped(1.0, 1, false), std::nullopt);
    EXPECT_EQ(scale.stepped(0.0, -1, false), std::nullopt);
    EXPECT_EQ(scale.stepped(0.5, 0, false), std::nullopt);
    // Many single steps arrive where they should.
    double value = 0.0;
    for (int i = 0; i < 10; ++i)
        value = scale.stepped(value, 1, false).value_or(-1.0);
    EXPECT_EQ(value, 1.0);
}

TEST(KnobScale, BetweenDetentsTheNeighbourIsNext) {
    const KnobScale scale = range(430.0, 450.0, 2.0);
    EXPECT_THAT(scale.stepped(433.1, 1, false), Optional(434.0));
    EXPECT_THAT(scale.stepped(433.1, -1, false), Optional(432.0));
    EXPECT_THAT(scale.stepped(433.1, 2, false), Optional(436.0));
    const KnobScale uneven = range(0.0, 10.0, 4.0);
    EXPECT_THAT(uneven.stepped(8.0, 1, false), Optional(10.0));
    EXPECT_THAT(uneven.stepped(10.0, -1, false), Optional(8.0));
}

TEST(KnobScale, SmoothAndFineStepsStartFromTheValue) {
    EXPECT_THAT(smoothRange(430.0, 450.0, 2.0).stepped(433.1, 1, false), Optional(435.1));
    EXPECT_THAT(smoothRange(430.0, 450.0, 2.0).stepped(433.1, 1, true), Optional(433.3));
    EXPECT_THAT(range(430.0, 450.0, 2.0).stepped(433.1, -1, true), Optional(432.9));
    EXPECT_THAT(smoothRange(430.0, 450.0, 2.0).stepped(449.5, 1, false), Optional(450.0));
}

TEST(KnobScale, FromOffTheScaleTurningLeadsBackToIt) {
    for (const KnobScale& scale : {range(430.0, 450.0, 2.0), smoothRange(430.0, 450.0, 2.0)}) {
        EXPECT_THAT(scale.stepped(12.0, 1, false), Optional(430.0));
        EXPECT_EQ(scale.stepped(12.0, -1, false), std::nullopt);
        EXPECT_THAT(scale.stepped(999.0, -3, false), Optional(450.0));
        EXPECT_EQ(scale.stepped(999.0, 1, false), std::nullopt);
        EXPECT_THAT(scale.stepped(std::nan(""), 1, false), Optional(430.0));
        EXPECT_EQ(scale.stepped(std::nan(""), -1, false), std::nullopt);
        EXPECT_THAT(scale.stepped(kInfinity, -1, false), Optional(450.0));
    }
    const KnobScale stops = decades();
    EXPECT_THAT(stops.stepped(0.1, 1, false), Optional(0.5));
    EXPECT_EQ(stops.stepped(0.1, -1, false), std::nullopt);
    EXPECT_THAT(stops.stepped(99.0, -1, false), Optional(10.0));
    EXPECT_EQ(stops.stepped(99.0, 1, false), std::nullopt);
    EXPECT_THAT(stops.stepped(3.0, 1, false), Optional(5.0));
    EXPECT_THAT(stops.stepped(3.0, -1, false), Optional(2.0));
    EXPECT_THAT(stops.stepped(std::nan(""), 1, false), Optional(0.5));
}

TEST(KnobScale, StopsAreSteppedOneByOne) {
    const KnobScale stops = decades();
    EXPECT_THAT(stops.stepped(2.0, 1, false), Optional(5.0));
    EXPECT_THAT(stops.stepped(2.0, 1, true), Optional(5.0));
    EXPECT_THAT(stops.stepped(2.0, -1, false), Optional(1.0));
    EXPECT_THAT(stops.stepped(2.0, 30, false), Optional(10.0));
    EXPECT_THAT(stops.stepped(2.0, -30, false), Optional(0.5));
    EXPECT_EQ(stops.stepped(10.0, 1, false), std::nullopt);
}

TEST(KnobScale, FallingStopsTurnTheSameWayAsTheirList) {
    KnobScale scale;
    for (const double value : {9.0, 5.0, 1.0})
        scale.stops.push_back({L"", value});
    EXPECT_EQ(scale.placeOf(5.0), 0.5);
    EXPECT_LT(scale.placeOf(10.0), 0.0);
    EXPECT_GT(scale.placeOf(0.0), 1.0);
    EXPECT_THAT(scale.stepped(5.0, 1, false), Optional(1.0));
    EXPECT_THAT(scale.stepped(7.0, 1, false), Optional(5.0));
}

TEST(KnobScale, ASingleStopCanBeTurnedTo) {
    KnobScale scale;
    scale.stops.push_back({L"only", 3.0});
    EXPECT_TRUE(scale.canTurn());
    EXPECT_EQ(scale.placeOf(3.0), 0.0);
    EXPECT_EQ(scale.valueAt(1.0, false), 3.0);
    EXPECT_THAT(scale.stepped(1.0, 1, false), Optional(3.0));
    EXPECT_EQ(scale.stepped(3.0, 1, false), std::nullopt);
}

TEST(KnobScale, AnEndlessScaleGoesOnAtTheOtherEnd) {
    KnobScale degrees = range(0.0, 360.0, 100.0);
    degrees.endless = true;
    EXPECT_THAT(degrees.stepped(300.0, 1, false), Optional(360.0));
    EXPECT_THAT(degrees.stepped(360.0, 1, false), Optional(0.0));
    EXPECT_THAT(degrees.stepped(0.0, -1, false), Optional(360.0));
    KnobScale stops = decades();
    stops.endless = true;
    EXPECT_THAT(stops.stepped(10.0, 1, false), Optional(0.5));
    EXPECT_THAT(stops.stepped(0.5, -1, false), Optional(10.0));
    EXPECT_THAT(stops.stepped(5.0, 3, false), Optional(1.0));
}

TEST(KnobScale, ARangeThatIsNoneCannotBeTurned) {
    const double huge = std::numeric_limits<double>::max();
    for (const KnobScale& scale :
         {range(5.0, 5.0, 1.0), range(9.0, 1.0, 1.0), range(std::nan(""), 1.0, 1.0), range(0.0, std::nan(""), 1.0),
          range(-kInfinity, 0.0, 1.0), range(0.0, kInfinity, 1.0), range(-huge, huge, 1.0)}) {
        EXPECT_FALSE(scale.canTurn());
        EXPECT_EQ(scale.detents(), 0.0);
        EXPECT_EQ(scale.stepped(5.0, 1, false), std::nullopt);
        EXPECT_LT(scale.placeOf(5.0), 0.0);
        EXPECT_TRUE(scale.valueAt(0.5, true) == scale.min || std::isnan(scale.min));
    }
}

TEST(KnobScale, AStepThatIsNoneIsAHundredthOfTheRange) {
    for (const double step : {0.0, -4.0, std::nan(""), kInfinity}) {
        EXPECT_EQ(range(0.0, 50.0, step).detents(), 100.0);
        EXPECT_THAT(range(0.0, 50.0, step).stepped(10.0, 1, false), Optional(DoubleEq(10.5)));
    }
    // A step beyond the range leads from end to end.
    EXPECT_THAT(range(0.0, 50.0, 1e300).stepped(0.0, 1, false), Optional(50.0));
    EXPECT_THAT(range(0.0, 50.0, 1e300).stepped(50.0, -1, false), Optional(0.0));
    EXPECT_THAT(range(1e9, 2e9, 1e-300).stepped(1.5e9, 1, false), Optional(DoubleEq(1.51e9)));
}

}  // namespace
