// What the grid knob shows: the step that is drawn, chosen or derived.
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

class GridReadOutTest : public ScopeTest {
  protected:
    std::wstring readOut() { return ui.tdKnGrid.sValText(); }
    void showSpan(double span) {
        scope.setFreqEndBuffer(0.0);
        scope.DrawByRange(450.0, 450.0 + span);
    }
};

TEST_F(GridReadOutTest, ShowsTheDerivedStep) {
    addTX(450.0);
    EXPECT_EQ(readOut(), L"500K") << "the knob's own value as long as there is no range";
    scope.DrawDisplay();
    EXPECT_EQ(readOut(), L"10M");
    EXPECT_EQ(ui.tdKnGrid.dVal(), 0.5) << "only the read-out";
    showSpan(0.5);
    EXPECT_EQ(readOut(), L"25K");
    scope.setNGridX(10);
    scope.JustDrawIt();
    EXPECT_EQ(readOut(), L"50K");
    scope.Refresh();
    EXPECT_EQ(readOut(), L"50K");
}

TEST_F(GridReadOutTest, WritesStepsInTheKnobsUnit) {
    addTX(450.0);
    const struct {
        double span;
        const wchar_t* text;
    } cases[] = {
        {11.05, L"552.5K"}, {0.00001, L"0.5"},        {0.02, L"1K"},       {4e5, L"20G"},
        {4e7, L"2T"},       {1.0 / 3.0, L"16.6667K"}, {19.9999999, L"1M"}, {2469.13578, L"123.457M"},
    };
    for (const auto& [span, text] : cases) {
        showSpan(span);
        EXPECT_EQ(readOut(), text) << span;
    }
}

TEST_F(GridReadOutTest, ShowsAChosenStepAsTheStopsLabel) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnGrid.setDVal(2.0);
    ui.tdKnGrid.onValueChanged(2.0);
    EXPECT_EQ(readOut(), L"2M");
    // Fewer lines over the same range: the chosen step is no longer what is drawn.
    scope.setNGridX(10);
    scope.JustDrawIt();
    EXPECT_EQ(readOut(), L"4M");
}

TEST_F(GridReadOutTest, ShowAllAndRescaleAllShowTheirDerivedStep) {
    addTX(450.0);
    addTX(461.05);
    scope.setFreqEndBuffer(0.0);
    scope.DrawByRange(450.0, 450.5);
    scope.setShowAll(true);
    EXPECT_EQ(readOut(), L"552.5K");
    scope.RescaleAll();
    EXPECT_EQ(readOut(), L"552.5K");
}

TEST_F(GridReadOutTest, AStepOffTheStopsThatTheBoxKeepsIsInTheKnobsUnit) {
    addTX(450.0);
    addTX(461.05);
    scope.setFreqEndBuffer(0.0);
    scope.DrawByRange(450.0, 450.5);
    scope.setShowAll(true);
    ui.cboGridRange.setListIndex(0);
    ui.cboGridRange.onClick();
    EXPECT_EQ(readOut(), L"552.5K");
}

TEST_F(GridReadOutTest, AGivenUpTurnShowsTheDerivedStepAgain) {
    addTX(450.0);
    scope.DrawDisplay();
    ui.tdKnGrid.onTurnBegin();
    ui.tdKnGrid.setDVal(1.0);
    ui.tdKnGrid.onValueChanged(1.0);
    EXPECT_EQ(readOut(), L"1M");
    ui.tdKnGrid.setDVal(0.5);
    ui.tdKnGrid.onValueChanged(0.5);
    ui.tdKnGrid.onGivenUp();
    EXPECT_EQ(readOut(), L"10M");
}

TEST_F(GridReadOutTest, AKnobWithoutAFormatShowsNoRemaindersOfArithmetic) {
    ui.tdKnCursor.setDVal(0.5524999999999978);
    EXPECT_EQ(ui.tdKnCursor.sValText(), L"0.5525");
    ui.tdKnCursor.setDVal(450.1 + 0.2);
    EXPECT_EQ(ui.tdKnCursor.sValText(), L"450.3");
    ui.tdKnCursor.setDVal(0.0);
    EXPECT_EQ(ui.tdKnCursor.sValText(), L"0");
    ui.tdKnCursor.setDVal(462.5625125);
    EXPECT_EQ(ui.tdKnCursor.sValText(), L"462.5625125");
}

}  // namespace
}  // namespace kv::control
