// What registration writes and removes, in a registry of the test's own.
#include "tests/automation/OwnRegistry.h"

namespace kv::test {
namespace {

const wchar_t* const kOwnPlatform = sizeof(void*) == 8 ? L"win64" : L"win32";
const wchar_t* const kOtherPlatform = sizeof(void*) == 8 ? L"win32" : L"win64";
constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const std::wstring kForeign = L"{11111111-2222-3333-4444-555555555555}";
const std::wstring kLibraryKey = L"TypeLib\\" + kLibraryId;

class RegistrationTest : public OwnRegistry {};

std::wstring fileOfAnotherCopy() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(L"kernel32.dll"), path, MAX_PATH);
    return path;
}

void addClass(Snapshot& keys, const std::wstring& progId, const std::wstring& title, const std::wstring& clsid) {
    const std::wstring key = L"CLSID\\" + clsid;
    keys[key] = title;
    keys[key + L"\\InprocServer32"] = modulePath();
    keys[key + L"\\InprocServer32@ThreadingModel"] = L"Apartment";
    keys[key + L"\\ProgID"] = progId + L".1";
    keys[key + L"\\VersionIndependentProgID"] = progId;
    keys[key + L"\\Version"] = L"1.0";
    keys[key + L"\\TypeLib"] = kLibraryId;
    keys[key + L"\\Programmable"] = L"";
    keys[key + L"\\Implemented Categories"] = L"";
    keys[key + L"\\Implemented Categories\\{40FC6ED5-2438-11CF-A3DB-080036F12502}"] = L"";
    keys[progId] = title;
    keys[progId + L"\\CLSID"] = clsid;
    keys[progId + L"\\CurVer"] = progId + L".1";
    keys[progId + L".1"] = title;
    keys[progId + L".1\\CLSID"] = clsid;
}

void addInterface(Snapshot& keys, const std::wstring& iid, const std::wstring& name, const std::wstring& marshaller) {
    const std::wstring key = L"Interface\\" + iid;
    keys[key] = name;
    keys[key + L"\\ProxyStubClsid32"] = marshaller;
    keys[key + L"\\TypeLib"] = kLibraryId;
    keys[key + L"\\TypeLib@Version"] = L"1.0";
}

Snapshot expectedKeys() {
    Snapshot keys;
    for (const wchar_t* container : {L"", L"CLSID", L"Interface", L"TypeLib"})
        keys[container] = L"";
    addClass(keys, L"kvBandscope.kvBandscope", L"kvBandscope Control", kControlClsid);
    addClass(keys, L"kvBandscope.FreqSlot", L"kvBandscope FreqSlot", kSlotClsid);
    addClass(keys, L"kvBandscope.View", L"kvBandscope View", kViewClsid);
    const std::wstring control = L"CLSID\\" + kControlClsid;
    keys[control + L"\\Implemented Categories\\{40FC6ED4-2438-11CF-A3DB-080036F12502}"] = L"";
    keys[control + L"\\Control"] = L"";
    keys[control + L"\\MiscStatus"] = L"0";
    keys[control + L"\\MiscStatus\\1"] = L"131473";
    keys[control + L"\\ToolboxBitmap32"] = modulePath() + L",101";
    const std::wstring dual = L"{00020424-0000-0000-C000-000000000046}";
    addInterface(keys, kControlInterface, L"_kvBandscope", dual);
    addInterface(keys, kSlotInterface, L"_FreqSlot", dual);
    addInterface(keys, kViewInterface, L"_BandscopeView", dual);
    addInterface(keys, kEventInterface, L"__kvBandscope", L"{00020420-0000-0000-C000-000000000046}");
    keys[kLibraryKey] = L"";
    keys[kLibraryKey + L"\\1.0"] = L"kvBandscope spectrum display";
    keys[kLibraryKey + L"\\1.0\\FLAGS"] = L"0";
    keys[kLibraryKey + L"\\1.0\\0"] = L"";
    keys[kLibraryKey + L"\\1.0\\0\\" + kOwnPlatform] = modulePath();
    return keys;
}

bool isBelow(const std::wstring& key, const std::wstring& top) {
    return _wcsnicmp(key.c_str(), top.c_str(), top.size()) == 0;
}

Snapshot below(const Snapshot& all, const std::wstring& top) {
    Snapshot result;
    for (const auto& [key, value] : all) {
        if (isBelow(key, top))
            result.emplace(key, value);
    }
    return result;
}

TEST_F(RegistrationTest, WritesTheTableForTheMachine) {
    ASSERT_EQ(registerServer(), S_OK);
    EXPECT_EQ(classesOf(machine), expectedKeys());
    EXPECT_TRUE(classesOf(user).empty());
}

TEST_F(RegistrationTest, TheTypeLibraryIsFoundInThisBitness) {
    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadRegTypeLib(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, library.GetAddressOf()), TYPE_E_LIBNOTREGISTERED);
    ASSERT_EQ(registerServer(), S_OK);
    ASSERT_EQ(LoadRegTypeLib(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, library.GetAddressOf()), S_OK);
    ComPtr<ITypeInfo> control;
    EXPECT_EQ(library->GetTypeInfoOfGuid(CLSID_kvBandscope, control.GetAddressOf()), S_OK);
    EXPECT_EQ(unregisterServer(), S_OK);
}

TEST_F(RegistrationTest, RemovesEverythingItWrote) {
    write(machine, L"CLSID\\" + kForeign, L"a neighbor");
    write(machine, L"TypeLib\\" + kForeign + L"\\1.0", L"a neighbor");
    write(machine, L"Interface\\" + kForeign, L"a neighbor");
    const Snapshot before = classesOf(machine);
    ASSERT_EQ(registerServer(), S_OK);
    ASSERT_NE(classesOf(machine), before);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, RegisteringTwiceEqualsRegisteringOnce) {
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
    EXPECT_TRUE(classesOf(user).empty());
}

TEST_F(RegistrationTest, TheTableCanBeWrittenForOneUserOnly) {
    const Snapshot before = classesOf(machine);
    ASSERT_EQ(install(true, L"USER"), S_OK);
    EXPECT_EQ(classesOf(user), expectedKeys());
    EXPECT_EQ(classesOf(machine), before);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(classesOf(user), (Snapshot{{L"", L""}}));
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, AUsersOtherClassesStay) {
    write(user, L"CLSID\\" + kForeign, L"a neighbor");
    const Snapshot before = classesOf(user);
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(classesOf(user), before);
}

TEST_F(RegistrationTest, MachineAndUserDoNotTouchEachOther) {
    ASSERT_EQ(registerServer(), S_OK);
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(classesOf(machine), expectedKeys());
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_EQ(unregisterServer(), S_FALSE);
    EXPECT_EQ(classesOf(user), expectedKeys());
}

TEST_F(RegistrationTest, UnregisteringTheMachineReportsRemainingUserEntries) {
    ASSERT_EQ(registerServer(), S_OK);
    ASSERT_EQ(install(true, L"user"), S_OK);
    EXPECT_EQ(install(false, L""), S_FALSE) << "done, and other entries of these classes exist";
    EXPECT_EQ(unregisterServer(), S_FALSE);
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(unregisterServer(), S_OK);
}

TEST_F(RegistrationTest, WithoutAccessToTheMachinesClassesTheUsersAreWritten) {
    remove(machine, L"");
    ASSERT_EQ(registerServer(), S_OK);
    EXPECT_EQ(classesOf(user), expectedKeys());
    EXPECT_TRUE(classesOf(machine).empty());
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(user), (Snapshot{{L"", L""}}));
}

TEST_F(RegistrationTest, InstallWithoutTextIsOrdinaryAndOtherTextsAreRefused) {
    EXPECT_EQ(install(true, nullptr), S_OK);
    EXPECT_EQ(classesOf(machine), expectedKeys());
    EXPECT_EQ(install(true, L"everybody"), E_INVALIDARG);
    EXPECT_EQ(install(false, L""), S_OK);
    EXPECT_EQ(classesOf(machine).count(L"kvBandscope.FreqSlot"), 0U);
}

TEST_F(RegistrationTest, ForeignValuesInOurKeysStay) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"CLSID\\" + kControlClsid + L"\\TheirKey", L"theirs");
    write(machine, L"CLSID\\" + kSlotClsid + L"\\InprocServer32", L"theirs", L"TheirValue");
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot expected = {{L"", L""},
                               {L"CLSID", L""},
                               {L"CLSID\\" + kControlClsid, L""},
                               {L"CLSID\\" + kControlClsid + L"\\TheirKey", L"theirs"},
                               {L"CLSID\\" + kSlotClsid, L""},
                               {L"CLSID\\" + kSlotClsid + L"\\InprocServer32", L""},
                               {L"CLSID\\" + kSlotClsid + L"\\InprocServer32@TheirValue", L"theirs"},
                               {L"Interface", L""},
                               {L"TypeLib", L""}};
    EXPECT_EQ(classesOf(machine), expected);
}

TEST_F(RegistrationTest, AnotherCopysEntriesStay) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"CLSID\\" + kControlClsid + L"\\InprocServer32", fileOfAnotherCopy());
    write(machine, L"CLSID\\" + kSlotClsid + L"\\InprocServer32", fileOfAnotherCopy());
    write(machine, L"CLSID\\" + kViewClsid + L"\\InprocServer32", fileOfAnotherCopy());
    const Snapshot before = classesOf(machine);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(classesOf(machine), before);
}

TEST_F(RegistrationTest, EntriesOfADeletedCopyAreRemoved) {
    const Snapshot before = classesOf(machine);
    ASSERT_EQ(registerServer(), S_OK);
    const std::wstring gone = L"C:\\no such folder\\kvBandscope.ocx";
    write(machine, L"CLSID\\" + kControlClsid + L"\\InprocServer32", gone);
    write(machine, kLibraryKey + L"\\1.0\\0\\" + kOwnPlatform, gone);
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(below(classesOf(machine), L"CLSID\\").size(), 0U);
    EXPECT_EQ(below(classesOf(machine), L"TypeLib\\").size(), 0U);
}

TEST_F(RegistrationTest, AProgIdTakenOverByAnotherProgramStays) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"kvBandscope.FreqSlot", L"their class");
    write(machine, L"kvBandscope.FreqSlot\\CLSID", kForeign);
    const Snapshot theirs = {{L"kvBandscope.FreqSlot", L"their class"},
                             {L"kvBandscope.FreqSlot\\CLSID", kForeign},
                             {L"kvBandscope.FreqSlot\\CurVer", L"kvBandscope.FreqSlot.1"}};
    EXPECT_EQ(unregisterServer(), S_OK);
    EXPECT_EQ(below(classesOf(machine), L"kvBandscope."), theirs);
    EXPECT_EQ(below(classesOf(machine), L"CLSID\\").size(), 0U);
}

TEST_F(RegistrationTest, ALaterVersionKeepsTheGeneralName) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, L"kvBandscope.kvBandscope\\CurVer", L"kvBandscope.kvBandscope.2");
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot left = below(classesOf(machine), L"kvBandscope.");
    EXPECT_EQ(left.size(), 3U);
    EXPECT_EQ(left.count(L"kvBandscope.kvBandscope\\CLSID"), 1U);
    EXPECT_EQ(left.count(L"kvBandscope.kvBandscope.1"), 0U);
}

TEST_F(RegistrationTest, ALibraryEntryOfAnotherCopyStays) {
    ASSERT_EQ(registerServer(), S_OK);
    write(machine, kLibraryKey + L"\\1.0\\0\\" + kOwnPlatform, fileOfAnotherCopy());
    const Snapshot before = classesOf(machine);
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot after = classesOf(machine);
    EXPECT_EQ(below(after, L"TypeLib"), below(before, L"TypeLib"));
    EXPECT_EQ(below(after, L"Interface"), below(before, L"Interface"));
    EXPECT_EQ(below(after, L"CLSID\\").size(), 0U);
}

TEST_F(RegistrationTest, AnotherVersionOfTheLibraryStays) {
    write(machine, kLibraryKey + L"\\2.0\\0\\win64", L"C:\\later.ocx");
    const Snapshot before = classesOf(machine);
    ASSERT_EQ(registerServer(), S_OK);
    const std::wstring later = L"Interface\\" + kSlotInterface + L"\\TypeLib";
    write(machine, later, L"2.0", L"Version");
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot after = classesOf(machine);
    EXPECT_EQ(below(after, L"TypeLib"), below(before, L"TypeLib"));
    EXPECT_EQ(below(after, L"Interface\\").size(), 4U);
    EXPECT_EQ(below(after, later).size(), 2U);
}

TEST_F(RegistrationTest, TheOtherArchitecturesLibraryStays) {
    ASSERT_EQ(registerServer(), S_OK);
    const std::wstring other = kLibraryKey + L"\\1.0\\0\\" + kOtherPlatform;
    write(machine, other, L"C:\\other\\kvBandscope.ocx");
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot expected = {{L"TypeLib", L""},
                               {kLibraryKey, L""},
                               {kLibraryKey + L"\\1.0", L"kvBandscope spectrum display"},
                               {kLibraryKey + L"\\1.0\\FLAGS", L"0"},
                               {kLibraryKey + L"\\1.0\\0", L""},
                               {other, L"C:\\other\\kvBandscope.ocx"}};
    EXPECT_EQ(below(classesOf(machine), L"TypeLib"), expected);
}

TEST_F(RegistrationTest, TheOtherArchitecturesClassKeepsTheNames) {
    // With this key a system of two architectures has two views here as well.
    write(machine, L"Wow6432Node", L"");
    HKEY key = nullptr;
    const std::wstring server = L"Software\\Classes\\CLSID\\" + kControlClsid + L"\\InprocServer32";
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, server.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | kOtherView, nullptr,
                              &key, nullptr),
              ERROR_SUCCESS);
    const std::wstring file = L"C:\\other\\kvBandscope.ocx";
    RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(file.c_str()),
                   static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    // A system of one architecture only has a single view, in which no other architecture has the names.
    const bool twoViews = classesOf(machine).count(L"CLSID\\" + kControlClsid + L"\\InprocServer32") == 0;
    EXPECT_TRUE(twoViews || sizeof(void*) == 4);
    ASSERT_EQ(registerServer(), S_OK);
    EXPECT_EQ(unregisterServer(), S_OK);
    const Snapshot names = below(classesOf(machine), L"kvBandscope.");
    EXPECT_EQ(below(names, L"kvBandscope.kvBandscope").size(), twoViews ? 5U : 0U);
    EXPECT_EQ(below(names, L"kvBandscope.FreqSlot").size(), 0U);
}

}  // namespace
}  // namespace kv::test
