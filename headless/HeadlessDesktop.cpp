#include "headless/HeadlessDesktop.h"

#include <algorithm>

#include "raster/Twips.h"

namespace kv::headless {

namespace {

namespace system_metric = formenv::system_metric;

std::int64_t length(std::int32_t from, std::int32_t to) {
    return std::int64_t{to} - from;
}

std::int64_t sharedArea(const formenv::ScreenRect& a, const formenv::ScreenRect& b) {
    const std::int64_t width = length(std::max(a.left, b.left), std::min(a.right, b.right));
    const std::int64_t height = length(std::max(a.top, b.top), std::min(a.bottom, b.bottom));
    return width > 0 && height > 0 ? width * height : 0;
}

double squaredDistance(const formenv::ScreenRect& a, const formenv::ScreenRect& b) {
    const auto x = static_cast<double>(std::max({length(a.right, b.left), length(b.right, a.left), std::int64_t{0}}));
    const auto y = static_cast<double>(std::max({length(a.bottom, b.top), length(b.bottom, a.top), std::int64_t{0}}));
    return x * x + y * y;
}

}  // namespace

const HeadlessDesktop::Monitor* HeadlessDesktop::primary() const noexcept {
    const auto found = std::ranges::find_if(monitors, [](const Monitor& monitor) { return monitor.info.primary; });
    return found == monitors.end() ? nullptr : &*found;
}

formenv::ScreenRect HeadlessDesktop::bounds() const noexcept {
    if (monitors.empty())
        return {};
    formenv::ScreenRect all = monitors.front().info.monitor;
    for (const Monitor& monitor : monitors) {
        const formenv::ScreenRect& one = monitor.info.monitor;
        all = {std::min(all.left, one.left), std::min(all.top, one.top), std::max(all.right, one.right),
               std::max(all.bottom, one.bottom)};
    }
    return all;
}

std::int32_t HeadlessDesktop::systemMetric(int index) {
    const formenv::ScreenRect all = bounds();
    const formenv::ScreenRect screen = primary() ? primary()->info.monitor : formenv::ScreenRect{};
    switch (index) {
        case system_metric::kScreenWidth:
            return screen.right - screen.left;
        case system_metric::kScreenHeight:
            return screen.bottom - screen.top;
        default:
            break;
    }
    if (!countsMonitors)
        return 0;
    switch (index) {
        case system_metric::kVirtualLeft:
            return all.left;
        case system_metric::kVirtualTop:
            return all.top;
        case system_metric::kVirtualWidth:
            return all.right - all.left;
        case system_metric::kVirtualHeight:
            return all.bottom - all.top;
        case system_metric::kMonitorCount:
            return static_cast<std::int32_t>(monitors.size());
        default:
            return 0;
    }
}

std::intptr_t HeadlessDesktop::monitorFromWindow(std::intptr_t window, std::uint32_t flags) {
    if (const auto found = windows.find(window); found != windows.end())
        return monitorFromRect(found->second, flags);
    return flags != formenv::monitor_flag::kNone && primary() ? primary()->handle : 0;
}

std::intptr_t HeadlessDesktop::monitorFromRect(const formenv::ScreenRect& rect, std::uint32_t flags) {
    if (monitors.empty())
        return 0;
    const auto hit = std::ranges::max_element(
        monitors, {}, [&rect](const Monitor& monitor) { return sharedArea(monitor.info.monitor, rect); });
    if (sharedArea(hit->info.monitor, rect) > 0)
        return hit->handle;
    if (flags == formenv::monitor_flag::kNearest) {
        return std::ranges::min_element(
                   monitors, {},
                   [&rect](const Monitor& monitor) { return squaredDistance(monitor.info.monitor, rect); })
            ->handle;
    }
    return flags == formenv::monitor_flag::kPrimary && primary() ? primary()->handle : 0;
}

bool HeadlessDesktop::monitorInfo(std::intptr_t monitor, formenv::MonitorInfo& info) {
    const auto found = std::ranges::find(monitors, monitor, &Monitor::handle);
    if (found == monitors.end())
        return false;
    info = found->info;
    return true;
}

double HeadlessDesktop::screenWidth() {
    return systemMetric(system_metric::kScreenWidth) * twipsPerPixelX();
}

double HeadlessDesktop::screenHeight() {
    return systemMetric(system_metric::kScreenHeight) * twipsPerPixelY();
}

double HeadlessDesktop::twipsPerPixelX() {
    return raster::kTwipsPerInch / dots;
}

double HeadlessDesktop::twipsPerPixelY() {
    return raster::kTwipsPerInch / dots;
}

std::intptr_t HeadlessDesktop::add(const formenv::ScreenRect& monitor, std::int32_t taskBar) {
    std::intptr_t handle = 65537;
    for (const Monitor& other : monitors)
        handle = std::max(handle, other.handle + 2);
    formenv::ScreenRect work = monitor;
    work.bottom -= taskBar;
    monitors.push_back({handle, {monitor, work, monitors.empty()}});
    return handle;
}

}  // namespace kv::headless
