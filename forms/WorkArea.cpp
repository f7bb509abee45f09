#include "forms/WorkArea.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kv::forms {

TwipsPerPixel twipsPerPixel(formenv::Desktop& desktop) noexcept {
    const auto sound = [](double value) { return std::isfinite(value) && value > 0.0; };
    try {
        const TwipsPerPixel scale{desktop.twipsPerPixelX(), desktop.twipsPerPixelY()};
        return sound(scale.x) && sound(scale.y) ? scale : TwipsPerPixel{};
    } catch (...) {
        return {};
    }
}

formenv::Place screenSize(formenv::Desktop& desktop) noexcept {
    try {
        const formenv::Place size{0.0, 0.0, desktop.screenWidth(), desktop.screenHeight()};
        return std::isfinite(size.width) && std::isfinite(size.height) ? size : formenv::Place{};
    } catch (...) {
        return {};
    }
}

std::optional<formenv::MonitorInfo> monitorInfo(formenv::Desktop& desktop, std::intptr_t monitor) noexcept {
    try {
        formenv::MonitorInfo info;
        if (monitor != 0 && desktop.monitorInfo(monitor, info))
            return info;
    } catch (...) {
        // Treated as an unknown monitor.
    }
    return std::nullopt;
}

formenv::Place inTwips(const formenv::ScreenRect& rect, const TwipsPerPixel& scale) noexcept {
    return {rect.left * scale.x, rect.top * scale.y, (double{1} * rect.right - rect.left) * scale.x,
            (double{1} * rect.bottom - rect.top) * scale.y};
}

formenv::Place centeredIn(const formenv::Place& area, const formenv::Place& place) noexcept {
    // Whole twips, rounded towards zero.
    const std::int32_t right = toInt32(area.width - place.width) / 2;
    const std::int32_t down = toInt32(area.height - place.height) / 2;
    return {area.left + right, area.top + down, place.width, place.height};
}

std::int32_t toInt32(double value) noexcept {
    constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr double kMost = std::numeric_limits<std::int32_t>::max();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::nearbyint(std::clamp(value, kLeast, kMost)));
}

}  // namespace kv::forms
