#include "forms/clsMonitors.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "forms/WorkArea.h"

namespace kv::forms {

namespace system_metric = formenv::system_metric;

namespace {

constexpr std::int32_t kCellWidth = 640;
constexpr std::int32_t kCellHeight = 480;

std::int32_t next(std::int32_t value) {
    return value == std::numeric_limits<std::int32_t>::max() ? value : value + 1;
}

clsMonitor described(std::intptr_t handle, const formenv::MonitorInfo& info) {
    clsMonitor monitor;
    monitor.setHandle(handle);
    monitor.setLeft(info.monitor.left);
    monitor.setTop(info.monitor.top);
    monitor.setRight(info.monitor.right);
    monitor.setBottom(info.monitor.bottom);
    monitor.setWidth(info.monitor.right - info.monitor.left);
    monitor.setHeight(info.monitor.bottom - info.monitor.top);
    monitor.setWorkLeft(info.work.left);
    monitor.setWorkTop(info.work.top);
    monitor.setWorkRight(info.work.right);
    monitor.setWorkBottom(info.work.bottom);
    return monitor;
}

}  // namespace

bool clsMonitors::counted() noexcept {
    try {
        return desktop_.systemMetric(system_metric::kMonitorCount) != 0;
    } catch (...) {
        return false;
    }
}

std::int32_t clsMonitors::metric(int index, std::int32_t otherwise) noexcept {
    try {
        return counted() ? desktop_.systemMetric(index) : otherwise;
    } catch (...) {
        return otherwise;
    }
}

std::int32_t clsMonitors::DesktopLeftTwps() noexcept {
    return toInt32(DesktopLeft() * twipsPerPixel(desktop_).x);
}

std::int32_t clsMonitors::DesktopTopTwps() noexcept {
    return toInt32(DesktopTop() * twipsPerPixel(desktop_).y);
}

std::int32_t clsMonitors::DesktopWidthTwps() noexcept {
    return toInt32(DesktopWidth() * twipsPerPixel(desktop_).x);
}

std::int32_t clsMonitors::DesktopHeightTwps() noexcept {
    return toInt32(DesktopHeight() * twipsPerPixel(desktop_).y);
}

std::int32_t clsMonitors::DesktopLeft() noexcept {
    return metric(system_metric::kVirtualLeft, 0);
}

std::int32_t clsMonitors::DesktopTop() noexcept {
    return metric(system_metric::kVirtualTop, 0);
}

std::int32_t clsMonitors::DesktopWidth() noexcept {
    return metric(system_metric::kVirtualWidth, toInt32(screenSize(desktop_).width / twipsPerPixel(desktop_).x));
}

std::int32_t clsMonitors::DesktopHeight() noexcept {
    return metric(system_metric::kVirtualHeight, toInt32(screenSize(desktop_).height / twipsPerPixel(desktop_).y));
}

std::intptr_t clsMonitors::GetMonitorFromWindow(std::intptr_t hwnd, std::uint32_t flags) noexcept {
    try {
        return desktop_.monitorFromWindow(hwnd, flags);
    } catch (...) {
        return 0;
    }
}

std::intptr_t clsMonitors::GetMonitorFromXYPoint(std::int32_t x, std::int32_t y, std::uint32_t flags) noexcept {
    try {
        return desktop_.monitorFromRect({x, y, next(x), next(y)}, flags);
    } catch (...) {
        return 0;
    }
}

void clsMonitors::Refresh() {
    monitors_.clear();
    keys_.clear();
    if (!counted())
        return;
    // Bounded by the size of the desktop itself and not by its far edges: with the primary monitor at the origin these
    // never lie beyond the size.
    const std::int64_t width = DesktopWidth();
    const std::int64_t height = DesktopHeight();
    const std::int64_t left = DesktopLeft();
    for (std::int64_t y = DesktopTop(); y <= height; y += kCellHeight) {
        for (std::int64_t x = left; x <= width; x += kCellWidth)
            probe(static_cast<std::int32_t>(x + kCellWidth / 2), static_cast<std::int32_t>(y + kCellHeight / 2));
    }
}

void clsMonitors::probe(std::int32_t x, std::int32_t y) {
    const std::intptr_t handle = GetMonitorFromXYPoint(x, y, monitor_flag::kNone);
    std::wstring key = std::to_wstring(handle);
    if (handle == 0 || Monitor(key))
        return;
    if (const std::optional<formenv::MonitorInfo> info = monitorInfo(desktop_, handle)) {
        monitors_.push_back(described(handle, *info));
        keys_.push_back(std::move(key));
    }
}

const clsMonitor* clsMonitors::Monitor(const std::wstring& key) const noexcept {
    const auto found = std::ranges::find(keys_, key);
    return found == keys_.end() ? nullptr : &monitors_[static_cast<std::size_t>(found - keys_.begin())];
}

void clsMonitors::CenterFormOnMonitor(PlacedForm* form) {
    const std::intptr_t monitor = form ? GetMonitorFromWindow(form->hWnd(), monitor_flag::kNearest)
                                       : GetMonitorFromXYPoint(1, 1, monitor_flag::kPrimary);
    const std::optional<formenv::MonitorInfo> info = monitorInfo(desktop_, monitor);
    if (form && info)
        form->move(centeredIn(inTwips(info->work, twipsPerPixel(desktop_)), form->place()));
}

void setFormCenter(PlacedForm& form, formenv::Desktop& desktop) {
    const formenv::Place screen = screenSize(desktop);
    if (screen.width <= 0.0 || screen.height <= 0.0)
        return;
    const formenv::Place place = form.place();
    form.move({(screen.width - place.width) / 2, (screen.height - place.height) / 2, place.width, place.height});
}

}  // namespace kv::forms
