// Input in a knob's window.
#include <windowsx.h>

#include "win32/KeyState.h"
#include "win32/KnobWindow.h"

namespace kv::win32 {

using turndial::Key;
using turndial::KnobBase;

namespace {

Key keyOf(WPARAM code) {
    switch (code) {
        case VK_LEFT:
            return Key::Left;
        case VK_RIGHT:
            return Key::Right;
        case VK_UP:
            return Key::Up;
        case VK_DOWN:
            return Key::Down;
        case VK_PRIOR:
            return Key::PageUp;
        case VK_NEXT:
            return Key::PageDown;
        case VK_HOME:
            return Key::Home;
        case VK_END:
            return Key::End;
        case VK_ESCAPE:
            return Key::Escape;
        case VK_TAB:
            return Key::Tab;
        case VK_RETURN:
            return Key::Enter;
        default:
            return Key::Other;
    }
}

turndial::Modifiers presentModifiers() {
    return {isDown(VK_CONTROL)};
}

}  // namespace

/// Captures the mouse exactly as long as the user holds the knob with it.
void KnobWindow::followHold(HWND window, const KnobBase& knob) {
    if (knob.holdsMouse() && GetCapture() != window)
        SetCapture(window);
    else if (!knob.holdsMouse() && GetCapture() == window)
        ReleaseCapture();
}

/// Arrow keys always; Escape and other keys that turning uses while something is being turned. Tab and Enter are left
/// to the form.
LRESULT KnobWindow::dialogCode(LPARAM lParam) const {
    const auto* asked = reinterpret_cast<const MSG*>(lParam);
    const bool wanted = asked && (asked->message == WM_KEYDOWN || asked->message == WM_KEYUP)
                            ? knob_.wantsKey(keyOf(asked->wParam))
                            : !asked && knob_.wantsKey(Key::Escape);
    return DLGC_WANTARROWS | (wanted ? DLGC_WANTALLKEYS : 0);
}

void KnobWindow::pointerMoved(HWND window) {
    if (tracking_)
        return;
    TRACKMOUSEEVENT track{};
    track.cbSize = sizeof track;
    track.dwFlags = TME_LEAVE;
    track.hwndTrack = window;
    tracking_ = TrackMouseEvent(&track) != 0;
    knob_.hover(true);
}

bool KnobWindow::handleMouse(UINT message, LPARAM lParam) {
    const HWND window = window_;
    KnobBase& knob = knob_;
    const int x = GET_X_LPARAM(lParam);
    const int y = GET_Y_LPARAM(lParam);
    const turndial::Modifiers modifiers = presentModifiers();
    switch (message) {
        case WM_MOUSEMOVE:
            pointerMoved(window);
            knob.mouseMove(x, y, modifiers);
            return true;
        case WM_MOUSELEAVE:
            tracking_ = false;
            knob.hover(false);
            return true;
        case WM_LBUTTONDOWN: {
            const std::shared_ptr<bool> alive = alive_;
            SetFocus(window);
            // The host may have destroyed the window when the focus arrived.
            if (!*alive || !IsWindow(window))
                return true;
            // This must happen before the knob raises events, so that the release is handled whatever the program does
            // in them.
            SetCapture(window);
            knob.mouseDown(x, y, modifiers);
            return true;
        }
        case WM_LBUTTONUP:
            knob.mouseUp(x, y, modifiers);
            return true;
        case WM_RBUTTONDOWN:
            if (!knob.holdsMouse())
                return false;
            knob.cancel();
            return true;
        case WM_CAPTURECHANGED:
        case WM_CANCELMODE:
            knob.captureLost();
            return true;
        default:
            return false;
    }
}

bool KnobWindow::handleInput(UINT message, WPARAM wParam, LPARAM lParam) {
    // After the first call into the knob this object may not exist any more, so only these variables are used.
    const HWND window = window_;
    KnobBase& knob = knob_;
    switch (message) {
        case WM_MOUSEWHEEL:
            knob.wheel(GET_WHEEL_DELTA_WPARAM(wParam), presentModifiers());
            break;
        case WM_KEYDOWN:
            if (!knob.keyDown(keyOf(wParam), presentModifiers()))
                return false;
            break;
        case WM_KEYUP:
            knob.keyUp(keyOf(wParam));
            break;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            knob.focus(message == WM_SETFOCUS);
            break;
        case WM_SHOWWINDOW:
            if (wParam)
                return false;
            knob.captureLost();
            break;
        default:
            if (!handleMouse(message, lParam))
                return false;
            break;
    }
    if (IsWindow(window))
        followHold(window, knob);
    return true;
}

}  // namespace kv::win32
