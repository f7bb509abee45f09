// Refresh: what it brings up to date besides the picture.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class RefreshTest : public ScopeTest {
  protected:
    void SetUp() override {
        tx = addTX(450.0, 10.0, 30.0);
        rx = addRX(500.0, 10.0, 30.0);
        scope.DrawDisplay();
        ASSERT_EQ(ui.lblTXRange.caption(), L"440.00000 to 460.00000");
        ASSERT_EQ(ui.lblRXRange.caption(), L"490.00000 to 510.00000");
    }
    static void setBand(const SlotRef& slot, double low, double high) {
        slot->fields().dFreqLo = low;
        slot->fields().dFreqHi = high;
    }

    SlotRef tx;
    SlotRef rx;
};

TEST_F(RefreshTest, DerivesTheExtremesFromTheRecordsAgain) {
    setBand(tx, 430.0, 445.0);
    setBand(rx, 480.0, 520.0);
    scope.Refresh();
    EXPECT_EQ(scope.extremes().dTXFreqMin, 430.0);
    EXPECT_EQ(scope.extremes().dTXFreqMax, 445.0);
    EXPECT_EQ(scope.extremes().dRXFreqMin, 480.0);
    EXPECT_EQ(scope.extremes().dRXFreqMax, 520.0);
    EXPECT_EQ(scope.extremes().dFreqMin, 430.0);
    EXPECT_EQ(scope.extremes().dFreqMax, 520.0);
}

TEST_F(RefreshTest, ShowsTheNewRangesOnThePanel) {
    setBand(tx, 430.0, 445.0);
    setBand(rx, 480.0, 520.0);
    scope.Refresh();
    EXPECT_EQ(ui.lblTXRange.caption(), L"430.00000 to 445.00000");
    EXPECT_EQ(ui.lblRXRange.caption(), L"480.00000 to 520.00000");
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    EXPECT_EQ(ui.lblNumRX.caption(), L"1 RX Channels");
}

TEST_F(RefreshTest, KeepsTheDisplayedRange) {
    const double minimum = scope.DisplayMinFreq();
    const double maximum = scope.DisplayMaxFreq();
    setBand(tx, 100.0, 900.0);
    scope.Refresh();
    EXPECT_EQ(scope.DisplayMinFreq(), minimum);
    EXPECT_EQ(scope.DisplayMaxFreq(), maximum);
}

TEST_F(RefreshTest, ARemovalShowsTheNewRangesAndCountsToo) {
    addTX(420.0, 5.0, 30.0, L"TX9");
    addRX(540.0, 5.0, 30.0, L"RX9");
    EXPECT_EQ(ui.lblNumRX.caption(), L"2 RX Channels");
    scope.RemoveChnlByKey(L"RX9");
    EXPECT_EQ(ui.lblNumRX.caption(), L"1 RX Channels");
    EXPECT_EQ(ui.lblRXRange.caption(), L"490.00000 to 510.00000");
    scope.RemoveChnlByKey(L"TX9");
    EXPECT_EQ(ui.lblNumTX.caption(), L"1 tx Channels");
    EXPECT_EQ(ui.lblTXRange.caption(), L"440.00000 to 460.00000");
}

TEST_F(RefreshTest, AnErrorInARecordIsReportedWithTheStep) {
    tx->onRead = failsAt("drawRecord", 440);
    scope.Refresh();
    const RecordingErrors::Report report = takeReport();
    EXPECT_EQ(report.procedure, L"Refresh");
    EXPECT_EQ(report.detail, L"Error Refreshing Bandscope Display");
    EXPECT_EQ(report.flag, 600);
}

}  // namespace
}  // namespace kv::control
