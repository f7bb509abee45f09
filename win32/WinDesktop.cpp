#include "win32/WinDesktop.h"

#include "raster/Twips.h"

namespace kv::win32 {

namespace {

formenv::ScreenRect screenRect(const RECT& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

}  // namespace

std::int32_t WinDesktop::systemMetric(int index) {
    return GetSystemMetrics(index);
}

std::intptr_t WinDesktop::monitorFromWindow(std::intptr_t window, std::uint32_t flags) {
    return reinterpret_cast<std::intptr_t>(MonitorFromWindow(reinterpret_cast<HWND>(window), flags));
}

std::intptr_t WinDesktop::monitorFromRect(const formenv::ScreenRect& rect, std::uint32_t flags) {
    const RECT asked{rect.left, rect.top, rect.right, rect.bottom};
    return reinterpret_cast<std::intptr_t>(MonitorFromRect(&asked, flags));
}

bool WinDesktop::monitorInfo(std::intptr_t monitor, formenv::MonitorInfo& info) {
    MONITORINFO told{};
    told.cbSize = sizeof told;
    if (!GetMonitorInfoA(reinterpret_cast<HMONITOR>(monitor), &told))
        return false;
    info = {screenRect(told.rcMonitor), screenRect(told.rcWork), (told.dwFlags & MONITORINFOF_PRIMARY) != 0};
    return true;
}

double WinDesktop::screenWidth() {
    return GetSystemMetrics(SM_CXSCREEN) * twipsPerPixelX();
}

double WinDesktop::screenHeight() {
    return GetSystemMetrics(SM_CYSCREEN) * twipsPerPixelY();
}

double WinDesktop::twipsPerPixelX() {
    return raster::kTwipsPerInch / dpi_;
}

double WinDesktop::twipsPerPixelY() {
    return raster::kTwipsPerInch / dpi_;
}

}  // namespace kv::win32
