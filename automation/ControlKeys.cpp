// Keyboard and focus: what the container hears of them and which keys the control takes.
#include <olectl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "automation/BandscopeControl.h"
#include "win32/WindowDpi.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

bool isKey(UINT message) {
    return message >= WM_KEYFIRST && message <= WM_KEYLAST;
}

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

/// Tab moves the focus at this moment: the key is down, and not in order to change the window or the page. Containers
/// move the focus into the control without a word about the key that made them do it.
bool isTabDown() {
    return GetKeyState(VK_TAB) < 0 && GetKeyState(VK_MENU) >= 0 && GetKeyState(VK_CONTROL) >= 0;
}

/// What a window takes, as it tells a dialog.
LRESULT wantsOf(HWND window, const MSG& message) {
    return SendMessageW(window, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
}

/// A window that takes all keys says so for those it has a use for at that moment: a list that hangs down and a knob
/// that is being turned take Escape, nothing else does.
bool wantsKey(HWND focus, const MSG& message) {
    // The letters of a list and of a text must not reach the access keys of the form.
    if (message.message == WM_CHAR)
        return (wantsOf(focus, message) & DLGC_WANTCHARS) != 0;
    if (message.message != WM_KEYDOWN)
        return false;
    const LRESULT wants = wantsOf(focus, message);
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
    const bool byTab = (message && message->message == WM_KEYDOWN && message->wParam == VK_TAB) || isTabDown();
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
    // The next Tab begins a new round. The key may have been released by the time the container gives the focus back.
    if (std::exchange(tabLeaves_, false) || isTabDown())
        lastFocus_ = nullptr;
    tellFocus(false);
}

/// A disabled window keeps the focus of the windows inside it, and would go on obeying keys.
void BandscopeControl::enabledChanged(bool enabled) noexcept {
    if (!enabled && holdsFocus())
        SetFocus(GetParent(rootWindow()));
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
    // Keys that were on their way when the control was disabled.
    if (isKey(message) && rootWindow() && !IsWindowEnabled(rootWindow()))
        return 0;
    if (message == WM_KILLFOCUS && window != rootWindow())
        lastFocus_ = window;
    if (message == WM_PAINT || message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED)
        noteLooks();
    const LRESULT result = MessageWatch::pass(window, message, wParam, lParam);
    if (message == WM_SETFOCUS)
        focusCame(window);
    else if (message == WM_KILLFOCUS)
        focusLeft(reinterpret_cast<HWND>(wParam));
    else if (isPress(message) && uiActive_ && !holdsFocus())
        takeFocus(nullptr);
    else if (message == WM_ENABLE && window == rootWindow())
        enabledChanged(wParam != FALSE);
    else if (message == kAskForRoom && window == rootWindow())
        askForRoom();
    else if (window == rootWindow() && (message == win32::kDpiChangedAfterParent || message == WM_WINDOWPOSCHANGED))
        followDpi();
    else if (message == kRedraw && window == rootWindow())
        redrawPictures();
    return result;
}

/// First the control's own use of a key, then the container's: a form would take the arrow keys to its next control.
HRESULT BandscopeControl::TranslateAccelerator(LPMSG message) {
    if (!message)
        return E_POINTER;
    if (translating_ || !isKey(message->message) || !holdsFocus() || !IsWindowEnabled(rootWindow()))
        return S_FALSE;
    const ComPtr<IOleObject> alive(this);
    const Work work(*this, true);
    const HWND focus = GetFocus();
    tabLeaves_ = false;
    if (wantsKey(focus, *message)) {
        MSG passed = *message;
        // For a window that takes no letters, one would stay in the queue and be the form's access key.
        if (message->message == WM_KEYDOWN && (wantsOf(focus, *message) & DLGC_WANTCHARS))
            ::TranslateMessage(&passed);
        DispatchMessageW(&passed);
        return S_OK;
    }
    // Between the control's own parts the Tab key is not the container's, which would move the focus out at once.
    if (isPlainTab(*message)) {
        if (moveFocus(GetKeyState(VK_SHIFT) < 0))
            return S_OK;
        tabLeaves_ = true;
    }
    ComPtr<IOleControlSite> site;
    const ComPtr<IOleClientSite> clientSite = site_;
    if (!clientSite || FAILED(clientSite.As(&site)))
        return S_FALSE;
    // Some containers answer by asking the active object, which is this one.
    translating_ = true;
    const HRESULT answer = site->TranslateAccelerator(message, keyModifiers());
    translating_ = false;
    return answer;
}

}  // namespace kv::automation
