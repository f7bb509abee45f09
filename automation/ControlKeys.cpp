// Keyboard and focus: what the container is told, and which keys the control handles.
#include <olectl.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "automation/BandscopeControl.h"
#include "win32/KeyState.h"
#include "win32/WindowDpi.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;
using win32::isDown;

namespace {

bool isKey(UINT message) {
    return message >= WM_KEYFIRST && message <= WM_KEYLAST;
}

bool isPress(UINT message) {
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_MBUTTONDOWN;
}

/// The windows that Tab moves through, in their order.
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

bool isPlainTab(const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam == VK_TAB && !isDown(VK_CONTROL) && !isDown(VK_MENU);
}

/// True if Tab is moving the focus: the key is down without the modifiers that switch windows or pages. Containers move
/// the focus into the control without telling which key caused it.
bool isTabDown() {
    return isDown(VK_TAB) && !isDown(VK_MENU) && !isDown(VK_CONTROL);
}

/// The keys that a window wants, as it reports them to dialogs.
LRESULT wantsOf(HWND window, const MSG& message) {
    return SendMessageW(window, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message));
}

/// A window that wants all keys also reports which keys it needs at the moment: an open drop-down list and a knob that
/// is being turned want Escape, all others do not.
bool wantsKey(HWND focus, const MSG& message) {
    // Characters that are typed into a list or a text must not work as access keys of the form.
    if (message.message == WM_CHAR)
        return (wantsOf(focus, message) & DLGC_WANTCHARS) != 0;
    // Other keys together with Alt open the form's menus.
    if (message.message == WM_SYSKEYDOWN && (message.wParam == VK_LEFT || message.wParam == VK_RIGHT))
        return (wantsOf(focus, message) & DLGC_WANTMESSAGE) != 0;
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

/// Moves the focus to the next or the previous tab stop. False at the ends, where the focus leaves the control.
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

/// Moves the focus into the control: to the end from which Tab comes, otherwise to the window that had it last.
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
            SetFocus(byTab && isDown(VK_SHIFT) ? stops.back() : stops.front());
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
    // The control's own window handles no keys.
    if (window == rootWindow() && GetFocus() == window && !tabStops(window).empty())
        takeFocus(nullptr);
}

void BandscopeControl::focusLeft(HWND to) noexcept {
    const HWND root = rootWindow();
    if (!root || (to && (to == root || IsChild(root, to))))
        return;
    // The next Tab starts again. The key may have been released before the container returns the focus.
    if (std::exchange(tabLeaves_, false) || isTabDown())
        lastFocus_ = nullptr;
    tellFocus(false);
}

/// A disabled window keeps the focus of the windows inside it, which would still handle keys.
void BandscopeControl::enabledChanged(bool enabled) noexcept {
    if (!enabled && holdsFocus())
        SetFocus(GetParent(rootWindow()));
}

LRESULT BandscopeControl::watched(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const ComPtr<IOleObject> alive(this);
    const Work work(*this, true);
    // The container may deactivate the control when it is notified of the activation. Then the click is ignored.
    if (isPress(message) && inPlaceActive_ && !uiActive_) {
        activateUi();
        if (!IsWindow(window))
            return 0;
    }
    // These keys were already queued when the control was disabled.
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

/// The control handles a key first and the container second, because a form would use the arrow keys to move to its
/// next control.
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
        // If the window handles no characters, a character would stay in the queue and be taken as an access key of the
        // form.
        if (message->message == WM_KEYDOWN && (wantsOf(focus, *message) & DLGC_WANTCHARS))
            ::TranslateMessage(&passed);
        DispatchMessageW(&passed);
        return S_OK;
    }
    // The control handles Tab itself while there is another part to move to. If the container saw Tab first, it would
    // move the focus out of the control at once.
    if (isPlainTab(*message)) {
        if (moveFocus(isDown(VK_SHIFT)))
            return S_OK;
        tabLeaves_ = true;
    }
    ComPtr<IOleControlSite> site;
    const ComPtr<IOleClientSite> clientSite = site_;
    if (!clientSite || FAILED(clientSite.As(&site)))
        return S_FALSE;
    // Some containers ask the active object in turn, which is this one.
    translating_ = true;
    const HRESULT answer = site->TranslateAccelerator(message, static_cast<DWORD>(win32::shiftState()));
    translating_ = false;
    return answer;
}

}  // namespace kv::automation
