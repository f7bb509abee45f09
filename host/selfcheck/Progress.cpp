#include "host/selfcheck/Progress.h"

#include "host/selfcheck/CheckWindow.h"

namespace kv::host {

namespace {

constexpr int kWidth = 440;
constexpr int kHeight = 110;

}  // namespace

Progress::Progress() {
    // Some steps handle no messages for seconds.
    DisableProcessWindowsGhosting();
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    window_ = CreateWindowExW(0, L"STATIC", L"kvBandscope self-check", WS_OVERLAPPED | WS_CAPTION | SS_CENTER,
                              work.right - kWidth, work.bottom - kHeight, kWidth, kHeight, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
}

Progress::~Progress() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

void Progress::show(const std::wstring& step) const {
    // The text of the window is its title, too.
    SetWindowTextW(window_, (L"kvBandscope self-check: " + step).c_str());
    InvalidateRect(window_, nullptr, TRUE);
    runMessages(1);
}

}  // namespace kv::host
