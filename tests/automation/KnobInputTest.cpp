// The knobs of the center and the cursor in their real windows: values, picture and events.
#include <limits>

#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double kStep = 5.0;
constexpr double kNudge = kStep / 10.0;
// A place on the nudge knob's wheel, away from its arrows, and one detent of pixels.
constexpr int kWheelX = 57;
constexpr int kWheelY = 60;
constexpr int kDetent = 12;

class KnobInput : public UserInput {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(UserInput::SetUp());
        fill();
    }
    void setCursor(double value) const {
        EXPECT_EQ(container.control->put_CursorVal(value), S_OK);
        pump();
    }
    [[nodiscard]] HWND centerButton() const {
        // It shows a sign; its text is for screen readers.
        return container.child(L"Button", L"Move cursor to center frequency");
    }
};

TEST_F(KnobInput, TheWheelNudgesTheCenterInTheOppositeDirection) {
    wheel(centerMover(), 1);
    EXPECT_DOUBLE_EQ(center(), 430.0 - kNudge);
    expectRange(380.0 - kNudge, 480.0 - kNudge);
    wheel(centerMover(), -3);
    EXPECT_DOUBLE_EQ(center(), 430.0 + 2 * kNudge);
    expectRange(380.0 + 2 * kNudge, 480.0 + 2 * kNudge);
    // Each notch is a turn of its own.
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange, kChgFreqRange, kChgFreqRange));
}

TEST_F(KnobInput, ADragNudgesTheCenterInTheOppositeDirection) {
    const Picture before = shown();
    take(centerMover(), kWheelX, kWheelY);
    EXPECT_EQ(GetCapture(), centerMover());
    EXPECT_EQ(center(), 430.0);
    drag(centerMover(), kWheelX, kWheelY - kDetent);
    EXPECT_DOUBLE_EQ(center(), 430.0 - kNudge);
    EXPECT_NE(shown(), before);
    drag(centerMover(), kWheelX - 2 * kDetent, kWheelY - kDetent);
    EXPECT_DOUBLE_EQ(center(), 430.0 + kNudge);
    release(centerMover(), kWheelX - 2 * kDetent, kWheelY - kDetent);
    EXPECT_DOUBLE_EQ(center(), 430.0 + kNudge);
    EXPECT_EQ(GetCapture(), nullptr);
    expectRange(380.0 + kNudge, 480.0 + kNudge);
}

TEST_F(KnobInput, KeysNudgeTheCenterInTheOppositeDirection) {
    key(centerMover(), VK_RIGHT);
    EXPECT_DOUBLE_EQ(center(), 430.0 - kNudge);
    key(centerMover(), VK_UP);
    EXPECT_DOUBLE_EQ(center(), 430.0 - 2 * kNudge);
    key(centerMover(), VK_LEFT);
    key(centerMover(), VK_DOWN);
    EXPECT_DOUBLE_EQ(center(), 430.0);
    key(centerMover(), VK_PRIOR);
    EXPECT_DOUBLE_EQ(center(), 430.0 - 10 * kNudge);
    keyDown(centerMover(), VK_DOWN);
    keyDown(centerMover(), VK_DOWN);
    keyUp(centerMover(), VK_DOWN);
    EXPECT_DOUBLE_EQ(center(), 430.0 - 8 * kNudge);
    expectRange(380.0 - 8 * kNudge, 480.0 - 8 * kNudge);
}

TEST_F(KnobInput, WheelDragAndKeysNudgeTheCursorInTheSameDirection) {
    // After a full repaint the cursor has no position; it starts from the center.
    wheel(cursorMover(), 1);
    EXPECT_DOUBLE_EQ(cursor(), 430.0 + kNudge);
    wheel(cursorMover(), -2);
    EXPECT_DOUBLE_EQ(cursor(), 430.0 - kNudge);
    take(cursorMover(), kWheelX, kWheelY);
    drag(cursorMover(), kWheelX, kWheelY - 3 * kDetent);
    EXPECT_DOUBLE_EQ(cursor(), 430.0 + 2 * kNudge);
    release(cursorMover(), kWheelX, kWheelY - 3 * kDetent);
    key(cursorMover(), VK_LEFT);
    EXPECT_DOUBLE_EQ(cursor(), 430.0 + kNudge);
    key(cursorMover(), VK_UP);
    EXPECT_DOUBLE_EQ(cursor(), 430.0 + 2 * kNudge);
    EXPECT_EQ(center(), 430.0);
    expectRange(380.0, 480.0);
    EXPECT_THAT(sink->ids(), IsEmpty());
}

TEST_F(KnobInput, TheCursorLineIsOneColumnAndLeavesNoTrace) {
    const Picture without = shown();
    EXPECT_EQ(container.control->put_lCursorColor(0x000000FF), S_OK);
    setCursor(413.0);
    const Picture first = shown();
    const int column = columnOf(413.0);
    ASSERT_THAT(changedColumns(without, first), ElementsAre(column));
    // From the lowest to the highest power, in its own color over white.
    for (int y = 1; y < first.height - 1; ++y)
        ASSERT_NE(first.at(column, y), without.at(column, y)) << y;
    ASSERT_EQ(without.at(column, 10), 0x00FFFFFFU);
    EXPECT_EQ(first.at(column, 10), 0x000000FFU);
    // Over a channel, a grid line and the background, moved by program and by the user, and in another color.
    for (const double place : {400.5, 430.0, 459.5, 380.0, 480.0}) {
        setCursor(place);
        EXPECT_LE(changedColumns(without, shown()).size(), 1U) << place;
    }
    EXPECT_EQ(container.control->put_lCursorColor(0x0000FF00), S_OK);
    setCursor(444.0);
    wheel(cursorMover(), 3);
    key(cursorMover(), VK_PRIOR);
    key(cursorMover(), VK_NEXT);
    wheel(cursorMover(), -3);
    EXPECT_DOUBLE_EQ(cursor(), 444.0);
    EXPECT_THAT(changedColumns(without, shown()), ElementsAre(columnOf(444.0)));
    EXPECT_EQ(container.control->put_lCursorColor(0x000000FF), S_OK);
    setCursor(413.0);
    expectSame(shown(), first);
}

TEST_F(KnobInput, AClickOnItsButtonPutsTheCursorOnTheCenter) {
    const Picture without = shown();
    setCursor(413.0);
    wheel(centerMover(), -1);
    const double moved = center();
    SetFocus(nullptr);
    RECT area{};
    GetClientRect(centerButton(), &area);
    postClick(centerButton(), area.right / 2, area.bottom / 2);
    EXPECT_EQ(cursor(), moved);
    wheel(centerMover(), 1);
    const std::vector<int> columns = changedColumns(without, shown());
    EXPECT_THAT(columns, ElementsAre(columnOf(moved)));
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange)) << "those of the two nudges only";
}

TEST_F(KnobInput, TheKnobsLeaveTheFormItsKeys) {
    const auto wants = [](HWND knob, WPARAM code) {
        MSG message{};
        message.hwnd = knob;
        message.message = WM_KEYDOWN;
        message.wParam = code;
        const LRESULT answer = SendMessageW(knob, WM_GETDLGCODE, code, reinterpret_cast<LPARAM>(&message));
        return (answer & (DLGC_WANTALLKEYS | DLGC_WANTTAB)) != 0;
    };
    const auto active = container.as<IOleInPlaceActiveObject>();
    for (const HWND knob : {centerMover(), cursorMover(), gridKnob()}) {
        SetFocus(knob);
        for (const WPARAM code : {VK_TAB, VK_RETURN, VK_ESCAPE}) {
            EXPECT_FALSE(wants(knob, code)) << code;
            MSG message{};
            message.hwnd = knob;
            message.message = WM_KEYDOWN;
            message.wParam = code;
            // Tab moves through the control's parts before it leaves the control.
            if (code != VK_TAB) {
                EXPECT_EQ(active->TranslateAccelerator(&message), S_FALSE) << code;
            }
        }
        EXPECT_TRUE(wants(knob, VK_LEFT));
        keyDown(knob, VK_UP);
        EXPECT_TRUE(wants(knob, VK_ESCAPE));
        EXPECT_FALSE(wants(knob, VK_TAB));
        EXPECT_FALSE(wants(knob, VK_RETURN));
        keyUp(knob, VK_UP);
        EXPECT_FALSE(wants(knob, VK_ESCAPE));
    }
}

}  // namespace
}  // namespace kv::test
