#include "host/About.h"

#include <array>
#include <vector>

#include "host/TextDialog.h"
#include "host/resource.h"

namespace kv::host {

namespace {

constexpr int kBits = static_cast<int>(sizeof(void*)) * 8;

std::wstring pathOf(HMODULE module) {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    return {path.data(), length};
}

}  // namespace

std::wstring versionOf(const std::wstring& file) {
    DWORD unused = 0;
    std::vector<BYTE> block(GetFileVersionInfoSizeW(file.c_str(), &unused));
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    if (block.empty() || !GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &size) || size < sizeof *info) {
        return L"unknown";
    }
    return std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." + std::to_wstring(LOWORD(info->dwFileVersionMS)) +
           L"." + std::to_wstring(HIWORD(info->dwFileVersionLS)) + L"." +
           std::to_wstring(LOWORD(info->dwFileVersionLS));
}

std::wstring moduleOf(IUnknown* object) {
    // The function table of an object is in the module with its code.
    const auto table = *reinterpret_cast<const wchar_t* const*>(object);
    HMODULE module = nullptr;
    const bool found = GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, table, &module);
    return found ? pathOf(module) : L"unknown";
}

void showAbout(HWND owner, IUnknown* control) {
    const std::wstring module = moduleOf(control);
    const std::wstring text = L"BandscopeHost " + versionOf(pathOf(nullptr)) + L", " + std::to_wstring(kBits) +
                              L"-bit\r\nkvBandscope control " + versionOf(module) + L"\r\n" + module;
    showTextDialog(owner, IDD_ABOUT, L"Sample host of the kvBandscope control", text);
}

}  // namespace kv::host
