// Where the window is opened, and what is remembered when it closes.
#include "host/MainWindow.h"
#include "host/plan/WindowPlace.h"

namespace kv::host {

namespace {

BOOL CALLBACK addWorkArea(HMONITOR monitor, HDC, RECT*, LPARAM parameter) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(monitor, &info)) {
        const RECT& work = info.rcWork;
        reinterpret_cast<std::vector<ScreenRect>*>(parameter)->push_back(
            {work.left, work.top, work.right, work.bottom});
    }
    return TRUE;
}

std::vector<ScreenRect> workAreas() {
    std::vector<ScreenRect> areas;
    EnumDisplayMonitors(nullptr, nullptr, &addWorkArea, reinterpret_cast<LPARAM>(&areas));
    return areas;
}

WINDOWPLACEMENT placementOf(HWND window) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    return placement;
}

bool isMaximized(const WINDOWPLACEMENT& placement) {
    const bool minimized = placement.showCmd == SW_SHOWMINIMIZED;
    return minimized ? (placement.flags & WPF_RESTORETOMAXIMIZED) != 0 : placement.showCmd == SW_SHOWMAXIMIZED;
}

}  // namespace

void MainWindow::restorePlace() {
    const std::optional<WindowPlace> place = settings_.read().place;
    const std::vector<ScreenRect> areas = workAreas();
    if (!place || areas.empty()) {
        return;
    }
    WINDOWPLACEMENT placement = placementOf(window_);
    ScreenRect rect = place->rect;
    if (options_.size) {
        const RECT& given = placement.rcNormalPosition;
        rect.right = rect.left + given.right - given.left;
        rect.bottom = rect.top + given.bottom - given.top;
    }
    rect = movedOntoScreen(rect, areas, GetSystemMetrics(SM_CYCAPTION));
    placement.rcNormalPosition = {rect.left, rect.top, rect.right, rect.bottom};
    placement.showCmd = SW_HIDE;
    SetWindowPlacement(window_, &placement);
    startsMaximized_ = place->maximized && !options_.size;
}

void MainWindow::keepLeastSize() const {
    RECT rect{};
    GetWindowRect(window_, &rect);
    // The system limits the size by WM_GETMINMAXINFO, for which the control must exist.
    SetWindowPos(window_, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void MainWindow::rememberWindow() noexcept {
    try {
        const WINDOWPLACEMENT placement = placementOf(window_);
        const RECT& rect = placement.rcNormalPosition;
        settings_.change([&](Settings& settings) {
            settings.place = WindowPlace{{rect.left, rect.top, rect.right, rect.bottom}, isMaximized(placement)};
            addOptions(settings.options, chosen_);
        });
    } catch (...) {
        // Without memory for the settings they stay as they are.
    }
}

}  // namespace kv::host
