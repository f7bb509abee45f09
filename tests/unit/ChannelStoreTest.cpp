// Adding, finding, removing and clearing channels, and what the panel says about them.
#include <limits>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

constexpr wchar_t kProductLabel[] = L"Intermod Product [3rd order product] A+B";

class ChannelStoreTest : public ScopeTest {};

TEST_F(ChannelStoreTest, FreshStoreIsEmpty) {
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_EQ(scope.NumRX(), 0);
    EXPECT_FALSE(scope.GetTXChnl(0));
    EXPECT_FALSE(scope.GetRXChnl(0));
}

TEST_F(ChannelStoreTest, AddsReturnZeroOneTwoForEachKind) {
    EXPECT_EQ(scope.AddTXChnl(asChannel(makeSlot(450.0, 0.0, 0.0, L"TX1"))), 0);
    EXPECT_EQ(scope.AddTXChnl(asChannel(makeSlot(451.0, 0.0, 0.0, L"TX2"))), 1);
    EXPECT_EQ(scope.AddRXChnl(asChannel(makeSlot(452.0, 0.0, 0.0, L"RX1"))), 0);
    EXPECT_EQ(scope.AddTXChnl(asChannel(makeSlot(453.0, 0.0, 0.0, L"TX3"))), 2);
    EXPECT_EQ(scope.AddRXChnl(asChannel(makeSlot(454.0, 0.0, 0.0, L"RX2"))), 1);
    EXPECT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(scope.NumRX(), 2);
    EXPECT_EQ(scope.GetTXChnl(2)->dFreq(), 453.0);
    EXPECT_EQ(scope.GetRXChnl(1)->dFreq(), 454.0);
    EXPECT_FALSE(scope.GetTXChnl(3));
    EXPECT_FALSE(scope.GetTXChnl(-1));
    EXPECT_FALSE(scope.GetRXChnl(std::numeric_limits<std::int32_t>::max()));
    EXPECT_FALSE(scope.GetRXChnl(std::numeric_limits<std::int32_t>::min()));
}

TEST_F(ChannelStoreTest, AddingGivesTheFillStyleOfTheKind) {
    EXPECT_EQ(addTX(450.0)->fields().iFillStyle, 5);
    EXPECT_EQ(addRX(450.0)->fields().iFillStyle, 4);
}

TEST_F(ChannelStoreTest, AddingFillsInEmptyAndBlankUnits) {
    const SlotRef empty = addTX(450.0);
    EXPECT_EQ(empty->fields().sFreqUnits, L"MHz");
    EXPECT_EQ(empty->fields().sBWUnits, L"KHz");
    const SlotRef other = makeSlot(450.0, 0.0, 0.0, L"TX2");
    other->fields().sFreqUnits = L"  ";
    other->fields().sBWUnits = L"Hz";
    scope.AddTXChnl(asChannel(other));
    EXPECT_EQ(other->fields().sFreqUnits, L"MHz");
    EXPECT_EQ(other->fields().sBWUnits, L"Hz");
}

TEST_F(ChannelStoreTest, EdgesLieAWholeBandwidthOnEachSide) {
    const SlotRef channel = makeSlot(450.0, 0.0, 0.0, L"TX1");
    channel->fields().dBW = 25.0;
    scope.AddTXChnl(asChannel(channel));
    EXPECT_DOUBLE_EQ(channel->fields().dFreqLo, 449.975);
    EXPECT_DOUBLE_EQ(channel->fields().dFreqHi, 450.025);
}

TEST_F(ChannelStoreTest, EdgesInOtherUnitsEnterTheExtremesAsTheNumbersTheyAre) {
    const SlotRef channel = makeSlot(0.5, 0.0, 0.0, L"TX1");
    channel->fields().sFreqUnits = L"GHz";
    channel->fields().sBWUnits = L"MHz";
    channel->fields().dBW = 250.0;
    scope.AddTXChnl(asChannel(channel));
    EXPECT_EQ(channel->fields().dFreqLo, 0.25);
    EXPECT_EQ(channel->fields().dFreqHi, 0.75);
    EXPECT_EQ(scope.extremes().dFreqMin, 0.25);
    EXPECT_EQ(scope.extremes().dFreqMax, 0.75);
}

TEST_F(ChannelStoreTest, AnUnknownBandwidthUnitCountsAsTheInvalidValue) {
    const SlotRef channel = makeSlot(450.0, 1.0, 0.0, L"TX1");
    channel->fields().sBWUnits = L"furlongs";
    scope.AddTXChnl(asChannel(channel));
    EXPECT_EQ(channel->fields().dFreqHi, 450.0 - 88.0);
    EXPECT_EQ(channel->fields().dFreqLo, 450.0 + 88.0);
}

TEST_F(ChannelStoreTest, EdgesThatAreGivenStay) {
    const SlotRef channel = makeSlot(450.0, 1.0, 0.0, L"TX1");
    channel->fields().dFreqLo = 440.0;
    channel->fields().dFreqHi = 470.0;
    scope.AddTXChnl(asChannel(channel));
    EXPECT_EQ(channel->fields().dFreqLo, 440.0);
    EXPECT_EQ(channel->fields().dFreqHi, 470.0);
    EXPECT_EQ(scope.extremes().dTXFreqMin, 440.0);
    EXPECT_EQ(scope.extremes().dFreqMax, 470.0);
}

TEST_F(ChannelStoreTest, OneEdgeThatIsGivenStaysAndTheOtherIsFilledIn) {
    const SlotRef channel = makeSlot(450.0, 1.0, 0.0, L"TX1");
    channel->fields().dFreqLo = 440.0;
    channel->fields().dFreqHi = -1.0;
    scope.AddTXChnl(asChannel(channel));
    EXPECT_EQ(channel->fields().dFreqLo, 440.0);
    EXPECT_EQ(channel->fields().dFreqHi, 451.0);
}

TEST_F(ChannelStoreTest, TXWidensFrequenciesAndPowersAndRXFrequenciesOnly) {
    addTX(450.0, 1.0, 40.0);
    addTX(400.0, 1.0, -15.0);
    addRX(800.0, 2.0, 90.0);
    addRX(300.0, 2.0, -90.0);
    const channels::Extremes& e = scope.extremes();
    EXPECT_EQ(e.dTXFreqMin, 399.0);
    EXPECT_EQ(e.dTXFreqMax, 451.0);
    EXPECT_EQ(e.dRXFreqMin, 298.0);
    EXPECT_EQ(e.dRXFreqMax, 802.0);
    EXPECT_EQ(e.dFreqMin, 298.0);
    EXPECT_EQ(e.dFreqMax, 802.0);
    EXPECT_EQ(e.dTXPwrDBMMin, -15.0);
    EXPECT_EQ(e.dTXPwrDBMMax, 40.0);
    EXPECT_EQ(e.dPwrMin, -15.0);
    EXPECT_EQ(e.dPwrMax, 40.0);
}

TEST_F(ChannelStoreTest, ChannelWithoutAFrequencyIsCountedAndWidensNothing) {
    const SlotRef channel = addTX(0.0, 1.0, 80.0);
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_EQ(channel->fields().dFreqHi, 0.0);
    EXPECT_EQ(scope.extremes().dTXFreqMin, 8888888888888.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, -8888888888888.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 3.0);
    EXPECT_FALSE(ui.lblNumTX.visible());
    EXPECT_FALSE(ui.lblTXRange.visible());
    addTX(450.0);
    EXPECT_TRUE(ui.lblNumTX.visible());
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels");
}

TEST_F(ChannelStoreTest, ValuesThatAreNoNumbersWidenNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    addTX(nan, 1.0, 50.0);
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_EQ(scope.extremes().dPwrMax, 3.0);
    const SlotRef edges = makeSlot(450.0, 1.0, nan, L"TXedges");
    edges->fields().dFreqHi = nan;
    edges->fields().dFreqLo = nan;
    scope.AddTXChnl(asChannel(edges));
    EXPECT_EQ(scope.extremes().dFreqMin, 8888888888888.0);
    EXPECT_EQ(scope.extremes().dFreqMax, -8888888888888.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, -8888888888888.0);
}

TEST_F(ChannelStoreTest, SummaryLabelsShowCountAndRange) {
    EXPECT_FALSE(ui.lblNumTX.visible());
    EXPECT_FALSE(ui.lblTXRange.visible());
    EXPECT_EQ(ui.lblNumTX.caption(), L"");
    addTX(146.52);
    addTX(147.0);
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels");
    EXPECT_EQ(ui.lblTXRange.caption(), L"146.52000 to 147.00000");
    EXPECT_TRUE(ui.lblNumTX.visible());
    EXPECT_TRUE(ui.lblTXRange.visible());
    EXPECT_FALSE(ui.lblNumRX.visible());
    addRX(0.25);
    EXPECT_EQ(ui.lblNumRX.caption(), L"1 RX Channels");
    EXPECT_EQ(ui.lblRXRange.caption(), L"0.25000 to 0.25000");
    EXPECT_TRUE(ui.lblRXRange.visible());
}

TEST_F(ChannelStoreTest, CountReadsTxChannelsAfterAProductToo) {
    const SlotRef product = makeSlot(450.0, 0.0, 0.0, L"TX1");
    product->fields().sLabel = kProductLabel;
    scope.AddTXChnl(asChannel(product));
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    addTX(451.0);
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels");
}

TEST_F(ChannelStoreTest, FindersLookUpTheirOwnKind) {
    const SlotRef tx = addTX(450.0, 0.0, 0.0, L"TXa");
    const SlotRef rx = addRX(451.0, 0.0, 0.0, L"RXa");
    EXPECT_EQ(scope.GetTXbyKey(L"TXa"), asChannel(tx));
    EXPECT_EQ(scope.GetRXbyKey(L"RXa"), asChannel(rx));
    EXPECT_FALSE(scope.GetTXbyKey(L"RXa"));
    EXPECT_FALSE(scope.GetRXbyKey(L"TXa"));
    EXPECT_EQ(scope.GetChnlByKey(L"TXa"), asChannel(tx));
    EXPECT_EQ(scope.GetChnlByKey(L"RXa"), asChannel(rx));
    EXPECT_FALSE(scope.GetChnlByKey(L"nobody"));
    EXPECT_FALSE(scope.GetChnlByKey(L""));
}

TEST_F(ChannelStoreTest, AKeyThatDiffersInCaseIsTakenButNotFound) {
    addTX(450.0, 0.0, 0.0, L"TXa");
    EXPECT_FALSE(scope.GetTXbyKey(L"txA"));
    addTX(900.0, 0.0, 0.0, L"TXA");
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_FALSE(scope.GetTXbyKey(L"TXA"));
    EXPECT_EQ(scope.extremes().dTXFreqMax, 450.0);
}

TEST_F(ChannelStoreTest, AnEmptyKeyIsAKeyLikeAnyOther) {
    const SlotRef first = makeSlot(450.0);
    EXPECT_EQ(scope.AddTXChnl(asChannel(first)), 0);
    EXPECT_EQ(scope.GetTXbyKey(L""), asChannel(first));
    const SlotRef second = makeSlot(900.0);
    EXPECT_EQ(scope.AddTXChnl(asChannel(second)), 1);
    EXPECT_EQ(scope.extremes().dTXFreqMax, 450.0);
}

TEST_F(ChannelStoreTest, ADuplicateKeyIsPlacedAndDrawnButNotFoundAndWidensNothing) {
    addTX(450.0, 0.0, 30.0, L"TX1");
    const SlotRef twice = makeSlot(460.0, 5.0, 60.0, L"TX1");
    EXPECT_EQ(scope.AddTXChnl(asChannel(twice)), 1);
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.GetTXChnl(1), asChannel(twice));
    EXPECT_EQ(scope.GetTXbyKey(L"TX1"), scope.GetTXChnl(0));
    EXPECT_EQ(scope.extremes().dTXFreqMax, 450.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMax, 30.0);
    EXPECT_EQ(twice->fields().dFreqHi, 0.0);
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    twice->fields().dFreqLo = 455.0;
    twice->fields().dFreqHi = 465.0;
    scope.DrawDisplay();
    EXPECT_TRUE(twice->fields().bDrawn);
}

TEST_F(ChannelStoreTest, TXAndRXShareTheirKeys) {
    addTX(450.0, 0.0, 0.0, L"same");
    addTX(451.0, 0.0, 0.0, L"TX2");
    EXPECT_EQ(scope.AddRXChnl(asChannel(makeSlot(460.0, 0.0, 0.0, L"same"))), 0);
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_EQ(scope.extremes().dRXFreqMax, -8888888888888.0);
    EXPECT_FALSE(ui.lblNumRX.visible());
    // It happens to stand at the key's index, and its key is the same.
    EXPECT_EQ(scope.GetRXbyKey(L"same"), scope.GetRXChnl(0));
    EXPECT_EQ(scope.AddRXChnl(asChannel(makeSlot(461.0, 0.0, 0.0, L"TX2"))), 1);
    EXPECT_EQ(scope.GetRXbyKey(L"TX2"), scope.GetRXChnl(1));
    EXPECT_EQ(scope.AddRXChnl(asChannel(makeSlot(461.0, 0.0, 0.0, L"TX2"))), 2);
    EXPECT_EQ(scope.GetRXbyKey(L"TX2"), scope.GetRXChnl(1));
}

TEST_F(ChannelStoreTest, AddingNothingEndsQuietly) {
    EXPECT_EQ(scope.AddTXChnl(nullptr), 0);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(ChannelStoreTest, AChannelWhoseKeyCannotBeReadKeepsItsPlace) {
    addTX(450.0);
    const SlotRef broken = makeSlot(460.0, 0.0, 0.0, L"TX9");
    broken->onRead = failsAt("sKey", 440);
    EXPECT_EQ(scope.AddTXChnl(asChannel(broken)), 1);
    EXPECT_EQ(scope.NumTX(), 2);
}

TEST_F(ChannelStoreTest, MatchingComparesEveryValueExactly) {
    const SlotRef wanted = addRX(450.0, 1.0, 0.0, L"RX1");
    wanted->fields().sLabel = L"label";
    const auto twin = [&] {
        const SlotRef slot = makeSlot(450.0);
        slot->fields() = wanted->fields();
        slot->fields().sKey = L"another key";
        slot->fields().dPwrDBM = 99.0;
        return slot;
    };
    EXPECT_EQ(scope.nFindMatchRX(asChannel(twin())), 0);
    using Edit = std::function<void(channels::FreqSlotFields&)>;
    for (const Edit& edit : {Edit([](channels::FreqSlotFields& f) { f.dFreqAlt = 1.0; }),
                             Edit([](channels::FreqSlotFields& f) { f.dFreq += 1e-9; }),
                             Edit([](channels::FreqSlotFields& f) { f.dFreqHi += 1e-9; }),
                             Edit([](channels::FreqSlotFields& f) { f.dFreqLo += 1e-9; }),
                             Edit([](channels::FreqSlotFields& f) { f.dBW += 1.0; }),
                             Edit([](channels::FreqSlotFields& f) { f.sBWUnits = L"khz"; }),
                             Edit([](channels::FreqSlotFields& f) { f.sLabel = L"Label"; }),
                             Edit([](channels::FreqSlotFields& f) { f.sFreqUnits = L""; })}) {
        const SlotRef other = twin();
        edit(other->fields());
        EXPECT_EQ(scope.nFindMatchRX(asChannel(other)), -88);
    }
}

TEST_F(ChannelStoreTest, MatchingGivesTheFirstOfSeveral) {
    addRX(440.0);
    const SlotRef first = addRX(450.0);
    const SlotRef second = addRX(450.0);
    EXPECT_EQ(scope.nFindMatchRX(asChannel(second)), 1);
    EXPECT_EQ(scope.nFindMatchRX(asChannel(first)), 1);
}

TEST_F(ChannelStoreTest, MatchingWithoutRXChannelsIsInvalid) {
    const SlotRef tx = addTX(450.0);
    EXPECT_EQ(scope.nFindMatchRX(asChannel(tx)), -88);
    EXPECT_EQ(scope.nFindMatchRX(nullptr), -88);
}

TEST_F(ChannelStoreTest, KeepsTheHostsObjectAndNotACopy) {
    const SlotRef channel = addTX(450.0);
    EXPECT_EQ(scope.GetTXChnl(0), asChannel(channel));
    EXPECT_EQ(channel->references(), 2);
    scope.ClearTXChnls();
    EXPECT_EQ(channel->references(), 1);
}

TEST_F(ChannelStoreTest, OverallPowerNeverShrinksBelowZeroToThree) {
    addTX(450.0, 1.0, 1.5);
    EXPECT_EQ(scope.extremes().dPwrMin, 0.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 3.0);
    EXPECT_EQ(scope.extremes().dTXPwrDBMMin, 1.5);
    addTX(451.0, 1.0, -120.0);
    EXPECT_EQ(scope.extremes().dPwrMin, -120.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 3.0);
    addTX(452.0, 1.0, 70.0);
    scope.ClearAllChnls();
    EXPECT_EQ(scope.extremes().dPwrMin, -120.0);
    EXPECT_EQ(scope.extremes().dPwrMax, 70.0);
}

/// The noun shows in no caption, but the label is read only as long as it has to be chosen: by the first TX channel of
/// a store.
TEST_F(ChannelStoreTest, TheFirstTXChannelAloneChoosesTheNoun) {
    const auto addWatched = [this](const std::wstring& key, int& reads) {
        const SlotRef slot = makeSlot(450.0, 0.0, 0.0, key);
        slot->fields().sLabel = kProductLabel;
        slot->onRead = [&reads](std::string_view member) { reads += member == "sLabel" ? 1 : 0; };
        scope.AddTXChnl(asChannel(slot));
        slot->onRead = nullptr;
    };
    int first = 0;
    int second = 0;
    int afterClear = 0;
    addWatched(L"TX1", first);
    addWatched(L"TX2", second);
    scope.ClearTXChnls();
    addWatched(L"TX3", afterClear);
    EXPECT_GT(first, 0);
    EXPECT_EQ(second, 0);
    EXPECT_GT(afterClear, 0);
}

}  // namespace
}  // namespace kv::control
