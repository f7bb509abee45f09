// Channels without a frequency, renamed keys, records that cannot be read, and what a cleared store leaves to be seen.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::Each;

class StoreEdgeCasesTest : public ScopeTest {
  protected:
    void expectTXRange(double minimum, double maximum) {
        EXPECT_EQ(scope.extremes().dTXFreqMin, minimum);
        EXPECT_EQ(scope.extremes().dTXFreqMax, maximum);
        EXPECT_EQ(scope.extremes().dFreqMin, minimum);
        EXPECT_EQ(scope.extremes().dFreqMax, maximum);
    }
};

TEST_F(StoreEdgeCasesTest, ChannelWithoutAFrequencyWidensNothingAfterARemoval) {
    addTX(450.0, 1.0, 0.0, L"TXa");
    addTX(0.0, 0.0, 0.0, L"TXnone");
    addTX(460.0, 1.0, 0.0, L"TXb");
    addTX(470.0, 1.0, 0.0, L"TXc");
    expectTXRange(449.0, 471.0);
    scope.RemoveChnlByKey(L"TXb");
    expectTXRange(449.0, 471.0);
    scope.RemoveChnlByKey(L"TXa");
    expectTXRange(469.0, 471.0);
    scope.RemoveChnlByKey(L"TXnone");
    expectTXRange(469.0, 471.0);
}

TEST_F(StoreEdgeCasesTest, ChannelWithoutAFrequencyWidensNothingInARefresh) {
    addTX(450.0, 1.0);
    const SlotRef none = makeSlot(0.0, 0.0, 0.0, L"TXnone");
    none->fields().dFreqLo = 100.0;
    none->fields().dFreqHi = 900.0;
    scope.AddTXChnl(asChannel(none));
    scope.Refresh();
    expectTXRange(449.0, 451.0);
    EXPECT_TRUE(scope.ReScaleChannels());
    expectTXRange(449.0, 451.0);
}

TEST_F(StoreEdgeCasesTest, EdgesNotAboveZeroWidenNothingInARefresh) {
    addTX(450.0, 1.0);
    addTX(2.0, 5.0);
    expectTXRange(449.0, 451.0);
    scope.Refresh();
    expectTXRange(449.0, 451.0);
}

TEST_F(StoreEdgeCasesTest, OnlyChannelsWithoutAFrequencyLeaveTheRangeUnset) {
    addTX(0.0);
    scope.Refresh();
    expectTXRange(channels::FREQ_UNSET, -channels::FREQ_UNSET);
    EXPECT_FALSE(ui.lblNumTX.visible());
}

TEST_F(StoreEdgeCasesTest, RemovalBeforeARenamedKeyMovesEveryChannelAndThenReports) {
    for (const wchar_t* key : {L"TXa", L"TXb", L"TXc", L"TXd"})
        addTX(450.0, 1.0, 0.0, key);
    const channels::FreqSlotRef b = scope.GetTXChnl(1);
    const channels::FreqSlotRef c = scope.GetTXChnl(2);
    const channels::FreqSlotRef d = scope.GetTXChnl(3);
    static_cast<PlainSlot*>(static_cast<channels::FreqSlotBase*>(c.get()))->fields().sKey = L"TXrenamed";
    scope.RemoveChnlByKey(L"TXa");
    EXPECT_EQ(takeReport().flag, 300);
    ASSERT_EQ(scope.NumTX(), 3);
    EXPECT_EQ(scope.GetTXChnl(0), b);
    EXPECT_EQ(scope.GetTXChnl(1), c);
    EXPECT_EQ(scope.GetTXChnl(2), d);
    EXPECT_EQ(scope.GetTXbyKey(L"TXb"), b);
    EXPECT_EQ(scope.GetTXbyKey(L"TXd"), d);
    EXPECT_FALSE(scope.GetTXbyKey(L"TXa"));
    // The key of the removed channel is free again.
    EXPECT_EQ(scope.AddTXChnl(asChannel(makeSlot(451.0, 1.0, 0.0, L"TXa"))), 3);
    EXPECT_TRUE(scope.GetTXbyKey(L"TXa"));
}

TEST_F(StoreEdgeCasesTest, KeyThatCannotBeReadWhileItIsMovedEndsNothing) {
    addTX(450.0, 1.0, 0.0, L"TXa");
    const SlotRef b = addTX(451.0, 1.0, 0.0, L"TXb");
    const SlotRef c = addTX(452.0, 1.0, 0.0, L"TXc");
    c->fields().sKey = L"TXc";  // tells of a change, so that keys are read one by one
    b->onRead = failsAt("sKey", util::error_number::kAutomation);
    scope.RemoveChnlByKey(L"TXa");
    EXPECT_EQ(takeReport().number, util::error_number::kAutomation);
    b->onRead = nullptr;
    ASSERT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.GetTXChnl(0), asChannel(b));
    EXPECT_EQ(scope.GetTXChnl(1), asChannel(c));
    EXPECT_EQ(scope.GetTXbyKey(L"TXc"), asChannel(c));
}

TEST_F(StoreEdgeCasesTest, RecordThatCannotBeReadMatchesNothing) {
    addRX(450.0);
    const SlotRef broken = makeSlot(450.0);
    broken->onRead = failsAt("dFreq", util::error_number::kAutomation);
    EXPECT_EQ(scope.nFindMatchRX(asChannel(broken)), channels::kInvalid);
    EXPECT_EQ(scope.nFindMatchRX(nullptr), channels::kInvalid);
}

TEST_F(StoreEdgeCasesTest, InitialDisplayOfAClearedStoreIsBlank) {
    addTX(450.0, 10.0, 40.0);
    scope.DrawDisplay();
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    const std::uint32_t spectrum = pixelAt(ui.picSpectrum, 0, 0);
    const std::uint32_t strip = pixelAt(ui.picUnits, 0, 0);
    EXPECT_THAT(pixelsOf(ui.picSpectrum), Each(spectrum));
    EXPECT_THAT(pixelsOf(ui.picUnits), Each(strip));
}

TEST_F(StoreEdgeCasesTest, OrderBoxOnAnEmptyStoreLeavesNoChannel) {
    addTX(450.0, 10.0, 40.0);
    scope.DrawDisplay();
    scope.ClearAllChnls();
    // Without a range that an earlier drawing left, as after a failed start of a study.
    scope.setFreqEndBuffer(1e308);
    addTX(1e308);
    scope.DrawInitialDisplay();
    errors.reports.clear();
    scope.ClearAllChnls();
    ui.chkOrder.onClick();
    EXPECT_THAT(pixelsOf(ui.picSpectrum), Each(pixelAt(ui.picSpectrum, 0, 0)));
    EXPECT_THAT(pixelsOf(ui.picUnits), Each(pixelAt(ui.picUnits, 0, 0)));
}

TEST_F(StoreEdgeCasesTest, DemonstrationSetLeavesTheEndBufferToTheHost) {
    scope.setFreqEndBuffer(50.0);
    scope.UserControl_Click();
    EXPECT_EQ(scope.FreqEndBuffer(), 50.0);
    EXPECT_GT(scope.NumTX(), 0);
}

TEST_F(StoreEdgeCasesTest, UnsupportedFillStyleOutsideTheRangeIsAnErrorLikeOneInside) {
    addTX(450.0, 1.0, 10.0);
    const SlotRef outside = addTX(900.0, 1.0, 10.0);
    scope.setFreqEndBuffer(1.0);
    scope.DrawByRange(440.0, 460.0);
    outside->fields().iFillStyle = 8;
    EXPECT_TRUE(scope.DrawDisplay());
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"DrawDisplayTX");
    EXPECT_EQ(report.number, util::error_number::kInvalidPropertyValue);
    EXPECT_EQ(report.detail, L"kvBandscope.DrawDisplayTX Flag 200 kChnl 2 of 2");
}

TEST_F(StoreEdgeCasesTest, LabelMovedRightIsLeftOutWhenItPassesTheRightEnd) {
    addTX(450.0);
    scope.DrawDisplay();
    // Narrower than a label: moved to the strip's left end it would not fit any more.
    ui.picSpectrum.move({0.0, 0.0, 300.0, 1500.0});
    scope.setNGridX(2);
    headless::RecordingCanvas canvas({200, 100});
    ui.picUnits.divert(&canvas);
    ui.Command4.onClick();
    ui.picUnits.divert(nullptr);
    EXPECT_THAT(canvas.log(), ::testing::Not(::testing::HasSubstr("text")));
}

}  // namespace
}  // namespace kv::control
