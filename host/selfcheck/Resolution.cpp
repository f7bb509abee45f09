// Moves the control between monitors of different resolutions.
#include <optional>

#include "host/selfcheck/CheckWindow.h"
#include "host/selfcheck/Comparison.h"
#include "host/selfcheck/PlainDpi.h"

namespace kv::host {

namespace {

// The system's messages about another resolution, which headers for older systems do not have.
constexpr UINT kDpiChanged = 0x02E0;
constexpr UINT kDpiChangedAfterParent = 0x02E3;

/// Windows of this thread have the resolution of their monitor while it exists.
class MonitorDpi {
  public:
    MonitorDpi() : before_(useMonitorDpi()) {}
    MonitorDpi(const MonitorDpi&) = delete;
    MonitorDpi& operator=(const MonitorDpi&) = delete;
    ~MonitorDpi() {
        if (before_ != nullptr) {
            useMonitorDpi(before_);
        }
    }

  private:
    HANDLE before_;
};

UINT dpiOf(HWND window) {
    using GetDpi = UINT(WINAPI*)(HWND);
    const auto get = reinterpret_cast<GetDpi>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
    return get != nullptr ? get(window) : static_cast<UINT>(screenDpi());
}

struct MonitorSearch {
    HWND window;
    UINT dpi;  ///< of the monitor where the window was
    bool found;
};

/// Moves the window to the monitor and asks for its resolution there. Ends the search at another one.
BOOL CALLBACK moveTo(HMONITOR monitor, HDC, RECT*, LPARAM parameter) {
    auto& search = *reinterpret_cast<MonitorSearch*>(parameter);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    SetWindowPos(search.window, nullptr, info.rcWork.left + 20, info.rcWork.top + 20, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    runMessages(200);
    search.found = dpiOf(search.window) != search.dpi;
    return search.found ? FALSE : TRUE;
}

void checkMessages(Context& context, const CheckWindow& window) {
    const Pixels before = window.saved();
    RECT place{};
    GetWindowRect(window.window(), &place);
    const UINT dpi = dpiOf(window.window());
    SendMessageW(window.window(), kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
    SendMessageW(window.controlWindow(), kDpiChangedAfterParent, 0, 0);
    runMessages(50);
    const std::size_t different = countDifferent(before, window.saved());
    context.report.expect(different == 0, L"Messages about the resolution that the window has change nothing",
                          std::to_wstring(dpi) + L" dpi, " + differenceText(different, before));
}

void checkOtherMonitor(Context& context, const CheckWindow& window) {
    constexpr wchar_t kWhat[] = L"Monitor of another resolution";
    const Pixels before = window.saved();
    RECT place{};
    GetWindowRect(window.window(), &place);
    MonitorSearch search{window.window(), dpiOf(window.window()), false};
    EnumDisplayMonitors(nullptr, nullptr, &moveTo, reinterpret_cast<LPARAM>(&search));
    if (!search.found) {
        context.report.notPossible(kWhat, L"no monitor has another resolution");
        return;
    }
    const std::size_t different = countDifferent(before, window.saved());
    context.report.expect(different > 0, kWhat,
                          std::to_wstring(search.dpi) + L" to " + std::to_wstring(dpiOf(window.window())) +
                              L" dpi, the picture has other labels: " + differenceText(different, before));
    SetWindowPos(window.window(), nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    runMessages(200);
    const std::size_t after = countDifferent(before, window.saved());
    context.report.expect(after == 0, L"Back on the first monitor the picture is the same",
                          differenceText(after, before));
}

}  // namespace

void checkResolution(Context& context) {
    const MonitorDpi monitorDpi;
    const CheckWindow window(context);
    checkMessages(context, window);
    checkOtherMonitor(context, window);
}

}  // namespace kv::host
