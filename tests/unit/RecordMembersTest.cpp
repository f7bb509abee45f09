// A record of our own class: its components, and which changes of it count.
#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

/// The number of the run-time error that ends `body`, 0 for none.
int errorOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const util::RuntimeError& error) {
        return error.number();
    }
    return 0;
}

class RecordMembersTest : public ::testing::Test {
  protected:
    bool movesRevision(const std::function<void()>& change) {
        const std::uint64_t before = channels::recordRevision();
        change();
        return channels::recordRevision() != before;
    }
    util::Ref<QuietSlot> slot{new QuietSlot};
};

TEST_F(RecordMembersTest, ComponentsAreThoseFromZeroToTheirNumber) {
    slot->setNIMComps(2);
    slot->component(0).frequency = 450.0;
    slot->component(1).frequency = 460.0;
    EXPECT_EQ(slot->imComponent(0).frequency, 450.0);
    EXPECT_EQ(slot->imComponent(1).frequency, 460.0);
    for (const std::int32_t outside : {-1, 2, 1000, -1000})
        EXPECT_EQ(errorOf([&] { static_cast<void>(slot->component(outside)); }),
                  util::error_number::kSubscriptOutOfRange)
            << outside;
}

TEST_F(RecordMembersTest, SizingKeepsTheComponentsThatStay) {
    slot->setNIMComps(2);
    slot->component(0).frequency = 450.0;
    slot->setNIMComps(3);
    EXPECT_EQ(slot->nIMComps(), 3);
    EXPECT_EQ(slot->component(0).frequency, 450.0);
    EXPECT_EQ(slot->component(2).frequency, 0.0);
    EXPECT_EQ(errorOf([&] { slot->setNIMComps(-1); }), util::error_number::kInvalidProcedureCall);
    EXPECT_EQ(slot->nIMComps(), 3);
    slot->setNIMComps(0);
    EXPECT_EQ(errorOf([&] { static_cast<void>(slot->component(0)); }), util::error_number::kSubscriptOutOfRange);
}

TEST_F(RecordMembersTest, ChangesCountOnceTheRecordIsWatched) {
    EXPECT_FALSE(movesRevision([&] { slot->setDFreq(450.0); }));
    ASSERT_NE(slot->watch(), nullptr);
    EXPECT_TRUE(movesRevision([&] { slot->setDFreq(460.0); }));
    const std::uint64_t keys = channels::keyRevision();
    EXPECT_TRUE(movesRevision([&] { slot->fieldsButKey().dBW = 1.0; }));
    EXPECT_EQ(channels::keyRevision(), keys);
    EXPECT_TRUE(movesRevision([&] { slot->fields().sKey = L"TX1"; }));
    EXPECT_NE(channels::keyRevision(), keys);
}

TEST_F(RecordMembersTest, MarkingAVisibleRecordAsDrawnIsNoChangeButUnmarkingIsOne) {
    ASSERT_NE(slot->watch(), nullptr);
    EXPECT_FALSE(movesRevision([&] { slot->setBDrawn(true); }));
    EXPECT_TRUE(slot->bDrawn());
    EXPECT_FALSE(movesRevision([&] { slot->setBDrawn(true); }));
    EXPECT_TRUE(movesRevision([&] { slot->setBDrawn(false); }));
    slot->fields().bVisible = false;
    EXPECT_TRUE(movesRevision([&] { slot->setBDrawn(true); }));
    EXPECT_FALSE(movesRevision([&] { slot->setBDrawn(true); }));
}

class MatchAfterChangesTest : public ScopeTest {
  protected:
    static util::Ref<QuietSlot> quiet(double frequency) {
        const util::Ref<QuietSlot> slot(new QuietSlot);
        slot->fields().dFreq = frequency;
        slot->fields().dFreqLo = slot->fields().dFreqHi = frequency;
        slot->fields().sKey = L"RX" + std::to_wstring(frequency);
        slot->fields().sFreqUnits = L"MHz";
        slot->fields().sBWUnits = L"KHz";
        return slot;
    }
    std::int32_t match(double frequency) { return scope.nFindMatchRX(channels::FreqSlotRef(quiet(frequency).get())); }
};

TEST_F(MatchAfterChangesTest, AChangedRecordMatchesWhatItIsNow) {
    const std::vector<util::Ref<QuietSlot>> slots{quiet(450.0), quiet(460.0), quiet(460.0)};
    for (const util::Ref<QuietSlot>& slot : slots)
        scope.AddRXChnl(channels::FreqSlotRef(slot.get()));
    EXPECT_EQ(match(450.0), 0);
    EXPECT_EQ(match(460.0), 1);
    EXPECT_EQ(match(460.0), 1);
    EXPECT_EQ(match(470.0), -88);
    channels::FreqSlotFields& first = slots[0]->fieldsButKey();
    first.dFreq = first.dFreqLo = first.dFreqHi = 470.0;
    EXPECT_EQ(match(470.0), 0);
    EXPECT_EQ(match(450.0), -88);
    channels::FreqSlotFields& last = slots[2]->fieldsButKey();
    last.dFreq = last.dFreqLo = last.dFreqHi = 450.0;
    EXPECT_EQ(match(450.0), 2);
    EXPECT_EQ(match(460.0), 1);
}

}  // namespace
}  // namespace kv::control
