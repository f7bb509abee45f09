// The knobs by themselves: what turning them asks of the display, and what they show of the range.
#include "control/Knobs.h"

#include <gmock/gmock.h>

#include <functional>
#include <sstream>
#include <tuple>
#include <utility>

#include "tests/unit/PartsFixture.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Writes down what the knobs ask for. With `failing`, everything but telling the host fails.
class RecordingKnobActions final : public KnobActions {
  public:
    void showCursorAt(double frequency) override { note("cursor", frequency); }
    void moveCursorTo(double /*from*/, double to) override { note("cursor", to); }
    void beginRangeAction() override {}
    void giveUpRangeAction() override {}
    void drawCursorAt(double frequency) override { note("line", frequency); }
    void applyNewCenter(double center) override { note("center", center); }
    void panTo(double center) override { note("pan", center); }
    void drawUnlessDrawing() override { note("draw"); }
    void drawUnlessCurrent() override { note("draw"); }
    void tellRangeChanged() override { heard.emplace_back("tell range"); }
    void tellGridRangeChanged() override { heard.emplace_back("tell unit"); }
    std::vector<std::string> take() { return std::exchange(heard, {}); }

    bool failing = false;

  private:
    void note(const std::string& what) {
        if (failing)
            throw util::RuntimeError(util::error_number::kOutOfMemory);
        heard.push_back(what);
    }
    void note(const char* what, double value) {
        std::ostringstream text;
        text << what << ' ' << value;
        note(text.str());
    }
    std::vector<std::string> heard;
};

class KnobsPartTest : public PartsTest {
  protected:
    KnobsPartTest() {
        panel.initialize();
        panel.SetGridRange();
        panel.SetGridKnob();
        add(channels::ChannelKind::TX, 450.0);
        showRange();
        knobs.connect();
    }

    RecordingErrors errors;
    RecordingKnobActions actions;
    Panel panel{platform};
    Children& ui = panel.parts();
    Knobs knobs{actions, panel, range, errors};
};

TEST_F(KnobsPartTest, NudgesAreATenthOfADivisionAndTheCenterMovesAgainstThem) {
    ASSERT_EQ(range.GridStepX(), 5.0);
    ui.tdKnMovCenter.onValueChanged(1.0);
    ui.tdKnMovCenter.onValueChanged(-1.0);
    ui.tdKnMovCursor.onValueChanged(1.0);
    ui.tdKnMovCursor.setDVal(420.0);
    ui.tdKnMovCursor.onValueChanged(-1.0);
    EXPECT_THAT(actions.take(), ElementsAre("center 449.5", "center 450.5", "cursor 450.5", "cursor 419.5"));
    ui.tdKnMovCenter.onValueChanged(0.0);
    ui.tdKnMovCursor.onValueChanged(0.0);
    EXPECT_THAT(actions.take(), IsEmpty());
}

TEST_F(KnobsPartTest, TheEndOfATurnIsTold) {
    ui.tdKnMovCenter.setDVal(455.0);
    ui.tdKnMovCenter.onTurnEnd();
    EXPECT_THAT(actions.take(), ElementsAre("pan 455"));
    ui.tdKnCenter.onTurnEnd();
    EXPECT_THAT(actions.take(), ElementsAre("tell range"));
    EXPECT_EQ(ui.tdKnCenter.dMinVal, 400.0);
    EXPECT_EQ(ui.tdKnCenter.dMaxVal, 500.0);
    ui.tdKnGrid.setDVal(2.0);
    ui.tdKnGrid.onTurnEnd();
    EXPECT_THAT(actions.take(), ElementsAre("draw", "tell range"));
    EXPECT_EQ(range.span(), std::pair(430.0, 470.0));
}

TEST_F(KnobsPartTest, AGivenUpTurnRestoresTheRange) {
    ui.tdKnGrid.onTurnBegin();
    ui.tdKnGrid.onValueChanged(2.0);
    EXPECT_EQ(range.span(), std::pair(430.0, 470.0));
    ui.tdKnGrid.onGivenUp();
    EXPECT_EQ(range.span(), std::pair(400.0, 500.0));
    EXPECT_THAT(actions.take(), ElementsAre("draw", "draw"));
}

TEST_F(KnobsPartTest, AnotherUnitKeepsTheValueAndTellsTheHost) {
    ui.tdKnGrid.setDVal(2.0);
    ui.cboGridRange.onClick();
    EXPECT_EQ(ui.tdKnGrid.dVal(), 2.0);
    EXPECT_THAT(actions.take(), ElementsAre("draw", "tell range", "tell unit"));
    ui.cboGridRange.onClick();
    EXPECT_THAT(actions.take(), ElementsAre("draw", "tell unit")) << "the same range as before";
    range.unset();
    store.clear(channels::ChannelKind::TX);
    store.resetFrequencyExtremes();
    ui.cboGridRange.onClick();
    EXPECT_THAT(actions.take(), ElementsAre("tell unit"));
}

TEST_F(KnobsPartTest, TheCenterAndTheDrawnStepAreShown) {
    knobs.showRange();
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 450.0);
    EXPECT_EQ(ui.tdKnGrid.sValText(), L"5M");
    range.setDisplayCenterFreq(460.0);
    knobs.showRange();
    EXPECT_EQ(ui.tdKnMovCenter.dVal(), 460.0);
    panel.setBUseMovers(false);
    knobs.showRange();
    EXPECT_EQ(ui.tdKnCenter.dVal(), 460.0);
}

TEST_F(KnobsPartTest, AFailedActionIsReportedWithItsProcedureAndStep) {
    actions.failing = true;
    const std::tuple<const wchar_t*, int, std::function<void()>> cases[] = {
        {L"cboGridRange_Click", 200, ui.cboGridRange.onClick},
        {L"tdKnGrid_ValueChanged", 200, [this] { ui.tdKnGrid.onValueChanged(2.0); }},
        {L"tdKnGrid_TurnEnd", 200, ui.tdKnGrid.onTurnEnd},
        {L"tdKnGrid_GivenUp", 200, ui.tdKnGrid.onGivenUp},
        {L"tdKnMovCenter_ValueChanged", 200, [this] { ui.tdKnMovCenter.onValueChanged(1.0); }},
        {L"tdKnMovCursor_ValueChanged", 200, [this] { ui.tdKnMovCursor.onValueChanged(1.0); }},
        {L"cmdCenterCursor_Click", 100, ui.cmdCenterCursor.onClick},
    };
    for (const auto& [procedure, step, action] : cases) {
        errors.reports.clear();
        action();
        ASSERT_EQ(errors.reports.size(), 1U) << ::testing::PrintToString(procedure);
        EXPECT_EQ(errors.reports[0].procedure, procedure);
        EXPECT_EQ(errors.reports[0].flag, step) << ::testing::PrintToString(procedure);
    }
}

TEST_F(KnobsPartTest, TheButtonPutsTheCursorOnTheCenter) {
    ui.cmdCenterCursor.onClick();
    EXPECT_THAT(actions.take(), ElementsAre("line 450"));
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 450.0);
    ui.tdKnMovCursor.setDVal(0.0);
    knobs.putCursorOnCenter();
    EXPECT_EQ(ui.tdKnMovCursor.dVal(), 450.0);
}

}  // namespace
}  // namespace kv::control
