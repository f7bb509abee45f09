// The hash index of receive channels compares few records.
#include "channels/MatchIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "channels/Sentinels.h"
#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

/// Counts how often a record is read.
class CountingSlot final : public control::QuietSlot {
  public:
    FreqSlotFields* watch() noexcept override {
        ++watches;
        return QuietSlot::watch();
    }
    [[nodiscard]] const FreqSlotFields* peek() const noexcept override {
        ++peeks;
        return QuietSlot::peek();
    }

    static inline int watches = 0;
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
        return *slot;
    }
    FreqSlotFields& fields(std::size_t index) { return static_cast<FreqSlotBase*>(list_[index])->fields(); }
    std::int32_t find(const FreqSlotFields& wanted) { return index_.find(list_, wanted); }

    ChannelList list_;
    MatchIndex index_;
};

TEST_F(MatchIndexTest, RecordsThatDifferInOneMemberHaveDifferentHashes) {
    constexpr int kCount = 100;
    for (const Edit& edit : kCompared) {
        ChannelList().swap(list_);
        index_.drop();
        for (int i = 0; i < kCount; ++i)
            edit(append().fields(), i);
        static_cast<void>(find({}));
        CountingSlot::peeks = CountingSlot::watches = 0;
        for (int i = 0; i < kCount; ++i) {
            FreqSlotFields wanted;
            edit(wanted, i);
            ASSERT_EQ(find(wanted), i);
        }
        EXPECT_EQ(CountingSlot::peeks, kCount);
        EXPECT_EQ(CountingSlot::watches, 0) << "the index was built again";
    }
}

TEST_F(MatchIndexTest, TheFirstOfEqualRecordsIsFoundAndStored) {
    for (int i = 0; i < 50; ++i)
        append();
    fields(0).dFreq = -0.0;
    FreqSlotFields wanted;
    EXPECT_EQ(find(wanted), 0) << "0 equals -0";
    CountingSlot::peeks = 0;
    EXPECT_EQ(find(wanted), 0);
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
        EXPECT_EQ(find(wanted), kInvalid);
        EXPECT_EQ(find(plain), 1);
    }
}

}  // namespace
}  // namespace kv::channels
