// Adding and finding channels, and what the panel shows of them. StoreModelTest proves most of it for random sequences.
#include <array>
#include <limits>
#include <new>
#include <string_view>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

constexpr wchar_t kProductLabel[] = L"Intermod Product [3rd order product] A+B";

class ChannelStoreTest : public ScopeTest {};

TEST_F(ChannelStoreTest, AnIndexOutsideTheStoreGivesNoChannel) {
    addTX(450.0);
    addRX(451.0);
    EXPECT_TRUE(scope.GetTXChnl(0));
    for (const std::int32_t index :
         {1, -1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_FALSE(scope.GetTXChnl(index)) << index;
        EXPECT_FALSE(scope.GetRXChnl(index)) << index;
    }
}

TEST_F(ChannelStoreTest, WithoutMemoryForWhatBelongsToItAChannelIsNotAdded) {
    addTX(450.0, 0.0, 0.0, L"TX1");
    // Before its key is known, and after.
    for (const std::string_view member : {"sKey", "dFreqHi"}) {
        const SlotRef slot = makeSlot(460.0, 0.0, 0.0, L"TX2");
        slot->onRead = [member](std::string_view read) {
            if (read == member)
                throw std::bad_alloc();
        };
        scope.AddTXChnl(asChannel(slot));
        slot->onRead = nullptr;
        EXPECT_EQ(scope.NumTX(), 1) << member;
        EXPECT_EQ(slot->references(), 1);
    }
    const SlotRef added = addTX(460.0, 0.0, 0.0, L"TX2");
    EXPECT_EQ(scope.GetTXbyKey(L"TX2").get(), added.get());
}

TEST_F(ChannelStoreTest, WithoutMemoryOnlyTheChannelItselfIsTakenBack) {
    const SlotRef other = makeSlot(470.0, 0.0, 0.0, L"TX3");
    const SlotRef slot = makeSlot(460.0, 0.0, 0.0, L"TX2");
    slot->onRead = [&](std::string_view read) {
        if (read != "sKey" || scope.NumTX() > 1)
            return;
        scope.AddTXChnl(asChannel(other));
        throw std::bad_alloc();
    };
    scope.AddTXChnl(asChannel(slot));
    EXPECT_EQ(scope.GetTXbyKey(L"TX3").get(), other.get());
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

TEST_F(ChannelStoreTest, EdgesThatAreNotGivenAreAWholeBandwidthFromTheCenter) {
    struct Case {
        double frequency;
        const wchar_t* units;
        double bandwidth;
        const wchar_t* bandwidthUnits;
        double givenLow;
        double givenHigh;
        double low;
        double high;
    };
    for (const Case& c : std::to_array<Case>({
             {450.0, L"MHz", 31.25, L"KHz", 0.0, 0.0, 449.96875, 450.03125},
             {450.0, L"MHz", 1.0, L"MHz", 440.0, 470.0, 440.0, 470.0},
             {450.0, L"MHz", 1.0, L"MHz", 440.0, -1.0, 440.0, 451.0},
             // The numbers enter the extremes whatever their units.
             {0.5, L"GHz", 250.0, L"MHz", 0.0, 0.0, 0.25, 0.75},
             // An unknown unit gives the invalid value.
             {450.0, L"MHz", 1.0, L"furlongs", 0.0, 0.0, 450.0 + 88.0, 450.0 - 88.0},
         })) {
        scope.ClearAllChnls();
        const SlotRef channel = makeSlot(c.frequency);
        channel->fields().sFreqUnits = c.units;
        channel->fields().dBW = c.bandwidth;
        channel->fields().sBWUnits = c.bandwidthUnits;
        channel->fields().dFreqLo = c.givenLow;
        channel->fields().dFreqHi = c.givenHigh;
        scope.AddTXChnl(asChannel(channel));
        EXPECT_EQ(channel->fields().dFreqLo, c.low) << c.frequency;
        EXPECT_EQ(channel->fields().dFreqHi, c.high) << c.frequency;
        EXPECT_EQ(scope.extremes().dTXFreqMin, c.low);
        EXPECT_EQ(scope.extremes().dFreqMax, c.high);
    }
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

TEST_F(ChannelStoreTest, ValuesThatAreNotNumbersWidenNothing) {
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

TEST_F(ChannelStoreTest, TheFinderForBothKindsFindsEither) {
    const SlotRef tx = addTX(450.0, 0.0, 0.0, L"TXa");
    const SlotRef rx = addRX(451.0, 0.0, 0.0, L"RXa");
    EXPECT_EQ(scope.GetChnlByKey(L"TXa"), asChannel(tx));
    EXPECT_EQ(scope.GetChnlByKey(L"RXa"), asChannel(rx));
    EXPECT_FALSE(scope.GetChnlByKey(L"unknown"));
}

TEST_F(ChannelStoreTest, AChannelWithATakenKeyIsDrawnButHasNoEdgesAndNoCaption) {
    addTX(450.0, 0.0, 30.0, L"TX1");
    const SlotRef twice = makeSlot(460.0, 5.0, 60.0, L"TX1");
    scope.AddTXChnl(asChannel(twice));
    EXPECT_EQ(twice->fields().dFreqHi, 0.0);
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    twice->fields().dFreqLo = 455.0;
    twice->fields().dFreqHi = 465.0;
    scope.DrawDisplay();
    EXPECT_TRUE(twice->fields().bDrawn);
}

TEST_F(ChannelStoreTest, AddingNothingEndsQuietly) {
    EXPECT_EQ(scope.AddTXChnl(nullptr), 0);
    EXPECT_EQ(scope.NumTX(), 0);
}

TEST_F(ChannelStoreTest, AChannelWhoseKeyCannotBeReadStaysInTheStore) {
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

/// The noun is in no caption, but the label is read only when the noun is chosen: for the first TX channel of a store.
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
