// Removing and clearing channels, and the buttons of the panel.
#include <limits>

#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;

class StoreRemovalTest : public ScopeTest {};

TEST_F(StoreRemovalTest, RemovingUpdatesTheCaptionsAndReleasesTheChannel) {
    const SlotRef removed = addTX(400.0, 0.0, 0.0, L"TXa");
    addTX(410.0, 0.0, 0.0, L"TXb");
    addTX(420.0, 0.0, 0.0, L"TXc");
    scope.RemoveChnlByKey(L"TXa");
    EXPECT_EQ(removed->references(), 1);
    EXPECT_EQ(ui.lblNumTX.caption(), L"2 tx Channels");
    EXPECT_EQ(ui.lblTXRange.caption(), L"410.00000 to 420.00000");
}

TEST_F(StoreRemovalTest, RemovingRedrawsTheDisplay) {
    addTX(400.0, 0.0, 0.0, L"TXa");
    addTX(410.0, 0.0, 0.0, L"TXb");
    headless::RecordingCanvas canvas({400, 200});
    ui.picSpectrum.divert(&canvas);
    scope.RemoveChnlByKey(L"TXa");
    EXPECT_THAT(canvas.lines(), Contains("clear ffffff"));
}

TEST_F(StoreRemovalTest, RemovingTheOnlyTXChannelEmptiesTheStoreAndHidesTheLabels) {
    const SlotRef channel = addTX(400.0, 0.0, 0.0, L"txonly");
    EXPECT_TRUE(ui.lblNumTX.visible());
    scope.RemoveChnlByKey(L"txonly");
    EXPECT_EQ(scope.NumTX(), 0);
    EXPECT_FALSE(scope.GetTXChnl(0));
    EXPECT_EQ(channel->references(), 1);
    EXPECT_FALSE(ui.lblNumTX.visible());
    EXPECT_FALSE(ui.lblTXRange.visible());
    EXPECT_EQ(ui.lblNumTX.caption(), L"");
}

TEST_F(StoreRemovalTest, AKeyThatComesAgainInAnotherLetterCaseIsFoundInThatOneOnly) {
    const auto add = [this](const wchar_t* key) {
        const util::Ref<QuietSlot> slot(new QuietSlot);
        slot->fields().sKey = key;
        scope.AddTXChnl(channels::FreqSlotRef(slot.get()));
        return slot;
    };
    add(L"TXab");
    scope.RemoveChnlByKey(L"TXab");
    const util::Ref<QuietSlot> again = add(L"TXAB");
    EXPECT_FALSE(scope.GetTXbyKey(L"TXab"));
    EXPECT_EQ(scope.GetTXbyKey(L"TXAB").get(), again.get());
    again->fields().sKey = L"TXab";
    EXPECT_EQ(scope.GetTXbyKey(L"TXab").get(), again.get());
    EXPECT_FALSE(scope.GetTXbyKey(L"TXAB"));
}

TEST_F(StoreRemovalTest, RemovingAnUnknownKeyChangesNothing) {
    addTX(400.0, 0.0, 0.0, L"TXa");
    const int pumps = platform.pumps;
    scope.RemoveChnlByKey(L"TXb");
    scope.RemoveChnlByKey(L"");
    EXPECT_EQ(scope.NumTX(), 1);
    EXPECT_EQ(platform.pumps, pumps);
}

TEST_F(StoreRemovalTest, RemovingReportsAKeyThatTheHostChangedMeanwhile) {
    addTX(400.0, 0.0, 0.0, L"TXa");
    addTX(410.0, 0.0, 0.0, L"TXb")->fields().sKey = L"TXz";
    scope.RemoveChnlByKey(L"TXa");
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"RemoveChnlByKey");
    EXPECT_EQ(report.detail, L"");
    EXPECT_EQ(report.flag, 300);
    EXPECT_EQ(report.number, util::error_number::kInvalidProcedureCall);
}

TEST_F(StoreRemovalTest, ClearingOneKindEmptiesItsCaptionsOnly) {
    addTX(450.0);
    addRX(460.0);
    scope.ClearRXChnls();
    EXPECT_EQ(ui.lblNumRX.caption(), L"");
    EXPECT_EQ(ui.lblRXRange.caption(), L"");
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    scope.ClearTXChnls();
    EXPECT_EQ(ui.lblNumTX.caption(), L"");
    EXPECT_EQ(ui.lblTXRange.caption(), L"");
}

TEST_F(StoreRemovalTest, PanelButtonsReportThatThereIsNothingToDraw) {
    ui.cmdDrawTX.onClick();
    ui.cmdDrawRX.onClick();
    ASSERT_EQ(platform.messages.size(), 2U);
    EXPECT_EQ(platform.messages[0].text, L"No TX channels to draw.");
    EXPECT_EQ(platform.messages[0].title, L"");
    EXPECT_EQ(platform.messages[1].text, L"No RX channels to draw.");
}

TEST_F(StoreRemovalTest, PanelButtonsDrawTheirKind) {
    const SlotRef tx = addTX(450.0, 1.0);
    const SlotRef rx = addRX(460.0, 1.0);
    ui.cmdDrawTX.onClick();
    EXPECT_TRUE(tx->fields().bDrawn);
    EXPECT_FALSE(rx->fields().bDrawn);
    ui.cmdDrawRX.onClick();
    EXPECT_TRUE(rx->fields().bDrawn);
    EXPECT_THAT(platform.messages, IsEmpty());
    ui.cmdClear.onClick();
    EXPECT_THAT(pixelsOf(ui.picSpectrum), ::testing::Each(0xFFFFFFU));
}

TEST_F(StoreRemovalTest, TestFrequenciesAreThreeTXAndTwoRX) {
    ui.Command3.onClick();
    EXPECT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(scope.NumRX(), 2);
    EXPECT_EQ(scope.GetTXChnl(1)->dFreq(), 110.0);
    EXPECT_EQ(scope.GetRXChnl(1)->dFreq(), 460.0);
    // They have no keys, so that only the first of them counts in the range.
    EXPECT_EQ(scope.DisplayMinFreq(), 0.0);
    EXPECT_EQ(scope.DisplayMaxFreq(), 200.0);
}

TEST_F(StoreRemovalTest, RefreshRecomputesTheExtremesFromTheEdges) {
    const SlotRef channel = addTX(450.0, 10.0, 50.0);
    channel->fields().dFreqHi = 480.0;
    channel->fields().dFreqLo = 470.0;
    scope.Refresh();
    EXPECT_EQ(scope.extremes().dFreqMin, 470.0);
    EXPECT_EQ(scope.extremes().dFreqMax, 480.0);
    EXPECT_EQ(ui.lblTXRange.caption(), L"470.00000 to 480.00000");
}

}  // namespace
}  // namespace kv::control
