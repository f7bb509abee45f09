// Extremes by blocks compared with those of all records.
#include "channels/RangeBlocks.h"
#include "tests/unit/Numbers.h"

#include <gtest/gtest.h>

#include <random>

namespace kv::channels {
namespace {

class RangeBlocksTest : public ::testing::Test {
  protected:
    void append(const DrawRecord& record) {
        records_.push_back(record);
        ranges_.grow(records_.size());
        ranges_.changed(records_.size() - 1);
    }
    void remove(std::size_t place) {
        ranges_.removed(place, records_[place]);
        records_[place] = {};
    }
    static DrawRecord record(double low, double center, double high, double power) {
        DrawRecord made;
        made.dFreqLo = low;
        made.dFreq = center;
        made.dFreqHi = high;
        made.dPwrDBM = power;
        return made;
    }
    void expectRange(double low, double high, double minPower, double maxPower) {
        const CountedRange& range = ranges_.range(records_, except_);
        EXPECT_EQ(range.low, low);
        EXPECT_EQ(range.high, high);
        EXPECT_EQ(range.minPower, minPower);
        EXPECT_EQ(range.maxPower, maxPower);
    }

    std::vector<DrawRecord> records_;
    PlaceSet except_;
    RangeBlocks ranges_;
};

TEST_F(RangeBlocksTest, WhatDoesNotCountWidensNothing) {
    expectRange(FREQ_UNSET, -FREQ_UNSET, FREQ_UNSET, -FREQ_UNSET);
    append(record(1.0, 0.0, 9.0, 5.0));
    append(record(1.0, -2.0, 9.0, 5.0));
    append(record(1.0, kNaN, 9.0, 5.0));
    append(record(0.0, 5.0, 0.0, -kInfinity));
    append(record(kNaN, 5.0, -1.0, kNaN));
    expectRange(FREQ_UNSET, -FREQ_UNSET, FREQ_UNSET, -FREQ_UNSET);
    append(record(3.0, 5.0, 6.0, -7.0));
    expectRange(3.0, 6.0, -7.0, -7.0);
}

TEST_F(RangeBlocksTest, ExceptedRecordsDoNotCount) {
    append(record(3.0, 5.0, 6.0, 1.0));
    append(record(1.0, 5.0, 9.0, 2.0));
    except_.grow(2);
    except_.insert(1);
    expectRange(3.0, 6.0, 1.0, 1.0);
}

TEST_F(RangeBlocksTest, AgreeWithAllRecordsAfterAnyChanges) {
    std::mt19937 random(20261122);
    const auto upTo = [&random](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    const auto some = [&] {
        const auto center = static_cast<double>(upTo(1000));
        return record(center - 1.0, center, center + 1.0, static_cast<double>(upTo(100)) - 50.0);
    };
    for (int step = 0; step < 4000; ++step) {
        const std::size_t place = records_.empty() ? 0 : upTo(records_.size());
        switch (records_.empty() ? 0 : upTo(4)) {
            case 0:
            case 1:
                append(some());
                break;
            case 2:
                remove(place);
                break;
            default:
                records_[place] = some();
                ranges_.changed(place);
        }
        CountedRange expected;
        for (const DrawRecord& each : records_) {
            expected.widenByEdges(each.dFreq, each.dFreqLo, each.dFreqHi);
            if (each.dFreq > 0.0)
                expected.widenByPower(each.dPwrDBM);
        }
        ASSERT_NO_FATAL_FAILURE(expectRange(expected.low, expected.high, expected.minPower, expected.maxPower));
        ASSERT_FALSE(HasFailure()) << "step " << step;
    }
}

TEST_F(RangeBlocksTest, RecordsCountAlikeWhenFrequencyEdgesAndPowerAreTheSame) {
    const DrawRecord one = record(10.0, 11.0, 12.0, -30.0);
    DrawRecord other = one;
    other.bVisible = false;
    other.bDrawn = true;
    other.lColor = 7;
    EXPECT_TRUE(countAlike(one, other));
    for (double DrawRecord::*const member :
         {&DrawRecord::dFreq, &DrawRecord::dFreqLo, &DrawRecord::dFreqHi, &DrawRecord::dPwrDBM}) {
        other = one;
        other.*member += 0.5;
        EXPECT_FALSE(countAlike(one, other));
    }
}

TEST_F(RangeBlocksTest, AfterMovesAllBlocksAreGoneThroughAgain) {
    for (int i = 0; i < 600; ++i)
        append(record(100.0 + i, 100.0 + i, 100.0 + i, i));
    expectRange(100.0, 699.0, 0.0, 599.0);
    records_.erase(records_.begin(), records_.begin() + 300);
    ranges_.shorten(records_.size());
    expectRange(400.0, 699.0, 300.0, 599.0);
}

}  // namespace
}  // namespace kv::channels
