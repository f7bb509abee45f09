// A record of our own class: its components, and which changes of it count.
#include <algorithm>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

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

class Listener final : public channels::RecordWatcher {
  public:
    void recordChanges(std::int32_t place, channels::Changes what) noexcept override {
        heard = static_cast<channels::Changes>(heard | what);
        places.push_back(place);
    }
    channels::Changes heard = channels::change::kNone;
    std::vector<std::int32_t> places;
};

class RecordMembersTest : public ::testing::Test {
  protected:
    /// What the watcher hears of a change.
    channels::Changes changesOf(const std::function<void()>& change) {
        listener.heard = channels::change::kNone;
        change();
        return listener.heard;
    }
    Listener listener;
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

using Fields = channels::FreqSlotFields;
using channels::change::kDrawing;
using channels::change::kGroup;
using channels::change::kKey;
using channels::change::kMatching;
using channels::change::kNone;

TEST_F(RecordMembersTest, ChangesAreHeardOnceTheRecordIsWatched) {
    EXPECT_EQ(changesOf([&] { slot->setDFreq(450.0); }), kNone);
    ASSERT_TRUE(slot->watch(listener, 7));
    EXPECT_EQ(changesOf([&] { slot->setDFreq(460.0); }), kDrawing | kMatching);
    EXPECT_EQ(listener.places, std::vector<std::int32_t>({7}));
    EXPECT_EQ(changesOf([&] { slot->fields().sKey = L"TX1"; }), channels::change::kAll);
    slot->unwatch(listener, 7);
    EXPECT_EQ(changesOf([&] { slot->setDFreq(470.0); }), kNone);
}

TEST_F(RecordMembersTest, AForeignRecordCannotBeWatched) {
    const util::Ref<CountedSlot> foreign(new CountedSlot);
    EXPECT_FALSE(foreign->watch(listener, 0));
}

TEST_F(RecordMembersTest, OnlyThoseWhoReadAMemberHearOfIt) {
    ASSERT_TRUE(slot->watch(listener, 0));
    for (const auto& [expected, change] : std::initializer_list<std::pair<int, std::function<void()>>>{
             {kDrawing | kMatching, [&] { slot->set<&Fields::dFreqLo>(1.0); }},
             {kDrawing | kMatching, [&] { slot->set<&Fields::dFreqHi>(1.0); }},
             {kDrawing | kMatching, [&] { slot->set<&Fields::sFreqUnits>(std::wstring(L"GHz")); }},
             {kDrawing, [&] { slot->set<&Fields::dPwrDBM>(1.0); }},
             {kDrawing, [&] { slot->set<&Fields::lColor>(1U); }},
             {kDrawing, [&] { slot->set<&Fields::lColorLine>(1U); }},
             {kDrawing, [&] { slot->set<&Fields::iFillStyle>(std::int16_t{1}); }},
             {kDrawing, [&] { slot->set<&Fields::bVisible>(false); }},
             {kMatching, [&] { slot->set<&Fields::dFreqAlt>(1.0); }},
             {kMatching, [&] { slot->set<&Fields::dBW>(1.0); }},
             {kMatching, [&] { slot->set<&Fields::sBWUnits>(std::wstring(L"Hz")); }},
             {kMatching | kGroup, [&] { slot->set<&Fields::sLabel>(std::wstring(L"A")); }},
             {kKey, [&] { slot->set<&Fields::sKey>(std::wstring(L"TX2")); }},
             {kGroup, [&] { slot->setNIMComps(3); }}}) {
        EXPECT_EQ(changesOf(change), expected);
        EXPECT_EQ(changesOf(change), kNone) << "the same value again";
    }
}

TEST_F(RecordMembersTest, OnlyWritingAComponentIsAChange) {
    slot->setNIMComps(1);
    ASSERT_TRUE(slot->watch(listener, 0));
    EXPECT_EQ(changesOf([&] { slot->component(0).coefficient = 2; }), kGroup);
    EXPECT_EQ(changesOf([&] { EXPECT_EQ(slot->imComponent(0).coefficient, 2); }), kNone);
    EXPECT_EQ(changesOf([&] { EXPECT_EQ(std::as_const(*slot).component(0).coefficient, 2); }), kNone);
}

TEST_F(RecordMembersTest, AValueThatIsNoNumberIsTheSameValue) {
    ASSERT_TRUE(slot->watch(listener, 0));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(changesOf([&] { slot->setDFreq(nan); }), kDrawing | kMatching);
    EXPECT_EQ(changesOf([&] { slot->setDFreq(nan); }), kNone);
    slot->setDFreq(0.0);
    EXPECT_EQ(changesOf([&] { slot->setDFreq(-0.0); }), kDrawing | kMatching) << "the reciprocal differs";
}

TEST_F(RecordMembersTest, EachWatchIsHeardMovedAndEndedByItself) {
    Listener other;
    for (const std::int32_t place : {1, 2, 3})
        ASSERT_TRUE(slot->watch(listener, place));
    ASSERT_TRUE(slot->watch(other, 1));
    slot->moveWatch(listener, 2, 20);
    slot->unwatch(listener, 1);
    slot->unwatch(listener, 99);
    slot->setDFreq(1.0);
    std::ranges::sort(listener.places);
    EXPECT_EQ(listener.places, std::vector<std::int32_t>({3, 20}));
    EXPECT_EQ(other.places, std::vector<std::int32_t>({1}));
    slot->unwatch(listener, 3);
    slot->unwatch(listener, 20);
    slot->unwatch(other, 1);
    slot->setDFreq(2.0);
    EXPECT_EQ(listener.places.size(), 2U);
    EXPECT_EQ(other.places.size(), 1U);
}

TEST_F(RecordMembersTest, AWatcherThatEndsAllItsWatchesLeavesThoseOfOthers) {
    Listener other;
    Listener third;
    for (const std::int32_t place : {5, 1, 0}) {
        for (Listener* const watcher : {&third, &listener, &other})
            ASSERT_TRUE(slot->watch(*watcher, place));
    }
    slot->unwatchAll(listener);
    slot->setDFreq(1.0);
    EXPECT_TRUE(listener.places.empty());
    for (Listener* const watcher : {&other, &third}) {
        std::ranges::sort(watcher->places);
        EXPECT_EQ(watcher->places, std::vector<std::int32_t>({0, 1, 5}));
    }
    slot->unwatchAll(other);
    slot->unwatchAll(third);
    slot->setDFreq(2.0);
    EXPECT_EQ(third.places.size(), 3U);
}

TEST_F(RecordMembersTest, MarkingAVisibleRecordAsDrawnIsNoChangeButUnmarkingIsOne) {
    ASSERT_TRUE(slot->watch(listener, 0));
    EXPECT_EQ(changesOf([&] { slot->setBDrawn(true); }), kNone);
    EXPECT_TRUE(slot->bDrawn());
    EXPECT_EQ(changesOf([&] { slot->setBDrawn(true); }), kNone);
    EXPECT_EQ(changesOf([&] { slot->setBDrawn(false); }), kDrawing);
    slot->fields().bVisible = false;
    EXPECT_EQ(changesOf([&] { slot->setBDrawn(true); }), kDrawing);
    EXPECT_EQ(changesOf([&] { slot->setBDrawn(true); }), kNone);
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
    channels::FreqSlotFields& first = slots[0]->fields();
    first.dFreq = first.dFreqLo = first.dFreqHi = 470.0;
    EXPECT_EQ(match(470.0), 0);
    EXPECT_EQ(match(450.0), -88);
    channels::FreqSlotFields& last = slots[2]->fields();
    last.dFreq = last.dFreqLo = last.dFreqHi = 450.0;
    EXPECT_EQ(match(450.0), 2);
    EXPECT_EQ(match(460.0), 1);
}

}  // namespace
}  // namespace kv::control
