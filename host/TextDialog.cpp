#include "host/TextDialog.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "host/resource.h"

namespace kv::host {

namespace {

constexpr int kClipboardTries = 10;
constexpr DWORD kClipboardPause = 50;  // milliseconds; another program may have the clipboard open

/// Which edges of a control follow the lower right corner of the dialog.
struct Anchored {
    int id;
    bool movesRight;
    bool movesDown;
    bool growsRight;
    bool growsDown;
};

constexpr std::array<Anchored, 4> kControls{{{IDC_SUMMARY, false, false, true, false},
                                             {IDC_TEXT, false, false, true, true},
                                             {IDC_COPY_TEXT, true, true, false, false},
                                             {IDOK, true, true, false, false}}};

struct TextDialog {
    const std::wstring& summary;
    const std::wstring& text;
    std::array<RECT, kControls.size()> places{};  // at the start
    SIZE client{};
    SIZE window{};
};

RECT placeOf(HWND dialog, HWND control) {
    RECT rect{};
    GetWindowRect(control, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

std::wstring textOf(HWND edit) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool openClipboard(HWND owner) {
    for (int i = 0; i < kClipboardTries; ++i) {
        if (OpenClipboard(owner)) {
            return true;
        }
        Sleep(kClipboardPause);
    }
    return false;
}

bool copy(HWND owner, const std::wstring& text) {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    void* const target = memory == nullptr ? nullptr : GlobalLock(memory);
    bool copied = false;
    if (target != nullptr) {
        std::memcpy(target, text.c_str(), size);
        GlobalUnlock(memory);
        if (openClipboard(owner)) {
            EmptyClipboard();
            copied = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
            CloseClipboard();
        }
    }
    if (!copied && memory != nullptr) {
        GlobalFree(memory);
    }
    return copied;
}

void copyAll(HWND dialog) {
    if (!copy(dialog, textOf(GetDlgItem(dialog, IDC_TEXT)))) {
        MessageBoxW(dialog, L"The text could not be copied, because another program uses the clipboard.",
                    L"BandscopeHost", MB_OK | MB_ICONWARNING);
    }
}

/// Ctrl+A selects all, which not every system does by itself. Ctrl+C without a selection copies all.
LRESULT CALLBACK editProcedure(HWND edit, UINT message, WPARAM first, LPARAM second) {
    constexpr WPARAM kCtrlA = 1;
    constexpr WPARAM kCtrlC = 3;
    if (message == WM_CHAR && first == kCtrlA) {
        SendMessageW(edit, EM_SETSEL, 0, -1);
        return 0;
    }
    if (message == WM_CHAR && first == kCtrlC) {
        DWORD begin = 0;
        DWORD end = 0;
        SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
        if (begin == end) {
            copyAll(GetParent(edit));
            return 0;
        }
    }
    const auto original = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    return CallWindowProcW(original, edit, message, first, second);
}

/// Over the middle of the owner, but on its monitor.
void center(HWND window, HWND owner) {
    RECT rect{};
    RECT middle{};
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return;
    }
    const RECT& work = monitor.rcWork;
    GetWindowRect(window, &rect);
    GetWindowRect(owner, &middle);
    const LONG width = rect.right - rect.left;
    const LONG height = rect.bottom - rect.top;
    const LONG left = std::min((middle.left + middle.right - width) / 2, work.right - width);
    const LONG top = std::min((middle.top + middle.bottom - height) / 2, work.bottom - height);
    SetWindowPos(window, nullptr, std::max(left, work.left), std::max(top, work.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void start(HWND window, TextDialog& dialog) {
    center(window, GetWindow(window, GW_OWNER));
    SetDlgItemTextW(window, IDC_SUMMARY, dialog.summary.c_str());
    const HWND edit = GetDlgItem(window, IDC_TEXT);
    SetWindowLongPtrW(edit, GWLP_USERDATA, GetWindowLongPtrW(edit, GWLP_WNDPROC));
    SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&editProcedure));
    SetWindowTextW(edit, dialog.text.c_str());
    for (std::size_t i = 0; i < kControls.size(); ++i) {
        dialog.places[i] = placeOf(window, GetDlgItem(window, kControls[i].id));
    }
    RECT rect{};
    GetClientRect(window, &rect);
    dialog.client = {rect.right, rect.bottom};
    GetWindowRect(window, &rect);
    dialog.window = {rect.right - rect.left, rect.bottom - rect.top};
    // The text has the focus, so that the keys scroll it; nothing is selected yet.
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, 0);
}

void layOut(HWND window, const TextDialog& dialog, SIZE client) {
    const LONG right = client.cx - dialog.client.cx;
    const LONG down = client.cy - dialog.client.cy;
    for (std::size_t i = 0; i < kControls.size(); ++i) {
        const Anchored& control = kControls[i];
        const RECT& place = dialog.places[i];
        MoveWindow(GetDlgItem(window, control.id), place.left + (control.movesRight ? right : 0),
                   place.top + (control.movesDown ? down : 0),
                   place.right - place.left + (control.growsRight ? right : 0),
                   place.bottom - place.top + (control.growsDown ? down : 0), TRUE);
    }
}

INT_PTR command(HWND window, WORD id) {
    switch (id) {
        case IDC_COPY_TEXT:
            copyAll(window);
            return TRUE;
        case IDOK:
        case IDCANCEL:
            EndDialog(window, id);
            return TRUE;
        default:
            return FALSE;
    }
}

INT_PTR handle(HWND window, TextDialog& dialog, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_SIZE:
            if (first != SIZE_MINIMIZED) {
                layOut(window, dialog, {LOWORD(second), HIWORD(second)});
            }
            return TRUE;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {dialog.window.cx, dialog.window.cy};
            return TRUE;
        case WM_COMMAND:
            return command(window, LOWORD(first));
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) try {
    if (message == WM_INITDIALOG) {
        start(window, *reinterpret_cast<TextDialog*>(second));
        SetWindowLongPtrW(window, DWLP_USER, second);
        return FALSE;  // the focus is set
    }
    const auto dialog = reinterpret_cast<TextDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    return dialog == nullptr ? FALSE : handle(window, *dialog, message, first, second);
} catch (...) {
    return FALSE;  // no exception may leave a call from the system; there is not enough memory to copy the text
}

}  // namespace

void showTextDialog(HWND owner, int resource, const std::wstring& summary, const std::wstring& text) {
    TextDialog dialog{summary, text};
    DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource), owner, &procedure,
                    reinterpret_cast<LPARAM>(&dialog));
}

}  // namespace kv::host
