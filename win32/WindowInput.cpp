// Mouse and keyboard in the windows of widgets.
#include <windowsx.h>

#include <utility>

#include "formenv/ShiftKeys.h"
#include "win32/KeyState.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Widget;

namespace shift_key = formenv::shift_key;

namespace {

constexpr int kMostMoves = 1000;

/// The mouse buttons that are down, as the sum of their numbers in events.
int buttonsDown(WPARAM keys) {
    return ((keys & MK_LBUTTON) ? formenv::mouse_button::kLeft : 0) |
           ((keys & MK_RBUTTON) ? formenv::mouse_button::kRight : 0) |
           ((keys & MK_MBUTTON) ? formenv::mouse_button::kMiddle : 0);
}

/// The shift state of mouse events: 1 Shift, 2 Ctrl, 4 Alt, added up. Alt is left out of moves: asking for its state
/// takes as long as everything else about a short move.
int shiftStateOf(UINT message, WPARAM keys) {
    const bool isAltDown = message != WM_MOUSEMOVE && isDown(VK_MENU);
    return ((keys & MK_SHIFT) ? 1 : 0) | ((keys & MK_CONTROL) ? 2 : 0) | (isAltDown ? 4 : 0);
}

bool isSameMove(const MSG& next, HWND window, WPARAM keys) {
    return next.message == WM_MOUSEMOVE && next.hwnd == window && next.wParam == keys;
}

/// The position of the last of the moves that are next in the queue, one directly after the other, with the same keys.
/// Those before it are already outdated. They are removed, because a handler may take longer than the mouse takes to
/// send the next one.
LPARAM latestMove(HWND window, WPARAM keys, LPARAM at) {
    MSG next{};
    // A window that is posted moves without an end gets one of them in a while.
    for (int i = 0; i < kMostMoves; ++i) {
        if (!PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE) || !isSameMove(next, window, keys) ||
            !PeekMessageW(&next, window, WM_MOUSEMOVE, WM_MOUSEMOVE, PM_REMOVE))
            break;
        // No filter holds this one back, and a message that was sent meanwhile may have posted it.
        if (next.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(next.wParam));
            break;
        }
        at = next.lParam;
    }
    return at;
}

}  // namespace

void WindowTree::holdMouse(HWND window) {
    holder_ = window;
    SetCapture(window);
}

void WindowTree::releaseMouse(HWND window) {
    holder_ = nullptr;
    if (GetCapture() == window)
        ReleaseCapture();
}

/// The capture was lost. That also happens when the button is released, which is not reported here.
void WindowTree::mouseLost(WidgetWindow& target, HWND newOwner) {
    if (holder_ != target.window() || newOwner == target.window())
        return;
    holder_ = nullptr;
    if (const formenv::Handler handler = target.widget().onMouseLost)
        handler();
}

bool WindowTree::handleKey(Widget& widget, WPARAM key) {
    const formenv::KeyHandler handler = widget.onKeyDown;
    return handler && handler(static_cast<int>(key), shiftState());
}

bool WindowTree::handleAltKey(Widget& widget, WPARAM key, LPARAM flags) {
    const std::function<bool(int)> wants = widget.wantsAltKey;
    const formenv::KeyHandler handler = widget.onKeyDown;
    constexpr LPARAM kAltIsDown = 1 << 29;
    return (flags & kAltIsDown) != 0 && wants && wants(static_cast<int>(key)) && handler &&
           handler(static_cast<int>(key), shiftState() | shift_key::kAlt);
}

// Some systems send it to the window under the pointer, which may not have the focus, others to the window with the
// focus, which may not be under the pointer. The picture uses it only when it is both.
bool WindowTree::handleWheel(WidgetWindow& target, WPARAM wParam, LPARAM lParam) {
    const HWND window = target.window();
    POINT at{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT client{};
    const auto handler = target.widget().onWheel;
    if (!handler || GetFocus() != window || !ScreenToClient(window, &at) || !GetClientRect(window, &client) ||
        !PtInRect(&client, at))
        return false;
    const MousePosition position = target.kind().mousePosition(target.widget(), at, dpi());
    return handler(GET_WHEEL_DELTA_WPARAM(wParam), shiftStateOf(WM_MOUSEWHEEL, GET_KEYSTATE_WPARAM(wParam)),
                   position.x);
}

bool WindowTree::handleNavigationButton(Widget& widget, WPARAM wParam) {
    const auto handler = GET_XBUTTON_WPARAM(wParam) == XBUTTON1 ? widget.onBack : widget.onForward;
    return handler && handler();
}

bool WindowTree::handleMouse(WidgetWindow& target, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message < WM_MOUSEFIRST || message > WM_MBUTTONDBLCLK)
        return false;
    Widget& widget = target.widget();
    const HWND window = target.window();
    // A drag begins at the first move with its button, which therefore counts also when others follow.
    const bool beginsDrag = buttonsDown(wParam) != 0 && std::exchange(movedWith_, wParam) != wParam;
    if (message != WM_MOUSEMOVE) {
        movedWith_ = 0;
    } else if (widget.onMouseMove && !beginsDrag) {
        lParam = latestMove(window, wParam, lParam);
        // Looking into the queue delivers sent messages, which may destroy the window.
        if (find(window) != &target)
            return true;
    }
    const int px = GET_X_LPARAM(lParam);
    const int py = GET_Y_LPARAM(lParam);
    const MousePosition at = target.kind().mousePosition(widget, {px, py}, dpi());
    const int shift = shiftStateOf(message, wParam);
    // The handlers are copied, because one of them may destroy the windows.
    const auto call = [&](const formenv::MouseHandler& handler, int button) {
        if (const formenv::MouseHandler copy = handler)
            copy(button, shift, at.x, at.y);
    };
    switch (message) {
        case WM_MOUSEMOVE:
            call(widget.onMouseMove, buttonsDown(wParam));
            return true;
        case WM_LBUTTONDOWN:
            if (widget.takesFocus)
                SetFocus(window);
            holdMouse(window);
            call(widget.onMouseDown, formenv::mouse_button::kLeft);
            return true;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
            // The second press of a double-click is a press like the first one.
            call(widget.onMouseDown, formenv::mouse_button::kRight);
            return true;
        case WM_LBUTTONUP: {
            // If the press began in another window, only its end arrives here. That is not a click.
            const bool pressedHere = holder_ == window;
            releaseMouse(window);
            RECT client{};
            GetClientRect(window, &client);
            const formenv::Handler click =
                pressedHere && PtInRect(&client, {px, py}) ? widget.onClick : formenv::Handler();
            call(widget.onMouseUp, formenv::mouse_button::kLeft);
            if (click)
                click();
            return true;
        }
        case WM_RBUTTONUP:
            call(widget.onMouseUp, formenv::mouse_button::kRight);
            return true;
        case WM_LBUTTONDBLCLK:
            holdMouse(window);
            call(widget.onDblClick, formenv::mouse_button::kLeft);
            return true;
        default:
            return false;
    }
}

}  // namespace kv::win32
