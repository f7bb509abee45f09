// What registration writes and takes back, in a registry of the test's own.
#include <gmock/gmock.h>

#include <map>

#include "tests/automation/Module.h"

namespace kv::test {
namespace {

using InstallFunction = HRESULT(WINAPI*)(BOOL, LPCWSTR);
/// Case does not tell registry names apart: systems spell "TypeLib" differently.
struct NameLess {
    bool operator()(const std::wstring& a, const std::wstring& b) const {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    }
};
using Snapshot = std::map<std::wstring, std::wstring, NameLess>;

const wchar_t* const kScratch = L"Software\\kvBandscope registration test";
const std::wstring kControlClsid = L"{3C676CE2-05C1-42D9-9D9B-E86519090CF2}";
const std::wstring kSlotClsid = L"{5399D6D5-00E6-4ED8-B089-74B4D5760492}";
const std::wstring kLibrary = L"{221D1500-C8C3-4EFD-AE3C-0DE90FB9A204}";

HRESULT registerServer() {
    return exported<ExportedFunction>("DllRegisterServer")();
}
HRESULT unregisterServer() {
    return exported<ExportedFunction>("DllUnregisterServer")();
}
HRESULT install(bool on, const wchar_t* commandLine) {
    return exported<InstallFunction>("DllInstall")(on, commandLine);
}

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

/// The system's roots lead into a key of ours for the time of a test, so that nothing of the machine changes.
class RegistrationTest : public testing::Test {
  protected:
    HKEY machine = nullptr;
    HKEY user = nullptr;

    void SetUp() override {
        ASSERT_NE(module(), nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
        machine = make(L"machine");
        user = make(L"user");
        HKEY classes = nullptr;
        RegCreateKeyExW(machine, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes, nullptr);
        ASSERT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes), ERROR_SUCCESS);
        RegCloseKey(classes);
        ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
        ASSERT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, user), ERROR_SUCCESS);
    }
    void TearDown() override {
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT})
            RegOverridePredefKey(root, nullptr);
        RegCloseKey(machine);
        RegCloseKey(user);
        RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
    }
    static HKEY make(const wchar_t* name) {
        HKEY key = nullptr;
        const std::wstring path = std::wstring(kScratch) + L"\\" + name;
        RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
        return key;
    }
    static Snapshot classesOf(HKEY root) {
        Snapshot result;
        HKEY classes = nullptr;
        if (RegOpenKeyExW(root, L"Software\\Classes", 0, KEY_READ, &classes) == ERROR_SUCCESS) {
            readTree(classes, L"", result);
            RegCloseKey(classes);
        }
        return result;
    }
    static void write(HKEY root, const std::wstring& path, const std::wstring& value) {
        const std::wstring full = L"Software\\Classes\\" + path;
        RegSetKeyValueW(root, full.c_str(), nullptr, REG_SZ, value.c_str(),
                        static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    }
};

Snapshot expectedClassKeys() {
    const std::wstring path = modulePath();
    Snapshot keys;
    for (const bool isControl : {true, false}) {
        const std::wstring progId = isControl ? L"kvBandscope.kvBandscope" : L"kvBandscope.FreqSlot";
        const std::wstring title = isControl ? L"kvBandscope Control" : L"kvBandscope FreqSlot";
        const std::wstring clsid = isControl ? kControlClsid : kSlotClsid;
        const std::wstring key = L"CLSID\\" + clsid;
        keys[key] = title;
        keys[key + L"\\InprocServer32"] = path;
        keys[key + L"\\InprocServer32@ThreadingModel"] = L"Apartment";
        keys[key + L"\\ProgID"] = progId + L".1";
        keys[key + L"\\VersionIndependentProgID"] = progId;
        keys[key + L"\\Version"] = L"1.0";
        keys[key + L"\\TypeLib"] = kLibrary;
        keys[key + L"\\Programmable"] = L"";
        keys[key + L"\\Implemented Categories"] = L"";
        keys[key + L"\\Implemented Categories\\{40FC6ED5-2438-11CF-A3DB-080036F12502}"] = L"";
        if (isControl) {
            keys[key + L"\\Implemented Categories\\{40FC6ED4-2438-11CF-A3DB-080036F12502}"] = L"";
            keys[key + L"\\Control"] = L"";
            keys[key + L"\\MiscStatus"] = L"0";
            keys[key + L"\\MiscStatus\\1"] = L"131473";
            keys[key + L"\\ToolboxBitmap32"] = path + L",101";
        }
        keys[progId] = title;
        keys[progId + L"\\CLSID"] = clsid;
        keys[progId + L"\\CurVer"] = progId + L".1";
        keys[progId + L".1"] = title;
        keys[progId + L".1\\CLSID"] = clsid;
    }
    keys[L""] = L"";
    keys[L"CLSID"] = L"";
    return keys;
}

bool isBelow(const std::wstring& key, const std::wstring& top) {
    return _wcsnicmp(key.c_str(), top.c_str(), top.size()) == 0;
}

/// Without the type library's part, which the system writes.
Snapshot ownPart(const Snapshot& all) {
    Snapshot result;
    for (const auto& [key, value] : all)
        if (!isBelow(key, L"TypeLib") && !isBelow(key, L"Interface"))
            result.emplace(key, value);
    return result;
}

TEST_F(RegistrationTest, WritesTheTableForTheMachine) {
    ASSERT_EQ(registerServer(), S_OK);
    const Snapshot written = classesOf(machine);
    EXPECT_EQ(ownPart(written), expectedClassKeys());
    const std::wstring system = sizeof(void*) == 8 ? L"win64" : L"win32";
    const auto library = written.find(L"TypeLib\\" + kLibrary + L"\\1.0\\0\\" + system);
    ASSERT_NE(library, written.end());
    EXPECT_EQ(library->second, modulePath());
    EXPECT_TRUE(classesOf(user).empty());
}

TEST_F(RegistrationTest, RemovesEverythingItWrote) {
    write(machine, L"CLSID\\{11111111-2222-3333-4444-555555555555}", L"a neighbour");
    write(machine, L"TypeLib\\{11111111-2222-3333-4444-555555555555}\\1.0", L"a neighbour");
    write(machine, L"Interface\\{11111111-2222-3333-4444-555555555555}", L"a neighbour");
    const Snapshot before = classesOf(machine);
    ASSERT_EQ(registerServer(), S_OK);
    ASSERT_NE(classesOf(machine), before);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, RegisteringTwiceIsLikeOnce) {
    ASSERT_EQ(registerServer(), S_OK);
    const Snapshot once = classesOf(machine);
    EXPECT_EQ(registerServer(), S_OK);
    EXPECT_EQ(classesOf(machine), once);
}

TEST_F(RegistrationTest, UnregisteringNothingSucceeds) {
    const Snapshot before = classesOf(machine);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, ForOneUserOnly) {
    const Snapshot before = ownPart(classesOf(machine));
    ASSERT_EQ(install(true, L"USER"), S_OK);
    EXPECT_EQ(ownPart(classesOf(user)), expectedClassKeys());
    EXPECT_EQ(ownPart(classesOf(machine)), before);
    EXPECT_EQ(install(false, L"user"), S_OK);
    Snapshot left = ownPart(classesOf(user));
    left.erase(L"");
    left.erase(L"CLSID");
    EXPECT_EQ(left, Snapshot());
}

TEST_F(RegistrationTest, InstallWithoutTextIsOrdinaryAndOtherTextsAreRefused) {
    EXPECT_EQ(install(true, nullptr), S_OK);
    EXPECT_EQ(ownPart(classesOf(machine)), expectedClassKeys());
    EXPECT_EQ(install(true, L"everybody"), E_INVALIDARG);
    EXPECT_EQ(install(false, L""), S_OK);
    EXPECT_EQ(classesOf(machine).count(L"kvBandscope.FreqSlot"), 0U);
}

TEST_F(RegistrationTest, WhatOthersPutIntoOurKeysStays) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"CLSID\\" + kControlClsid + L"\\TheirKey", L"theirs");
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot left = classesOf(machine);
    EXPECT_EQ(left.count(L"CLSID\\" + kControlClsid + L"\\TheirKey"), 1U);
    EXPECT_EQ(left.count(L"CLSID\\" + kControlClsid + L"\\InprocServer32"), 0U);
    EXPECT_EQ(left.count(L"CLSID\\" + kSlotClsid), 0U);
}

TEST_F(RegistrationTest, AnotherCopysEntriesStay) {
    ASSERT_EQ(registerServer(), S_OK);
    wchar_t other[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"kernel32.dll"), other, MAX_PATH);
    write(machine, L"CLSID\\" + kControlClsid + L"\\InprocServer32", other);
    write(machine, L"CLSID\\" + kSlotClsid + L"\\InprocServer32", other);
    const Snapshot before = classesOf(machine);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, EntriesOfACopyThatIsGoneAreRemoved) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"CLSID\\" + kControlClsid + L"\\InprocServer32", L"C:\\no such folder\\kvBandscope.ocx");
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(machine).count(L"CLSID\\" + kControlClsid), 0U);
}

}  // namespace
}  // namespace kv::test
