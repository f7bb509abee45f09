#include "host/selfcheck/MessageBoxes.h"

#include <windows.h>

#include <array>

namespace kv::host {

namespace {

constexpr UINT kPatience = 1000;  // milliseconds

std::wstring textOf(HWND window) {
    std::array<wchar_t, 1024> text{};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                        kPatience, &length);
    return text.data();
}

BOOL CALLBACK closeBox(HWND window, LPARAM parameter) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (process != GetCurrentProcessId() || std::wstring(name.data()) != L"#32770" || !IsWindowVisible(window)) {
        return TRUE;
    }
    std::wstring text = textOf(window);
    for (HWND label = nullptr; (label = FindWindowExW(window, label, L"Static", nullptr)) != nullptr;) {
        text += L" " + textOf(label);
    }
    reinterpret_cast<Report*>(parameter)->failed(L"Message box", text);
    // Answers a box with one button, whichever it is, and one with Yes and No, which WM_CLOSE would not.
    for (const int answer : {IDOK, IDCANCEL, IDNO}) {
        PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(answer), 0);
    }
    return TRUE;
}

}  // namespace

void closeMessageBoxes(Report& report) {
    EnumWindows(&closeBox, reinterpret_cast<LPARAM>(&report));
}

}  // namespace kv::host
