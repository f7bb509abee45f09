// The grid knob in its real window: turns by wheel, drag and keys, the events, and controls that are closed during a
// turn.
#include <vector>

#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A place beside the dial, and the pixels from stop to stop.
constexpr int kBesideX = 3;
constexpr int kBesideY = 70;
constexpr int kStop = 16;

class GridKnob : public UserInput {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(UserInput::SetUp());
        fillInStep();
    }
    /// The display is 20 steps wide.
    void expectStep(double value) const {
        EXPECT_NEAR(minFreq(), 430.0 - 10.0 * value, 1e-9 * (1.0 + value));
        EXPECT_NEAR(maxFreq(), 430.0 + 10.0 * value, 1e-9 * (1.0 + value));
    }
    [[nodiscard]] HeardEvent rangeEvent() const { return {kChgFreqRange, {minFreq(), maxFreq()}, {VT_R8, VT_R8}}; }
    using Events = std::vector<HeardEvent>;
};

TEST_F(GridKnob, ATurnZoomsAroundTheCenterAndRaisesOneEvent) {
    const Picture before = shown();
    wheel(gridKnob(), 1);
    expectStep(10.0);
    EXPECT_TRUE(sink->heard == Events{rangeEvent()});
    EXPECT_NE(shown(), before);
    wheel(gridKnob(), -1);
    expectStep(5.0);
    expectSame(shown(), before);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange));
    EXPECT_EQ(center(), 430.0);
}

TEST_F(GridKnob, ADragZoomsAtEachStopAndRaisesItsEventAtTheEnd) {
    take(gridKnob(), kBesideX, kBesideY);
    EXPECT_EQ(GetCapture(), gridKnob());
    expectStep(5.0);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    expectStep(10.0);
    const Picture middle = shown();
    drag(gridKnob(), kBesideX, kBesideY - 3 * kStop);
    expectStep(50.0);
    EXPECT_NE(shown(), middle);
    drag(gridKnob(), kBesideX, kBesideY + kStop);
    expectStep(2.0);
    EXPECT_THAT(sink->ids(), IsEmpty());
    release(gridKnob(), kBesideX, kBesideY + kStop);
    EXPECT_TRUE(sink->heard == Events{rangeEvent()});
    expectStep(2.0);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(GridKnob, AHeldKeyIsOneTurn) {
    for (int repeats = 0; repeats < 4; ++repeats)
        keyDown(gridKnob(), VK_UP);
    expectStep(100.0);
    EXPECT_THAT(sink->ids(), IsEmpty());
    keyUp(gridKnob(), VK_UP);
    EXPECT_TRUE(sink->heard == Events{rangeEvent()});
}

TEST_F(GridKnob, EscapeAndTheRightButtonCancelATurn) {
    const Picture before = shown();
    for (const UINT message : {UINT{WM_KEYDOWN}, UINT{WM_RBUTTONDOWN}}) {
        take(gridKnob(), kBesideX, kBesideY);
        drag(gridKnob(), kBesideX, kBesideY - 3 * kStop);
        expectStep(50.0);
        if (message == WM_KEYDOWN)
            keyDown(gridKnob(), VK_ESCAPE);
        else
            mouse(gridKnob(), message, MK_LBUTTON | MK_RBUTTON, kBesideX, kBesideY);
        expectStep(5.0);
        expectSame(shown(), before);
        EXPECT_EQ(GetCapture(), nullptr);
        release(gridKnob(), kBesideX, kBesideY);
        expectStep(5.0);
    }
    keyDown(gridKnob(), VK_END);
    keyDown(gridKnob(), VK_ESCAPE);
    keyUp(gridKnob(), VK_END);
    expectSame(shown(), before);
    EXPECT_THAT(sink->ids(), IsEmpty());
}

TEST_F(GridKnob, ATurnOnAnEmptyDisplayLeavesTheRangeToTheChannels) {
    Container empty;
    ASSERT_NO_FATAL_FAILURE(empty.activate());
    wheel(empty.child(L"tdKnob", L"Grid (Hz)"), 4);
    empty.addTx({.freq = 450.0, .key = L"TX1"});
    EXPECT_TRUE(empty.draw());
    double minimum = 0.0;
    double maximum = 0.0;
    EXPECT_EQ(empty.control->get_DisplayMinFreq(&minimum), S_OK);
    EXPECT_EQ(empty.control->get_DisplayMaxFreq(&maximum), S_OK);
    EXPECT_EQ(minimum, 350.0);
    EXPECT_EQ(maximum, 550.0);
}

TEST_F(GridKnob, ARedrawInTheMiddleOfATurnIsSafe) {
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    expectStep(10.0);
    const Picture turned = shown();
    EXPECT_TRUE(container.draw());
    // A full repaint has no cursor line.
    EXPECT_EQ(container.control->put_CursorVal(430.0), S_OK);
    expectSame(shown(), turned);
    EXPECT_EQ(GetCapture(), gridKnob());
    container.addRx({.freq = 431.0, .lo = 430.0, .hi = 432.0, .key = L"RX2", .color = 0xFF0000});
    EXPECT_EQ(container.control->RescaleAll(), S_OK);
    drag(gridKnob(), kBesideX, kBesideY - 2 * kStop);
    expectStep(20.0);
    const Picture further = shown();
    EXPECT_GT(further.count(0xFF0000, further.all()), 0);
    release(gridKnob(), kBesideX, kBesideY - 2 * kStop);
    expectStep(20.0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

TEST_F(GridKnob, TurnsInTheMiddleOfARedrawEndInTheRightPicture) {
    // The messages stay in the queue until the drawing processes pending events.
    for (int i = 0; i < 2; ++i)
        PostMessageW(gridKnob(), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), 0);
    EXPECT_TRUE(container.draw());
    expectStep(20.0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange));
    const Picture drawn = shown();
    EXPECT_TRUE(container.draw());
    expectSame(shown(), drawn);
}

TEST_F(GridKnob, AWheelNotchRightAfterADragIsDrawn) {
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    // The drawing at the end of the turn processes the message of the notch.
    PostMessageW(gridKnob(), WM_LBUTTONUP, 0, MAKELPARAM(kBesideX, kBesideY - kStop));
    PostMessageW(gridKnob(), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), 0);
    pump();
    expectStep(20.0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange));
    const Picture now = shown();
    EXPECT_EQ(container.control->DrawNewCenterFreq(), S_OK);
    expectSame(shown(), now);
}

TEST_F(GridKnob, TheHostMayRedrawInsideItsEvent) {
    sink->onEvent = [&](DISPID) { EXPECT_TRUE(container.draw()); };
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    release(gridKnob(), kBesideX, kBesideY - kStop);
    expectStep(10.0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    key(gridKnob(), VK_DOWN);
    expectStep(5.0);
    sink->onEvent = nullptr;
}

/// The control is closed in the middle of a turn; nothing is left behind.
class ClosedDuringATurn : public GridKnob {
  protected:
    void close() {
        EXPECT_EQ(container.as<IOleObject>()->Close(OLECLOSE_NOSAVE), S_OK);
        EXPECT_EQ(container.as<IOleObject>()->SetClientSite(nullptr), S_OK);
    }
    void TearDown() override {
        GridKnob::TearDown();
        EXPECT_EQ(GetCapture(), nullptr);
        sink->onEvent = nullptr;
        container.control.Reset();
        EXPECT_EQ(canUnloadNow(), S_OK);
        EXPECT_EQ(sink->references(), 1U);
        EXPECT_EQ(container.site->references(), 1U);
        EXPECT_EQ(GetWindow(container.host.get(), GW_CHILD), nullptr);
    }
};

TEST_F(ClosedDuringATurn, ByTheHost) {
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    close();
}

TEST_F(ClosedDuringATurn, OnANudgeKnob) {
    take(centerMover(), 57, 60);
    drag(centerMover(), 57, 30);
    close();
}

TEST_F(ClosedDuringATurn, WhileAKeyIsHeld) {
    keyDown(gridKnob(), VK_UP);
    close();
}

TEST_F(ClosedDuringATurn, ByTheDestructionOfTheWindow) {
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    container.host.destroy();
    close();
}

TEST_F(ClosedDuringATurn, InTheEventOfTheTurn) {
    take(gridKnob(), kBesideX, kBesideY);
    drag(gridKnob(), kBesideX, kBesideY - kStop);
    sink->onEvent = [&](DISPID) {
        sink->onEvent = nullptr;
        close();
        container.control.Reset();
        EXPECT_EQ(canUnloadNow(), S_FALSE);
    };
    PostMessageW(gridKnob(), WM_LBUTTONUP, 0, MAKELPARAM(kBesideX, kBesideY - kStop));
    pump();
    EXPECT_FALSE(container.control);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

TEST_F(ClosedDuringATurn, InARedrawOfTheTurn) {
    take(gridKnob(), kBesideX, kBesideY);
    const HWND knob = gridKnob();
    container.host.onMessage = [&] {
        close();
        container.control.Reset();
        EXPECT_EQ(canUnloadNow(), S_FALSE);
    };
    _kvBandscope* const control = container.control.Get();
    PostMessageW(knob, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(kBesideX, kBesideY - kStop));
    PostMessageW(container.host.get(), WM_APP, 0, 0);
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_FALSE(container.control);
    container.host.onMessage = nullptr;
}

}  // namespace
}  // namespace kv::test
