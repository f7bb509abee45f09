// Bands that meet a range of frequencies, found in few steps.
#include "channels/EdgeIndex.h"
#include "tests/unit/Numbers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kv::channels {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

struct Edges {
    double low;
    double high;
};

class EdgeIndexTest : public ::testing::Test {
  protected:
    static DrawRecord record(const Edges& edges) {
        DrawRecord made;
        made.dFreqLo = edges.low;
        made.dFreqHi = edges.high;
        return made;
    }
    void build(const std::vector<Edges>& bands) {
        records_.clear();
        for (const Edges& band : bands)
            records_.push_back(record(band));
        index_.forget();
        index_.arrange(records_, except_);
    }
    void change(std::size_t place, const Edges& edges) {
        if (place == records_.size())
            records_.emplace_back();
        records_[place] = record(edges);
        index_.changed(place);
    }
    std::vector<std::int32_t> meeting(double lowest, double highest) {
        std::vector<std::int32_t> places;
        steps_ = index_.meet(records_, lowest, highest, places);
        return places;
    }

    std::vector<DrawRecord> records_;
    PlaceSet except_;
    EdgeIndex index_;
    std::size_t steps_ = 0;
};

TEST_F(EdgeIndexTest, BothEndsOfTheRangeCount) {
    build({{5.0, 6.0}, {1.0, 2.0}, {2.0, 9.0}, {-kInfinity, kInfinity}});
    EXPECT_THAT(meeting(2.0, 2.0), UnorderedElementsAre(1, 2, 3));
    EXPECT_THAT(meeting(3.0, 5.0), UnorderedElementsAre(0, 2, 3));
    EXPECT_THAT(meeting(10.0, 11.0), ElementsAre(3));
    build({});
    EXPECT_THAT(meeting(0.0, 1.0), ElementsAre());
}

TEST_F(EdgeIndexTest, WhatIsNotANumberMeetsNothing) {
    build({{kNaN, 2.0}, {1.0, kNaN}, {1.0, 2.0}});
    EXPECT_THAT(meeting(1.0, 2.0), ElementsAre(2));
    EXPECT_THAT(meeting(kNaN, kNaN), ElementsAre());
    change(2, {kNaN, kNaN});
    EXPECT_THAT(meeting(1.0, 2.0), ElementsAre());
}

TEST_F(EdgeIndexTest, EdgesCountInMHz) {
    build({{1.0, 2.0}, {1000.0, 2000.0}});
    records_[1].unit = util::FreqUnit::KHz;
    index_.changed(1);
    EXPECT_THAT(meeting(1.5, 1.5), UnorderedElementsAre(0, 1));
}

TEST_F(EdgeIndexTest, ExceptedPlacesAreLeftOut) {
    except_.grow(3);
    except_.insert(1);
    build({{1.0, 2.0}, {1.0, 2.0}, {1.0, 2.0}});
    EXPECT_THAT(meeting(1.0, 2.0), UnorderedElementsAre(0, 2));
}

TEST_F(EdgeIndexTest, GroupsOf4096AndOf64BandsAreSkipped) {
    std::vector<Edges> bands;
    for (int i = 0; i < 10'000; ++i)
        bands.push_back({static_cast<double>(i), i + 0.5});
    build(bands);
    // Two groups of 4096, then twelve of 64, then the bands from 8960 to 9000.
    EXPECT_THAT(meeting(9000.25, 9000.75), ElementsAre(9000));
    EXPECT_EQ(steps_, 2U + 12U + 41U);
    // A band in the second group of 4096 reaches the range.
    bands[4096].high = 9000.25;
    build(bands);
    EXPECT_THAT(meeting(9000.25, 9000.75), UnorderedElementsAre(4096, 9000));
    EXPECT_EQ(steps_, 1U + 64U + 63U + 12U + 41U);
}

TEST_F(EdgeIndexTest, AChangedBandCostsOneStepUntilThereAreMany) {
    std::vector<Edges> bands(1000, Edges{1.0, 2.0});
    build(bands);
    change(10, {5.0, 6.0});
    change(1000, {5.0, 7.0});
    change(10, {5.5, 6.0});
    EXPECT_THAT(meeting(5.0, 5.2), ElementsAre(1000));
    EXPECT_EQ(steps_, 1U + 2U) << "a group of bands below the range, and two changed ones";
    for (std::size_t place = 0; place < 200; ++place)
        change(place, {5.0, 6.0});
    index_.arrange(records_, except_);
    EXPECT_EQ(meeting(1.0, 1.5).size(), 800U);
    EXPECT_EQ(meeting(5.0, 5.2).size(), 201U);
    EXPECT_LE(steps_, 13U + 64U + 201U) << "all bands are in their order again";
}

TEST_F(EdgeIndexTest, AgreesWithALookAtEachBandAfterAnyChanges) {
    std::mt19937 random(20261122);
    const auto upTo = [&random](unsigned n) { return static_cast<double>(random() % n); };
    const auto edges = [&] {
        const double low = upTo(100);
        return Edges{low, low + upTo(10)};
    };
    build({});
    for (int step = 0; step < 3000; ++step) {
        change(random() % 2 == 0 ? records_.size() : random() % (records_.size() + 1), edges());
        index_.arrange(records_, except_);
        const double lowest = upTo(100);
        std::vector<std::int32_t> expected;
        for (std::size_t i = 0; i < records_.size(); ++i) {
            if (records_[i].dFreqLo <= lowest + 2.0 && records_[i].dFreqHi >= lowest)
                expected.push_back(static_cast<std::int32_t>(i));
        }
        ASSERT_THAT(meeting(lowest, lowest + 2.0), ::testing::UnorderedElementsAreArray(expected)) << step;
    }
}

}  // namespace
}  // namespace kv::channels
