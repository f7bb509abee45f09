// The screens that windows stand on, as the system tells of them.
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
