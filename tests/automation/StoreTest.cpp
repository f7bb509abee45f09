// Adding, finding, removing and clearing channels, as a host sees it.
#include <gmock/gmock.h>

#include "tests/automation/HostedControl.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr short kDownwardDiagonal = 5;
constexpr short kUpwardDiagonal = 4;

std::wstring unitsOf(_FreqSlot* slot) {
    Text frequency;
    Text bandwidth;
    slot->get_sFreqUnits(frequency.put());
    slot->get_sBWUnits(bandwidth.put());
    return frequency.str() + L"/" + bandwidth.str();
}

class Store : public BothWays {};
INSTANTIATE_TEST_SUITE_P(Ways, Store, testing::Values(Way::early, Way::late), nameOf);

TEST_P(Store, IndicesCountUpFromZeroForEachKind) {
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"})), 0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 151.0, .key = L"TX2"})), 1);
    EXPECT_EQ(scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX1"})), 0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 152.0, .key = L"TX3"})), 2);
    EXPECT_EQ(scope.AddRXChnl(channel({.freq = 456.0, .key = L"RX2"})), 1);
    EXPECT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(scope.NumRX(), 2);
}

TEST_P(Store, HandsOutTheVeryObjectsThatWereAdded) {
    const auto tx = channel({.freq = 150.0, .key = L"TX1"});
    const auto rx = channel({.freq = 455.0, .key = L"RX1"});
    scope.AddTXChnl(tx);
    scope.AddRXChnl(rx);
    for (const auto& found : {scope.GetTXChnl(0), scope.GetTXbyKey(L"TX1"), scope.GetChnlByKey(L"TX1")})
        EXPECT_TRUE(sameObject(found.Get(), tx.Get()));
    for (const auto& found : {scope.GetRXChnl(0), scope.GetRXbyKey(L"RX1"), scope.GetChnlByKey(L"RX1")})
        EXPECT_TRUE(sameObject(found.Get(), rx.Get()));
    EXPECT_EQ(scope.GetTXChnl(0).Get(), tx.Get());
}

TEST_P(Store, NoChannelAtAnIndexIsNothing) {
    for (const long i : {-1L, 0L, 1L, 2147483647L, -2147483647L - 1}) {
        EXPECT_FALSE(scope.GetTXChnl(i)) << i;
        EXPECT_FALSE(scope.GetRXChnl(i)) << i;
    }
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"}));
    EXPECT_TRUE(scope.GetTXChnl(0));
    EXPECT_FALSE(scope.GetTXChnl(1));
    EXPECT_FALSE(scope.GetTXChnl(-1));
    EXPECT_FALSE(scope.GetRXChnl(0));
}

TEST_P(Store, FillStyleTellsTheKinds) {
    const auto tx = channel({.freq = 150.0, .key = L"TX1"});
    const auto rx = channel({.freq = 455.0, .key = L"RX1"});
    tx->put_iFillStyle(0);
    scope.AddTXChnl(tx);
    scope.AddRXChnl(rx);
    EXPECT_EQ(fillStyle(tx.Get()), kDownwardDiagonal);
    EXPECT_EQ(fillStyle(rx.Get()), kUpwardDiagonal);
}

TEST_P(Store, EmptyUnitsAreFilledIn) {
    const auto empty = channel({.freq = 150.0, .key = L"TX1"});
    const auto blank = channel({.freq = 150.0, .key = L"TX2", .units = L"  ", .bwUnits = L"   "});
    const auto given = channel({.freq = 150.0, .key = L"RX1", .units = L"Hz", .bwUnits = L"GHz"});
    scope.AddTXChnl(empty);
    scope.AddTXChnl(blank);
    scope.AddRXChnl(given);
    EXPECT_EQ(unitsOf(empty.Get()), L"MHz/KHz");
    EXPECT_EQ(unitsOf(blank.Get()), L"MHz/KHz");
    EXPECT_EQ(unitsOf(given.Get()), L"Hz/GHz");
}

TEST_P(Store, EdgesLieAWholeBandwidthFromTheCentre) {
    const auto slot = channel({.freq = 450.0, .bw = 12.5, .key = L"TX1"});
    scope.AddTXChnl(slot);
    EXPECT_DOUBLE_EQ(freqLo(slot.Get()), 449.9875);
    EXPECT_DOUBLE_EQ(freqHi(slot.Get()), 450.0125);
    EXPECT_EQ(scope.dTXFreqMin(), freqLo(slot.Get()));
    EXPECT_EQ(scope.dTXFreqMax(), freqHi(slot.Get()));
}

TEST_P(Store, BandwidthIsConvertedToTheUnitOfTheFrequency) {
    const auto slot = channel({.freq = 450.0e6, .bw = 25.0, .key = L"TX1", .units = L"Hz"});
    scope.AddTXChnl(slot);
    EXPECT_DOUBLE_EQ(freqLo(slot.Get()), 449975000.0);
    EXPECT_DOUBLE_EQ(freqHi(slot.Get()), 450025000.0);
}

TEST_P(Store, UnknownBandwidthUnitCountsAsMinus88) {
    const auto slot = channel({.freq = 450.0, .bw = 5.0, .key = L"TX1", .bwUnits = L"kHz"});
    scope.AddTXChnl(slot);
    EXPECT_EQ(freqLo(slot.Get()), 538.0);
    EXPECT_EQ(freqHi(slot.Get()), 362.0);
}

TEST_P(Store, GivenEdgesAreKept) {
    const auto slot = channel({.freq = 450.0, .bw = 12.5, .lo = 440.0, .hi = 461.0, .key = L"TX1"});
    const auto half = channel({.freq = 450.0, .bw = 1000.0, .hi = 470.0, .key = L"RX1"});
    scope.AddTXChnl(slot);
    scope.AddRXChnl(half);
    EXPECT_EQ(freqLo(slot.Get()), 440.0);
    EXPECT_EQ(freqHi(slot.Get()), 461.0);
    EXPECT_EQ(freqLo(half.Get()), 449.0);
    EXPECT_EQ(freqHi(half.Get()), 470.0);
    EXPECT_EQ(scope.dFreqMin(), 440.0);
    EXPECT_EQ(scope.dFreqMax(), 470.0);
    EXPECT_EQ(scope.dRXFreqMin(), 449.0);
    EXPECT_EQ(scope.dRXFreqMax(), 470.0);
}

TEST_P(Store, ChannelWithoutFrequencyIsCountedButWidensNothing) {
    for (const double frequency : {0.0, -5.0}) {
        const auto slot = channel({.freq = frequency,
                                   .bw = 25.0,
                                   .lo = 100.0,
                                   .hi = 900.0,
                                   .power = 70.0,
                                   .key = frequency == 0.0 ? L"TX0" : L"TX-5"});
        scope.AddTXChnl(slot);
    }
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.dTXFreqMin(), kUnset);
    EXPECT_EQ(scope.dTXFreqMax(), -kUnset);
    EXPECT_EQ(scope.dFreqMin(), kUnset);
    EXPECT_EQ(scope.dFreqMax(), -kUnset);
    EXPECT_EQ(scope.dTXPwrDBMMax(), -kUnset);
    EXPECT_EQ(scope.dPwrMax(), 3.0);
    EXPECT_TRUE(scope.GetTXbyKey(L"TX0"));
}

TEST_P(Store, PowerRangeWidensButNeverNarrowsItsStart) {
    scope.AddTXChnl(channel({.freq = 450.0, .power = 1.0, .key = L"TX1"}));
    EXPECT_EQ(scope.dTXPwrDBMMin(), 1.0);
    EXPECT_EQ(scope.dTXPwrDBMMax(), 1.0);
    EXPECT_EQ(scope.dPwrMin(), 0.0);
    EXPECT_EQ(scope.dPwrMax(), 3.0);
    scope.AddTXChnl(channel({.freq = 451.0, .power = -113.5, .key = L"TX2"}));
    scope.AddTXChnl(channel({.freq = 452.0, .power = 46.0, .key = L"TX3"}));
    EXPECT_EQ(scope.dTXPwrDBMMin(), -113.5);
    EXPECT_EQ(scope.dTXPwrDBMMax(), 46.0);
    EXPECT_EQ(scope.dPwrMin(), -113.5);
    EXPECT_EQ(scope.dPwrMax(), 46.0);
}

TEST_P(Store, ReceiveChannelsWidenNoPower) {
    scope.AddRXChnl(channel({.freq = 450.0, .power = 90.0, .key = L"RX1"}));
    EXPECT_EQ(scope.dTXPwrDBMMax(), -kUnset);
    EXPECT_EQ(scope.dPwrMax(), 3.0);
    EXPECT_EQ(scope.dRXFreqMin(), 450.0);
    EXPECT_EQ(scope.dTXFreqMin(), kUnset);
}

TEST_P(Store, FailedAddOnATakenKeyIsCountedButNotFound) {
    const auto first = channel({.freq = 450.0, .power = 10.0, .key = L"TX1"});
    const auto second = channel({.freq = 900.0, .power = 99.0, .key = L"TX1"});
    const auto third = channel({.freq = 100.0, .key = L"tx1"});
    scope.AddTXChnl(first);
    scope.AddTXChnl(second);
    scope.AddRXChnl(third);
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_TRUE(sameObject(scope.GetTXChnl(1).Get(), second.Get()));
    EXPECT_TRUE(sameObject(scope.GetTXbyKey(L"TX1").Get(), first.Get()));
    EXPECT_EQ(scope.dTXFreqMax(), 450.0);
    EXPECT_EQ(scope.dRXFreqMin(), kUnset);
    EXPECT_EQ(scope.dPwrMax(), 10.0);
    // The edges come after the key, so they stay as they were.
    EXPECT_EQ(freqHi(second.Get()), 0.0);
}

TEST_P(Store, KeysAreTakenWithoutRegardToCaseAndFoundWithIt) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TXabc"}));
    EXPECT_TRUE(scope.GetTXbyKey(L"TXabc"));
    EXPECT_FALSE(scope.GetTXbyKey(L"TXABC"));
    EXPECT_FALSE(scope.GetChnlByKey(L"txabc"));
    EXPECT_FALSE(scope.GetRXbyKey(L"TXabc"));
    EXPECT_FALSE(scope.GetChnlByKey(L""));
}

TEST_P(Store, AnEmptyKeyIsAKey) {
    const auto slot = channel({.freq = 450.0});
    scope.AddTXChnl(slot);
    EXPECT_TRUE(sameObject(scope.GetTXbyKey(L"").Get(), slot.Get()));
}

TEST_P(Store, ClearedKindStartsAgainAtZeroWithItsKeysStillTaken) {
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    scope.AddTXChnl(channel({.freq = 460.0, .key = L"TX2"}));
    scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX1"}));
    scope.ClearTXChnls();
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_FALSE(scope.GetTXChnl(0));
    EXPECT_FALSE(scope.GetTXbyKey(L"TX1"));
    EXPECT_EQ(scope.dTXFreqMax(), 460.0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 999.0, .key = L"TX2"})), 0);
    EXPECT_EQ(scope.dTXFreqMax(), 460.0) << "the key was free";
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 470.0, .key = L"TX3"})), 1);
    scope.ClearRXChnls();
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_FALSE(scope.GetRXChnl(0));
    EXPECT_EQ(scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX9"})), 0);
}

TEST_P(Store, ClearAllFreesKeysAndForgetsFrequenciesButNotPowers) {
    scope.AddTXChnl(channel({.freq = 450.0, .power = 44.0, .key = L"TX1"}));
    scope.AddRXChnl(channel({.freq = 455.0, .key = L"RX1"}));
    scope.ClearAllChnls();
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_EQ(scope.dFreqMin(), kUnset);
    EXPECT_EQ(scope.dFreqMax(), -kUnset);
    EXPECT_EQ(scope.dTXFreqMin(), kUnset);
    EXPECT_EQ(scope.dRXFreqMax(), -kUnset);
    EXPECT_EQ(scope.dPwrMax(), 44.0);
    EXPECT_EQ(scope.dTXPwrDBMMax(), 44.0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"})), 0);
    EXPECT_TRUE(scope.GetTXbyKey(L"TX1"));
    EXPECT_EQ(scope.dFreqMax(), 150.0);
}

TEST_P(Store, RemovingMovesTheFollowingChannelsDown) {
    const auto first = channel({.freq = 150.0, .key = L"TX1"});
    const auto second = channel({.freq = 450.0, .power = 40.0, .key = L"TX2"});
    const auto third = channel({.freq = 250.0, .key = L"TX3"});
    for (const auto& slot : {first, second, third})
        scope.AddTXChnl(slot);
    scope.RemoveChnlByKey(L"TX2");
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_FALSE(scope.GetTXbyKey(L"TX2"));
    EXPECT_TRUE(sameObject(scope.GetTXChnl(1).Get(), third.Get()));
    EXPECT_TRUE(sameObject(scope.GetTXbyKey(L"TX3").Get(), third.Get()));
    EXPECT_TRUE(sameObject(scope.GetTXbyKey(L"TX1").Get(), first.Get()));
    EXPECT_EQ(scope.dTXFreqMin(), 150.0);
    EXPECT_EQ(scope.dTXFreqMax(), 250.0);
    EXPECT_EQ(scope.dFreqMax(), 250.0);
    EXPECT_EQ(scope.dPwrMax(), 40.0);
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 160.0, .key = L"TX2"})), 2);
}

TEST_P(Store, RemovingTheOnlyChannelLeavesAnEmptyStore) {
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"tX1"}));
    scope.AddRXChnl(channel({.freq = 155.0, .key = L"RX1"}));
    scope.RemoveChnlByKey(L"tX1");
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_FALSE(scope.GetTXChnl(0));
    EXPECT_EQ(scope.dTXFreqMin(), kUnset);
    EXPECT_EQ(scope.dFreqMin(), 155.0);
    scope.RemoveChnlByKey(L"RX1");
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_EQ(scope.dFreqMin(), kUnset);
}

TEST_P(Store, RemovingByAnotherPrefixRemovesTheKeyOnly) {
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"IM1"}));
    scope.RemoveChnlByKey(L"IM1");
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_TRUE(scope.GetTXChnl(0));
    EXPECT_FALSE(scope.GetTXbyKey(L"IM1"));
    EXPECT_EQ(scope.AddTXChnl(channel({.freq = 160.0, .key = L"IM1"})), 1);
    EXPECT_TRUE(scope.GetTXbyKey(L"IM1"));
}

TEST_P(Store, RemovingAMissingKeyChangesNothing) {
    const MessageBoxes boxes;
    scope.AddTXChnl(channel({.freq = 150.0, .key = L"TX1"}));
    scope.RemoveChnlByKey(L"TX9");
    scope.RemoveChnlByKey(L"");
    scope.RemoveChnlByKey(L"tx1");
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_TRUE(scope.GetTXbyKey(L"TX1"));
    EXPECT_TRUE(boxes.seen().empty());
}

TEST_P(Store, RemovingRedrawsWhatIsLeft) {
    const auto kept = channel({.freq = 150.0, .bw = 5000.0, .power = 2.0, .key = L"TX1", .color = 0x000000FF});
    const auto gone = channel({.freq = 180.0, .bw = 5000.0, .power = 2.0, .key = L"TX2", .color = 0x00FF0000});
    scope.AddTXChnl(kept);
    scope.AddTXChnl(gone);
    ASSERT_TRUE(scope.DrawDisplay());
    const Picture before = capture(scope);
    EXPECT_TRUE(before.find(0x00FF0000, before.all()));
    scope.RemoveChnlByKey(L"TX2");
    const Picture after = capture(scope);
    EXPECT_FALSE(after.find(0x00FF0000, after.all()));
    EXPECT_TRUE(after.find(0x000000FF, after.all()));
}

TEST_P(Store, NoMatchingReceiverInAnEmptyStore) {
    EXPECT_EQ(scope.nFindMatchRX(channel({.freq = 450.0})), kNotFound);
    scope.AddTXChnl(channel({.freq = 450.0, .key = L"TX1"}));
    EXPECT_EQ(scope.nFindMatchRX(scope.GetTXChnl(0)), kNotFound);
}

TEST_P(Store, MatchingReceiverIsTheFirstEqualInAllThatCounts) {
    const ChannelSpec spec{.freq = 455.0, .bw = 25.0, .power = 5.0, .key = L"RX1", .label = L"base"};
    scope.AddRXChnl(channel({.freq = 400.0, .key = L"RX0"}));
    scope.AddRXChnl(channel(spec));
    ChannelSpec again = spec;
    again.key = L"RX2";
    scope.AddRXChnl(channel(again));
    // Keys, powers and colours do not count; edges and units do, as the store has filled them in.
    ChannelSpec wanted = spec;
    wanted.key = L"other";
    wanted.power = -50.0;
    wanted.units = L"MHz";
    wanted.bwUnits = L"KHz";
    EXPECT_EQ(scope.nFindMatchRX(channel(wanted)), kNotFound);
    wanted.lo = freqLo(scope.GetRXChnl(1).Get());
    wanted.hi = freqHi(scope.GetRXChnl(1).Get());
    EXPECT_EQ(scope.nFindMatchRX(channel(wanted)), 1);
    for (const auto& [name, change] : std::initializer_list<std::pair<const char*, void (*)(ChannelSpec&)>>{
             {"dFreq", [](ChannelSpec& s) { s.freq += 1e-9; }},
             {"dBW", [](ChannelSpec& s) { s.bw += 1.0; }},
             {"dFreqLo", [](ChannelSpec& s) { s.lo -= 1.0; }},
             {"dFreqHi", [](ChannelSpec& s) { s.hi += 1.0; }},
             {"sLabel", [](ChannelSpec& s) { s.label = L"Base"; }},
             {"sFreqUnits", [](ChannelSpec& s) { s.units = L"mhz"; }},
             {"sBWUnits", [](ChannelSpec& s) { s.bwUnits = L"khz"; }}}) {
        ChannelSpec changed = wanted;
        change(changed);
        EXPECT_EQ(scope.nFindMatchRX(channel(changed)), kNotFound) << name;
    }
    const auto alternative = channel(wanted);
    alternative->put_dFreqAlt(1.0);
    EXPECT_EQ(scope.nFindMatchRX(alternative), kNotFound);
}

}  // namespace
}  // namespace kv::test
