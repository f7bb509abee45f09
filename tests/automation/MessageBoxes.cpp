#include "tests/automation/MessageBoxes.h"

#include <gmock/gmock.h>

namespace kv::test {

namespace {

thread_local MessageBoxes* watching = nullptr;

BOOL CALLBACK collectTexts(HWND child, LPARAM parameter) {
    auto& box = *reinterpret_cast<SeenBox*>(parameter);
    const std::wstring kind = windowClass(child);
    const std::wstring text = windowText(child);
    if (kind == L"Static" || kind == L"STATIC")
        box.text += text;
    else if (kind == L"Button" && (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE))
        box.buttons.push_back(text);
    return TRUE;
}

}  // namespace

std::wstring windowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring windowClass(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

namespace {

BOOL CALLBACK noteForm(HWND window, LPARAM found) {
    if (windowClass(window) == L"kvForm" && IsWindowVisible(window)) {
        *reinterpret_cast<HWND*>(found) = window;
    }
    return TRUE;
}

}  // namespace

HWND textWindow() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), &noteForm, reinterpret_cast<LPARAM>(&found));
    return found;
}

MessageBoxes::MessageBoxes() : hook_(SetWindowsHookExW(WH_CBT, &MessageBoxes::hook, nullptr, GetCurrentThreadId())) {
    EXPECT_TRUE(hook_);
    EXPECT_FALSE(watching);
    watching = this;
}

MessageBoxes::~MessageBoxes() {
    UnhookWindowsHookEx(hook_);
    watching = nullptr;
}

LRESULT CALLBACK MessageBoxes::hook(int code, WPARAM window, LPARAM details) {
    const auto box = reinterpret_cast<HWND>(window);
    // A box is complete when it becomes the active window.
    if (code == HCBT_ACTIVATE && windowClass(box) == L"#32770" && box != watching->last_)
        watching->answer(box);
    if (code == HCBT_DESTROYWND && box == watching->last_)
        watching->last_ = nullptr;
    return CallNextHookEx(watching->hook_, code, window, details);
}

void MessageBoxes::answer(HWND box) {
    last_ = box;
    SeenBox seen{windowText(box), L"", {}, GetWindow(box, GW_OWNER)};
    EnumChildWindows(box, &collectTexts, reinterpret_cast<LPARAM>(&seen));
    seen_.push_back(seen);
    if (onBox)
        onBox();
    PostMessageW(box, WM_COMMAND, IDOK, 0);
}

}  // namespace kv::test
