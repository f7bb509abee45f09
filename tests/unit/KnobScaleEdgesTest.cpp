// A knob's scale where numbers run out or meet a bound exactly.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "turndial/DialLayout.h"
#include "turndial/KnobScale.h"

namespace {

using kv::turndial::KnobScale;
using testing::ElementsAre;
using testing::Optional;

KnobScale range(double min, double max, double step, bool smooth = false) {
    return {min, max, step, {}, smooth, false};
}

TEST(KnobScaleEdges, TheHighEndIsReachedExactly) {
    // Rounded to a hundredth of a detent, it would lie below.
    EXPECT_EQ(range(0.0, 100.3749, 1.0, true).valueAt(1.0, false), 100.3749);
    EXPECT_EQ(range(0.0012, 100.0, 1.0, true).valueAt(0.0, false), 0.0012);
    EXPECT_EQ(range(0.1, 0.7, 0.1).valueAt(1.0, false), 0.7);
    EXPECT_EQ(range(0.0, 10.0, 1.0).valueAt(7.0, false), 10.0);
    EXPECT_EQ(range(2.0, 10.0, 1.0).valueAt(-7.0, false), 2.0);
    EXPECT_EQ(range(2.0, 10.0, 1.0).valueAt(std::nan(""), false), 2.0);
}

TEST(KnobScaleEdges, AFineHandReadsATenthOfThatOfASmoothOne) {
    const KnobScale fine = range(0.0, 1.0, 0.5, true);
    // A step of half the range counts as a tenth of it.
    EXPECT_EQ(fine.valueAt(1.0 / 3.0, false), 0.333);
    EXPECT_EQ(fine.valueAt(1.0 / 3.0, true), 0.3333);
}

TEST(KnobScaleEdges, HalfwayToTheNextDetentTheHigherOneCounts) {
    const KnobScale scale = range(0.0, 10.0, 4.0);
    EXPECT_EQ(scale.valueAt(0.19, false), 0.0);
    EXPECT_EQ(scale.valueAt(0.21, false), 4.0);
    // Past the last whole detent the nearer one of it and the end.
    EXPECT_EQ(scale.valueAt(0.89, false), 8.0);
    EXPECT_EQ(scale.valueAt(0.91, false), 10.0);
    EXPECT_EQ(range(0.0, 10.0, 7.0).valueAt(0.96, false), 10.0) << "the second detent would lie beyond the end";
}

TEST(KnobScaleEdges, AValueAHairFromAnEndCountsAsTheEnd) {
    const KnobScale scale = range(0.0, 100.0, 10.0);
    EXPECT_THAT(scale.stepped(100.0 - 1e-8, 1, false), Optional(100.0));
    EXPECT_EQ(scale.stepped(100.0, 1, false), std::nullopt);
    KnobScale endless = scale;
    endless.endless = true;
    EXPECT_THAT(endless.stepped(100.0 - 1e-8, 1, false), Optional(0.0));
    EXPECT_THAT(endless.stepped(1e-8, -1, false), Optional(100.0));
}

TEST(KnobScaleEdges, DetentsThatAreWholeButForAHairAreWhole) {
    EXPECT_EQ(range(0.0, 0.3, 0.1).detents(), 3.0);
    EXPECT_EQ(range(0.0, 1e6, 0.1).detents(), 1e7);
    EXPECT_NE(range(0.0, 10.0, 4.0).detents(), 2.0);
    EXPECT_DOUBLE_EQ(range(0.0, 10.0, 4.0).detents(), 2.5);
}

TEST(KnobScaleEdges, ADetentThatArithmeticHasMovedByAHairIsOne) {
    const KnobScale scale = range(0.0, 1.0, 0.1);
    EXPECT_THAT(scale.stepped(0.1 + 0.2, 1, false), Optional(0.4));
    EXPECT_THAT(scale.stepped(0.1 + 0.2, -1, false), Optional(0.2));
    EXPECT_THAT(scale.stepped(0.3001, -1, false), Optional(0.3)) << "no detent, and so the next one is";
}

TEST(KnobScaleEdges, VerySmallAndVeryLargeNumbersAreKept) {
    const KnobScale tiny = range(0.0, 1e-305, 1e-306, true);
    EXPECT_GT(tiny.valueAt(0.37, false), 0.0);
    EXPECT_LE(tiny.valueAt(0.37, false), 1e-305);
    const KnobScale huge = range(0.0, 1e307, 1e306, true);
    EXPECT_NEAR(huge.valueAt(0.5, false) / 1e307, 0.5, 1e-6);
}

TEST(KnobScaleEdges, StopsBetweenAndBeyond) {
    KnobScale stops;
    for (const double value : {1.0, 2.0, 5.0})
        stops.stops.push_back({L"", value});
    EXPECT_EQ(stops.placeOf(1.5), 0.25);
    EXPECT_EQ(stops.placeOf(3.5), 0.75);
    EXPECT_EQ(stops.placeOf(0.0), -0.25) << "half a stop off";
    EXPECT_EQ(stops.placeOf(9.0), 1.25);
    EXPECT_EQ(stops.placeOf(2.0 + 1e-12), 0.5);
    EXPECT_DOUBLE_EQ(stops.placeOf(1.0000001), 0.0005);
    EXPECT_DOUBLE_EQ(stops.placeOf(1.9999999), 0.4995);
    EXPECT_EQ(range(0.0, 10.0, 1.0).placeOf(11.0), 1.5);
    EXPECT_EQ(range(0.0, 10.0, 1.0).placeOf(-1.0), -0.5);
    EXPECT_EQ(range(5.0, 5.0, 1.0).placeOf(5.0), -0.5);
}

TEST(KnobScaleEdges, AnEndlessScaleOfStopsWrapsByItsNumber) {
    KnobScale stops;
    stops.endless = true;
    for (const double value : {1.0, 2.0, 5.0})
        stops.stops.push_back({L"", value});
    EXPECT_THAT(stops.stepped(1.0, 4, false), Optional(2.0));
    EXPECT_THAT(stops.stepped(1.0, -4, false), Optional(5.0));
    EXPECT_EQ(stops.stepped(1.0, 3, false), std::nullopt) << "once round";
    EXPECT_EQ(stops.stepped(1.0, -3, false), std::nullopt);
}

/// What a dial writes at the ends of a range.
std::vector<std::wstring> endTexts(double min, double max) {
    const auto measure = [](std::wstring_view text) {
        return kv::raster::PixelSize{static_cast<int>(text.size()) * 6, 11};
    };
    std::vector<std::wstring> texts;
    for (const auto& label : kv::turndial::layOutDial({0, 0, 240, 200}, range(min, max, 1.0), 1.0, measure).labels)
        texts.push_back(label.text);
    return texts;
}

TEST(KnobScaleEdges, TheEndsAreWrittenWithTheDigitsThatTheirDistanceNeeds) {
    EXPECT_THAT(endTexts(0.4, 1000.6), ElementsAre(L"0", L"1001"));
    EXPECT_THAT(endTexts(430.06, 452.04), ElementsAre(L"430", L"452"));
    EXPECT_THAT(endTexts(430.06, 448.04), ElementsAre(L"430.1", L"448"));
    EXPECT_THAT(endTexts(430.006, 431.504), ElementsAre(L"430.01", L"431.5"));
    EXPECT_THAT(endTexts(430.0000001, 430.0000002), ElementsAre(L"430", L"430")) << "six decimals at most";
}

}  // namespace
