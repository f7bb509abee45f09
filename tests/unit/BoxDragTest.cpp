// The drag of a box on the spectrum, its rubber band, and the zoom at its end.
#include "tests/unit/Keys.h"
#include "tests/unit/RangeFixture.h"

namespace kv::control {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using formenv::mouse_button::kLeft;
using formenv::mouse_button::kRight;

/// 350 to 550 MHz on 400 pixels, 0 to 100 dBm on 200.
class BoxDragTest : public RangeTest {
  protected:
    void SetUp() override {
        addTX(450.0, 5.0, 60.0);
        showTwoPixelsAUnit();
        events.heard.clear();
        untouched = pixelsOf(ui.picSpectrum);
    }
    void press(double x, int button = kLeft) { ui.picSpectrum.onMouseDown(button, 0, x, 50.0); }
    void move(double x, int buttons = kLeft) { ui.picSpectrum.onMouseMove(buttons, 0, x, 50.0); }
    void release(double x, int button = kLeft) { ui.picSpectrum.onMouseUp(button, 0, x, 50.0); }
    [[nodiscard]] std::vector<std::uint32_t> now() { return pixelsOf(ui.picSpectrum); }
    /// The columns of the picture's middle row that differ from what was there before the drag.
    [[nodiscard]] std::vector<int> changedColumns() {
        const std::vector<std::uint32_t> picture = now();
        std::vector<int> columns;
        for (std::size_t x = 0; x < 400; ++x)
            if (picture[100 * 400 + x] != untouched[100 * 400 + x])
                columns.push_back(static_cast<int>(x));
        return columns;
    }
    std::vector<std::uint32_t> untouched;
};

TEST_F(BoxDragTest, ZoomsToExactlyTheDraggedSpan) {
    press(400.0);
    move(400.0);
    move(460.0);
    release(440.0);
    expectRange(400.0, 440.0);
    EXPECT_DOUBLE_EQ(scope.DisplayCenterFreq(), 420.0);
    EXPECT_DOUBLE_EQ(ui.tdKnGrid.dVal(), 2.0) << "the derived step, 40 MHz in 20 parts";
    EXPECT_EQ(ui.tdKnCursor.dMinVal, 400.0);
    EXPECT_EQ(ui.tdKnCursor.dMaxVal, 440.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 400 440"));
    expectScale({400.0, 100.0, 40.0, -100.0});
}

TEST_F(BoxDragTest, ZoomsTheSameInTheOtherDirection) {
    press(440.0);
    move(440.0);
    move(420.0);
    release(400.0);
    expectRange(400.0, 440.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 400 440"));
}

TEST_F(BoxDragTest, BeginsWhereTheFirstMoveWas) {
    press(390.0);
    move(400.0);
    release(440.0);
    expectRange(400.0, 440.0);
}

TEST_F(BoxDragTest, AClickWithoutMovementNeverZooms) {
    press(400.0);
    release(400.0);
    press(400.0);
    release(460.0);
    expectRange(350.0, 550.0);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(BoxDragTest, AMoveBelowThreePixelsIsAClick) {
    press(400.0);
    move(400.0);
    move(401.0);
    release(401.0);
    expectRange(350.0, 550.0);
    EXPECT_EQ(now(), untouched);
    // Three pixels are a drag.
    press(400.0);
    move(400.0);
    release(401.5);
    expectRange(400.0, 401.5);
}

TEST_F(BoxDragTest, APressEndsADragThatIsStillRunning) {
    press(400.0);
    move(400.0);
    move(460.0);
    press(420.0);
    EXPECT_EQ(now(), untouched);
    release(440.0);
    expectRange(350.0, 550.0);
}

TEST_F(BoxDragTest, WithTheButtonUpThePointerDragsNothing) {
    move(400.0, 0);
    move(460.0, 0);
    release(440.0);
    expectRange(350.0, 550.0);
    move(400.0, kRight);
    move(460.0, kRight);
    release(440.0);
    expectRange(350.0, 550.0);
    EXPECT_EQ(now(), untouched);
}

TEST_F(BoxDragTest, TheBandInvertsTwoColumnsAndFollowsThePointer) {
    press(400.0);
    move(400.0);
    move(460.0);
    EXPECT_THAT(changedColumns(), ElementsAre(100, 220));
    const std::uint32_t before = untouched[100 * 400 + 220] & 0xFFFFFFU;
    EXPECT_EQ(pixelAt(ui.picSpectrum, 220, 100), before ^ 0xFFFFFFU);
    move(380.0);
    EXPECT_THAT(changedColumns(), ElementsAre(60, 100));
    // Along the top and the bottom edge it closes the box.
    EXPECT_NE(pixelAt(ui.picSpectrum, 80, 0), untouched[80] & 0xFFFFFFU);
    EXPECT_NE(pixelAt(ui.picSpectrum, 80, 199), untouched[199 * 400 + 80] & 0xFFFFFFU);
    EXPECT_EQ(pixelAt(ui.picSpectrum, 80, 100), untouched[100 * 400 + 80] & 0xFFFFFFU);
}

TEST_F(BoxDragTest, TheDrawingPropertiesAreAsBefore) {
    ui.picSpectrum.setFillStyle(4);
    ui.picSpectrum.setDrawWidth(2);
    press(400.0);
    move(400.0);
    move(460.0);
    EXPECT_EQ(ui.picSpectrum.fillStyle(), 4);
    EXPECT_EQ(ui.picSpectrum.drawWidth(), 2);
    EXPECT_EQ(ui.picSpectrum.drawMode(), 13);
}

TEST_F(BoxDragTest, EscapeCancels) {
    press(400.0);
    move(400.0);
    move(460.0);
    EXPECT_TRUE(ui.picSpectrum.wantsKey(key::kEscape));
    EXPECT_TRUE(ui.picSpectrum.onKeyDown(key::kEscape, 0));
    EXPECT_EQ(now(), untouched);
    // The button is still down.
    move(470.0);
    EXPECT_EQ(now(), untouched);
    release(470.0);
    expectRange(350.0, 550.0);
    // The next drag is one again.
    press(400.0);
    move(400.0);
    release(440.0);
    expectRange(400.0, 440.0);
}

TEST_F(BoxDragTest, EscapeOutsideADragIsTheHosts) {
    EXPECT_FALSE(ui.picSpectrum.wantsKey(key::kEscape));
    EXPECT_FALSE(ui.picSpectrum.onKeyDown(key::kEscape, 0));
}

TEST_F(BoxDragTest, TheRightButtonCancels) {
    press(400.0);
    move(400.0);
    move(460.0);
    press(460.0, kRight);
    EXPECT_EQ(now(), untouched);
    move(470.0, kLeft + kRight);
    release(470.0, kRight);
    release(470.0);
    expectRange(350.0, 550.0);
    EXPECT_EQ(now(), untouched);
}

TEST_F(BoxDragTest, LosingTheMouseCancels) {
    press(400.0);
    move(400.0);
    move(460.0);
    ui.picSpectrum.onMouseLost();
    EXPECT_EQ(now(), untouched);
    move(470.0, 0);
    release(470.0);
    expectRange(350.0, 550.0);
    EXPECT_EQ(now(), untouched);
}

TEST_F(BoxDragTest, OutsideThePictureTheSpanEndsAtItsEdge) {
    press(500.0);
    move(500.0);
    move(2000.0);
    EXPECT_THAT(changedColumns(), ElementsAre(300));
    move(-300.0);
    EXPECT_THAT(changedColumns(), ElementsAre(0, 300));
    release(-300.0);
    expectRange(350.0, 500.0);
}

TEST_F(BoxDragTest, SurvivesARedrawInTheMiddle) {
    press(400.0);
    move(400.0);
    move(460.0);
    scope.JustDrawIt();
    EXPECT_EQ(now(), untouched) << "a redraw shows the picture without the band until the next move";
    move(440.0);
    EXPECT_THAT(changedColumns(), ElementsAre(100, 180));
    release(440.0);
    expectRange(400.0, 440.0);
}

TEST_F(BoxDragTest, LeavesNoTraceWhenAChannelIsDrawnOverTheBand) {
    const SlotRef slot = makeSlot(455.0, 6.0, 90.0);
    slot->fields().dFreqLo = 452.0;
    slot->fields().dFreqHi = 458.0;
    scope.ReDrawChnl(asChannel(slot));
    untouched = now();
    press(400.0);
    move(400.0);
    move(455.5);
    scope.ReDrawChnl(asChannel(slot));
    EXPECT_THAT(changedColumns(), ElementsAre(100, 211));
    ui.picSpectrum.onKeyDown(key::kEscape, 0);
    EXPECT_EQ(now(), untouched);
}

TEST_F(BoxDragTest, LeavesNoTraceWhenItMovesDuringADrawing) {
    scope.DrawDisplay();
    const std::vector<std::uint32_t> drawn = now();
    press(400.0);
    int pumps = 0;
    platform.onPump = [&] { move(400.0 + 3.0 * ++pumps); };
    scope.DrawDisplay();
    platform.onPump = nullptr;
    EXPECT_GT(pumps, 4);
    EXPECT_EQ(now(), drawn);
    move(430.0);
    ui.picSpectrum.onKeyDown(key::kEscape, 0);
    EXPECT_EQ(now(), drawn);
}

TEST_F(BoxDragTest, AReleaseDuringADrawingIsDrawnAfterIt) {
    press(400.0);
    move(400.0);
    platform.onPump = [&] { release(440.0); };
    scope.JustDrawIt();
    platform.onPump = nullptr;
    expectRange(400.0, 440.0);
    const std::vector<std::uint32_t> shown = now();
    scope.JustDrawIt();
    EXPECT_EQ(now(), shown);
}

TEST_F(BoxDragTest, LeavesNoTraceWhenTheControlIsResized) {
    press(400.0);
    move(400.0);
    move(460.0);
    scope.resize(12000.0, 8000.0);
    ui.picSpectrum.onKeyDown(key::kEscape, 0);
    scope.resize(12000.0, 8000.0);
    const std::vector<std::uint32_t> after = pixelsOf(ui.picSpectrum);
    const int width = ui.picSpectrum.pixelSize().width;
    // Where the old picture was, it is as it was but for the cursor line, which moves to its place in the new size: the
    // band was taken off before the size changed.
    const int cursor = ui.picSpectrum.pixelX(450.0);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 400; ++x)
            if (x != 200 && x != cursor) {
                ASSERT_EQ(after[static_cast<std::size_t>(y * width + x)],
                          untouched[static_cast<std::size_t>(y * 400 + x)])
                    << x << ", " << y;
            }
}

TEST_F(BoxDragTest, WithoutARangeThereIsNothingToDrag) {
    scope.ClearAllChnls();
    scope.DrawInitialDisplay();
    const std::vector<std::uint32_t> empty = now();
    press(0.1);
    move(0.1);
    move(0.9);
    EXPECT_EQ(now(), empty);
    release(0.9);
    EXPECT_THAT(events.heard, IsEmpty());
}

TEST_F(BoxDragTest, ANarrowZoomSelectsTheFinerGridRange) {
    press(449.0);
    move(449.0);
    release(451.0);
    EXPECT_EQ(ui.cboGridRange.text(), L"KHz") << "a step of 0.1 MHz is below the stops from 0.5 MHz on";
    EXPECT_DOUBLE_EQ(ui.tdKnGrid.dVal(), 0.1);
    EXPECT_EQ(ui.tdKnGrid.dMaxVal, 1.0);
    EXPECT_THAT(events.heard, ElementsAre("ChgFreqRange 449 451"));
}

TEST_F(BoxDragTest, AGridRangeThatHoldsTheStepStays) {
    ui.cboGridRange.setListIndex(0);
    ui.cboGridRange.onClick();
    scope.DrawByRange(450.0, 450.0);
    press(445.0);
    move(445.0);
    release(460.0);
    EXPECT_EQ(ui.cboGridRange.text(), L"KHz") << "0.75 MHz lies in both";
}

TEST_F(BoxDragTest, NoZoomGoesBelowOneHertz) {
    scope.setFreqEndBuffer(0.000001);
    scope.DrawByRange(450.0, 450.0);
    const double low = scope.DisplayMinFreq();
    press(low);
    move(low);
    release(low + 0.0000005);
    EXPECT_DOUBLE_EQ(scope.DisplayMinFreq(), low);
    EXPECT_THAT(events.heard, IsEmpty());
}

}  // namespace
}  // namespace kv::control
