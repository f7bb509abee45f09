// The members that add, find, remove and clear channels: what crosses the interface in both directions. The rules of
// the store are proved without automation, in tests/unit.
#include <gmock/gmock.h>

#include "tests/automation/DictionarySlot.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr short kDownwardDiagonal = 5;
constexpr short kUpwardDiagonal = 4;

class Store : public BothWays {
  protected:
    ComPtr<_FreqSlot> addTX(const ChannelSpec& spec) {
        const auto slot = channel(spec);
        scope.AddTXChnl(slot);
        return slot;
    }
    ComPtr<_FreqSlot> addRX(const ChannelSpec& spec) {
        const auto slot = channel(spec);
        scope.AddRXChnl(slot);
        return slot;
    }
};
INSTANTIATE_TEST_SUITE_P(Ways, Store, testing::Values(Way::early, Way::late), nameOf);

TEST_P(Store, AddingReturnsTheIndexWithinTheKind) {
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"})), 0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 151.0, .key = L"TX2"})), 1);
    EXPECT_EQ(scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX1"})), 0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 152.0, .key = L"TX3"})), 2);
    EXPECT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(scope.NumRX(), 1);
}

TEST_P(Store, FindersReturnTheObjectsThatWereAdded) {
    const auto tx = addTX({.freq = 150.0, .key = L"TX1"});
    const auto rx = addRX({.freq = 455.0, .key = L"RX1"});
    const auto unnamed = addTX({.freq = 151.0});
    for (const auto& found : {scope.GetTXChnl(0), scope.GetTXbyKey(L"TX1"), scope.GetChnlByKey(L"TX1")})
        EXPECT_TRUE(sameObject(found.Get(), tx.Get()));
    for (const auto& found : {scope.GetRXChnl(0), scope.GetRXbyKey(L"RX1"), scope.GetChnlByKey(L"RX1")})
        EXPECT_TRUE(sameObject(found.Get(), rx.Get()));
    EXPECT_EQ(scope.GetTXChnl(0).Get(), tx.Get());
    EXPECT_TRUE(sameObject(scope.GetTXbyKey(L"").Get(), unnamed.Get()));
}

TEST_P(Store, FindersReturnNothingWithoutAChannel) {
    addTX({.freq = 150.0, .key = L"TXabc"});
    for (const long i : {-1L, 1L, 2147483647L, -2147483647L - 1})
        EXPECT_FALSE(scope.GetTXChnl(i)) << i;
    EXPECT_FALSE(scope.GetRXChnl(0));
    EXPECT_FALSE(scope.GetTXbyKey(L"TXABC"));
    EXPECT_FALSE(scope.GetRXbyKey(L"TXabc"));
    EXPECT_FALSE(scope.GetChnlByKey(L""));
}

TEST_P(Store, AddingWritesFillStyleUnitsAndEdgesIntoTheHostsRecord) {
    const auto tx = addTX({.freq = 450.0, .bw = 12.5, .key = L"TX1", .units = L"  "});
    const auto rx = addRX({.freq = 450.0e6, .bw = 25.0, .key = L"RX1", .units = L"Hz"});
    EXPECT_EQ(fillStyle(tx.Get()), kDownwardDiagonal);
    EXPECT_EQ(fillStyle(rx.Get()), kUpwardDiagonal);
    Text frequencyUnit;
    Text bandwidthUnit;
    EXPECT_EQ(tx->get_sFreqUnits(frequencyUnit.put()), S_OK);
    EXPECT_EQ(rx->get_sBWUnits(bandwidthUnit.put()), S_OK);
    EXPECT_EQ(frequencyUnit.str(), L"MHz");
    EXPECT_EQ(bandwidthUnit.str(), L"KHz");
    EXPECT_DOUBLE_EQ(freqLo(tx.Get()), 449.9875);
    EXPECT_DOUBLE_EQ(freqHi(tx.Get()), 450.0125);
    EXPECT_DOUBLE_EQ(freqLo(rx.Get()), 449975000.0);
    EXPECT_DOUBLE_EQ(freqHi(rx.Get()), 450025000.0);
}

TEST_P(Store, EachExtremeIsReadByItsOwnMember) {
    addTX({.freq = 450.0, .lo = 440.0, .hi = 461.0, .power = -113.5, .key = L"TX1"});
    addTX({.freq = 451.0, .lo = 450.0, .hi = 452.0, .power = 46.0, .key = L"TX2"});
    addRX({.freq = 430.0, .lo = 425.0, .hi = 470.0, .power = 90.0, .key = L"RX1"});
    EXPECT_EQ(scope.dTXFreqMin(), 440.0);
    EXPECT_EQ(scope.dTXFreqMax(), 461.0);
    EXPECT_EQ(scope.dRXFreqMin(), 425.0);
    EXPECT_EQ(scope.dRXFreqMax(), 470.0);
    EXPECT_EQ(scope.dTXPwrDBMMin(), -113.5);
    EXPECT_EQ(scope.dTXPwrDBMMax(), 46.0);
    EXPECT_EQ(scope.dFreqMin(), 425.0);
    EXPECT_EQ(scope.dFreqMax(), 470.0);
    EXPECT_EQ(scope.dPwrMin(), -113.5);
    EXPECT_EQ(scope.dPwrMax(), 46.0);
}

TEST_P(Store, EachClearingMemberClearsItsKind) {
    const auto fill = [&] {
        addTX({.freq = 450.0, .key = L"TX1"});
        addTX({.freq = 460.0, .key = L"TX2"});
        addRX({.freq = 455.0, .key = L"RX1"});
    };
    fill();
    scope.ClearTXChnls();
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_FALSE(scope.GetTXbyKey(L"TX1"));
    EXPECT_TRUE(scope.GetRXbyKey(L"RX1"));
    scope.ClearAllChnls();
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_EQ(scope.dFreqMin(), kUnset);
    fill();
    EXPECT_TRUE(scope.GetTXbyKey(L"TX1")) << "the keys are free again";
    scope.ClearRXChnls();
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.NumRX(), 0);
}

TEST_P(Store, RemovalShiftsLaterChannelsDownAndRedrawsTheRest) {
    addTX({.freq = 150.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF});
    addTX({.freq = 180.0, .bw = 5000.0, .power = 2.0, .key = L"TX2", .color = 0x00FF0000});
    const auto third = addTX({.freq = 160.0, .key = L"TX3"});
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    EXPECT_TRUE(before.find(0x00FF0000, before.all()));
    scope.RemoveChnlByKey(L"TX2");
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_FALSE(scope.GetTXbyKey(L"TX2"));
    EXPECT_TRUE(sameObject(scope.GetTXChnl(1).Get(), third.Get()));
    EXPECT_EQ(scope.dTXFreqMax(), 160.0);
    const Picture after = capture(scope);
    EXPECT_FALSE(after.find(0x00FF0000, after.all()));
    EXPECT_TRUE(after.find(0x000000FF, after.all()));
}

TEST_P(Store, RemovalOfAMissingKeyChangesNothing) {
    const MessageBoxes boxes;
    addTX({.freq = 150.0, .key = L"TX1"});
    for (const wchar_t* key : {L"TX9", L"", L"tx1"})
        scope.RemoveChnlByKey(key);
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_TRUE(scope.GetTXbyKey(L"TX1"));
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(Store, MatchingComparesTheMembersOfTheRecords) {
    addRX({.freq = 400.0, .key = L"RX0"});
    const auto second = addRX({.freq = 455.0, .bw = 25.0, .power = 5.0, .key = L"RX1", .label = L"base"});
    ChannelSpec wanted{.freq = 455.0, .bw = 25.0, .power = -50.0, .key = L"other", .label = L"base"};
    wanted.units = L"MHz";
    wanted.bwUnits = L"KHz";
    EXPECT_EQ(scope.nFindMatchRX(channel(wanted)), kNotFound) << "without the edges that the store filled in";
    wanted.lo = freqLo(second.Get());
    wanted.hi = freqHi(second.Get());
    EXPECT_EQ(scope.nFindMatchRX(channel(wanted)), 1);
}

TEST_P(Store, NullAsAChannelIsNeitherAddedNorMatchedNorDrawn) {
    const MessageBoxes boxes;
    scope.AddTXChnl(nullptr);
    scope.AddRXChnl(nullptr);
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    addRX({.freq = 450.0, .key = L"RX1"});
    EXPECT_EQ(scope.nFindMatchRX(nullptr), kNotFound);
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    EXPECT_TRUE(scope.ReDrawChnl(nullptr)) << "the result is always True";
    EXPECT_TRUE(capture(scope) == before);
    EXPECT_TRUE(boxes.seen().empty());
}

TEST(StoreOfForeignRecords, ARecordThatCannotBeReadMatchesNothing) {
    Scope scope;
    scope.AddRXChnl(channel({.freq = 450.0, .key = L"RX1"}));
    const ComPtr<DictionarySlot> broken = DictionarySlot::create();
    broken->failing[L"dFreqAlt"] = E_FAIL;
    const Outcome outcome = call(scope.get(), L"nFindMatchRX", {Var(broken.Get())});
    EXPECT_EQ(outcome.hr, S_OK);
    EXPECT_EQ(outcome.result.lVal, kNotFound);
}

}  // namespace
}  // namespace kv::test
