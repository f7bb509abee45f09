// A desktop without a screen: its monitors are arranged by a test and reported like the system's own.
#pragma once

#include <map>
#include <vector>

#include "formenv/Desktop.h"

namespace kv::headless {

class HeadlessDesktop : public formenv::Desktop {
  public:
    struct Monitor {
        std::intptr_t handle = 0;
        formenv::MonitorInfo info;
    };

    [[nodiscard]] std::int32_t systemMetric(int index) override;
    [[nodiscard]] std::intptr_t monitorFromWindow(std::intptr_t window, std::uint32_t flags) override;
    [[nodiscard]] std::intptr_t monitorFromRect(const formenv::ScreenRect& rect, std::uint32_t flags) override;
    [[nodiscard]] bool monitorInfo(std::intptr_t monitor, formenv::MonitorInfo& info) override;
    [[nodiscard]] double screenWidth() override;
    [[nodiscard]] double screenHeight() override;
    [[nodiscard]] double twipsPerPixelX() override;
    [[nodiscard]] double twipsPerPixelY() override;

    /// Adds a monitor whose task bar, if any, is at the bottom; the first one is the primary. Returns the handle.
    std::intptr_t add(const formenv::ScreenRect& monitor, std::int32_t taskBar = 0);

    /// At first one screen of 1920 by 1080 pixels with a task bar.
    std::vector<Monitor> monitors{{65537, {{0, 0, 1920, 1080}, {0, 0, 1920, 1040}, true}}};
    /// The places of windows, by their handles.
    std::map<std::intptr_t, formenv::ScreenRect> windows;
    int dots = 96;
    /// False: the system does not support several monitors.
    bool countsMonitors = true;

  private:
    [[nodiscard]] const Monitor* primary() const noexcept;
    [[nodiscard]] formenv::ScreenRect bounds() const noexcept;
};

}  // namespace kv::headless
