// A box dragged on the spectrum's window, with the messages that a real mouse sends.
#include <algorithm>

#include "tests/automation/UserInput.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MouseDrag : public UserInput {
  protected:
    void SetUp() override {
        UserInput::SetUp();
        fill();
        sink->heard.clear();
        before = shown();
    }
    void send(UINT message, int x, WPARAM buttons, int y = 50) const {
        SendMessageW(spectrum(), message, buttons, MAKELPARAM(x, y));
    }
    void press(int x) const { send(WM_LBUTTONDOWN, x, MK_LBUTTON); }
    void move(int x) const { send(WM_MOUSEMOVE, x, MK_LBUTTON); }
    void release(int x) const { send(WM_LBUTTONUP, x, 0); }
    void drag(int from, int to) const {
        press(from);
        move(from);
        move(to);
        release(to);
        pump();
    }
    [[nodiscard]] double frequencyAt(int x) const { return 380.0 + x * 100.0 / before.width; }
    /// The columns whose middle pixel has changed since the start of the drag.
    [[nodiscard]] std::vector<int> changedColumns() const {
        const Picture picture = shown();
        std::vector<int> columns;
        for (int x = 0; x < picture.width; ++x)
            if (picture.at(x, picture.height / 2) != before.at(x, before.height / 2))
                columns.push_back(x);
        return columns;
    }
    Picture before;
};

TEST_F(MouseDrag, ZoomsToTheDraggedSpanAndRaisesChgFreqRange) {
    drag(100, 300);
    expectRange(frequencyAt(100), frequencyAt(300));
    EXPECT_NEAR(center(), frequencyAt(200), 1e-9);
    ASSERT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    EXPECT_THAT(sink->heard[0].arguments, ElementsAre(minFreq(), maxFreq()));
    EXPECT_NE(shown(), before);
}

TEST_F(MouseDrag, TheRubberBandIsShownAndTheMouseIsCaptured) {
    press(100);
    EXPECT_EQ(GetCapture(), spectrum());
    move(100);
    move(300);
    EXPECT_THAT(changedColumns(), ElementsAre(100, 300));
    move(200);
    EXPECT_THAT(changedColumns(), ElementsAre(100, 200));
    release(200);
    EXPECT_EQ(GetCapture(), nullptr);
    pump();
    expectRange(frequencyAt(100), frequencyAt(200));
}

TEST_F(MouseDrag, IsCanceledWhenAnotherWindowCapturesTheMouse) {
    press(100);
    move(100);
    move(300);
    SetCapture(container.host.get());
    EXPECT_EQ(shown(), before);
    ReleaseCapture();
    move(320);
    release(320);
    pump();
    EXPECT_EQ(shown(), before);
    expectRange(380.0, 480.0);
    drag(100, 300);
    expectRange(frequencyAt(100), frequencyAt(300));
}

TEST_F(MouseDrag, EscapeCancelsItAlsoInAHostWithDialogKeys) {
    press(100);
    EXPECT_EQ(GetFocus(), spectrum());
    move(100);
    move(300);
    MSG key{spectrum(), WM_KEYDOWN, VK_ESCAPE, 1, 0, {}};
    EXPECT_EQ(SendMessageW(spectrum(), WM_GETDLGCODE, VK_ESCAPE, reinterpret_cast<LPARAM>(&key)), DLGC_WANTMESSAGE);
    PostMessageW(spectrum(), WM_KEYDOWN, VK_ESCAPE, 1);
    pump();
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(SendMessageW(spectrum(), WM_GETDLGCODE, VK_ESCAPE, reinterpret_cast<LPARAM>(&key)), 0)
        << "outside a drag the key is the form's";
    move(320);
    release(320);
    pump();
    expectRange(380.0, 480.0);
    EXPECT_EQ(shown(), before);
}

TEST_F(MouseDrag, TheHostCanReleaseTheControlInTheEventOfTheZoom) {
    sink->onEvent = [&](DISPID) {
        container.as<IOleObject>()->Close(OLECLOSE_NOSAVE);
        container.control.Reset();
    };
    const HWND picture = spectrum();
    press(100);
    move(100);
    move(300);
    release(300);
    pump();
    EXPECT_FALSE(IsWindow(picture));
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

TEST_F(MouseDrag, ADoubleClickIsNoDrag) {
    send(WM_MOUSEMOVE, 100, 0);
    press(100);
    release(100);
    send(WM_LBUTTONDBLCLK, 100, MK_LBUTTON);
    release(100);
    pump();
    EXPECT_NEAR(center(), frequencyAt(100), 1e-9);
    EXPECT_NEAR(maxFreq() - minFreq(), 100.0, 1e-9);
    EXPECT_EQ(GetCapture(), nullptr);
}

/// Through the input queue of the system, like a real mouse.
TEST_F(MouseDrag, WorksWithTheSystemsMouse) {
    RECT place{};
    GetWindowRect(spectrum(), &place);
    const auto at = [&](int x, DWORD what) {
        const int screenX = place.left + x;
        const int screenY = place.top + 60;
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dx = (screenX * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
        input.mi.dy = (screenY * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
        input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | what;
        EXPECT_EQ(SendInput(1, &input, sizeof input), 1U);
        pump();
    };
    at(90, 0);
    at(100, MOUSEEVENTF_LEFTDOWN);
    at(110, 0);
    at(200, 0);
    at(300, MOUSEEVENTF_LEFTUP);
    for (int i = 0; i < 100 && sink->heard.empty(); ++i) {
        Sleep(10);
        pump();
    }
    ASSERT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    // The drag begins at its first move with the button down, which may be the press's own.
    EXPECT_GE(minFreq(), frequencyAt(99));
    EXPECT_LE(minFreq(), frequencyAt(111));
    EXPECT_NEAR(maxFreq(), frequencyAt(300), 100.0 / before.width);
}

/// Moves that are posted while no message is handled, so that they are next to each other in the queue.
class QueuedMoves : public MouseDrag {
  protected:
    void post(UINT message, int x, WPARAM buttons = 0) const {
        ASSERT_TRUE(PostMessageW(spectrum(), message, buttons, MAKELPARAM(x, 50)));
    }
    /// The read-outs of the pointer, one after the other, while the posted messages are handled one by one.
    [[nodiscard]] std::vector<std::wstring> readOuts() const {
        std::vector<std::wstring> all;
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            DispatchMessageW(&message);
            showCaptions();
            const std::wstring now = readOut();
            if (all.empty() || now != all.back())
                all.push_back(now);
        }
        return all;
    }
    /// The control updates its captions by a posted message, which would otherwise come after all the moves.
    static void showCaptions() {
        MSG message{};
        while (PeekMessageW(&message, nullptr, WM_APP, 0xBFFF, PM_REMOVE))
            DispatchMessageW(&message);
    }
    /// The frequency under the pointer.
    [[nodiscard]] std::wstring readOut() const {
        std::wstring found;
        EnumChildWindows(container.host.get(), &findReadOut, reinterpret_cast<LPARAM>(&found));
        return found;
    }
    /// Goes on until a window shows a frequency.
    static BOOL CALLBACK findReadOut(HWND window, LPARAM found) {
        const std::wstring text = windowText(window);
        if (!text.ends_with(L" MHz"))
            return TRUE;
        *reinterpret_cast<std::wstring*>(found) = text;
        return FALSE;
    }
    std::wstring at(int x) const {
        post(WM_MOUSEMOVE, x);
        return readOuts().back();
    }
};

TEST_F(QueuedMoves, OnlyTheLastOfSeveralMovesIsReported) {
    const std::wstring last = at(120);
    at(20);
    for (const int x : {60, 80, 100, 120})
        post(WM_MOUSEMOVE, x);
    EXPECT_THAT(readOuts(), ElementsAre(last));
}

TEST_F(QueuedMoves, AButtonBetweenTwoMovesSeparatesThem) {
    const std::wstring first = at(80);
    const std::wstring second = at(120);
    at(20);
    post(WM_MOUSEMOVE, 60);
    post(WM_MOUSEMOVE, 80);
    post(WM_RBUTTONDOWN, 80, MK_RBUTTON);
    post(WM_RBUTTONUP, 80);
    post(WM_MOUSEMOVE, 100);
    post(WM_MOUSEMOVE, 120);
    EXPECT_THAT(readOuts(), ElementsAre(first, second));
}

TEST_F(QueuedMoves, AKeyBetweenTwoMovesSeparatesThem) {
    const std::wstring first = at(60);
    const std::wstring second = at(80);
    at(20);
    post(WM_MOUSEMOVE, 60);
    ASSERT_TRUE(PostMessageW(spectrum(), WM_KEYUP, VK_F5, static_cast<LPARAM>(0xC0000001)));
    post(WM_MOUSEMOVE, 80);
    EXPECT_THAT(readOuts(), ElementsAre(first, second));
}

TEST_F(QueuedMoves, ADragOfQueuedMessagesZoomsFromItsFirstMoveToItsRelease) {
    post(WM_MOUSEMOVE, 60);
    post(WM_LBUTTONDOWN, 100, MK_LBUTTON);
    for (const int x : {100, 150, 200, 300})
        post(WM_MOUSEMOVE, x, MK_LBUTTON);
    post(WM_LBUTTONUP, 300);
    pump();
    expectRange(frequencyAt(100), frequencyAt(300));
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
}

}  // namespace
}  // namespace kv::test
