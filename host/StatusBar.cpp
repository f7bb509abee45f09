#include "host/StatusBar.h"

#include <commctrl.h>

#include <array>

#include "host/Spectrum.h"
#include "host/plan/PageHeading.h"

namespace kv::host {

namespace {

enum Part { kMessage, kRange, kCounts, kProgress, kPartCount };

// Widths in twips, from right to left, so that the texts fit at every resolution. The message gets the remaining width.
constexpr int kProgressTwips = 2100;
constexpr int kCountsTwips = 4500;
constexpr int kRangeTwips = 3300;
constexpr int kSteps = 1000;

}  // namespace

StatusBar::StatusBar(HWND parent) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    bar_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, parent,
                           nullptr, GetModuleHandleW(nullptr), nullptr);
    progress_ = CreateWindowExW(0, PROGRESS_CLASSW, L"", WS_CHILD | PBS_SMOOTH, 0, 0, 0, 0, bar_, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    if (bar_ == nullptr || progress_ == nullptr) {
        throw Failure{kExitOther, L"The status bar could not be created."};
    }
    SendMessageW(progress_, PBM_SETRANGE32, 0, kSteps);
}

void StatusBar::place() {
    SendMessageW(bar_, WM_SIZE, 0, 0);
    RECT client{};
    GetClientRect(bar_, &client);
    std::array<int, kPartCount> rights{};
    rights[kProgress] = -1;
    rights[kCounts] = client.right - pixelsOfTwips(kProgressTwips);
    rights[kRange] = rights[kCounts] - pixelsOfTwips(kCountsTwips);
    rights[kMessage] = rights[kRange] - pixelsOfTwips(kRangeTwips);
    SendMessageW(bar_, SB_SETPARTS, rights.size(), reinterpret_cast<LPARAM>(rights.data()));
    RECT part{};
    SendMessageW(bar_, SB_GETRECT, kProgress, reinterpret_cast<LPARAM>(&part));
    const int grip = GetSystemMetrics(SM_CXVSCROLL);
    InflateRect(&part, -2, -2);
    MoveWindow(progress_, part.left, part.top, part.right - part.left - grip, part.bottom - part.top, TRUE);
}

int StatusBar::height() const {
    RECT rect{};
    GetWindowRect(bar_, &rect);
    return rect.bottom - rect.top;
}

void StatusBar::setMessage(const std::wstring& text) {
    setPart(kMessage, text);
}

void StatusBar::setRange(double lowestMhz, double highestMhz) {
    setPart(kRange, rangeText({lowestMhz, highestMhz}));
}

void StatusBar::setCounts(const std::wstring& text) {
    setPart(kCounts, text);
}

void StatusBar::setProgress(double fraction) {
    SendMessageW(progress_, PBM_SETPOS, static_cast<WPARAM>(fraction < 0.0 ? 0.0 : fraction * kSteps), 0);
    ShowWindow(progress_, fraction < 0.0 ? SW_HIDE : SW_SHOWNA);
}

void StatusBar::setPart(int part, const std::wstring& text) {
    SendMessageW(bar_, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(text.c_str()));
}

}  // namespace kv::host
