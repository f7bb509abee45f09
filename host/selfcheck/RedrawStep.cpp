// Draws again and again, and looks at what the process uses.
#include <windows.h>

#include <psapi.h>

#include "host/selfcheck/CheckWindow.h"

namespace kv::host {

namespace {

struct Usage {
    DWORD gdi = 0;
    DWORD user = 0;
    DWORD kernel = 0;
    SIZE_T memory = 0;  ///< bytes of this process alone
};

// More than this counts as a leak. The system itself takes some from time to time.
constexpr DWORD kFewObjects = 8;
constexpr DWORD kFewHandles = 20;
constexpr SIZE_T kLittleMemory = SIZE_T{8} * 1024 * 1024;

Usage usage() {
    Usage result;
    result.gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    result.user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    GetProcessHandleCount(GetCurrentProcess(), &result.kernel);
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    result.memory = counters.PagefileUsage;
    return result;
}

template <class Number>
void compare(Context& context, const wchar_t* what, Number before, Number after, Number allowed) {
    const std::wstring values = std::to_wstring(before) + L" before, " + std::to_wstring(after) + L" after";
    if (before == 0) {
        context.report.notPossible(what, L"the system does not count them");
    } else {
        context.report.expect(after <= before + allowed, what, values);
    }
}

int drawFor(CheckWindow& window, DWORD milliseconds) {
    const DWORD start = GetTickCount();
    int count = 0;
    do {
        VARIANT_BOOL drawn = VARIANT_FALSE;
        check(window.control().DrawDisplay(&drawn), L"DrawDisplay");
        runMessages(0);
        ++count;
    } while (GetTickCount() - start < milliseconds);
    return count;
}

}  // namespace

void checkRedraws(Context& context) {
    CheckWindow window(context);
    drawFor(window, 1000);
    const Usage before = usage();
    const int count = drawFor(window, static_cast<DWORD>(context.options.redrawSeconds) * 1000);
    const Usage after = usage();
    context.report.expect(count > 1, L"Redraws",
                          std::to_wstring(count) + L" in " + std::to_wstring(context.options.redrawSeconds) + L" s");
    compare(context, L"GDI objects", before.gdi, after.gdi, kFewObjects);
    compare(context, L"USER objects", before.user, after.user, kFewObjects);
    compare(context, L"Kernel handles", before.kernel, after.kernel, kFewHandles);
    compare(context, L"Memory in KB", before.memory / 1024, after.memory / 1024, kLittleMemory / 1024);
}

}  // namespace kv::host
