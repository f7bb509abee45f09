// How the configuration and the log use the system: real registry keys, INI files and folders.
#include "win32/WinSystem.h"

#include <gmock/gmock.h>

#include "tests/win32/TempFolder.h"
#include "util/Product.h"
#include "util/RuntimeError.h"
#include "util/UserPrompt.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {
namespace {

using test::AppPathKey;
using test::contentOf;
using test::fileExists;
using test::LocalMachineKey;
using test::TempFolder;
using test::writeContent;
using util::product::kFamilyPrograms;

constexpr wchar_t kProgram[] = L"kvBandscopeTest.exe";

class WinRegistryTest : public ::testing::Test {
  protected:
    std::optional<std::wstring> value() { return registry.defaultValue(AppPathKey::pathOf(kProgram)); }
    WinRegistry registry;
};

TEST_F(WinRegistryTest, AMissingKeyOrDefaultValueGivesNoValue) {
    EXPECT_EQ(value(), std::nullopt);
    EXPECT_EQ(registry.defaultValue(L"SOFTWARE\\No Such Maker\\No Such Key"), std::nullopt);
    const AppPathKey key(kProgram);
    EXPECT_EQ(value(), std::nullopt);
}

TEST_F(WinRegistryTest, TextIsReadUnchanged) {
    AppPathKey key(kProgram);
    for (const std::wstring text : {L"C:\\KV\\KVZEP32.EXE", L"", L"\u0141\u00F3d\u017A \u0394.exe"}) {
        key.set(text);
        EXPECT_EQ(value(), text);
    }
}

TEST_F(WinRegistryTest, LongTextAndTextWithoutItsTerminator) {
    AppPathKey key(kProgram);
    for (const std::size_t length : {259U, 260U, 261U, 5000U}) {
        key.set(std::wstring(length, L'x'));
        EXPECT_EQ(value(), std::wstring(length, L'x'));
        key.set(std::wstring(length, L'y'), REG_SZ, false);
        EXPECT_EQ(value(), std::wstring(length, L'y'));
    }
}

TEST_F(WinRegistryTest, EnvironmentVariablesAreExpandedInTextOfThatKindOnly) {
    SetEnvironmentVariableW(L"KV_TEST_FOLDER", L"D:\\Family");
    AppPathKey key(kProgram);
    key.set(L"%KV_TEST_FOLDER%\\a.exe", REG_EXPAND_SZ);
    EXPECT_EQ(value(), L"D:\\Family\\a.exe");
    key.set(L"%KV_TEST_FOLDER%\\a.exe");
    EXPECT_EQ(value(), L"%KV_TEST_FOLDER%\\a.exe");
    SetEnvironmentVariableW(L"KV_TEST_FOLDER", nullptr);
}

TEST_F(WinRegistryTest, AValueThatIsNoTextGivesNoValue) {
    AppPathKey key(kProgram);
    const DWORD number = 7;
    key.setBytes(&number, sizeof number, REG_DWORD);
    EXPECT_EQ(value(), std::nullopt);
    key.setBytes(L"a", 4, REG_BINARY);
    EXPECT_EQ(value(), std::nullopt);
}

TEST_F(WinRegistryTest, BothRegistryViewsAreRead) {
    // A key outside of the application paths, because newer systems share those between both views.
    const std::wstring path = L"SOFTWARE\\kvBandscopeTest";
    {
        LocalMachineKey narrow(path, KEY_WOW64_32KEY);
        narrow.set(L"32");
        EXPECT_EQ(registry.defaultValue(path), L"32");
    }
    EXPECT_EQ(registry.defaultValue(path), std::nullopt);
    LocalMachineKey wide(path, KEY_WOW64_64KEY);
    wide.set(L"64");
    EXPECT_EQ(registry.defaultValue(path), L"64");
}

class WinIniTest : public ::testing::Test {
  protected:
    void write(const std::string& text) { writeContent(file, text); }
    std::optional<std::wstring> read(const wchar_t* key) { return ini.read(key, L"CONFIG", file); }

    TempFolder folder{L"kvIni"};
    std::wstring file = folder.file(L"a.ini");
    WinIni ini;
};

TEST_F(WinIniTest, AMissingFileSectionOrKeyGivesNoValue) {
    EXPECT_EQ(read(L"WORK PATH"), std::nullopt);
    write("[OTHER]\r\nWORK PATH=x\r\n[CONFIG]\r\nELSE=y\r\n");
    EXPECT_EQ(read(L"WORK PATH"), std::nullopt);
    EXPECT_EQ(read(L"ELSE"), L"y");
    EXPECT_EQ(ini.read(L"WORK PATH", L"NONE", file), std::nullopt);
    EXPECT_EQ(util::getINI(ini, L"WORK PATH", L"CONFIG", file, L"the default"), L"the default");
}

TEST_F(WinIniTest, ValuesAreReadAsTheSystemReadsThem) {
    write("[CONFIG]\r\nWORK PATH = C:\\My Work\\ \r\nEMPTY=\r\nQUOTED=\"  in quotes \"\r\nSEMI=a;b\r\n;OFF=1\r\n");
    EXPECT_EQ(read(L"WORK PATH"), L"C:\\My Work\\");
    EXPECT_EQ(read(L"work path"), L"C:\\My Work\\");
    EXPECT_EQ(read(L"EMPTY"), L"");
    EXPECT_EQ(read(L"QUOTED"), L"  in quotes ");
    EXPECT_EQ(read(L"SEMI"), L"a;b");
    EXPECT_EQ(read(L"OFF"), std::nullopt);
}

TEST_F(WinIniTest, LongValuesAreReadWhole) {
    for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 2047U, 2048U, 9000U}) {
        write("[CONFIG]\r\nLONG=" + std::string(length, 'x') + "\r\n");
        EXPECT_EQ(read(L"LONG"), std::wstring(length, L'x')) << length;
    }
}

TEST_F(WinIniTest, CharactersOfTheCodePageAreRead) {
    // 0xE9 is an accented e in the Western code page; other code pages have another character there.
    write("[CONFIG]\r\nTEXT=caf\xE9\r\n");
    wchar_t letter = 0;
    MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, &letter, 1);
    EXPECT_EQ(read(L"TEXT"), std::wstring(L"caf") + letter);
}

TEST_F(WinIniTest, FileWhosePathTheCodePageLacksIsReachedAllTheSame) {
    file = folder.file(L"\u0394\u0416\u4E2D.ini");
    write("[CONFIG]\r\nTEXT=found\r\n");
    EXPECT_EQ(read(L"TEXT"), L"found");
    EXPECT_EQ(ini.read(L"\u0394", L"CONFIG", file), std::nullopt);
    EXPECT_EQ(ini.read(L"TEXT", L"CONFIG", folder.file(L"\u0394missing.ini")), std::nullopt);
}

class WinFileStoreTest : public ::testing::Test {
  protected:
    TempFolder folder{L"kvFiles"};
    WinFileStore files;
};

TEST_F(WinFileStoreTest, FoldersAreCreatedOneLevelAtATime) {
    const std::wstring path = folder.file(L"new");
    EXPECT_FALSE(files.folderExists(path));
    EXPECT_THROW(files.createFolder(path + L"\\below"), util::RuntimeError);
    files.createFolder(path);
    EXPECT_TRUE(files.folderExists(path));
    EXPECT_TRUE(files.folderExists(path + L"\\"));
    EXPECT_NO_THROW(files.createFolder(path));
    EXPECT_FALSE(files.folderExists(L""));
    writeContent(folder.file(L"file"), "x");
    EXPECT_FALSE(files.folderExists(folder.file(L"file")));
    EXPECT_THROW(files.createFolder(folder.file(L"file")), util::RuntimeError);
}

TEST_F(WinFileStoreTest, TextIsAddedInUtf8) {
    const std::wstring path = folder.file(L"log.txt");
    files.append(path, L"one\r\n");
    files.append(path, L"\u00E9 \u0394 \u4E2D\r\n");
    files.append(path, L"");
    EXPECT_EQ(contentOf(path), "one\r\n\xC3\xA9 \xCE\x94 \xE4\xB8\xAD\r\n");
}

TEST_F(WinFileStoreTest, FileIsClosedAfterEachText) {
    const std::wstring path = folder.file(L"log.txt");
    files.append(path, L"one");
    EXPECT_TRUE(MoveFileW(path.c_str(), folder.file(L"moved.txt").c_str()));
    files.append(path, L"two");
    EXPECT_EQ(contentOf(path), "two");
}

TEST_F(WinFileStoreTest, AnotherProgramMayHoldTheFileOpen) {
    const std::wstring path = folder.file(L"log.txt");
    writeContent(path, "one\r\n");
    const HANDLE held = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    files.append(path, L"two\r\n");
    CloseHandle(held);
    EXPECT_EQ(contentOf(path), "one\r\ntwo\r\n");
}

TEST_F(WinFileStoreTest, FileThatCannotBeWrittenIsAnError) {
    const auto fails = [this](const std::wstring& path) {
        try {
            files.append(path, L"x");
        } catch (const util::RuntimeError& error) {
            return error.number() == util::error_number::kPathFileAccess;
        }
        return false;
    };
    EXPECT_TRUE(fails(folder.path()));
    EXPECT_TRUE(fails(folder.file(L"none\\log.txt")));
    const std::wstring exclusive = folder.file(L"held.txt");
    const HANDLE held =
        CreateFileW(exclusive.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(fails(exclusive));
    CloseHandle(held);
    EXPECT_FALSE(fails(exclusive));
}

TEST(HostProgramTest, IsTheProgramOfThisProcess) {
    const util::HostProgram host = hostProgram();
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    EXPECT_EQ(host.folder + host.name, path);
    EXPECT_TRUE(host.folder.ends_with(L'\\'));
    EXPECT_EQ(host.name, L"kv_win32_tests.exe");
    // A program without version information.
    EXPECT_EQ(host.version, L"0.0.0");
}

TEST(HostProgramTest, VersionIsReadFromTheFile) {
    EXPECT_EQ(fileVersion(hostProgram().folder + L"kvBandscope.ocx"), KV_MODULE_VERSION);
    EXPECT_EQ(fileVersion(L"C:\\none.exe"), L"0.0.0");
    EXPECT_EQ(fileVersion(L""), L"0.0.0");
}

/// The version resource of a program file.
VS_FIXEDFILEINFO fixedVersion(const std::wstring& path) {
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length))
        return {};
    return *fixed;
}

TEST(HostProgramTest, RevisionIsTheLastOfTheFourNumbers) {
    wchar_t system[MAX_PATH] = L"";
    GetSystemDirectoryW(system, MAX_PATH);
    const std::wstring path = std::wstring(system) + L"\\kernel32.dll";
    const VS_FIXEDFILEINFO fixed = fixedVersion(path);
    ASSERT_NE(HIWORD(fixed.dwFileVersionLS), LOWORD(fixed.dwFileVersionLS));
    EXPECT_EQ(fileVersion(path), std::to_wstring(HIWORD(fixed.dwFileVersionMS)) + L"." +
                                     std::to_wstring(LOWORD(fixed.dwFileVersionMS)) + L"." +
                                     std::to_wstring(LOWORD(fixed.dwFileVersionLS)));
}

TEST(LocalTimeTest, IsTheSystemsLocalTime) {
    SYSTEMTIME before{};
    SYSTEMTIME after{};
    util::DateTime now;
    do {
        GetLocalTime(&before);
        now = localTime();
        GetLocalTime(&after);
    } while (before.wSecond != after.wSecond);
    EXPECT_EQ(now.year, before.wYear);
    EXPECT_EQ(now.month, before.wMonth);
    EXPECT_EQ(now.day, before.wDay);
    EXPECT_EQ(now.hour, before.wHour);
    EXPECT_EQ(now.minute, before.wMinute);
    EXPECT_EQ(now.second, before.wSecond);
}

TEST(HasUserTest, AHiddenWindowStationHasNoUser) {
    const WinPlatform platform;
    EXPECT_TRUE(platform.hasUser());
    const HWINSTA own = GetProcessWindowStation();
    const HWINSTA hidden = CreateWindowStationW(L"kvBandscopeTest", 0, WINSTA_ALL_ACCESS, nullptr);
    ASSERT_TRUE(hidden);
    ASSERT_TRUE(SetProcessWindowStation(hidden));
    EXPECT_FALSE(platform.hasUser());
    ASSERT_TRUE(SetProcessWindowStation(own));
    CloseWindowStation(hidden);
    EXPECT_TRUE(platform.hasUser());
}

/// A prompt without a user.
class NoUser final : public util::UserPrompt {
  public:
    [[nodiscard]] bool present() const noexcept override { return false; }
    void inform(const std::wstring&, const std::wstring&) override { ADD_FAILURE(); }
    void warn(const std::wstring&, const std::wstring&) override { ADD_FAILURE(); }
    [[nodiscard]] bool confirm(const std::wstring&, const std::wstring&) override { return (ADD_FAILURE(), false); }
};

/// The configuration with the real system behind it, in a host with a folder of its own.
class SystemConfigurationTest : public ::testing::Test {
  protected:
    TempFolder maker{L"kvMaker"};
    TempFolder host{L"kvHost"};
    WinRegistry registry;
    WinIni ini;
    WinFileStore files;
    util::System system{registry, ini, files, {host.path() + L"\\", L"Host.exe", L"1.0.2"}, &localTime};
    util::Configuration configuration{system};
    util::TechSupportLog log{configuration, system};
    NoUser absent;
};

TEST_F(SystemConfigurationTest, InstalledProgramLeadsToTheFolders) {
    AppPathKey key(kFamilyPrograms[3]);
    key.set(maker.file(L"a.exe"));
    writeContent(maker.file(L"KVZEP32.INI"), "[CONFIG]\r\nWORK PATH=D:\\Jobs\r\n");
    EXPECT_EQ(configuration.getKorvaneDirectory(), maker.path() + L"\\");
    EXPECT_EQ(configuration.getDefaultsINI(), maker.file(L"KVDEFAULTS.INI"));
    EXPECT_EQ(configuration.getProductINI(), maker.file(L"KVZEP32.INI"));
    EXPECT_EQ(configuration.getWorkFolder(), L"D:\\Jobs");
    EXPECT_EQ(configuration.getSystemFolder(), maker.file(L"SYSTEM"));
    EXPECT_EQ(configuration.getTempFolder(absent), maker.file(L"SYSTEM\\TEMP"));
    EXPECT_FALSE(fileExists(maker.file(L"SYSTEM")));
    EXPECT_EQ(configuration.getScratchFolder(), maker.file(L"TEMP"));
    EXPECT_TRUE(files.folderExists(maker.file(L"TEMP")));
    EXPECT_FALSE(fileExists(host.file(L"KVTecSup.Txt")));
}

TEST_F(SystemConfigurationTest, INIFileBesideTheHostLeadsToTheFolders) {
    writeContent(host.file(L"KVRegistry.INI"), "[CONFIG]\r\nKorvaneDirectory=C:\\Fam\r\nSYSTEM_PATH=no\r\n");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"C:\\Fam");
    EXPECT_EQ(configuration.getSystemFolder(), L"C:\\Fam\\SYSTEM");
    EXPECT_TRUE(contentOf(host.file(L"KVTecSup.Txt")).ends_with(":  No Registry Entry found; try INI file\r\n"));
}

TEST_F(SystemConfigurationTest, NothingInstalledIsNotedBesideTheHost) {
    EXPECT_EQ(configuration.getWorkFolder(), L"WORK");
    const std::string notes = contentOf(host.file(L"KVTecSup.Txt"));
    EXPECT_NE(notes.find(":  Unable to get Korvane Directory from Windows Registry\r\n"), std::string::npos);
    EXPECT_NE(notes.find(":  Empty return in getKorvaneDirectoryAny\r\n"), std::string::npos);
    EXPECT_NE(notes.find(":  Registry Key: SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\"),
              std::string::npos);
    wchar_t temp[MAX_PATH + 1] = L"";
    GetTempPathW(MAX_PATH + 1, temp);
    EXPECT_EQ(configuration.getScratchFolder(), std::wstring(temp) + L"TEMP");
    EXPECT_TRUE(files.folderExists(configuration.getScratchFolder()));
}

TEST_F(SystemConfigurationTest, AMissingHostFolderIsNoError) {
    system.host.folder = host.file(L"gone\\");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_EQ(configuration.getSystemFolder(), L"SYSTEM");
}

TEST_F(SystemConfigurationTest, TheLogIsInTheMakersFolder) {
    AppPathKey key(kFamilyPrograms[0]);
    key.set(maker.file(L"a.exe"));
    log.wrtTechSupNoMak(L"One", true);
    log.wrtTechSupNoMak(L"Two", false);
    EXPECT_EQ(log.getTechSupPath(), maker.file(L"KVTECSUP.TXT"));
    const std::string text = contentOf(maker.file(L"KVTECSUP.TXT"));
    EXPECT_THAT(text, ::testing::MatchesRegex("....-..-.. ..:..:..:  One  .Host.exe 1.0.2.\r\n \r\n"
                                              "....-..-.. ..:..:..:  Two\r\n \r\n"));
}

TEST_F(SystemConfigurationTest, AMissingMakersFolderLosesOnlyTheLog) {
    AppPathKey key(kFamilyPrograms[0]);
    key.set(maker.file(L"gone\\a.exe"));
    log.wrtTechSupNoMak(L"Lost", true);
    EXPECT_FALSE(fileExists(maker.file(L"gone")));
    // Scratch files still need a folder.
    EXPECT_NE(configuration.getScratchFolder(), L"");
    EXPECT_TRUE(files.folderExists(configuration.getScratchFolder()));
    EXPECT_FALSE(fileExists(maker.file(L"gone")));
}

}  // namespace
}  // namespace kv::win32
