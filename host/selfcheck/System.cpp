// Facts about the machine that may explain a difference.
#include <windows.h>

#include <array>

#include "host/selfcheck/PlainDpi.h"
#include "host/selfcheck/Steps.h"

namespace kv::host {

namespace {

/// A function that older systems do not have; null there.
template <class Function>
Function systemFunction(const wchar_t* library, const char* name) {
    const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module == nullptr ? nullptr
                             : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// Not the version that the system pretends to be for programs without a manifest for it.
std::wstring windowsVersion() {
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    const auto get = systemFunction<GetVersion>(L"ntdll.dll", "RtlGetVersion");
    if (get == nullptr || get(&version) != 0) {
        return L"unknown";
    }
    const std::wstring kind = version.wProductType == VER_NT_WORKSTATION ? L"" : L", server";
    return std::to_wstring(version.dwMajorVersion) + L"." + std::to_wstring(version.dwMinorVersion) + L"." +
           std::to_wstring(version.dwBuildNumber) + kind;
}

/// Wine runs Windows programs on other systems.
std::wstring wineVersion() {
    using GetVersion = const char*(CDECL*)();
    const auto get = systemFunction<GetVersion>(L"ntdll.dll", "wine_get_version");
    if (get == nullptr) {
        return L"no";
    }
    const std::string version = get();
    return L"version " + std::wstring(version.begin(), version.end());
}

std::wstring processorOf(WORD architecture) {
    switch (architecture) {
        case PROCESSOR_ARCHITECTURE_AMD64:
            return L"x64";
        case PROCESSOR_ARCHITECTURE_INTEL:
            return L"x86";
        case 12:  // PROCESSOR_ARCHITECTURE_ARM64, which older headers do not have
            return L"ARM64";
        default:
            return L"number " + std::to_wstring(architecture);
    }
}

std::wstring bitness() {
    BOOL isWow = FALSE;
    IsWow64Process(GetCurrentProcess(), &isWow);
    SYSTEM_INFO system{};
    GetNativeSystemInfo(&system);
    return std::to_wstring(sizeof(void*) * 8) + L"-bit program" + (isWow ? L" under WOW64" : L"") + L", processor " +
           processorOf(system.wProcessorArchitecture) + L", " + std::to_wstring(system.dwNumberOfProcessors) +
           L" processors";
}

std::wstring memory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    GlobalMemoryStatusEx(&status);
    constexpr DWORDLONG kMegabyte = 1024 * 1024;
    return std::to_wstring(status.ullTotalPhys / kMegabyte) + L" MB, " +
           std::to_wstring(status.ullAvailPhys / kMegabyte) + L" MB of it free";
}

std::wstring theme() {
    using IsActive = BOOL(WINAPI*)();
    const auto isActive = systemFunction<IsActive>(L"uxtheme.dll", "IsThemeActive");
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0);
    return std::wstring(isActive != nullptr && isActive() ? L"visual styles" : L"classic") +
           ((contrast.dwFlags & HCF_HIGHCONTRASTON) != 0 ? L", high contrast" : L"");
}

std::wstring fontSmoothing() {
    BOOL on = FALSE;
    UINT kind = 0;
    SystemParametersInfoW(SPI_GETFONTSMOOTHING, 0, &on, 0);
    SystemParametersInfoW(SPI_GETFONTSMOOTHINGTYPE, 0, &kind, 0);
    if (!on) {
        return L"off";
    }
    return kind == FE_FONTSMOOTHINGCLEARTYPE ? L"ClearType" : L"grayscale";
}

std::wstring locale() {
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    std::array<wchar_t, 8> decimal{};
    GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, decimal.data(), static_cast<int>(decimal.size()));
    return std::wstring(name.data()) + L", decimal separator " + decimal.data() + L", code page " +
           std::to_wstring(GetACP());
}

std::wstring monitorDpi(HMONITOR monitor) {
    using GetDpi = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    const auto getDpi = systemFunction<GetDpi>(L"shcore.dll", "GetDpiForMonitor");
    UINT x = 0;
    UINT y = 0;
    return getDpi != nullptr && SUCCEEDED(getDpi(monitor, 0, &x, &y)) ? std::to_wstring(x) + L" dpi"
                                                                      : std::wstring(L"resolution unknown");
}

BOOL CALLBACK noteMonitor(HMONITOR monitor, HDC, RECT*, LPARAM parameter) {
    auto& report = *reinterpret_cast<Report*>(parameter);
    MONITORINFOEXW info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    const RECT& place = info.rcMonitor;
    const HDC dc = CreateDCW(L"DISPLAY", info.szDevice, nullptr, nullptr);
    report.fact((info.dwFlags & MONITORINFOF_PRIMARY) != 0 ? L"Primary monitor" : L"Monitor",
                std::to_wstring(place.right - place.left) + L" x " + std::to_wstring(place.bottom - place.top) +
                    L" pixels at " + std::to_wstring(place.left) + L", " + std::to_wstring(place.top) + L", " +
                    monitorDpi(monitor) + L", " + std::to_wstring(GetDeviceCaps(dc, BITSPIXEL)) + L" bits a pixel");
    DeleteDC(dc);
    return TRUE;
}

}  // namespace

void noteSystem(Context& context) {
    Report& report = context.report;
    SYSTEMTIME now{};
    GetSystemTime(&now);
    std::array<wchar_t, 32> date{};
    GetDateFormatW(LOCALE_INVARIANT, 0, &now, L"yyyy-MM-dd", date.data(), static_cast<int>(date.size()));
    report.fact(L"Date", date.data());
    report.fact(L"Windows", windowsVersion());
    report.fact(L"Wine", wineVersion());
    report.fact(L"Bitness", bitness());
    report.fact(L"Memory", memory());
    report.fact(L"Session", GetSystemMetrics(SM_REMOTESESSION) != 0 ? L"remote" : L"local");
    report.fact(L"Theme", theme());
    report.fact(L"Font smoothing", fontSmoothing());
    report.fact(L"Locale", locale());
}

void noteMonitors(Context& context) {
    context.report.fact(L"Number", std::to_wstring(GetSystemMetrics(SM_CMONITORS)));
    context.report.fact(L"Resolution for programs", std::to_wstring(screenDpi()) + L" dpi");
    const HANDLE before = useMonitorDpi();
    EnumDisplayMonitors(nullptr, nullptr, &noteMonitor, reinterpret_cast<LPARAM>(&context.report));
    if (before != nullptr) {
        useMonitorDpi(before);
    }
}

}  // namespace kv::host
