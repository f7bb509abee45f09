// Channels without a frequency, records that cannot be read, and what remains visible of a cleared store.
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

TEST_F(StoreEdgeCasesTest, AKeyThatCannotBeReadWhileItIsMovedDoesNotEndTheRemoval) {
    addTX(450.0, 1.0, 0.0, L"TXa");
    const SlotRef b = addTX(451.0, 1.0, 0.0, L"TXb");
    const SlotRef c = addTX(452.0, 1.0, 0.0, L"TXc");
    c->fields().sKey = L"TXc";  // counts as a change, so that keys are read one by one
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
    // The failed drawing leaves no range.
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
