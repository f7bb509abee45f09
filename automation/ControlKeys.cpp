// Keyboard and focus: what the container hears of them and which keys the control takes.
#include <olectl.h>

#include <algorithm>
#include <vector>

#include "automation/BandscopeControl.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

bool isPress(UINT message) {
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN;
}

/// The windows that Tab goes through, in its order.
void collectTabStops(HWND parent, std::vector<HWND>& stops) {
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const auto style = static_cast<DWORD>(GetWindowLongPtrW(child, GWL_STYLE));
        if (!(style & WS_VISIBLE) || (style & WS_DISABLED))
            continue;
        if (style & WS_TABSTOP)
            stops.push_back(child);
        else
            collectTabStops(child, stops);
    }
}

std::vector<HWND> tabStops(HWND root) {
    std::vector<HWND> stops;
    if (root)
        collectTabStops(root, stops);
    return stops;
}

DWORD keyModifiers() {
    constexpr DWORD kShift = 1;
    constexpr DWORD kControl = 2;
    constexpr DWORD kAlt = 4;
    return (GetKeyState(VK_SHIFT) < 0 ? kShift : 0) | (GetKeyState(VK_CONTROL) < 0 ? kControl : 0) |
           (GetKeyState(VK_MENU) < 0 ? kAlt : 0);
}

bool isPlainTab(const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) >= 0 &&
           GetKeyState(VK_MENU) >= 0;
}

/// Asks the window as a dialog would. A window that takes all keys says so for those it has a use for at that moment:
/// a list that hangs down and a knob that is being turned take Escape, nothing else does.
bool wantsKey(HWND focus, const MSG& message) {
    const LRESULT wants = SendMessageW(focus, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
    if (wants & DLGC_WANTALLKEYS)
        return true;
    switch (message.wParam) {
        case VK_LEFT:
        case VK_RIGHT:
        case VK_UP:
        case VK_DOWN:
            return (wants & DLGC_WANTARROWS) != 0;
        case VK_TAB:
            return (wants & DLGC_WANTTAB) != 0;
        default:
            return false;
    }
}

}  // namespace

bool BandscopeControl::holdsFocus() const noexcept {
    const HWND root = rootWindow();
    const HWND focus = GetFocus();
    return root && focus && (focus == root || IsChild(root, focus));
}

/// To the next or the last tab stop; false at the ends, where the focus leaves the control.
bool BandscopeControl::moveFocus(bool back) noexcept {
    try {
        const std::vector<HWND> stops = tabStops(rootWindow());
        const HWND focus = GetFocus();
        const auto here =
            std::find_if(stops.begin(), stops.end(), [&](HWND stop) { return stop == focus || IsChild(stop, focus); });
        if (stops.empty() || here == (back ? stops.begin() : stops.end() - 1))
            return false;
        if (here == stops.end())
            SetFocus(back ? stops.back() : stops.front());
        else
            SetFocus(back ? *(here - 1) : *(here + 1));
        return true;
    } catch (...) {
        return false;
    }
}

/// Into the control: to the end that Tab comes from, else to where the focus was before.
void BandscopeControl::takeFocus(const MSG* message) noexcept {
    const HWND root = rootWindow();
    if (!root || !IsWindowEnabled(root) || (holdsFocus() && GetFocus() != root))
        return;
    const bool byTab = message && message->message == WM_KEYDOWN && message->wParam == VK_TAB;
    if (!byTab && lastFocus_ && IsChild(root, lastFocus_) && IsWindowVisible(lastFocus_) &&
        IsWindowEnabled(lastFocus_)) {
        SetFocus(lastFocus_);
        return;
    }
    try {
        const std::vector<HWND> stops = tabStops(root);
        if (stops.empty())
            SetFocus(root);
        else
            SetFocus(byTab && GetKeyState(VK_SHIFT) < 0 ? stops.back() : stops.front());
    } catch (...) {
        SetFocus(root);
    }
}

void BandscopeControl::tellFocus(bool has) noexcept {
    if (hasFocus_ == has || !inPlaceActive_)
        return;
    hasFocus_ = has;
    ComPtr<IOleControlSite> site;
    const ComPtr<IOleClientSite> clientSite = site_;
    if (clientSite && SUCCEEDED(clientSite.As(&site)))
        site->OnFocus(has);
}

void BandscopeControl::focusCame(HWND window) noexcept {
    if (!inPlaceActive_)
        return;
    activateUi();
    if (!inPlaceActive_ || !holdsFocus())
        return;
    tellFocus(true);
    // The control's own window has no use for keys.
    if (window == rootWindow() && GetFocus() == window && !tabStops(window).empty())
        takeFocus(nullptr);
}

void BandscopeControl::focusLeft(HWND to) noexcept {
    const HWND root = rootWindow();
    if (!root || (to && (to == root || IsChild(root, to))))
        return;
    tellFocus(false);
}

LRESULT BandscopeControl::watched(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const ComPtr<IOleObject> alive(this);
    const Work work(*this, true);
    // The container may take the control down when it hears of the activation: then nothing was clicked any more.
    if (isPress(message) && inPlaceActive_ && !uiActive_) {
        activateUi();
        if (!IsWindow(window))
            return 0;
    }
    if (message == WM_KILLFOCUS && window != rootWindow())
        lastFocus_ = window;
    const LRESULT result = MessageWatch::pass(window, message, wParam, lParam);
    if (message == WM_SETFOCUS)
        focusCame(window);
    else if (message == WM_KILLFOCUS)
        focusLeft(reinterpret_cast<HWND>(wParam));
    else if (isPress(message) && uiActive_ && !holdsFocus())
        takeFocus(nullptr);
    else if (message == kAskForRoom && window == rootWindow())
        askForRoom();
    return result;
}

HRESULT BandscopeControl::TranslateAccelerator(LPMSG message) {
    if (!message)
        return E_POINTER;
    if (translating_ || message->message < WM_KEYFIRST || message->message > WM_KEYLAST || !holdsFocus())
        return S_FALSE;
    const ComPtr<IOleObject> alive(this);
    const Work work(*this, true);
    // Between the control's own parts Tab is nobody else's business; a container would take it to leave at once.
    if (isPlainTab(*message) && !wantsKey(GetFocus(), *message) && moveFocus(GetKeyState(VK_SHIFT) < 0))
        return S_OK;
    ComPtr<IOleControlSite> site;
    const ComPtr<IOleClientSite> clientSite = site_;
    if (clientSite && SUCCEEDED(clientSite.As(&site))) {
        // Some containers answer by asking the active object, which is this one.
        translating_ = true;
        const HRESULT taken = site->TranslateAccelerator(message, keyModifiers());
        translating_ = false;
        if (taken == S_OK)
            return S_OK;
    }
    // The container may have done anything meanwhile.
    if (message->message != WM_KEYDOWN || !holdsFocus() || !wantsKey(GetFocus(), *message))
        return S_FALSE;
    MSG passed = *message;
    ::TranslateMessage(&passed);
    DispatchMessageW(&passed);
    return S_OK;
}

}  // namespace kv::automation
