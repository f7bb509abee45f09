// The virtual desktop and the monitors on it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formenv/Desktop.h"
#include "forms/PlacedForm.h"
#include "forms/clsMonitor.h"

namespace kv::forms {

namespace monitor_flag = formenv::monitor_flag;

/// No member raises an error: the system's failures count as "no such monitor" or as the value of a single screen.
class clsMonitors {
  public:
    /// `desktop` has to live longer. Searches the monitors at once.
    explicit clsMonitors(formenv::Desktop& desktop) : desktop_(desktop) { Refresh(); }

    // The virtual screen in twips.
    [[nodiscard]] std::int32_t DesktopLeftTwps() noexcept;
    [[nodiscard]] std::int32_t DesktopTopTwps() noexcept;
    [[nodiscard]] std::int32_t DesktopWidthTwps() noexcept;
    [[nodiscard]] std::int32_t DesktopHeightTwps() noexcept;
    // The same in pixels. A system that does not count its monitors has one screen at the origin.
    [[nodiscard]] std::int32_t DesktopLeft() noexcept;
    [[nodiscard]] std::int32_t DesktopTop() noexcept;
    [[nodiscard]] std::int32_t DesktopWidth() noexcept;
    [[nodiscard]] std::int32_t DesktopHeight() noexcept;

    /// 0 for none.
    [[nodiscard]] std::intptr_t GetMonitorFromWindow(std::intptr_t hwnd, std::uint32_t flags) noexcept;
    /// Moves the form to the middle of the work area of its monitor. Without such a monitor the form stays where it
    /// is.
    void CenterFormOnMonitor(PlacedForm* form = nullptr);
    void CenterFormOnMonitor(formenv::Form& form) {
        PlacedWindow placed(form);
        CenterFormOnMonitor(&placed);
    }
    [[nodiscard]] std::intptr_t GetMonitorFromXYPoint(std::int32_t x, std::int32_t y, std::uint32_t flags) noexcept;
    /// Searches the monitors again. One smaller than 640 by 480 pixels can be missed.
    void Refresh();

    /// In the order in which they were found.
    [[nodiscard]] const std::vector<clsMonitor>& Monitors() const noexcept { return monitors_; }
    /// By the handle's text; nullptr for none.
    [[nodiscard]] const clsMonitor* Monitor(const std::wstring& key) const noexcept;

  private:
    [[nodiscard]] bool counted() noexcept;
    [[nodiscard]] std::int32_t metric(int index, std::int32_t otherwise) noexcept;
    void probe(std::int32_t x, std::int32_t y);

    formenv::Desktop& desktop_;
    std::vector<clsMonitor> monitors_;
    std::vector<std::wstring> keys_;  ///< of the monitors at the same indexes
};

/// Moves the form to the middle of the whole primary screen.
void setFormCenter(PlacedForm& form, formenv::Desktop& desktop);

}  // namespace kv::forms
