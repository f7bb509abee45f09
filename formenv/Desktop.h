// The monitors on which windows are shown, as the system describes them.
#pragma once

#include <cstdint>

namespace kv::formenv {

/// Pixels of the virtual screen; `right` and `bottom` lie outside.
struct ScreenRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

struct MonitorInfo {
    ScreenRect monitor;
    ScreenRect work;  ///< without task bars
    bool primary = false;
};

/// What the system answers about a point or a window that is on no monitor: none, the primary one, the nearest one.
namespace monitor_flag {
inline constexpr std::uint32_t kNone = 0;
inline constexpr std::uint32_t kPrimary = 1;
inline constexpr std::uint32_t kNearest = 2;
}  // namespace monitor_flag

/// The system's numbers of its metrics, in pixels: the primary screen, and the virtual one of all monitors together.
namespace system_metric {
inline constexpr int kScreenWidth = 0;
inline constexpr int kScreenHeight = 1;
inline constexpr int kVirtualLeft = 76;
inline constexpr int kVirtualTop = 77;
inline constexpr int kVirtualWidth = 78;
inline constexpr int kVirtualHeight = 79;
inline constexpr int kMonitorCount = 80;
}  // namespace system_metric

/// The system's calls about monitors. Each may throw; 0 is no monitor.
class Desktop {
  public:
    Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    virtual ~Desktop() = default;

    /// A system metric by its number.
    [[nodiscard]] virtual std::int32_t systemMetric(int index) = 0;
    [[nodiscard]] virtual std::intptr_t monitorFromWindow(std::intptr_t window, std::uint32_t flags) = 0;
    [[nodiscard]] virtual std::intptr_t monitorFromRect(const ScreenRect& rect, std::uint32_t flags) = 0;
    /// False when the system knows no such monitor.
    [[nodiscard]] virtual bool monitorInfo(std::intptr_t monitor, MonitorInfo& info) = 0;
    /// Size of the primary screen, twips.
    [[nodiscard]] virtual double screenWidth() = 0;
    [[nodiscard]] virtual double screenHeight() = 0;
    [[nodiscard]] virtual double twipsPerPixelX() = 0;
    [[nodiscard]] virtual double twipsPerPixelY() = 0;
};

}  // namespace kv::formenv
