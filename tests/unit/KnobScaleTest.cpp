// A knob's scale: the places of values, the values that a drag gives, and the values that steps lead to.
#include "turndial/KnobScale.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "tests/unit/Numbers.h"
#include "turndial/DialLayout.h"

namespace {

using kv::kInfinity;
using kv::kNaN;
using kv::turndial::KnobScale;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::Optional;

KnobScale range(double min, double max, double step) {
    return {min, max, step, {}, false, false};
}
KnobScale smooth(double min, double max, double step) {
    return {min, max, step, {}, true, false};
}
KnobScale stops(const std::vector<double>& values) {
    KnobScale scale;
    for (const double value : values)
        scale.stops.push_back({L"", value});
    return scale;
}
KnobScale endless(KnobScale scale) {
    scale.endless = true;
    return scale;
}

const KnobScale kRange = range(430.0, 450.0, 2.0);
const KnobScale kUneven = range(0.0, 10.0, 4.0);  // its last detent is cut short
const KnobScale kTenths = range(0.0, 1.0, 0.1);
const KnobScale kStops = stops({0.5, 1.0, 2.0, 5.0, 10.0});
const KnobScale kFalling = stops({9.0, 5.0, 1.0});
const KnobScale kThree = stops({1.0, 2.0, 5.0});
const KnobScale kOne = stops({3.0});

TEST(KnobScale, PlacesRunFromZeroAtTheLowEndToOneAtTheHighEnd) {
    struct StepCase {
        KnobScale scale;
        double value;
        double place;
    };
    const StepCase cases[] = {
        {kRange, 430.0, 0.0},
        {kRange, 435.0, 0.25},
        {kRange, 450.0, 1.0},
        {kRange, 429.0, -0.5},
        {kRange, 451.0, 1.5},
        {kRange, kNaN, -0.5},
        {range(5.0, 5.0, 1.0), 5.0, -0.5},
        // Stops are at even distances; off the scale is half a stop beyond it.
        {kStops, 0.5, 0.0},
        {kStops, 2.0, 0.5},
        {kStops, 7.5, 0.875},
        {kStops, 10.0, 1.0},
        {kThree, 1.5, 0.25},
        {kThree, 3.5, 0.75},
        {kThree, 0.0, -0.25},
        {kThree, 9.0, 1.25},
        {stops({0.0, 1.0}), 0.0, 0.0},
        {kFalling, 5.0, 0.5},
        {kFalling, 10.0, -0.25},
        {kFalling, 0.0, 1.25},
        {kOne, 3.0, 0.0},
        // Less than a billionth off a stop is on it; any more is visibly between two stops.
        {kThree, 2.0 + 1e-12, 0.5},
        {kThree, 1.0000001, 0.0005},
        {kThree, 1.9999999, 0.4995},
        {stops({1.0 / 1048576.0, 2.0 / 1048576.0}), 1.5 / 1048576.0, 0.5},
    };
    for (const auto& [scale, value, place] : cases)
        EXPECT_EQ(scale.placeOf(value), place) << value << " of " << scale.min << " or " << scale.stops.size();
}

TEST(KnobScale, DetentsAreCountedFromEndToEnd) {
    EXPECT_EQ(kRange.detents(), 10.0);
    EXPECT_EQ(kStops.detents(), 4.0);
    EXPECT_DOUBLE_EQ(kUneven.detents(), 2.5);
    EXPECT_EQ(range(0.0, 0.3, 0.1).detents(), 3.0) << "whole but for the last binary places";
    EXPECT_EQ(range(0.0, 1e6, 0.1).detents(), 1e7);
}

TEST(KnobScale, ADragGivesTheNearestDetentStopOrTidyNumber) {
    struct StepCase {
        KnobScale scale;
        double place;
        double value;
        bool fine = false;
    };
    const StepCase cases[] = {
        {kRange, 0.0, 430.0},
        {kRange, 0.04, 430.0},
        {kRange, 0.06, 432.0},
        {kRange, 1.0, 450.0},
        {kUneven, 0.19, 0.0},
        {kUneven, 0.21, 4.0},
        // Past the last whole detent the nearer one of it and the end; from halfway the detent.
        {kUneven, 0.89, 8.0},
        {kUneven, 0.91, 10.0},
        {range(0.0, 16.0, 12.0), 0.875, 12.0},
        {range(0.0, 10.0, 7.0), 0.96, 10.0},  // the second detent would be beyond the end
        {kStops, 0.3, 1.0},
        {kStops, 0.4, 2.0},
        {kOne, 1.0, 3.0},
        // The ends are reached exactly, also from beyond them.
        {smooth(0.0, 100.3749, 1.0), 1.0, 100.3749},
        {smooth(0.0012, 100.0, 1.0), 0.0, 0.0012},
        {smooth(0.0079, 100.0, 1.0), 0.0, 0.0079},
        {range(0.1, 0.7, 0.1), 1.0, 0.7},
        {range(2.0, 10.0, 1.0), 7.0, 10.0},
        {range(2.0, 10.0, 1.0), -7.0, 2.0},
        {range(2.0, 10.0, 1.0), kNaN, 2.0},
        // A smooth scale gives about a hundredth of a detent, a fine turn a thousandth.
        {smooth(430.0, 450.0, 2.0), 1.0 / 3.0, 436.67},
        {smooth(430.0, 450.0, 2.0), 1.0 / 3.0, 436.667, true},
        {smooth(430.0, 450.0, 2.0), 1e-9, 430.0},
        {smooth(0.0, 2e6, 1000.0), 1.0 / 3.0, 666670.0},
        // A step of half the range counts as a tenth of it.
        {smooth(0.0, 1.0, 0.5), 1.0 / 3.0, 0.333},
        {smooth(0.0, 1.0, 0.5), 1.0 / 3.0, 0.3333, true},
    };
    for (const auto& [scale, place, value, fine] : cases)
        EXPECT_EQ(scale.valueAt(place, fine), value) << place << " of " << scale.min << " to " << scale.max;
}

TEST(KnobScale, VerySmallAndVeryLargeNumbersAreKept) {
    const KnobScale tiny = smooth(0.0, 1e-305, 1e-306);
    EXPECT_GT(tiny.valueAt(0.37, false), 0.0);
    EXPECT_LE(tiny.valueAt(0.37, false), 1e-305);
    EXPECT_NEAR(smooth(0.0, 1e307, 1e306).valueAt(0.5, false) / 1e307, 0.5, 1e-6);
    EXPECT_NEAR(smooth(0.0, 1e-310, 1e-311).valueAt(0.5, false) / 1e-310, 0.5, 1e-6);
}

constexpr std::optional<double> kNone;

struct StepCase {
    KnobScale scale;
    double value;
    int count;
    std::optional<double> next;
    bool fine = false;
};

void expectSteps(std::span<const StepCase> cases) {
    for (const auto& [scale, value, count, next, fine] : cases)
        EXPECT_EQ(scale.stepped(value, count, fine), next) << value << " by " << count << (fine ? " fine" : "");
}

TEST(KnobScale, StepsLeadToTheNextDetentsAndEndAtTheEnds) {
    const StepCase cases[] = {
        {kTenths, 0.2, 1, 0.3},
        {kTenths, 0.3, -1, 0.2},
        {kTenths, 0.2, 5, 0.7},
        {kTenths, 0.9, 5, 1.0},
        {kTenths, 1.0, 1, kNone},
        {kTenths, 0.0, -1, kNone},
        {kTenths, 0.5, 0, kNone},
        {kUneven, 8.0, 1, 10.0},
        {kUneven, 10.0, -1, 8.0},
        // Between two detents the neighbor is next; a value a hair off a detent is on it.
        {kRange, 433.1, 1, 434.0},
        {kRange, 433.1, -1, 432.0},
        {kRange, 433.1, 2, 436.0},
        {kTenths, 0.1 + 0.2, 1, 0.4},
        {kTenths, 0.1 + 0.2, -1, 0.2},
        {kTenths, 0.3001, -1, 0.3},
        {range(0.0, 100.0, 10.0), 100.0 - 1e-8, 1, 100.0},
        // Near the low end a hair is a billionth of a detent.
        {range(0.0, 10.0, 1.0), 1.0 + 0.5e-9, -1, 0.0},
        {range(0.0, 10.0, 1.0), 1.0 + 1.5e-9, -1, 1.0},
        // Smooth and fine steps start from the value.
        {smooth(430.0, 450.0, 2.0), 433.1, 1, 435.1},
        {smooth(430.0, 450.0, 2.0), 433.1, 1, 433.3, true},
        {kRange, 433.1, -1, 432.9, true},
        {smooth(430.0, 450.0, 2.0), 449.5, 1, 450.0},
        // From off the scale they lead to its near end.
        {kRange, 12.0, 1, 430.0},
        {kRange, 12.0, -1, kNone},
        {kRange, 999.0, -3, 450.0},
        {kRange, 999.0, 1, kNone},
        {kRange, kNaN, 1, 430.0},
        {kRange, kNaN, -1, kNone},
        {kRange, kInfinity, -1, 450.0},
        {smooth(430.0, 450.0, 2.0), 12.0, 1, 430.0},
        {smooth(430.0, 450.0, 2.0), 999.0, 1, kNone},
    };
    expectSteps(cases);
}

TEST(KnobScale, StepsOnStopsAndOnEndlessScalesCountThem) {
    const StepCase cases[] = {
        // Stops are taken one by one, fine or not.
        {kStops, 2.0, 1, 5.0},
        {kStops, 2.0, 1, 5.0, true},
        {kStops, 2.0, -1, 1.0},
        {kStops, 2.0, 30, 10.0},
        {kStops, 2.0, -30, 0.5},
        {kStops, 10.0, 1, kNone},
        {kStops, 3.0, 1, 5.0},
        {kStops, 3.0, -1, 2.0},
        {kStops, 0.1, 1, 0.5},
        {kStops, 0.1, -1, kNone},
        {kStops, 99.0, -1, 10.0},
        {kStops, 99.0, 1, kNone},
        {kStops, kNaN, 1, 0.5},
        {kFalling, 5.0, 1, 1.0},
        {kFalling, 7.0, 1, 5.0},
        {kOne, 1.0, 1, 3.0},
        {kOne, 3.0, 1, kNone},
        // An endless scale goes on at the other end; stops wrap by their number.
        {endless(range(0.0, 360.0, 100.0)), 300.0, 1, 360.0},
        {endless(range(0.0, 360.0, 100.0)), 360.0, 1, 0.0},
        {endless(range(0.0, 360.0, 100.0)), 0.0, -1, 360.0},
        {endless(range(0.0, 100.0, 10.0)), 100.0 - 1e-8, 1, 0.0},
        {endless(range(0.0, 100.0, 10.0)), 1e-8, -1, 100.0},
        // Near is meant by the width of the range, not by the size of its numbers.
        {endless(range(1000.0, 1010.0, 1.0)), 1010.0 - 1e-7, 1, 1010.0},
        {endless(kStops), 10.0, 1, 0.5},
        {endless(kStops), 0.5, -1, 10.0},
        {endless(kStops), 5.0, 3, 1.0},
        {endless(kThree), 1.0, 4, 2.0},
        {endless(kThree), 1.0, -4, 5.0},
        {endless(kThree), 1.0, 3, kNone},
        {endless(kThree), 1.0, -3, kNone},
        // A step beyond the range leads from end to end.
        {range(0.0, 50.0, 1e300), 0.0, 1, 50.0},
        {range(0.0, 50.0, 1e300), 50.0, -1, 0.0},
    };
    expectSteps(cases);
}

TEST(KnobScale, ManySingleStepsArriveAtTheEndExactly) {
    double value = 0.0;
    for (int i = 0; i < 10; ++i)
        value = kTenths.stepped(value, 1, false).value_or(-1.0);
    EXPECT_EQ(value, 1.0);
}

TEST(KnobScale, AnInvalidRangeCannotBeTurned) {
    const double huge = std::numeric_limits<double>::max();
    for (const auto& [min, max] : {std::pair{5.0, 5.0},
                                   {9.0, 1.0},
                                   {kNaN, 1.0},
                                   {0.0, kNaN},
                                   {-kInfinity, 0.0},
                                   {0.0, kInfinity},
                                   {-huge, huge}}) {
        SCOPED_TRACE(testing::PrintToString(std::pair{min, max}));
        const KnobScale scale = range(min, max, 1.0);
        EXPECT_FALSE(scale.canTurn());
        EXPECT_EQ(scale.detents(), 0.0);
        EXPECT_EQ(scale.stepped(5.0, 1, false), std::nullopt);
        EXPECT_LT(scale.placeOf(5.0), 0.0);
        EXPECT_TRUE(scale.valueAt(0.5, true) == min || std::isnan(min));
    }
    EXPECT_TRUE(kOne.canTurn());
}

TEST(KnobScale, AnInvalidStepIsAHundredthOfTheRange) {
    for (const double step : {0.0, -4.0, kNaN, kInfinity, 1e-300}) {
        for (const double min : {0.0, 50.0}) {
            const KnobScale scale = range(min, min + 50.0, step);
            EXPECT_EQ(scale.detents(), 100.0) << step;
            EXPECT_THAT(scale.stepped(min + 10.0, 1, false), Optional(DoubleEq(min + 10.5))) << step;
        }
    }
}

TEST(KnobScale, TheEndsAreWrittenWithTheDigitsThatTheirDistanceNeeds) {
    const auto ends = [](double min, double max) {
        const auto measure = [](std::wstring_view text) {
            return kv::raster::PixelSize{static_cast<int>(text.size()) * 6, 11};
        };
        std::vector<std::wstring> texts;
        for (const auto& label : kv::turndial::layOutDial({0, 0, 240, 200}, range(min, max, 1.0), 1.0, measure).labels)
            texts.push_back(label.text);
        return texts;
    };
    EXPECT_THAT(ends(0.4, 1000.6), ElementsAre(L"0", L"1001"));
    EXPECT_THAT(ends(430.06, 452.04), ElementsAre(L"430", L"452"));
    EXPECT_THAT(ends(430.06, 448.04), ElementsAre(L"430.1", L"448"));
    EXPECT_THAT(ends(430.006, 431.504), ElementsAre(L"430.01", L"431.5"));
    EXPECT_THAT(ends(430.0000001, 430.0000002), ElementsAre(L"430", L"430")) << "six decimals at most";
}

}  // namespace
