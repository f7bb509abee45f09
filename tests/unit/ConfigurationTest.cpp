#include "util/Configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "tests/unit/FakeSystem.h"
#include "util/Product.h"

namespace kv::util {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr wchar_t kRegistryINI[] = L"C:\\Host\\KVRegistry.INI";
constexpr wchar_t kProductINI[] = L"C:\\KV\\KVZEP32.INI";

class ConfigurationTest : public ::testing::Test {
  protected:
    static std::wstring lastKey() { return FakeRegistry::keyOf(product::kFamilyPrograms.back()); }

    FakeSystem fake;
    FakeUser user;
    Configuration configuration{fake.system};
};

TEST_F(ConfigurationTest, TheDirectoryIsTheFolderOfTheProgram) {
    using Case = std::pair<const wchar_t*, const wchar_t*>;
    for (const auto& [program, folder] : {Case{L"C:\\KV\\a.exe", L"C:\\KV\\"}, Case{L"C:\\a.exe", L"C:\\"},
                                          Case{L" \"C:\\Program Files\\KV\\a.exe\" ", L"C:\\Program Files\\KV\\"}}) {
        fake.registry.install(product::kFamilyPrograms[0], L"   ");  // blank: not installed
        fake.registry.install(product::kFamilyPrograms[1], program);
        Configuration fresh(fake.system);
        EXPECT_EQ(fresh.getKorvaneDirectoryAny(), folder);
        EXPECT_EQ(fresh.getKorvaneDirectory(), folder);
        EXPECT_EQ(fresh.getProductINI(), std::wstring(folder) + L"KVZEP32.INI");
        EXPECT_EQ(fresh.getDefaultsINI(), std::wstring(folder) + L"KVDEFAULTS.INI");
    }
    EXPECT_THAT(fake.notes(), IsEmpty());
}

TEST_F(ConfigurationTest, EveryProgramOfTheFamilyCountsAndTheFirstOneWins) {
    for (auto program = product::kFamilyPrograms.rbegin(); program != product::kFamilyPrograms.rend(); ++program) {
        fake.registry.install(*program, std::wstring(L"D:\\") + *program + L"\\bin\\" + *program);
        Configuration fresh(fake.system);
        EXPECT_EQ(fresh.getKorvaneDirectory(), std::wstring(L"D:\\") + *program + L"\\bin\\");
    }
}

TEST_F(ConfigurationTest, ProgramsAreLookedUpInTheirOrderAndNoFurtherThanNeeded) {
    fake.registry.install(product::kFamilyPrograms[2], L"C:\\KV\\a.exe");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"C:\\KV\\");
    EXPECT_THAT(fake.registry.asked, ElementsAre(FakeRegistry::keyOf(product::kFamilyPrograms[0]),
                                                 FakeRegistry::keyOf(product::kFamilyPrograms[1]),
                                                 FakeRegistry::keyOf(product::kFamilyPrograms[2])));
    EXPECT_EQ(fake.ini.reads, 0);
}

TEST_F(ConfigurationTest, AProgramPathWithoutAFolderGivesAnEmptyDirectory) {
    fake.registry.install(product::kFamilyPrograms[1], L"a.exe");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_THAT(fake.notes(), ElementsAre(L"Unable to get Korvane Directory from Windows Registry",
                                          L"Empty return in getKorvaneDirectoryAny",
                                          L"Registry Key: " + FakeRegistry::keyOf(product::kFamilyPrograms[1])));
}

TEST_F(ConfigurationTest, WithoutAProgramTheINIFileBesideTheHostNamesTheDirectory) {
    fake.ini.texts.setFile(kRegistryINI, L"[CONFIG]\r\nKorvaneDirectory=\"   \"\r\n");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    fake.files.texts.clear();
    // A blank directory is not kept.
    fake.ini.texts.setFile(kRegistryINI, L"[CONFIG]\r\nKorvaneDirectory=E:\\Korvane\r\n");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"E:\\Korvane");
    EXPECT_THAT(fake.notes(), ElementsAre(L"No Registry Entry found; try INI file"));
}

TEST_F(ConfigurationTest, NoDirectoryIsNotedAndLookedForAgain) {
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_THAT(fake.notes(), ElementsAre(L"No Registry Entry found; try INI file",
                                          L"Unable to get Korvane Directory from Windows Registry",
                                          L"Empty return in getKorvaneDirectoryAny", L"Registry Key: " + lastKey()));
    EXPECT_TRUE(fake.files.texts.at(FakeSystem::kNotes).starts_with(L"2026-03-09 17:04:05:  No Registry Entry"));
    fake.install();
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"C:\\KV\\");
}

TEST_F(ConfigurationTest, KeyThatCannotBeReadIsNotedOnlyWhenNothingElseIsFound) {
    const std::wstring denied = FakeRegistry::keyOf(product::kFamilyPrograms[0]);
    fake.registry.denied.insert(denied);
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_THAT(
        fake.notes(),
        ElementsAre(L"No Registry Entry found; try INI file", L"Unable to get Korvane Directory from Windows Registry",
                    L"Error in getKorvaneDirectoryAny 75  Path/File access error", L"Registry Key: " + denied,
                    L"Empty return in getKorvaneDirectoryAny", L"Registry Key: " + lastKey()));
    fake.files.texts.clear();
    fake.registry.install(product::kFamilyPrograms[3], L"C:\\KV\\a.exe");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"C:\\KV\\");
    EXPECT_THAT(fake.notes(), IsEmpty());
}

TEST_F(ConfigurationTest, BrokenINIReadingIsNotedAndRaisesNothing) {
    fake.ini.broken = true;
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_EQ(fake.notes().at(2), L"Error in getKorvaneDirectoryAny 51  Internal error");
    fake.files.texts.clear();
    fake.install();
    EXPECT_EQ(configuration.getSystemFolder(), L"");
    EXPECT_EQ(configuration.getWorkFolder(), L"");
    EXPECT_THAT(fake.notes(), ElementsAre(L"Error in getSystemFolder 51  Internal error",
                                          L"Error in getWorkFolder 51  Internal error"));
    fake.ini.broken = false;
    EXPECT_EQ(configuration.getSystemFolder(), L"C:\\KV\\SYSTEM");
    EXPECT_EQ(configuration.getWorkFolder(), L"C:\\KV\\WORK");
}

TEST_F(ConfigurationTest, NotesThatCannotBeWrittenRaiseNothing) {
    fake.files.unwritable = true;
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"");
    EXPECT_EQ(configuration.getWorkFolder(), L"WORK");
}

TEST_F(ConfigurationTest, ValuesAreKeptOnceFound) {
    fake.install();
    fake.ini.texts.setFile(kProductINI, L"[CONFIG]\r\nWORK PATH=D:\\One\r\nSYSTEM_PATH=D:\\Two\r\n");
    EXPECT_EQ(configuration.getWorkFolder(), L"D:\\One");
    EXPECT_EQ(configuration.getSystemFolder(), L"D:\\Two");
    const std::size_t asked = fake.registry.asked.size();
    fake.registry.keys.clear();
    fake.ini.texts.setFile(kProductINI, L"");
    EXPECT_EQ(configuration.getKorvaneDirectory(), L"C:\\KV\\");
    EXPECT_EQ(configuration.getProductINI(), kProductINI);
    EXPECT_EQ(configuration.getWorkFolder(), L"D:\\One");
    EXPECT_EQ(configuration.getSystemFolder(), L"D:\\Two");
    EXPECT_EQ(fake.registry.asked.size(), asked);
}

TEST_F(ConfigurationTest, WithoutADirectoryEveryPathIsRelative) {
    user.here = false;
    EXPECT_EQ(configuration.getDefaultsINI(), L"KVDEFAULTS.INI");
    EXPECT_EQ(configuration.getProductINI(), L"KVZEP32.INI");
    EXPECT_EQ(configuration.getSystemFolder(), L"SYSTEM");
    EXPECT_EQ(configuration.getWorkFolder(), L"WORK");
    EXPECT_EQ(configuration.getTempFolder(user), L"SYSTEM\\TEMP");
}

TEST_F(ConfigurationTest, FoldersAreInTheDirectoryUnlessTheProductININamesOthers) {
    fake.install();
    struct Case {
        const wchar_t* settings;
        const wchar_t* work;
        const wchar_t* system;
    };
    for (const auto& [settings, work, system] : std::to_array<Case>({
             {L"", L"C:\\KV\\WORK", L"C:\\KV\\SYSTEM"},
             {L"WORK PATH=D:\\Projects\\", L"D:\\Projects\\", L"C:\\KV\\SYSTEM"},
             {L"SYSTEM_PATH=D:\\Sys", L"C:\\KV\\WORK", L"D:\\Sys"},
             {L"WORK PATH=\r\nSYSTEM_PATH=\"  \"", L"C:\\KV\\WORK", L"C:\\KV\\SYSTEM"},
         })) {
        fake.ini.texts.setFile(kProductINI, L"[CONFIG]\r\n" + std::wstring(settings) + L"\r\n");
        Configuration fresh(fake.system);
        EXPECT_EQ(fresh.getWorkFolder(), work);
        EXPECT_EQ(fresh.getSystemFolder(), system);
    }
}

TEST_F(ConfigurationTest, SystemPathSettingMovesTheTemporaryFolder) {
    fake.install();
    fake.ini.texts.setFile(kProductINI, L"[CONFIG]\r\nSYSTEM_PATH=D:\\Sys\r\n");
    fake.files.folders = {L"D:\\Sys\\TEMP"};
    EXPECT_EQ(configuration.getTempFolder(user), L"D:\\Sys\\TEMP");
    EXPECT_THAT(user.messages, IsEmpty());
}

TEST_F(ConfigurationTest, TemporaryFolderIsOfferedOnceAndMadeWithTheFoldersAbove) {
    fake.install();
    fake.files.folders = {L"C:\\KV"};
    EXPECT_EQ(configuration.getTempFolder(user), L"C:\\KV\\SYSTEM\\TEMP");
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_EQ(user.messages[0].kind, "confirm");
    EXPECT_EQ(user.messages[0].title, L"Path Not Found");
    EXPECT_EQ(user.messages[0].text,
              L"The specified path does not exist:\r\n\r\nC:\\KV\\SYSTEM\\TEMP\r\n\r\n"
              L"Do you want to create the new path?");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\SYSTEM", L"C:\\KV\\SYSTEM\\TEMP"));
    EXPECT_EQ(configuration.getTempFolder(user), L"C:\\KV\\SYSTEM\\TEMP");
    EXPECT_THAT(user.messages, SizeIs(1));
}

TEST_F(ConfigurationTest, TemporaryFolderComesBackWhateverTheAnswerAndIsAskedForOnce) {
    fake.install();
    user.answer = false;
    std::wstring inside;
    user.meanwhile = [&] { inside = configuration.getTempFolder(user); };
    EXPECT_EQ(configuration.getTempFolder(user), L"C:\\KV\\SYSTEM\\TEMP");
    EXPECT_EQ(inside, L"C:\\KV\\SYSTEM\\TEMP");
    EXPECT_THAT(user.messages, SizeIs(1));
    EXPECT_THAT(fake.files.created, IsEmpty());
}

TEST_F(ConfigurationTest, ScratchFolderIsMadeWithoutAskingUnlessItExists) {
    fake.install();
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\KV\\TEMP");
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\KV\\TEMP");
    Configuration later(fake.system);
    EXPECT_EQ(later.getScratchFolder(), L"C:\\KV\\TEMP");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\TEMP"));
}

TEST_F(ConfigurationTest, ScratchFolderWithoutADirectoryIsInTheUsersTemporaryFolder) {
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\Users\\me\\Temp\\TEMP");
    // Kept, because the caller may have stored the path.
    fake.install();
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\Users\\me\\Temp\\TEMP");
}

TEST_F(ConfigurationTest, ScratchFolderThatCannotBeMadeIsInTheUsersTemporaryFolder) {
    fake.install();
    fake.files.readOnly = true;
    fake.files.folders = {L"C:\\Users\\me\\Temp\\TEMP"};
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\Users\\me\\Temp\\TEMP");
    EXPECT_THAT(fake.notes(), ElementsAre(L"Error in getScratchFolder 75  Path/File access error"));
}

constexpr wchar_t kOwnFolder[] = L"C:\\Users\\me\\Data\\kvBandscope";
constexpr wchar_t kOwnINI[] = L"C:\\Users\\me\\Data\\kvBandscope\\kvBandscope.INI";

TEST_F(ConfigurationTest, PlacesOfWindowsAreKeptInTheProductINI) {
    fake.install();
    EXPECT_EQ(configuration.getPlacementINI(), kProductINI);
    configuration.writeSetting(L"Left", L"CONFIG", kProductINI, L"300");
    EXPECT_EQ(configuration.readSetting(L"Left", L"CONFIG", kProductINI), L"300");
    EXPECT_THAT(fake.files.created, IsEmpty());
}

TEST_F(ConfigurationTest, WithoutADirectoryPlacesAreKeptAmongTheUsersData) {
    EXPECT_EQ(configuration.getPlacementINI(), kOwnINI);
    EXPECT_EQ(configuration.readSetting(L"Left", L"CONFIG", kOwnINI), std::nullopt);
    // Created when it is first needed.
    EXPECT_THAT(fake.files.created, IsEmpty());
    configuration.writeSetting(L"Left", L"CONFIG", kOwnINI, L"300");
    configuration.writeSetting(L"Top", L"CONFIG", kOwnINI, L"150");
    EXPECT_THAT(fake.files.created, ElementsAre(kOwnFolder));
    EXPECT_EQ(configuration.readSetting(L"Left", L"CONFIG", kOwnINI), L"300");
}

TEST_F(ConfigurationTest, WithoutAnyFolderThereIsNoPlacementINI) {
    fake.files.data = L" ";
    EXPECT_EQ(configuration.getPlacementINI(), L"");
    EXPECT_EQ(configuration.readSetting(L"Left", L"CONFIG", L""), std::nullopt);
    EXPECT_EQ(fake.ini.reads, 1);  // that of the directory, beside the host
    EXPECT_THROW(configuration.writeSetting(L"Left", L"CONFIG", L"", L"300"), RuntimeError);
    fake.files.data = L"C:\\Users\\me\\Data";
    EXPECT_EQ(configuration.getPlacementINI(), kOwnINI);
}

TEST_F(ConfigurationTest, SettingThatCannotBeWrittenIsAnErrorOfTheCallers) {
    fake.files.readOnly = true;
    EXPECT_THROW(configuration.writeSetting(L"Left", L"CONFIG", kOwnINI, L"300"), RuntimeError);
    fake.files.readOnly = false;
    fake.ini.readOnly = true;
    EXPECT_THROW(configuration.writeSetting(L"Left", L"CONFIG", L"C:\\a.ini", L"300"), RuntimeError);
    EXPECT_THAT(fake.notes(), IsEmpty());
}

TEST_F(ConfigurationTest, SettingThatCannotBeReadIsMissingAndNoted) {
    fake.ini.broken = true;
    EXPECT_EQ(configuration.readSetting(L"Left", L"CONFIG", kOwnINI), std::nullopt);
    EXPECT_THAT(fake.notes(), ElementsAre(L"Error in readSetting 51  Internal error"));
}

TEST_F(ConfigurationTest, NoScratchFolderAtAllIsTriedAgain) {
    fake.files.temp.clear();
    EXPECT_EQ(configuration.getScratchFolder(), L"");
    fake.install();
    EXPECT_EQ(configuration.getScratchFolder(), L"C:\\KV\\TEMP");
}

TEST_F(ConfigurationTest, PrintFolderIsTheWorkFolderWhenItExistsOrCanBeCreated) {
    fake.install();
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\WORK");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\WORK"));
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\WORK");
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\KV\\WORK"));
}

TEST_F(ConfigurationTest, PrintFolderIsTheScratchFolderWhereTheFamilyIsNotInstalled) {
    EXPECT_EQ(configuration.getPrintFolder(), configuration.getScratchFolder());
    EXPECT_NE(configuration.getPrintFolder(), L"");
    EXPECT_THAT(fake.files.created, Not(Contains(L"WORK")));
}

TEST_F(ConfigurationTest, PrintFolderIsTheScratchFolderWhenTheWorkFolderCannotBeCreated) {
    fake.install();
    fake.files.folders = {L"C:\\KV\\TEMP"};
    fake.files.readOnly = true;
    EXPECT_EQ(configuration.getPrintFolder(), L"C:\\KV\\TEMP");
}

class PathExistTest : public ConfigurationTest {
  protected:
    bool test(bool create) { return configuration.getPathExist(path, create, user); }
    std::wstring path = L"C:\\a\\b";
};

TEST_F(PathExistTest, PathThatExistsNeedsNoMessage) {
    fake.files.folders = {path};
    EXPECT_TRUE(test(false));
    EXPECT_TRUE(test(true));
    EXPECT_THAT(user.messages, IsEmpty());
}

TEST_F(PathExistTest, MissingPathIsRefusedWhereNoneMayBeMade) {
    EXPECT_FALSE(test(false));
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_EQ(user.messages[0].kind, "warn");
    EXPECT_EQ(user.messages[0].title, L"Path Error");
    EXPECT_EQ(user.messages[0].text,
              L"The specified path does not exist:\r\n\r\nC:\\a\\b\r\n\r\n"
              L"You must specify an existing path for this function.");
    EXPECT_THAT(fake.files.created, IsEmpty());
}

TEST_F(PathExistTest, MissingPathIsMadeWhenTheUserAgrees) {
    fake.files.folders = {L"C:"};
    EXPECT_TRUE(test(true));
    EXPECT_THAT(fake.files.created, ElementsAre(L"C:\\a", L"C:\\a\\b"));
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_EQ(user.messages[0].title, L"Path Not Found");
}

TEST_F(PathExistTest, MissingPathIsNotMadeWhenTheUserDeclines) {
    user.answer = false;
    EXPECT_FALSE(test(true));
    EXPECT_THAT(fake.files.created, IsEmpty());
}

TEST_F(PathExistTest, PathThatCannotBeMadeIsNoted) {
    fake.files.readOnly = true;
    EXPECT_FALSE(test(true));
    EXPECT_THAT(fake.notes(), ElementsAre(L"Error in getPathExist 75  Path/File access error"));
}

TEST_F(PathExistTest, EmptyPathBecomesTheWorkFolderAndTheUserIsTold) {
    fake.install();
    path = L"  ";
    fake.files.folders = {L"C:\\KV\\WORK"};
    EXPECT_TRUE(test(false));
    EXPECT_EQ(path, L"C:\\KV\\WORK");
    ASSERT_THAT(user.messages, SizeIs(1));
    EXPECT_EQ(user.messages[0].kind, "inform");
    EXPECT_EQ(user.messages[0].title, L"Path Specification");
    EXPECT_EQ(user.messages[0].text,
              L"Since no path was specified, the program will use the path:\r\n\r\nC:\\KV\\WORK");
}

TEST_F(PathExistTest, WithoutAUserNothingIsAskedAndNothingMade) {
    user.here = false;
    EXPECT_FALSE(test(true));
    EXPECT_FALSE(test(false));
    path.clear();
    EXPECT_FALSE(test(true));
    EXPECT_EQ(path, L"WORK");
    EXPECT_THAT(user.messages, IsEmpty());
    EXPECT_THAT(fake.files.created, IsEmpty());
}

TEST_F(PathExistTest, TrailingBackslashesAndTheDrivesRootAreNoFoldersOfTheirOwn) {
    path = L"\\top\\sub\\";
    EXPECT_TRUE(test(true));
    EXPECT_THAT(fake.files.created, ElementsAre(L"\\top", L"\\top\\sub\\"));
}

TEST(SupportContactTest, WaysThatAreEmptyAreLeftOut) {
    EXPECT_EQ(product::supportContact(L"Support", {L"", L"", L""}), L"Support");
    EXPECT_EQ(product::supportContact(L"Support", {L"a@b", L"", L"Sales"}), L"Support (a@b, Sales)");
}

}  // namespace
}  // namespace kv::util
