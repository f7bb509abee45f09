#include "com/RegistryKey.h"

namespace kv::com {

LSTATUS RegistryKey::open(HKEY parent, const std::wstring& path, REGSAM access) noexcept {
    return RegOpenKeyExW(parent, path.c_str(), 0, access, &key_);
}

LSTATUS RegistryKey::create(HKEY parent, const std::wstring& path) noexcept {
    return RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key_, nullptr);
}

LSTATUS RegistryKey::setText(const wchar_t* name, const std::wstring& text) const noexcept {
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), bytes);
}

LSTATUS RegistryKey::deleteValue(const wchar_t* name) const noexcept {
    const LSTATUS status = RegDeleteValueW(key_, name);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

std::wstring RegistryKey::text(const wchar_t* name) const {
    DWORD bytes = 0;
    DWORD type = 0;
    if (RegQueryValueExW(key_, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS || type != REG_SZ)
        return {};
    std::wstring value(bytes / sizeof(wchar_t), L'\0');
    if (RegQueryValueExW(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(value.data()), &bytes) != ERROR_SUCCESS)
        return {};
    return value.substr(0, value.find(L'\0'));
}

bool RegistryKey::isEmpty() const noexcept {
    DWORD keys = 0;
    DWORD values = 0;
    return RegQueryInfoKeyW(key_, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                            nullptr, nullptr) == ERROR_SUCCESS &&
           keys == 0 && values == 0;
}

}  // namespace kv::com
