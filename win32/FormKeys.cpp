#include "win32/FormKeys.h"

#include <algorithm>
#include <vector>

#include "util/Text.h"
#include "win32/KeyState.h"
#include "win32/WindowTree.h"

namespace kv::win32 {

using formenv::Widget;

namespace {

constexpr WPARAM kSelectAll = 1;  // the character of Ctrl+A
constexpr WPARAM kEscape = 27;

/// The controls that can take the focus now, in the order of the Tab key.
void collectStops(const Widget& parent, std::vector<WidgetWindow*>& stops) {
    for (Widget* child : parent.children()) {
        if (!child->visible() || !child->enabled())
            continue;
        auto* window = dynamic_cast<WidgetWindow*>(child->peer());
        if (window && isTabStop(*child))
            stops.push_back(window);
        collectStops(*child, stops);
    }
}

std::vector<WidgetWindow*> stopsOf(const formenv::Form& form) {
    std::vector<WidgetWindow*> stops;
    collectStops(form, stops);
    return stops;
}

WidgetWindow* stopAt(const std::vector<WidgetWindow*>& stops, HWND window) {
    const auto found =
        std::find_if(stops.begin(), stops.end(), [=](const WidgetWindow* stop) { return stop->window() == window; });
    return found == stops.end() ? nullptr : *found;
}

void showCues(const formenv::Form& form, WORD cues) {
    SendMessageW(reinterpret_cast<HWND>(form.hWnd()), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, cues), 0);
}

void moveFocus(const formenv::Form& form, HWND from, bool back) {
    const std::vector<WidgetWindow*> stops = stopsOf(form);
    if (stops.empty())
        return;
    const std::size_t count = stops.size();
    std::size_t next = back ? count - 1 : 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (stops[i]->window() == from)
            next = (i + (back ? count - 1 : 1)) % count;
    }
    showCues(form, UISF_HIDEFOCUS);
    SetFocus(stops[next]->window());
}

/// The form may not exist afterwards.
void press(WidgetWindow& target) {
    const HWND window = target.window();
    SetFocus(window);
    target.kind().pressed(window);
    SendMessageW(GetParent(window), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window), BN_CLICKED),
                 reinterpret_cast<LPARAM>(window));
}

bool pressByAccessKey(const formenv::Form& form, wchar_t character) {
    const wchar_t key = util::upperCase(character);
    for (WidgetWindow* stop : stopsOf(form)) {
        if (stop->kind().hasAccessKey() && formenv::accessKey(stop->widget().caption()) == key) {
            press(*stop);
            return true;
        }
    }
    return false;
}

std::optional<LRESULT> keyDown(formenv::Form& form, HWND window, WPARAM key) {
    const int shift = shiftState();
    if (form.keyPressed(static_cast<int>(key), shift))
        return 0;
    WidgetWindow* const control = stopAt(stopsOf(form), window);
    const bool isText = control && control->kind().isText();
    const bool withCtrl = (shift & 6) == 2;
    if (key == VK_TAB) {
        // Tab moves the focus, so only Ctrl+Tab can enter a tab into a text.
        if (withCtrl && control && control->kind().insertsTab(control->widget()))
            SendMessageW(window, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\t"));
        else
            moveFocus(form, window, (shift & 1) != 0);
        return 0;
    }
    if (key == VK_RETURN && control && control->kind().pressedByReturn()) {
        press(*control);
        return 0;
    }
    if (key == 'A' && withCtrl && isText) {
        SendMessageW(window, EM_SETSEL, 0, -1);
        return 0;
    }
    return std::nullopt;
}

/// The characters of keys that have been handled.
std::optional<LRESULT> character(const formenv::Form& form, HWND window, WPARAM code) {
    if (code == L'\t' || code == kEscape)
        return 0;
    if (code != kSelectAll)
        return std::nullopt;
    const WidgetWindow* control = stopAt(stopsOf(form), window);
    if (control && control->kind().isText())
        SendMessageW(window, EM_SETSEL, 0, -1);
    return 0;
}

}  // namespace

bool isTabStop(const Widget& widget) noexcept {
    return windowKind(widget).isTabStop();
}

bool isFormKey(UINT message) noexcept {
    return message == WM_KEYDOWN || message == WM_CHAR || message == WM_SYSKEYDOWN || message == WM_SYSCHAR;
}

std::optional<LRESULT> formKey(formenv::Form& form, HWND window, UINT message, WPARAM wParam) {
    switch (message) {
        case WM_KEYDOWN:
            return keyDown(form, window, wParam);
        case WM_CHAR:
            return character(form, window, wParam);
        case WM_SYSKEYDOWN:
            if (wParam == VK_MENU)
                showCues(form, UISF_HIDEACCEL | UISF_HIDEFOCUS);
            return std::nullopt;
        case WM_SYSCHAR:
            if (pressByAccessKey(form, static_cast<wchar_t>(wParam)))
                return 0;
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

void focusControl(formenv::Form& form, HWND window) {
    const std::vector<WidgetWindow*> stops = stopsOf(form);
    if (const WidgetWindow* stop = stopAt(stops, window))
        SetFocus(stop->window());
    else if (!stops.empty())
        SetFocus(stops.front()->window());
}

}  // namespace kv::win32
