// Which files are used, and what is registered.
#include <windows.h>

#include <array>
#include <vector>

#include "host/FileStamp.h"
#include "host/selfcheck/Steps.h"

namespace kv::host {

namespace {

constexpr wchar_t kProgId[] = L"kvBandscope.kvBandscope";

std::wstring versionOf(const std::wstring& file) {
    DWORD ignored = 0;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(file.c_str(), &ignored));
    VS_FIXEDFILEINFO* info = nullptr;
    UINT length = 0;
    if (block.empty() || !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length) || info == nullptr) {
        return L"no version";
    }
    return L"version " + std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." +
           std::to_wstring(LOWORD(info->dwFileVersionMS)) + L"." + std::to_wstring(HIWORD(info->dwFileVersionLS)) +
           L"." + std::to_wstring(LOWORD(info->dwFileVersionLS));
}

std::wstring about(const std::wstring& file) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data)) {
        return L"missing";
    }
    return versionOf(file) + L", " + std::to_wstring(data.nFileSizeLow) + L" bytes";
}

struct Hive {
    const wchar_t* name;
    HKEY key;
    REGSAM view;
};

/// On a 32-bit system both views are the same.
constexpr std::size_t kHives = 4;
std::array<Hive, kHives> hives() {
    return {{{L"All users, 64 bit", HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY},
             {L"All users, 32 bit", HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY},
             {L"This user, 64 bit", HKEY_CURRENT_USER, KEY_WOW64_64KEY},
             {L"This user, 32 bit", HKEY_CURRENT_USER, KEY_WOW64_32KEY}}};
}

/// The default value of a key below Software\Classes; empty if there is none.
std::wstring registeredText(const Hive& hive, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(hive.key, (L"Software\\Classes\\" + path).c_str(), 0, KEY_QUERY_VALUE | hive.view, &key) !=
        ERROR_SUCCESS) {
        return {};
    }
    std::array<wchar_t, 2048> text{};
    auto bytes = static_cast<DWORD>(sizeof text - sizeof(wchar_t));
    const LSTATUS status =
        RegQueryValueExW(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &bytes);
    RegCloseKey(key);
    return status == ERROR_SUCCESS ? text.data() : std::wstring();
}

void noteHive(Context& context, const Hive& hive) {
    const std::wstring clsid = registeredText(hive, std::wstring(kProgId) + L"\\CLSID");
    if (clsid.empty()) {
        context.report.fact(hive.name, L"not registered");
        return;
    }
    const std::wstring file = registeredText(hive, L"CLSID\\" + clsid + L"\\InprocServer32");
    context.report.fact(hive.name, clsid + (file.empty() ? L", no file" : L", " + file + L", " + about(file)));
    if (file.empty() || !exists(file)) {
        context.report.failed(L"Registration", std::wstring(hive.name) + L": the registered file is missing");
    }
}

}  // namespace

void noteFiles(Context& context) {
    std::array<wchar_t, 32768> program{};
    GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    Report& report = context.report;
    report.fact(L"Folder", context.programFolder);
    report.fact(nameOf(program.data()), about(program.data()));
    for (const wchar_t* const name : {L"kvBandscope.ocx", L"kvBandscope.manifest"}) {
        report.fact(name, about(context.programFolder + name));
    }
}

void checkRegistration(Context& context) {
    for (const Hive& hive : hives()) {
        noteHive(context, hive);
    }
}

}  // namespace kv::host
