#include "host/selfcheck/Progress.h"

#include "host/selfcheck/CheckWindow.h"

namespace kv::host {

namespace {

constexpr int kPanelWidth = 440;
constexpr int kPanelHeight = 130;
constexpr int kMargin = 12;

}  // namespace

Progress::Progress() {
    // Some steps handle no messages for seconds.
    DisableProcessWindowsGhosting();
    try {
        window_ = newTopWindow();
    } catch (const Failure&) {
        return;  // the steps with windows report it
    }
    RECT work{};
    RECT client{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(window_, nullptr, work.right - kPanelWidth, work.bottom - kPanelHeight, kPanelWidth, kPanelHeight,
                 SWP_NOZORDER);
    GetClientRect(window_, &client);
    label_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, kMargin, kMargin, client.right - 2 * kMargin,
                             client.bottom - 2 * kMargin, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(label_, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
}

Progress::~Progress() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

void Progress::show(const std::wstring& step) const {
    SetWindowTextW(label_, (step + L"\n\nPlease leave the mouse and the keyboard alone.").c_str());
    runMessages(1);
}

}  // namespace kv::host
