// What the copy of the records holds, and what it reads again.
#include "channels/RecordCopy.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

class RecordCopyTest : public ::testing::Test {
  protected:
    FreqSlotBase& append(double frequency) {
        auto* const slot = new control::QuietSlot;
        slot->fields().dFreq = frequency;
        list_.append(FreqSlotRef(slot));
        copy_.append(false);
        return *slot;
    }
    std::vector<std::size_t> readChanged() {
        std::vector<std::size_t> read;
        for (std::size_t place = copy_.nextChanged(0); place != PlaceSet::kNone; place = copy_.nextChanged(place + 1)) {
            EXPECT_TRUE(copy_.read(list_, place));
            read.push_back(place);
        }
        return read;
    }
    std::vector<double> frequencies() const {
        std::vector<double> found;
        for (const DrawRecord& record : copy_.records())
            found.push_back(record.bVisible ? record.dFreq : -1.0);
        return found;
    }
    using Places = std::vector<std::size_t>;
    using Frequencies = std::vector<double>;

    ChannelList list_;
    RecordCopy copy_;
};

TEST_F(RecordCopyTest, OnlyAppendedAndChangedRecordsAreRead) {
    append(100.0);
    FreqSlotBase& second = append(200.0);
    EXPECT_EQ(frequencies(), Frequencies({-1.0, -1.0})) << "hidden until they are read";
    EXPECT_EQ(readChanged(), Places({0, 1}));
    EXPECT_EQ(readChanged(), Places());
    EXPECT_FALSE(copy_.read(list_, 0));
    append(300.0);
    second.setDFreq(250.0);
    copy_.changes(1);
    copy_.changes(1);
    copy_.changes(1000);
    EXPECT_EQ(readChanged(), Places({1, 2}));
    EXPECT_EQ(frequencies(), Frequencies({100.0, 250.0, 300.0}));
}

TEST_F(RecordCopyTest, WhatIsTakenBackOrRemovedIsNotRead) {
    append(100.0);
    append(200.0);
    copy_.takeBack();
    EXPECT_EQ(copy_.size(), 1U);
    EXPECT_EQ(readChanged(), Places({0}));
    copy_.append(false);
    copy_.changes(0);
    copy_.remove(0);
    EXPECT_EQ(readChanged(), Places({1}));
    EXPECT_EQ(frequencies(), Frequencies({-1.0, 200.0}));
}

TEST_F(RecordCopyTest, AForeignRecordIsWhatWasPut) {
    append(100.0);
    copy_.append(true);
    EXPECT_EQ(readChanged(), Places({0}));
    EXPECT_TRUE(copy_.foreign().contains(1));
    EXPECT_FALSE(copy_.foreign().contains(0));
    DrawRecord record;
    record.dFreq = 7.0;
    copy_.put(1, record);
    EXPECT_EQ(frequencies(), Frequencies({100.0, 7.0}));
    copy_.remove(1);
    EXPECT_TRUE(copy_.foreign().empty());
}

TEST_F(RecordCopyTest, MovesKeepWhatIsKnown) {
    for (const double frequency : {100.0, 200.0, 300.0})
        append(frequency);
    copy_.append(true);
    readChanged();
    copy_.changes(2);
    copy_.remove(0);
    for (const std::size_t from : {1U, 2U, 3U})
        copy_.move(from, from - 1);
    copy_.shorten(3);
    EXPECT_EQ(copy_.nextChanged(0), 1U);
    EXPECT_EQ(copy_.nextChanged(2), PlaceSet::kNone);
    EXPECT_TRUE(copy_.foreign().contains(2));
    EXPECT_EQ(frequencies(), Frequencies({200.0, 300.0, -1.0}));
}

TEST_F(RecordCopyTest, EdgesThatAreFiniteOnlyInTheirUnitAreTooLarge) {
    FreqSlotBase& slot = append(100.0);
    const auto isTooLarge = [&](double low, double high, const wchar_t* units) {
        slot.fields().dFreqLo = low;
        slot.fields().dFreqHi = high;
        slot.fields().sFreqUnits = units;
        copy_.changes(0);
        readChanged();
        return copy_.hasTooLargeEdges();
    };
    constexpr double kHuge = 1e307;
    EXPECT_FALSE(isTooLarge(kHuge, kHuge, L"MHz"));
    EXPECT_TRUE(isTooLarge(kHuge, 1.0, L"GHz"));
    EXPECT_TRUE(isTooLarge(1.0, -kHuge, L"GHz"));
    EXPECT_FALSE(isTooLarge(kHuge / 1e4, std::numeric_limits<double>::infinity(), L"GHz"));
    EXPECT_TRUE(isTooLarge(kHuge, kHuge, L"GHz"));
    copy_.remove(0);
    EXPECT_FALSE(copy_.hasTooLargeEdges());
}

}  // namespace
}  // namespace kv::channels
