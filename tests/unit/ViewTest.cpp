// What hosts can do with the display beyond the members of the control.
#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <thread>

#include "control/View.h"
#include "tests/unit/Numbers.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using channels::FreqSlotRef;

class ViewTest : public ScopeTest {
  protected:
    View view{scope};

    void expectRange(double minimum, double maximum) {
        EXPECT_NEAR(scope.DisplayMinFreq(), minimum, 1e-9);
        EXPECT_NEAR(scope.DisplayMaxFreq(), maximum, 1e-9);
    }
    /// The text of the error 5 with which `call` ends.
    template <class Call>
    std::wstring refusal(Call&& call) {
        try {
            call();
        } catch (const util::RuntimeError& error) {
            EXPECT_EQ(error.number(), util::error_number::kInvalidProcedureCall);
            return std::wstring(error.text());
        }
        ADD_FAILURE() << "no error";
        return {};
    }
    [[nodiscard]] std::vector<FreqSlotRef> hits(double frequency, double tolerance = 0.0) const {
        return view.hitTest(frequency, tolerance);
    }
};

TEST_F(ViewTest, ShowRangeShowsExactlyTheRangeWithItsMiddleAsCenterAndItsOwnGridStep) {
    addTX(450.0, 0.0125, 30.0);
    scope.DrawDisplay();
    view.showRange(440.0, 444.0);
    expectRange(440.0, 444.0);
    EXPECT_EQ(scope.DisplayCenterFreq(), 442.0);
    EXPECT_EQ(ui.picSpectrum.scaleLeft(), 440.0);
    EXPECT_EQ(ui.picSpectrum.scaleWidth(), 4.0);
    // 20 divisions.
    EXPECT_DOUBLE_EQ(ui.tdKnGrid.dVal(), 0.2);
}

TEST_F(ViewTest, ShowRangeDrawsTheChannels) {
    const SlotRef slot = addTX(450.0, 0.5, 30.0);
    view.showRange(449.0, 451.0);
    EXPECT_TRUE(slot->bDrawn());
}

TEST_F(ViewTest, NoMemberRaisesAnEvent) {
    addTX(450.0, 0.0125, 30.0);
    view.showRange(440.0, 460.0);
    view.zoomBy(2.0, 0.0);
    view.panBy(1.0);
    EXPECT_EQ(events.heard, std::vector<std::string>{});
}

TEST_F(ViewTest, AZoomByTheMouseGivesTheSamePictureAndRaisesTheEvent) {
    addTX(450.0, 0.5, 30.0);
    showTwoPixelsAUnit();
    ui.picSpectrum.onMouseDown(1, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(1, 0, 400.0, 50.0);
    ui.picSpectrum.onMouseMove(1, 0, 500.0, 50.0);
    ui.picSpectrum.onMouseUp(1, 0, 500.0, 50.0);
    EXPECT_EQ(events.heard, std::vector<std::string>{"ChgFreqRange 400 500"});
    const std::vector<std::uint32_t> byMouse = pixelsOf(ui.picSpectrum);
    const double step = ui.tdKnGrid.dVal();
    scope.DrawByRange(450.0, 450.0);
    ASSERT_NE(pixelsOf(ui.picSpectrum), byMouse);
    view.showRange(400.0, 500.0);
    EXPECT_EQ(pixelsOf(ui.picSpectrum), byMouse);
    EXPECT_EQ(ui.tdKnGrid.dVal(), step);
    EXPECT_EQ(events.heard.size(), 1U);
}

TEST_F(ViewTest, ShowRangeRefusesWhatIsNoRange) {
    addTX(450.0, 0.0125, 30.0);
    view.showRange(440.0, 460.0);
    EXPECT_EQ(refusal([&] { view.showRange(460.5, 450.25); }),
              L"ShowRange: 460.5 to 450.25 MHz cannot be shown. The maximum must be above 0 MHz and at least 0.000001 "
              L"MHz above the minimum.");
    for (const auto& [minimum, maximum] :
         {std::pair(450.0, 450.0), std::pair(-2.0, 0.0), std::pair(kNaN, 460.0), std::pair(440.0, kInfinity),
          std::pair(-std::numeric_limits<double>::max(), std::numeric_limits<double>::max())})
        EXPECT_NE(refusal([&] { view.showRange(minimum, maximum); }), L"");
    expectRange(440.0, 460.0);
}

TEST_F(ViewTest, ZoomByTwoHalvesTheSpanAroundTheMiddle) {
    view.showRange(440.0, 460.0);
    view.zoomBy(2.0, 0.0);
    expectRange(445.0, 455.0);
    view.zoomBy(0.5, 0.0);
    expectRange(440.0, 460.0);
}

TEST_F(ViewTest, ZoomByKeepsTheGivenFrequencyAtItsPlace) {
    view.showRange(440.0, 460.0);
    // A quarter of the range is below 445.
    view.zoomBy(4.0, 445.0);
    expectRange(443.75, 448.75);
}

TEST_F(ViewTest, ZoomByRefusesFactorsThatAreNotAboveZero) {
    view.showRange(440.0, 460.0);
    EXPECT_EQ(refusal([&] { view.zoomBy(-2.0, 0.0); }),
              L"ZoomBy: the factor is -2. It must be a number above 0; 2 shows half the span.");
    for (const double factor : {0.0, kNaN, kInfinity})
        EXPECT_NE(refusal([&] { view.zoomBy(factor, 0.0); }), L"");
    EXPECT_NE(refusal([&] { view.zoomBy(2.0, kNaN); }), L"");
    EXPECT_NE(refusal([&] { view.zoomBy(1e9, 0.0); }), L"") << "less than 1 Hz";
    expectRange(440.0, 460.0);
}

TEST_F(ViewTest, PanByMovesTheRangeAndKeepsItsSpan) {
    view.showRange(440.0, 460.0);
    view.panBy(-2.5);
    expectRange(437.5, 457.5);
    EXPECT_NE(refusal([&] { view.panBy(-457.5); }), L"") << "ends at 0 MHz";
    EXPECT_NE(refusal([&] { view.panBy(kNaN); }), L"");
    expectRange(437.5, 457.5);
}

TEST_F(ViewTest, WithoutARangeThereIsNothingToZoomOrPan) {
    EXPECT_EQ(refusal([&] { view.zoomBy(2.0, 0.0); }),
              L"ZoomBy: there is no range yet. Add channels or call ShowRange first.");
    EXPECT_NE(refusal([&] { view.panBy(1.0); }), L"");
}

TEST_F(ViewTest, ARangeThatIsStillToBeDerivedCounts) {
    addTX(450.0, 1.0, 30.0);
    scope.setFreqEndBuffer(10.0);
    view.zoomBy(2.0, 0.0);
    expectRange(444.5, 455.5);
}

TEST_F(ViewTest, HitTestReturnsTheReceiversBeforeTheTransmittersInTheOrderOfAdding) {
    const SlotRef tx = addTX(450.0, 0.5, 30.0);
    const SlotRef hidden = addRX(450.25, 0.5);
    hidden->fields().bVisible = false;
    const SlotRef rx = addRX(450.0, 0.5);
    addTX(460.0, 0.5, 30.0);
    EXPECT_EQ(hits(450.0), (std::vector<FreqSlotRef>{asChannel(hidden), asChannel(rx), asChannel(tx)}));
    EXPECT_EQ(hits(455.0).size(), 0U);
}

TEST_F(ViewTest, HitTestMeetsBandEdgesWithinTheTolerance) {
    const SlotRef slot = addTX(450.0, 0.5, 30.0);
    EXPECT_EQ(hits(450.5).size(), 1U);
    EXPECT_EQ(hits(450.75).size(), 0U);
    EXPECT_EQ(hits(450.75, 0.25).size(), 1U);
    EXPECT_EQ(hits(449.25, 0.125).size(), 0U);
}

TEST_F(ViewTest, HitTestRefusesNumbersThatAreNone) {
    EXPECT_EQ(refusal([&] { static_cast<void>(hits(450.0, -0.5)); }),
              L"HitTest: the tolerance is -0.5. It must be a number of MHz, 0 or above.");
    EXPECT_NE(refusal([&] { static_cast<void>(hits(450.0, kInfinity)); }), L"");
    EXPECT_NE(refusal([&] { static_cast<void>(hits(kNaN)); }), L"");
}

TEST_F(ViewTest, AddedChannelsAreThoseOfSingleAdds) {
    const std::vector<FreqSlotRef> added{asChannel(makeSlot(450.0, 0.5, 30.0, L"A")),
                                         asChannel(makeSlot(451.0, 0.5, 30.0, L"B"))};
    EXPECT_EQ(view.add(ChannelKind::TX, added), 2);
    EXPECT_EQ(view.add(ChannelKind::RX, {asChannel(makeSlot(452.0, 0.5, 0.0, L"C"))}), 1);
    EXPECT_EQ(scope.NumTX(), 2);
    EXPECT_EQ(scope.NumRX(), 1);
    EXPECT_EQ(scope.GetTXbyKey(L"B").get(), added[1].get());
    EXPECT_EQ(scope.extremes().dFreqMax, 452.5);
    EXPECT_EQ(view.add(ChannelKind::TX, {}), 0);
}

TEST_F(ViewTest, TheRenderTimeIsThatOfTheLastDrawing) {
    EXPECT_EQ(view.renderTimeMs(), 0.0);
    const SlotRef slot = addTX(450.0, 0.5, 30.0);
    EXPECT_EQ(view.renderTimeMs(), 0.0);
    slot->onRead = [](std::string_view member) {
        if (member == "drawRecord")
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
    };
    scope.DrawDisplay();
    const double slow = view.renderTimeMs();
    EXPECT_GE(slow, 40.0);
    slot->onRead = nullptr;
    scope.JustDrawIt();
    EXPECT_GT(view.renderTimeMs(), 0.0);
    EXPECT_LT(view.renderTimeMs(), slow);
}

}  // namespace
}  // namespace kv::control
