// What the copy of the records reads again and when.
#include "channels/RecordCopy.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

class RecordCopyTest : public ::testing::Test {
  protected:
    FreqSlotBase& append(FreqSlotBase* slot, double frequency) {
        slot->fields().dFreq = frequency;
        list_.append(FreqSlotRef(slot));
        return *slot;
    }
    FreqSlotBase& append(double frequency) { return append(new control::QuietSlot, frequency); }
    std::optional<std::size_t> remove(std::int32_t index) {
        static_cast<void>(list_.take(static_cast<std::size_t>(index)));
        return copy_.remove(index);
    }
    std::vector<double> frequencies() const {
        std::vector<double> found;
        for (const DrawRecord& record : copy_.records())
            found.push_back(record.bVisible ? record.dFreq : -1.0);
        return found;
    }
    using Frequencies = std::vector<double>;

    ChannelList list_;
    RecordCopy copy_;
};

TEST_F(RecordCopyTest, OnlyAppendedRecordsAreRead) {
    EXPECT_EQ(copy_.update(list_), 0U);
    append(100.0);
    append(200.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    EXPECT_EQ(copy_.update(list_), 2U);
    append(300.0);
    EXPECT_EQ(copy_.update(list_), 2U);
    EXPECT_EQ(frequencies(), Frequencies({100.0, 200.0, 300.0}));
}

TEST_F(RecordCopyTest, AChangeReadsAllRecordsAgainOnce) {
    append(100.0);
    FreqSlotBase& changed = append(200.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    changed.setDFreq(250.0);
    append(300.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    EXPECT_EQ(frequencies(), Frequencies({100.0, 250.0, 300.0}));
    EXPECT_EQ(copy_.update(list_), 3U);
}

TEST_F(RecordCopyTest, WhenAllRecordsWereRemovedOlderChangesDoNotCount) {
    const FreqSlotRef removed(&append(100.0));
    EXPECT_EQ(copy_.update(list_), 0U);
    remove(0);
    static_cast<FreqSlotBase*>(removed.get())->setDFreq(150.0);
    append(200.0);
    EXPECT_EQ(copy_.update(list_), 1U);
    EXPECT_EQ(copy_.update(list_), 2U);
}

TEST_F(RecordCopyTest, MemoryForManyRecordsIsReservedExactly) {
    append(100.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    for (int i = 0; i < 99; ++i)
        append(200.0);
    EXPECT_EQ(copy_.update(list_), 1U);
    EXPECT_EQ(copy_.records().capacity(), 100U);
    EXPECT_EQ(copy_.fields().capacity(), 100U);
}

TEST_F(RecordCopyTest, ARemovalLeavesAHole) {
    for (const double frequency : {100.0, 200.0, 300.0})
        append(frequency);
    EXPECT_EQ(copy_.update(list_), 0U);
    EXPECT_EQ(remove(1), 1U);
    EXPECT_EQ(copy_.update(list_), 3U);
    EXPECT_EQ(frequencies(), Frequencies({100.0, -1.0, 300.0}));
    EXPECT_TRUE(copy_.isHole(1));
    EXPECT_FALSE(copy_.isHole(2));
    EXPECT_EQ(copy_.fields()[1], nullptr);
    EXPECT_EQ(copy_.indexOf(2), 1);
    EXPECT_EQ(copy_.positionOf(1), 2U);
    append(400.0);
    EXPECT_EQ(remove(2), std::nullopt) << "not read yet";
    EXPECT_EQ(copy_.update(list_), 3U);
    EXPECT_EQ(copy_.size(), 3U);
}

TEST_F(RecordCopyTest, ManyHolesAreMoreThan64AndAnEighthOfThePlaces) {
    for (int i = 0; i < 200; ++i)
        append(100.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    for (int i = 0; i < 64 + 200 / 8; ++i) {
        remove(0);
        EXPECT_FALSE(copy_.hasManyHoles());
    }
    remove(0);
    EXPECT_TRUE(copy_.hasManyHoles());
}

TEST_F(RecordCopyTest, AForeignRecordLeavesNoCopy) {
    append(100.0);
    append(new control::CountedSlot, 200.0);
    EXPECT_EQ(copy_.update(list_), std::nullopt);
    EXPECT_TRUE(copy_.hasForeign());
    EXPECT_EQ(copy_.update(list_), std::nullopt);
}

TEST_F(RecordCopyTest, UnknownFillStylesAreThoseOutsideZeroToSeven) {
    FreqSlotBase& slot = append(100.0);
    for (const auto& [style, unknown] : {std::pair<std::int16_t, bool>{0, false}, {7, false}, {-1, true}, {8, true}}) {
        slot.setIFillStyle(style);
        EXPECT_EQ(copy_.update(list_), 0U);
        EXPECT_EQ(copy_.hasUnknownFillStyle(), unknown) << style;
    }
    remove(0);
    EXPECT_FALSE(copy_.hasUnknownFillStyle());
    append(200.0).setIFillStyle(8);
    EXPECT_EQ(copy_.update(list_), 1U);
    EXPECT_TRUE(copy_.hasUnknownFillStyle());
}

TEST_F(RecordCopyTest, MarkingAsDrawnReachesTheRecord) {
    FreqSlotBase& slot = append(100.0);
    EXPECT_EQ(copy_.update(list_), 0U);
    copy_.markDrawn(0);
    EXPECT_TRUE(slot.bDrawn());
    EXPECT_TRUE(copy_.records()[0].bDrawn);
    EXPECT_EQ(copy_.update(list_), 1U);
}

}  // namespace
}  // namespace kv::channels
