// The user's hand where it is easily forgotten: before the first drawing, quick second clicks, presses that began
// elsewhere, very tall windows, and the keys that stand for gestures of the mouse.
#include <oleacc.h>

#include "tests/automation/KnobHand.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HandEdgeCases : public KnobHand {
  protected:
    void addOnly() {
        EXPECT_EQ(container.control->put_FreqEndBuffer(20.0), S_OK);
        container.addTx({.freq = 400.0, .lo = 400.0, .hi = 401.0, .power = 30.0, .key = L"TX1", .color = 0xFF});
    }
    [[nodiscard]] bool isCollapsed() const { return windowText(container.panel()) == L"+"; }
    void rightClick(UINT down) const {
        mouse(container.panel(), down, MK_RBUTTON, 5, 5);
        mouse(container.panel(), WM_RBUTTONUP, 0, 5, 5);
    }
    void doubleClick(int x) const {
        mouse(spectrum(), WM_LBUTTONDBLCLK, MK_LBUTTON, x, 30);
        mouse(spectrum(), WM_LBUTTONUP, 0, x, 30);
    }
    [[nodiscard]] HWND viewAll() const { return container.child(L"Button", L"View All"); }
};

TEST_F(HandEdgeCases, CenterMoverNudgesBeforeTheFirstDrawingAndTellsAtTheEndOfTheTurn) {
    addOnly();
    key(centerMover(), VK_RIGHT);
    // A tenth of a twentieth of 41 MHz, against the sense of the turn.
    EXPECT_NEAR(center(), 400.5 - 0.205, 1e-9);
    ASSERT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    EXPECT_THAT(sink->heard[0].arguments, ElementsAre(minFreq(), maxFreq()));
}

TEST_F(HandEdgeCases, CursorMoverNudgesBeforeTheFirstDrawing) {
    addOnly();
    key(cursorMover(), VK_RIGHT);
    EXPECT_NEAR(cursor(), 400.5 + 0.205, 1e-9);
}

TEST_F(HandEdgeCases, GridStepChosenBeforeTheFirstDrawingIsShownDuringTheTurn) {
    addOnly();
    keyDown(gridKnob(), VK_RIGHT);
    expectRange(390.5, 410.5);
    keyUp(gridKnob(), VK_RIGHT);
    expectRange(390.5, 410.5);
}

TEST_F(HandEdgeCases, DoubleClickWithoutARangeDoesNothing) {
    doubleClick(50);
    addOnly();
    doubleClick(50);
    EXPECT_THAT(sink->ids(), IsEmpty());
    EXPECT_TRUE(container.draw());
    expectRange(380.0, 421.0);
}

TEST_F(HandEdgeCases, DoubleClickUsesItsOwnPositionInTheRangeOfThatMoment) {
    fill();
    mouse(spectrum(), WM_MOUSEMOVE, 0, 10, 30);
    EXPECT_EQ(container.control->DrawByRange(440.0, 450.0), S_OK);
    const int width = shown().width;
    const double expected = minFreq() + 200 * (maxFreq() - minFreq()) / width;
    doubleClick(200);
    EXPECT_NEAR(center(), expected, 1e-9);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

TEST_F(HandEdgeCases, SecondQuickRightClickTogglesThePanelAgain) {
    rightClick(WM_RBUTTONDOWN);
    EXPECT_TRUE(isCollapsed());
    rightClick(WM_RBUTTONDBLCLK);
    EXPECT_FALSE(isCollapsed());
}

TEST_F(HandEdgeCases, ReleaseOfAPressThatBeganElsewhereIsNoClick) {
    long count = -1;
    mouse(container.root(), WM_LBUTTONUP, 0, 3, 3);
    EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
    EXPECT_EQ(count, 0) << "the demonstration set was loaded";
    mouse(container.root(), WM_LBUTTONDOWN, MK_LBUTTON, 1, 3);
    mouse(container.root(), WM_LBUTTONUP, 0, 1, 3);
    EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
    EXPECT_GT(count, 0);
}

TEST_F(HandEdgeCases, DemonstrationSetLeavesTheEndBufferToTheHost) {
    EXPECT_EQ(container.control->put_FreqEndBuffer(50.0), S_OK);
    mouse(container.root(), WM_LBUTTONDOWN, MK_LBUTTON, 1, 3);
    mouse(container.root(), WM_LBUTTONUP, 0, 1, 3);
    EXPECT_EQ(number(&_kvBandscope::get_FreqEndBuffer), 50.0);
}

TEST_F(HandEdgeCases, ViewAllShowsEverythingAndClearingItGoesBack) {
    fill();
    EXPECT_EQ(container.control->DrawByRange(440.0, 450.0), S_OK);
    const double minimum = minFreq();
    const double maximum = maxFreq();
    SendMessageW(viewAll(), BM_CLICK, 0, 0);
    pump();
    EXPECT_LT(minFreq(), 400.0);
    EXPECT_GT(maxFreq(), 460.0);
    SendMessageW(viewAll(), BM_CLICK, 0, 0);
    pump();
    expectRange(minimum, maximum);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange));
}

TEST_F(HandEdgeCases, OrderBoxLeavesNoChannelOfAClearedStore) {
    fill();
    EXPECT_EQ(container.control->ClearAllChnls(), S_OK);
    EXPECT_EQ(container.control->DrawInitialDisplay(), S_OK);
    SendMessageW(container.child(L"Button", L"Order"), BM_CLICK, 0, 0);
    const Picture picture = shown();
    EXPECT_EQ(picture.count(picture.at(0, 0), picture.all()), picture.width * picture.height);
}

TEST_F(HandEdgeCases, CenterButtonOnAFreshControlLeavesNoLineBehind) {
    SendMessageW(container.child(L"Button", L"Move cursor to center frequency"), BM_CLICK, 0, 0);
    pump();
    container.addTx({.freq = 50.0, .key = L"TX1"});
    EXPECT_TRUE(container.draw());
    const Picture before = shown();
    EXPECT_EQ(container.control->put_CursorVal(60.0), S_OK);
    EXPECT_EQ(changedColumns(before, shown()).size(), 1U);
}

TEST_F(HandEdgeCases, KnobsReadTheStepAndTheCenterThatAreDrawn) {
    const auto readOut = [](HWND knob) {
        ComPtr<IAccessible> object;
        EXPECT_EQ(AccessibleObjectFromWindow(knob, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                             reinterpret_cast<void**>(object.GetAddressOf())),
                  S_OK);
        Text value;
        EXPECT_EQ(object->get_accValue(Var(static_cast<int>(CHILDID_SELF)), value.put()), S_OK);
        return value.str();
    };
    EXPECT_EQ(readOut(gridKnob()), L"500K");
    fill();
    EXPECT_EQ(readOut(gridKnob()), L"5M");
    EXPECT_EQ(readOut(centerMover()), L"430.00000");
    EXPECT_EQ(container.control->put_FreqEndBuffer(0.0), S_OK);
    EXPECT_EQ(container.control->DrawByRange(400.0, 411.05), S_OK);
    EXPECT_EQ(readOut(gridKnob()), L"552.5K");
    // A stop that the hand chooses is the knob's own value again.
    key(gridKnob(), VK_HOME);
    EXPECT_EQ(readOut(gridKnob()), L"500K");
}

TEST_F(HandEdgeCases, RangeSetByAnEventInTheMiddleOfADrawingIsDrawnAsAWhole) {
    fill();
    container.host.onMessage = [this] { EXPECT_EQ(container.control->DrawByRange(395.0, 410.0), S_OK); };
    PostMessageW(container.host.get(), WM_APP, 0, 0);
    EXPECT_EQ(container.control->JustDrawIt(), S_OK);
    container.host.onMessage = nullptr;
    const Picture picture = shown();
    EXPECT_LT(maxFreq(), 440.0) << "the event ran";
    EXPECT_EQ(container.control->JustDrawIt(), S_OK);
    expectSame(shown(), picture);
}

TEST_F(HandEdgeCases, PanelOfAVeryTallWindowCollapsesWithTheLargestHeightThatTheEventHolds) {
    container.resize(800, 3000);
    rightClick(WM_RBUTTONDOWN);
    EXPECT_TRUE(isCollapsed());
    ASSERT_THAT(sink->ids(), ElementsAre(kChgHeight));
    EXPECT_THAT(sink->heard[0].arguments, ElementsAre(32767.0));
}

TEST_F(HandEdgeCases, KeyCTogglesThePanel) {
    fill();
    key(spectrum(), 'C');
    EXPECT_TRUE(isCollapsed());
    key(spectrum(), 'C');
    EXPECT_FALSE(isCollapsed());
}

TEST_F(HandEdgeCases, KeyBZoomsFromWhereItWasPressedToTheCursor) {
    fill();
    EXPECT_EQ(container.control->put_CursorVal(410.0), S_OK);
    key(spectrum(), 'B');
    EXPECT_EQ(container.control->put_CursorVal(440.0), S_OK);
    key(spectrum(), 'B');
    expectRange(410.0, 440.0);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

}  // namespace
}  // namespace kv::test
