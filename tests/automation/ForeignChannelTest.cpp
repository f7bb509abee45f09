// Channels of the host's own class, reached by the names of their members only.
#include <gmock/gmock.h>

#include "tests/automation/Colors.h"
#include "tests/automation/DictionarySlot.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kOrange = 0x000080FF;

ComPtr<DictionarySlot> foreign(const wchar_t* key, double low, double high, OLE_COLOR color) {
    auto slot = DictionarySlot::create();
    slot->values[L"dFreq"] = (low + high) / 2.0;
    slot->values[L"dFreqLo"] = low;
    slot->values[L"dFreqHi"] = high;
    slot->values[L"dPwrDBM"] = 2.0;
    slot->values[L"sKey"] = key;
    slot->values[L"lColor"] = static_cast<int>(color);
    slot->values[L"lColorLine"] = static_cast<int>(color);
    return slot;
}

class ForeignChannel : public testing::Test {
  protected:
    ForeignChannel() { scope.setFreqEndBuffer(5.0); }
    long add(const ComPtr<DictionarySlot>& slot, const wchar_t* member = L"AddTXChnl") {
        const Outcome outcome = call(scope.get(), member, {Var(slot.Get())});
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_EQ(outcome.result.vt, VT_I4);
        return outcome.result.lVal;
    }
    bool isThere(OLE_COLOR color) { return plot.picture().find(color, plot.spectrum).has_value(); }
    Plot plot;
    Scope& scope = plot.scope;
};

TEST_F(ForeignChannel, UnitsAndEdgesAreFilledInAsForOwnChannels) {
    auto slot = DictionarySlot::create();
    slot->values[L"dFreq"] = 450.0;
    slot->values[L"dBW"] = 12.5;
    slot->values[L"sKey"] = L"TX1";
    EXPECT_EQ(add(slot), 0);
    EXPECT_EQ(slot->values[L"iFillStyle"].iVal, 5);
    EXPECT_EQ(slot->values[L"sFreqUnits"].text(), L"MHz");
    EXPECT_EQ(slot->values[L"sBWUnits"].text(), L"KHz");
    EXPECT_DOUBLE_EQ(slot->values[L"dFreqLo"].dblVal, 449.9875);
    EXPECT_DOUBLE_EQ(slot->values[L"dFreqHi"].dblVal, 450.0125);
    EXPECT_DOUBLE_EQ(scope.dTXFreqMax(), 450.0125);
}

TEST_F(ForeignChannel, IsFoundAgainAsTheSameObject) {
    const auto tx = foreign(L"TX1", 440.0, 445.0, kRed);
    const auto rx = foreign(L"RX1", 450.0, 455.0, kBlue);
    add(tx);
    EXPECT_EQ(add(rx, L"AddRXChnl"), 0);
    for (const auto& [member, argument, expected] :
         {std::tuple<const wchar_t*, Var, IDispatch*>{L"GetTXChnl", Var(0), tx.Get()},
          {L"GetTXbyKey", Var(L"TX1"), tx.Get()},
          {L"GetChnlByKey", Var(L"RX1"), rx.Get()},
          {L"GetRXChnl", Var(0), rx.Get()},
          {L"GetRXbyKey", Var(L"RX1"), rx.Get()}}) {
        const Outcome outcome = call(scope.get(), member, {argument});
        ASSERT_EQ(outcome.result.vt, VT_DISPATCH);
        EXPECT_EQ(outcome.result.pdispVal, expected);
    }
    // An early bound host gets the members, and the same identity.
    const ComPtr<_FreqSlot> early = scope.GetTXChnl(0);
    EXPECT_EQ(keyOf(early.Get()), L"TX1");
    EXPECT_TRUE(sameObject(early.Get(), tx.Get()));
}

TEST_F(ForeignChannel, IsDrawn) {
    const auto slot = foreign(L"TX1", 440.0, 445.0, kRed);
    add(slot);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_TRUE(isThere(kRed));
    EXPECT_EQ(slot->values[L"bDrawn"].boolVal, VARIANT_TRUE);
}

TEST_F(ForeignChannel, ItsChangesShowWithTheNextDrawing) {
    const auto slot = foreign(L"TX1", 440.0, 445.0, kRed);
    add(slot);
    ASSERT_TRUE(scope.DrawDisplay());
    slot->values[L"lColor"] = static_cast<int>(kBlue);
    slot->values[L"lColorLine"] = static_cast<int>(kBlue);
    ASSERT_TRUE(scope.DrawDisplay());
    EXPECT_FALSE(isThere(kRed));
    EXPECT_TRUE(isThere(kBlue));
}

TEST_F(ForeignChannel, CanBeRedrawnMatchedAndRemoved) {
    const auto tx = foreign(L"TX1", 440.0, 445.0, kRed);
    const auto rx = foreign(L"RX1", 450.0, 455.0, kBlue);
    add(tx);
    add(rx, L"AddRXChnl");
    EXPECT_EQ(call(scope.get(), L"nFindMatchRX", {Var(rx.Get())}).result.lVal, 0);
    EXPECT_EQ(call(scope.get(), L"nFindMatchRX", {Var(tx.Get())}).result.lVal, kNotFound);
    scope.DrawInitialDisplay();
    scope.ClearDisplay();
    EXPECT_EQ(call(scope.get(), L"ReDrawChnl", {Var(tx.Get())}).result.boolVal, VARIANT_TRUE);
    EXPECT_TRUE(isThere(kRed));
    scope.RemoveChnlByKey(L"TX1");
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_FALSE(isThere(kRed));
    EXPECT_EQ(tx->references(), 1U);
}

TEST_F(ForeignChannel, TheStoreReleasesItsReferences) {
    auto slot = foreign(L"TX1", 440.0, 445.0, kRed);
    int destroyed = 0;
    slot->destroyed = &destroyed;
    add(slot);
    EXPECT_GT(slot->references(), 1U);
    scope.ClearAllChnls();
    EXPECT_EQ(slot->references(), 1U);
    add(slot);
    slot.Reset();
    EXPECT_EQ(destroyed, 0);
    scope.release();
    EXPECT_EQ(destroyed, 1);
}

TEST_F(ForeignChannel, FailureWhileItIsAddedEndsTheAddQuietly) {
    const MessageBoxes boxes;
    // In the order in which the store reads the members: the later the failure, the more has been done.
    for (const wchar_t* member : {L"iFillStyle", L"sFreqUnits", L"sKey", L"dFreq", L"dBW", L"dFreqHi", L"dPwrDBM"}) {
        Scope fresh;
        const auto slot = foreign(L"TX1", 440.0, 445.0, kRed);
        slot->failing[member] = E_FAIL;
        EXPECT_EQ(call(fresh.get(), L"AddTXChnl", {Var(slot.Get())}).hr, S_OK) << testing::PrintToString(member);
        slot->failing.clear();
        const std::wstring failed = member;
        const bool placed = failed != L"iFillStyle" && failed != L"sFreqUnits";
        const bool keyed = placed && failed != L"sKey";
        const bool widened = failed == L"dPwrDBM";
        EXPECT_EQ(fresh.NumTX(), placed ? 1 : 0) << testing::PrintToString(member);
        EXPECT_EQ(fresh.GetTXbyKey(L"TX1") != nullptr, keyed) << testing::PrintToString(member);
        EXPECT_EQ(fresh.dTXFreqMax(), widened ? 445.0 : -kUnset) << testing::PrintToString(member);
        EXPECT_EQ(fresh.AddTXChnl(channel({.freq = 500.0, .key = L"TX9"})), placed ? 1 : 0);
        EXPECT_EQ(fresh.dTXFreqMax(), 500.0);
    }
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_F(ForeignChannel, FailureWhileItIsDrawnEndsItsKindOnly) {
    const MessageBoxes boxes;
    for (const wchar_t* member : {L"bVisible", L"dFreq", L"lColor", L"dPwrDBM", L"iFillStyle", L"bDrawn"}) {
        scope.ClearAllChnls();
        const auto bad = foreign(L"TX2", 450.0, 454.0, kBlue);
        add(foreign(L"TX1", 440.0, 444.0, kRed));
        add(bad);
        add(foreign(L"TX3", 460.0, 464.0, kBlue));
        add(foreign(L"RX1", 470.0, 474.0, kOrange), L"AddRXChnl");
        scope.DrawInitialDisplay();
        EXPECT_TRUE(isThere(kBlue));
        bad->values[L"lColor"] = static_cast<int>(kRed);
        bad->values[L"lColorLine"] = static_cast<int>(kRed);
        bad->failing[member] = E_FAIL;
        EXPECT_TRUE(scope.DrawDisplay()) << testing::PrintToString(member);
        EXPECT_TRUE(isThere(kRed)) << "the channels before it";
        EXPECT_FALSE(isThere(kBlue)) << "the channel after it";
        EXPECT_TRUE(isThere(kOrange)) << "the other kind";
        EXPECT_TRUE(isThere(Plot::kGrid));
    }
}

TEST_F(ForeignChannel, FailureWhileItIsRedrawnStillReturnsTrue) {
    const MessageBoxes boxes;
    const auto bad = foreign(L"TX1", 440.0, 444.0, kRed);
    add(bad);
    scope.DrawInitialDisplay();
    const Picture before = plot.picture();
    for (const wchar_t* member : {L"bVisible", L"dFreqLo", L"lColor"}) {
        bad->failing = {{member, E_UNEXPECTED}};
        const Outcome outcome = call(scope.get(), L"ReDrawChnl", {Var(bad.Get())});
        EXPECT_EQ(outcome.hr, S_OK);
        EXPECT_EQ(outcome.result.boolVal, VARIANT_TRUE);
    }
    EXPECT_TRUE(plot.picture() == before);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_F(ForeignChannel, FailureWhileItIsLookedForFindsNothing) {
    const MessageBoxes boxes;
    const auto bad = foreign(L"RX1", 440.0, 444.0, kRed);
    add(bad, L"AddRXChnl");
    bad->failing = {{L"sKey", E_FAIL}, {L"dBW", E_FAIL}};
    EXPECT_FALSE(scope.GetRXbyKey(L"RX1"));
    EXPECT_FALSE(scope.GetChnlByKey(L"RX1"));
    EXPECT_EQ(call(scope.get(), L"nFindMatchRX", {Var(bad.Get())}).result.lVal, kNotFound);
    scope.RemoveChnlByKey(L"RX1");
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_F(ForeignChannel, ObjectWithoutTheMembersIsNotAdded) {
    const auto slot = DictionarySlot::create();
    slot->values.clear();
    EXPECT_EQ(call(scope.get(), L"AddTXChnl", {Var(slot.Get())}).hr, S_OK);
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(call(scope.get(), L"AddTXChnl", {Var(L"TX1")}).hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(call(scope.get(), L"AddTXChnl", {Var(1.0)}).hr, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(ForeignChannel, FailedAddOnATakenKeyIsDrawn) {
    add(foreign(L"TX1", 440.0, 444.0, kBlue));
    add(foreign(L"tx1", 460.0, 464.0, kRed));
    scope.DrawByRange(435.0, 470.0);
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_FALSE(scope.GetTXbyKey(L"tx1"));
    EXPECT_TRUE(isThere(kRed));
    EXPECT_TRUE(isThere(kBlue));
}

}  // namespace
}  // namespace kv::test
