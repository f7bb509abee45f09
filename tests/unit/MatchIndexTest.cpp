// The hash index of receive channels compares few records.
#include "channels/MatchIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

/// Counts how often a record is read.
class CountingSlot final : public control::QuietSlot {
  public:
    [[nodiscard]] const FreqSlotFields* peek() const noexcept override {
        ++peeks;
        return QuietSlot::peek();
    }

    static inline int peeks = 0;
};

using Edit = std::function<void(FreqSlotFields&, int)>;

const std::vector<Edit> kCompared{[](FreqSlotFields& f, int i) { f.dFreqAlt = i; },
                                  [](FreqSlotFields& f, int i) { f.dFreq = i; },
                                  [](FreqSlotFields& f, int i) { f.dFreqHi = i; },
                                  [](FreqSlotFields& f, int i) { f.dFreqLo = i; },
                                  [](FreqSlotFields& f, int i) { f.dBW = i; },
                                  [](FreqSlotFields& f, int i) { f.sBWUnits = std::to_wstring(i); },
                                  [](FreqSlotFields& f, int i) { f.sLabel = std::to_wstring(i); },
                                  [](FreqSlotFields& f, int i) { f.sFreqUnits = std::to_wstring(i); }};

class MatchIndexTest : public ::testing::Test {
  protected:
    FreqSlotBase& append() {
        auto* const slot = new CountingSlot;
        list_.append(FreqSlotRef(slot));
        index_.append(true);
        return *slot;
    }
    FreqSlotFields& fields(std::size_t place) {
        index_.changed(place);
        return static_cast<FreqSlotBase*>(list_.at(place))->fields();
    }
    void remove(std::size_t place) {
        static_cast<void>(list_.remove(place));
        index_.remove(place);
    }
    std::size_t find(const FreqSlotFields& wanted) { return index_.find(list_, wanted); }
    static FreqSlotFields at(double frequency) {
        FreqSlotFields fields;
        fields.dFreq = frequency;
        return fields;
    }
    static constexpr std::size_t kNone = MatchIndex::kNone;

    ChannelList list_;
    MatchIndex index_;
};

TEST_F(MatchIndexTest, RecordsThatDifferInOneMemberHaveDifferentHashes) {
    constexpr int kCount = 100;
    for (const Edit& edit : kCompared) {
        ChannelList().swap(list_);
        index_ = {};
        for (int i = 0; i < kCount; ++i)
            edit(append().fields(), i);
        static_cast<void>(find({}));
        CountingSlot::peeks = 0;
        for (int i = 0; i < kCount; ++i) {
            FreqSlotFields wanted;
            edit(wanted, i);
            ASSERT_EQ(find(wanted), static_cast<std::size_t>(i));
        }
        EXPECT_EQ(CountingSlot::peeks, kCount) << "another record was compared, or the index was built again";
    }
}

TEST_F(MatchIndexTest, TheFirstOfEqualRecordsIsFoundAndStored) {
    for (int i = 0; i < 50; ++i)
        append();
    fields(0).dFreq = -0.0;
    FreqSlotFields wanted;
    EXPECT_EQ(find(wanted), 0U) << "0 equals -0";
    CountingSlot::peeks = 0;
    EXPECT_EQ(find(wanted), 0U);
    EXPECT_EQ(CountingSlot::peeks, 1);
}

TEST_F(MatchIndexTest, ARecordThatDoesNotEqualItselfMatchesNothing) {
    append();
    append();
    const FreqSlotFields plain;
    for (double FreqSlotFields::*const member :
         {&FreqSlotFields::dFreqAlt, &FreqSlotFields::dFreq, &FreqSlotFields::dFreqHi, &FreqSlotFields::dFreqLo,
          &FreqSlotFields::dBW}) {
        FreqSlotFields wanted = plain;
        wanted.*member = std::nan("");
        fields(0) = wanted;
        EXPECT_EQ(find(wanted), kNone);
        EXPECT_EQ(find(plain), 1U);
    }
}

TEST_F(MatchIndexTest, OnlyWhatHasChangedIsReadAgain) {
    for (int i = 0; i < 1000; ++i)
        append().fields().dFreq = i;
    EXPECT_EQ(find(at(-1.0)), kNone);
    fields(500).dFreq = 2000.0;
    remove(10);
    append().fields().dFreq = 3000.0;
    CountingSlot::peeks = 0;
    EXPECT_EQ(find(at(-1.0)), kNone);
    EXPECT_EQ(CountingSlot::peeks, 2) << "the changed one and the new one";
    EXPECT_EQ(find(at(500.0)), kNone);
    EXPECT_EQ(find(at(2000.0)), 500U);
    EXPECT_EQ(find(at(10.0)), kNone);
    EXPECT_EQ(find(at(3000.0)), 1000U);
}

TEST_F(MatchIndexTest, AmongEqualRecordsAnyMayComeAndGo) {
    std::mt19937 random(20261122);
    std::vector<double> known;
    for (int i = 0; i < 40; ++i) {
        append();
        known.push_back(0.0);
    }
    for (int step = 0; step < 3000; ++step) {
        const std::size_t place = random() % known.size();
        switch (random() % 8) {
            case 0:
                append();
                known.push_back(0.0);
                break;
            case 1:
                if (list_.at(place)) {
                    remove(place);
                    known[place] = -1.0;
                }
                break;
            default:
                if (list_.at(place))
                    fields(place).dFreq = known[place] = static_cast<double>(random() % 3);
        }
        for (const double frequency : {0.0, 1.0, 2.0}) {
            const auto first = std::ranges::find(known, frequency);
            const std::size_t expected = first == known.end() ? kNone : static_cast<std::size_t>(first - known.begin());
            ASSERT_EQ(find(at(frequency)), expected) << "step " << step;
        }
    }
}

TEST_F(MatchIndexTest, WhatIsTakenBackOrForeignIsNotFound) {
    append();
    append().fields().dFreq = 5.0;
    EXPECT_EQ(find(at(5.0)), 1U);
    static_cast<void>(list_.takeBack());
    index_.takeBack();
    EXPECT_EQ(find(at(5.0)), kNone);
    list_.append(FreqSlotRef(new control::CountedSlot));
    index_.append(false);
    append().fields().dFreq = 5.0;
    EXPECT_EQ(find(at(5.0)), 2U);
}

TEST_F(MatchIndexTest, AfterTheHolesAreClosedPlacesAreTheNewOnes) {
    for (int i = 0; i < 5; ++i)
        append().fields().dFreq = i;
    EXPECT_EQ(find(at(4.0)), 4U);
    remove(0);
    remove(2);
    list_.closeHoles([](std::size_t, std::size_t) {});
    index_.closed(list_.places(), list_);
    EXPECT_EQ(find(at(1.0)), 0U);
    EXPECT_EQ(find(at(4.0)), 2U);
    EXPECT_EQ(find(at(0.0)), kNone);
}

}  // namespace
}  // namespace kv::channels
