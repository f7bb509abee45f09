#include "host/selfcheck/InstalledFamily.h"

#include <windows.h>

#include "host/FileStamp.h"

namespace kv::host {

namespace {

bool isInstalled(const std::wstring& program, REGSAM view) {
    HKEY key = nullptr;
    const std::wstring path = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + program;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE | view, &key) != ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(key);
    return true;
}

}  // namespace

bool hasInstalledFamily(const std::wstring& programFolder) {
    for (const wchar_t* const program : kFamilyPrograms) {
        if (isInstalled(program, KEY_WOW64_64KEY) || isInstalled(program, KEY_WOW64_32KEY)) {
            return true;
        }
    }
    return exists(programFolder + L"KVRegistry.INI");
}

}  // namespace kv::host
