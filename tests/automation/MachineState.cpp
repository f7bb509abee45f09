#include "tests/automation/MachineState.h"

#include <array>
#include <filesystem>

namespace kv::test {

namespace {

void addValues(HKEY key, const std::wstring& path, RegistryValues& values) {
    std::array<wchar_t, 512> name{};
    std::vector<BYTE> data(65536);
    for (DWORD i = 0;; ++i) {
        auto nameLength = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        if (RegEnumValueW(key, i, name.data(), &nameLength, nullptr, nullptr, data.data(), &size) != ERROR_SUCCESS)
            break;
        values[path + L"@" + name.data()] = {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)};
    }
    for (DWORD i = 0;; ++i) {
        auto length = static_cast<DWORD>(name.size());
        if (RegEnumKeyExW(key, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY inner = nullptr;
        values[path + L"\\" + name.data()] = {};
        if (RegOpenKeyExW(key, name.data(), 0, KEY_READ, &inner) == ERROR_SUCCESS) {
            addValues(inner, path + L"\\" + name.data(), values);
            RegCloseKey(inner);
        }
    }
}

RegistryValues registryBelow(HKEY root, const wchar_t* path) {
    RegistryValues values;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) == ERROR_SUCCESS) {
        addValues(key, path, values);
        RegCloseKey(key);
    }
    return values;
}

}  // namespace

FileLengths filesBelow(const std::wstring& folder) {
    FileLengths files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        files[entry.path().wstring()] = entry.is_regular_file() ? entry.file_size() : 0;
    return files;
}

RegistryValues registryState() {
    RegistryValues values = registryBelow(HKEY_CURRENT_USER, L"Software");
    for (const wchar_t* path :
         {L"Software\\Classes\\CLSID", L"Software\\Classes\\TypeLib", L"Software\\Microsoft\\Windows\\CurrentVersion"})
        values.merge(registryBelow(HKEY_LOCAL_MACHINE, path));
    return values;
}

std::vector<std::wstring> changes(const RegistryValues& before, const RegistryValues& after) {
    std::vector<std::wstring> names;
    for (const auto& [first, second] : {std::pair(&before, &after), std::pair(&after, &before)})
        for (const auto& [name, value] : *first)
            if (const auto found = second->find(name);
                (found == second->end() || found->second != value) && !name.starts_with(L"Software\\Wine\\"))
                names.push_back(name);
    return names;
}

}  // namespace kv::test
