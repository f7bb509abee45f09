// The desktop as Windows reports it.
#include "win32/WinDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "forms/clsMonitors.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {
namespace {

using formenv::MonitorInfo;

class WinDesktopTest : public ::testing::Test {
  protected:
    static RECT workArea() {
        RECT area{};
        EXPECT_TRUE(SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0));
        return area;
    }

    WinPlatform platform;
    formenv::Desktop& desktop = platform.desktop();
};

/// A window without a frame, never shown.
class PlacedTestWindow {
  public:
    explicit PlacedTestWindow(int left, int top)
        : window_(
              CreateWindowExW(0, L"STATIC", L"", WS_POPUP, left, top, 100, 100, nullptr, nullptr, nullptr, nullptr)) {}
    ~PlacedTestWindow() { DestroyWindow(window_); }
    PlacedTestWindow(const PlacedTestWindow&) = delete;
    PlacedTestWindow& operator=(const PlacedTestWindow&) = delete;
    [[nodiscard]] std::intptr_t handle() const noexcept { return reinterpret_cast<std::intptr_t>(window_); }

  private:
    HWND window_;
};

TEST_F(WinDesktopTest, PrimaryMonitorLiesAtTheOriginAndHoldsItsWorkArea) {
    const std::intptr_t monitor = desktop.monitorFromRect({1, 1, 2, 2}, MONITOR_DEFAULTTOPRIMARY);
    MonitorInfo info;
    ASSERT_TRUE(desktop.monitorInfo(monitor, info));
    EXPECT_TRUE(info.primary);
    EXPECT_EQ(info.monitor, (formenv::ScreenRect{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}));
    const RECT work = workArea();
    EXPECT_EQ(info.work, (formenv::ScreenRect{work.left, work.top, work.right, work.bottom}));
}

TEST_F(WinDesktopTest, AnUnknownMonitorOrWindowGivesNoMonitor) {
    MonitorInfo info;
    EXPECT_FALSE(desktop.monitorInfo(0, info));
    EXPECT_FALSE(desktop.monitorInfo(0x7FFFFFF1, info));
    EXPECT_EQ(desktop.monitorFromWindow(0, MONITOR_DEFAULTTONULL), 0);
    EXPECT_EQ(desktop.monitorFromRect({-30000, -30000, -29999, -29999}, MONITOR_DEFAULTTONULL), 0);
    EXPECT_NE(desktop.monitorFromRect({-30000, -30000, -29999, -29999}, MONITOR_DEFAULTTONEAREST), 0);
    EXPECT_NE(desktop.monitorFromWindow(0, MONITOR_DEFAULTTOPRIMARY), 0);
}

TEST_F(WinDesktopTest, WindowIsOnItsMonitor) {
    const PlacedTestWindow here(10, 10);
    const PlacedTestWindow away(-20000, -20000);
    EXPECT_NE(desktop.monitorFromWindow(here.handle(), MONITOR_DEFAULTTONULL), 0);
    EXPECT_EQ(desktop.monitorFromWindow(away.handle(), MONITOR_DEFAULTTONULL), 0);
    EXPECT_NE(desktop.monitorFromWindow(away.handle(), MONITOR_DEFAULTTONEAREST), 0);
}

TEST_F(WinDesktopTest, ScreenSizeIsInTwips) {
    EXPECT_EQ(desktop.twipsPerPixelX(), 1440.0 / platform.dpi());
    EXPECT_EQ(desktop.twipsPerPixelY(), 1440.0 / platform.dpi());
    EXPECT_EQ(desktop.screenWidth(), GetSystemMetrics(SM_CXSCREEN) * 1440.0 / platform.dpi());
    EXPECT_EQ(desktop.screenHeight(), GetSystemMetrics(SM_CYSCREEN) * 1440.0 / platform.dpi());
    EXPECT_EQ(desktop.systemMetric(SM_CMONITORS), GetSystemMetrics(SM_CMONITORS));
    EXPECT_GT(desktop.systemMetric(SM_CXVIRTUALSCREEN), 0);
}

BOOL CALLBACK countMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM handles) {
    reinterpret_cast<std::vector<std::intptr_t>*>(handles)->push_back(reinterpret_cast<std::intptr_t>(monitor));
    return TRUE;
}

TEST_F(WinDesktopTest, SearchFindsTheMonitorsThatTheSystemEnumerates) {
    std::vector<std::intptr_t> enumerated;
    ASSERT_TRUE(EnumDisplayMonitors(nullptr, nullptr, &countMonitor, reinterpret_cast<LPARAM>(&enumerated)));
    forms::clsMonitors monitors(desktop);
    std::vector<std::intptr_t> found;
    for (const forms::clsMonitor& one : monitors.Monitors())
        found.push_back(one.Handle());
    EXPECT_THAT(found, ::testing::UnorderedElementsAreArray(enumerated));
    EXPECT_EQ(monitors.DesktopLeft(), GetSystemMetrics(SM_XVIRTUALSCREEN));
    EXPECT_EQ(monitors.DesktopTop(), GetSystemMetrics(SM_YVIRTUALSCREEN));
    EXPECT_EQ(monitors.DesktopWidth(), GetSystemMetrics(SM_CXVIRTUALSCREEN));
    EXPECT_EQ(monitors.DesktopHeight(), GetSystemMetrics(SM_CYVIRTUALSCREEN));
}

}  // namespace
}  // namespace kv::win32
