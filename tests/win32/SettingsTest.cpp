// Settings in real INI files, and the place of a window in one.
#include <gtest/gtest.h>

#include "forms/FormPlacement.h"
#include "tests/unit/FakeForm.h"
#include "tests/win32/TempFolder.h"
#include "util/RuntimeError.h"
#include "win32/WinFiles.h"
#include "win32/WinSystem.h"

namespace kv::win32 {
namespace {

using test::contentOf;
using test::fileExists;
using test::TempFolder;
using test::writeContent;

class IniWritingTest : public ::testing::Test {
  protected:
    /// The number of the error that writing raises; 0 without an error.
    int errorOf(const std::wstring& key, const std::wstring& section, const std::wstring& path,
                const std::wstring& value = L"1") {
        try {
            ini.write(key, section, path, value);
        } catch (const util::RuntimeError& error) {
            return error.number();
        }
        return 0;
    }
    bool refuses(const std::wstring& key, const std::wstring& section, const std::wstring& path,
                 const std::wstring& value = L"1") {
        return errorOf(key, section, path, value) == util::error_number::kPathFileAccess;
    }

    TempFolder folder{L"kvIni Ordner"};
    std::wstring file = folder.file(L"a b.ini");
    WinIni ini;
};

TEST_F(IniWritingTest, NewFileHoldsTheSetting) {
    ini.write(L"Mouse InformationLeft", L"CONFIG", file, L"-300");
    EXPECT_EQ(ini.read(L"Mouse InformationLeft", L"CONFIG", file), L"-300");
    EXPECT_NE(contentOf(file).find("[CONFIG]\r\nMouse InformationLeft=-300\r\n"), std::string::npos);
}

TEST_F(IniWritingTest, OtherSettingsStay) {
    writeContent(file, "; note\r\n[OTHER]\r\nLeft=1\r\n[CONFIG]\r\nLeft=2\r\nWORK PATH=D:\\Jobs\r\n");
    ini.write(L"Left", L"CONFIG", file, L"3");
    ini.write(L"Top", L"CONFIG", file, L"4");
    EXPECT_EQ(ini.read(L"Left", L"OTHER", file), L"1");
    EXPECT_EQ(ini.read(L"Left", L"CONFIG", file), L"3");
    EXPECT_EQ(ini.read(L"Top", L"CONFIG", file), L"4");
    EXPECT_EQ(ini.read(L"WORK PATH", L"CONFIG", file), L"D:\\Jobs");
    EXPECT_NE(contentOf(file).find("; note"), std::string::npos);
}

TEST_F(IniWritingTest, ValuesComeBackAsTheyWereWritten) {
    for (const wchar_t* value :
         {L"", L"x", L" x ", L"\t", L"\"x\"", L"'x'", L"\"", L"a;b", L"a=b", L"[x]", L"\" x \""}) {
        ini.write(L"Text", L"CONFIG", file, value);
        EXPECT_EQ(ini.read(L"Text", L"CONFIG", file), value) << ::testing::PrintToString(value);
    }
}

TEST_F(IniWritingTest, CharactersOfTheCodePageAreWrittenAndOthersAreRefused) {
    wchar_t letter = 0;
    MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, &letter, 1);
    const std::wstring known = std::wstring(L"caf") + letter;
    ini.write(known, L"CONFIG", file, known);
    EXPECT_EQ(ini.read(known, L"CONFIG", file), known);
    const std::string before = contentOf(file);
    EXPECT_TRUE(refuses(L"\u4E2D\u0394\u0416\u0E01", L"CONFIG", file));
    EXPECT_TRUE(refuses(L"Key", L"\u4E2D\u0394\u0416\u0E01", file));
    EXPECT_TRUE(refuses(L"Key", L"CONFIG", file, L"\u4E2D\u0394\u0416\u0E01"));
    EXPECT_EQ(contentOf(file), before);
}

TEST_F(IniWritingTest, NewFileUnderAPathBeyondTheCodePage) {
    const std::wstring below = folder.file(L"\u0394\u0416\u4E2D \u0E01");
    ASSERT_TRUE(CreateDirectoryW(below.c_str(), nullptr));
    const std::wstring path = below + L"\\\u4E2D\u6587 places.ini";
    ini.write(L"Left", L"CONFIG", path, L"300");
    ini.write(L"Top", L"CONFIG", path, L"150");
    EXPECT_EQ(ini.read(L"Left", L"CONFIG", path), L"300");
    EXPECT_EQ(ini.read(L"Top", L"CONFIG", path), L"150");
    EXPECT_NE(contentOf(path).find("[CONFIG]\r\nLeft=300\r\nTop=150\r\n"), std::string::npos);
}

TEST_F(IniWritingTest, RefusedSettingLeavesNoFileBehind) {
    EXPECT_TRUE(refuses(L"\u4E2D\u0394\u0416\u0E01", L"CONFIG", file));
    EXPECT_FALSE(fileExists(file));
    EXPECT_TRUE(refuses(L"a=b", L"CONFIG", file));
    EXPECT_TRUE(refuses(L"", L"CONFIG", file));
    EXPECT_TRUE(refuses(L"Left", L"", file));
    EXPECT_TRUE(refuses(L"Left", L"CONFIG", file, L"1\r\nTop=2"));
    EXPECT_FALSE(fileExists(file));
}

TEST_F(IniWritingTest, PathThatIsNotAFullOneIsRefused) {
    for (const wchar_t* path : {L"", L"kvtest.ini", L"\\kvtest.ini", L"C:kvtest.ini", L"C:", L"C:\\", L".\\kvtest.ini"})
        EXPECT_TRUE(refuses(L"Left", L"CONFIG", path)) << ::testing::PrintToString(path);
    wchar_t windows[MAX_PATH + 1] = L"";
    GetWindowsDirectoryW(windows, MAX_PATH);
    EXPECT_FALSE(fileExists(std::wstring(windows) + L"\\kvtest.ini"));
}

TEST_F(IniWritingTest, FileThatCannotBeWrittenIsAnErrorAndStays) {
    EXPECT_TRUE(refuses(L"Left", L"CONFIG", folder.file(L"none\\a.ini")));
    EXPECT_TRUE(refuses(L"Left", L"CONFIG", folder.path()));
    const std::string content = "[CONFIG]\r\nLeft=2\r\n";
    writeContent(file, content);
    ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_TRUE(refuses(L"Left", L"CONFIG", file));
    ASSERT_TRUE(SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(contentOf(file), content);
    const HANDLE held = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(refuses(L"Left", L"CONFIG", file));
    CloseHandle(held);
    EXPECT_EQ(contentOf(file), content);
    EXPECT_FALSE(refuses(L"Left", L"CONFIG", file));
}

TEST_F(IniWritingTest, TheFormsPlacementIsKeptInARealFile) {
    const std::wstring below = folder.file(L"Pl\u00E4tze \u0394\u4E2D");
    ASSERT_TRUE(CreateDirectoryW(below.c_str(), nullptr));
    WinFiles files;
    headless::HeadlessDesktop desktop;
    const forms::PlacementStore store{files, desktop, below + L"\\KV ZEP.INI", L"Mouse Information"};
    forms::FakeForm form({-1500.0, 750.0, 7500.0, 6000.0});
    form.state = formenv::WindowState::Maximized;
    ASSERT_TRUE(SaveFormPlacement(form, store));
    EXPECT_EQ(files.readSetting(L"Mouse InformationLeft", L"CONFIG", store.ini), L"-1500");
    forms::FakeForm fresh({0.0, 0.0, 3000.0, 3000.0});
    RestoreFormPlacement(fresh, store);
    EXPECT_EQ(fresh.at, form.at);
    EXPECT_EQ(fresh.state, formenv::WindowState::Maximized);
    EXPECT_TRUE(
        contentOf(store.ini).ends_with("[CONFIG]\r\nMouse InformationLeft=-1500\r\nMouse InformationTop=750\r\n"
                                       "Mouse InformationWidth=7500\r\nMouse InformationHeight=6000\r\n"
                                       "Mouse InformationWindowState=2\r\n"
                                       "Mouse InformationMultipleMonitors=0\r\n"));
}

TEST(PlacementFileTest, LiesAmongTheUsersDataAndIsMadeWhenFirstWrittenTo) {
    wchar_t data[MAX_PATH + 1] = L"";
    ASSERT_NE(GetEnvironmentVariableW(L"LOCALAPPDATA", data, MAX_PATH), 0U);
    const std::wstring folder = std::wstring(data) + L"\\kvBandscope";
    const bool isNew = !fileExists(folder);
    WinFiles files;
    const std::wstring file = files.placementFile();
    ASSERT_EQ(file, folder + L"\\kvBandscope.INI");
    EXPECT_EQ(fileExists(folder), !isNew);
    EXPECT_EQ(files.readSetting(L"kvTestLeft", L"CONFIG", file), std::nullopt);
    files.writeSetting(L"kvTestLeft", L"CONFIG", file, L"300");
    EXPECT_EQ(files.readSetting(L"kvTestLeft", L"CONFIG", file), L"300");
    EXPECT_TRUE(WritePrivateProfileStringW(L"CONFIG", L"kvTestLeft", nullptr, file.c_str()));
    if (isNew) {
        EXPECT_TRUE(DeleteFileW(file.c_str()));
        EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
    }
    // The work folder would be a relative name here, and be created in the host's current folder.
    EXPECT_EQ(files.printFolder(), files.scratchFolder());
    EXPECT_NE(files.printFolder(), L"");
}

}  // namespace
}  // namespace kv::win32
