#include "tests/automation/OwnRegistry.h"

namespace kv::test {

namespace {

using InstallFunction = HRESULT(WINAPI*)(BOOL, LPCWSTR);

const wchar_t* const kScratch = L"Software\\kvBandscope registration test";
const std::wstring kClasses = L"Software\\Classes";

void readTree(HKEY key, const std::wstring& path, Snapshot& out) {
    out[path] = L"";
    for (DWORD i = 0;; ++i) {
        wchar_t name[256];
        DWORD nameLength = static_cast<DWORD>(std::size(name));
        wchar_t data[1024] = {};
        DWORD bytes = sizeof(data) - sizeof(wchar_t);
        if (RegEnumValueW(key, i, name, &nameLength, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &bytes) !=
            ERROR_SUCCESS)
            break;
        out[path + (nameLength ? L"@" + std::wstring(name) : std::wstring())] = data;
    }
    for (DWORD i = 0;; ++i) {
        wchar_t name[256];
        DWORD length = static_cast<DWORD>(std::size(name));
        if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            break;
        HKEY child = nullptr;
        if (RegOpenKeyExW(key, name, 0, KEY_READ, &child) == ERROR_SUCCESS) {
            readTree(child, path.empty() ? name : path + L"\\" + name, out);
            RegCloseKey(child);
        }
    }
}

HKEY make(const wchar_t* name) {
    HKEY key = nullptr;
    const std::wstring path = std::wstring(kScratch) + L"\\" + name;
    RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    return key;
}

}  // namespace

HRESULT registerServer() {
    return exported<ExportedFunction>("DllRegisterServer")();
}

HRESULT unregisterServer() {
    return exported<ExportedFunction>("DllUnregisterServer")();
}

HRESULT install(bool on, const wchar_t* commandLine) {
    return exported<InstallFunction>("DllInstall")(on, commandLine);
}

void OwnRegistry::SetUp() {
    ASSERT_NE(module(), nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
    machine = make(L"machine");
    user = make(L"user");
    HKEY classes = nullptr;
    RegCreateKeyExW(machine, kClasses.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes, nullptr);
    ASSERT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes), ERROR_SUCCESS);
    RegCloseKey(classes);
    ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, user), ERROR_SUCCESS);
}

void OwnRegistry::TearDown() {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT})
        RegOverridePredefKey(root, nullptr);
    RegCloseKey(machine);
    RegCloseKey(user);
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
}

Snapshot OwnRegistry::classesOf(HKEY root) {
    Snapshot result;
    HKEY classes = nullptr;
    if (RegOpenKeyExW(root, kClasses.c_str(), 0, KEY_READ, &classes) == ERROR_SUCCESS) {
        readTree(classes, L"", result);
        RegCloseKey(classes);
    }
    return result;
}

void OwnRegistry::write(HKEY root, const std::wstring& path, const std::wstring& value, const wchar_t* name) {
    const std::wstring full = kClasses + L"\\" + path;
    EXPECT_EQ(RegSetKeyValueW(root, full.c_str(), name, REG_SZ, value.c_str(),
                              static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
}

void OwnRegistry::remove(HKEY root, const std::wstring& path) {
    EXPECT_EQ(RegDeleteTreeW(root, (path.empty() ? kClasses : kClasses + L"\\" + path).c_str()), ERROR_SUCCESS);
}

}  // namespace kv::test
