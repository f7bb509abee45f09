// Runs the tests; under Wine with windows that are not managed by a window manager.
#include <windows.h>

#include <gmock/gmock.h>

#include <string>

namespace {

constexpr wchar_t kDriver[] = L"Software\\Wine\\AppDefaults\\kv_win32_tests.exe\\X11 Driver";
constexpr wchar_t kManaged[] = L"Managed";

/// On a display without a window manager each window that is hidden waits two seconds for a reply that never comes, and
/// no window stays maximized. True if the setting against this was missing and has been made; it needs a new start.
bool settingWasMissing() {
    HKEY wine = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Wine", 0, KEY_QUERY_VALUE, &wine) != ERROR_SUCCESS)
        return false;
    RegCloseKey(wine);
    HKEY driver = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kDriver, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &driver, nullptr) !=
        ERROR_SUCCESS)
        return false;
    const bool missing = RegQueryValueExW(driver, kManaged, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS;
    const bool made = missing && RegSetValueExW(driver, kManaged, 0, REG_SZ, reinterpret_cast<const BYTE*>(L"N"),
                                                2 * sizeof(wchar_t)) == ERROR_SUCCESS;
    RegCloseKey(driver);
    return made;
}

/// Starts this program again with its arguments and returns its exit code.
int runAgain() {
    std::wstring line = GetCommandLineW();
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started))
        return 3;
    WaitForSingleObject(started.hProcess, INFINITE);
    DWORD code = 3;
    GetExitCodeProcess(started.hProcess, &code);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return static_cast<int>(code);
}

}  // namespace

int main(int argc, char** argv) {
    if (settingWasMissing())
        return runAgain();
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
