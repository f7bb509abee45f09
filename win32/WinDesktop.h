// The screens of a Windows desktop.
#pragma once

#include <windows.h>

#include "formenv/Desktop.h"

namespace kv::win32 {

class WinDesktop final : public formenv::Desktop {
  public:
    explicit WinDesktop(int dpi) noexcept : dpi_(dpi) {}

    [[nodiscard]] std::int32_t systemMetric(int index) override;
    [[nodiscard]] std::intptr_t monitorFromWindow(std::intptr_t window, std::uint32_t flags) override;
    [[nodiscard]] std::intptr_t monitorFromRect(const formenv::ScreenRect& rect, std::uint32_t flags) override;
    [[nodiscard]] bool monitorInfo(std::intptr_t monitor, formenv::MonitorInfo& info) override;
    [[nodiscard]] double screenWidth() override;
    [[nodiscard]] double screenHeight() override;
    [[nodiscard]] double twipsPerPixelX() override;
    [[nodiscard]] double twipsPerPixelY() override;

  private:
    int dpi_;
};

}  // namespace kv::win32
