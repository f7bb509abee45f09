#include "util/Ini.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "headless/TextIniSource.h"
#include "util/RuntimeError.h"

namespace kv::util {
namespace {

/// Stores what was requested and returns what the test sets.
class FakeSource : public IniSource {
  public:
    std::optional<std::wstring> read(std::wstring_view key, std::wstring_view section,
                                     std::wstring_view file) override {
        asked = {std::wstring(key), std::wstring(section), std::wstring(file)};
        return answer;
    }

    std::vector<std::wstring> asked;
    std::optional<std::wstring> answer;
};

TEST(GetIniTest, AsksTheSourceAndReturnsItsValue) {
    FakeSource source;
    source.answer = L"C:\\Work";
    EXPECT_EQ(getINI(source, L"WORK PATH", L"CONFIG", L"C:\\KV\\KVZEP32.INI", L"none"), L"C:\\Work");
    EXPECT_EQ(source.asked, (std::vector<std::wstring>{L"WORK PATH", L"CONFIG", L"C:\\KV\\KVZEP32.INI"}));
}

TEST(GetIniTest, TheDefaultStandsForAMissingKeySectionOrFile) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[CONFIG]\r\nKEY=1\r\nEMPTY=\r\n");
    EXPECT_EQ(getINI(source, L"OTHER", L"CONFIG", L"a.ini", L"default"), L"default");
    EXPECT_EQ(getINI(source, L"KEY", L"SETTINGS", L"a.ini", L"default"), L"default");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"b.ini", L""), L"");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"A.INI", L"default"), L"1");
    EXPECT_EQ(getINI(source, L"EMPTY", L"CONFIG", L"a.ini", L"default"), L"") << "an empty value is not missing";
}

TEST(TextIniSourceTest, FilesAreApartAndReplaceable) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[S]\nK=1\nOLD=1");
    source.setFile(L"b.ini", L"[S]\nK=2");
    EXPECT_EQ(source.read(L"K", L"S", L"a.ini"), L"1");
    EXPECT_EQ(source.read(L"K", L"S", L"b.ini"), L"2");
    source.setFile(L"a.ini", L"[S]\nK=3");
    EXPECT_EQ(source.read(L"K", L"S", L"a.ini"), L"3");
    EXPECT_EQ(source.read(L"OLD", L"S", L"a.ini"), std::nullopt);
}

/// The number of the error that writing ends in; 0 for none.
int errorOfWriting(IniSource& source, std::wstring_view key, std::wstring_view section, std::wstring_view value) {
    try {
        source.write(key, section, L"a.ini", value);
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

TEST(TextIniSourceTest, WrittenSettingsReplaceOldOnesAndLeaveTheRest) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[CONFIG]\r\nLeft=1\r\nTop=2\r\n");
    source.write(L"LEFT", L"config", L"A.INI", L"-300");
    source.write(L"Width", L"NEW", L"a.ini", L"");
    source.write(L"Left", L"CONFIG", L"b.ini", L"\"x\"");
    EXPECT_EQ(source.read(L"Left", L"CONFIG", L"a.ini"), L"-300");
    EXPECT_EQ(source.read(L"Top", L"CONFIG", L"a.ini"), L"2");
    EXPECT_EQ(source.read(L"Width", L"NEW", L"a.ini"), L"");
    EXPECT_EQ(source.read(L"Left", L"CONFIG", L"b.ini"), L"\"x\"");
}

TEST(TextIniSourceTest, NamesAndValuesThatWouldBreakTheirLineAreRefused) {
    headless::TextIniSource source;
    for (const wchar_t* key : {L"", L" ", L"a=b", L";a", L"[a", L" a", L"a\t", L"a\nb"})
        EXPECT_EQ(errorOfWriting(source, key, L"S", L"1"), error_number::kPathFileAccess)
            << testing::PrintToString(key);
    for (const wchar_t* section : {L"", L"a]", L"[a", L" a", L"a\r"})
        EXPECT_EQ(errorOfWriting(source, L"K", section, L"1"), error_number::kPathFileAccess);
    for (const std::wstring& value : {std::wstring(L"1\nb=2"), std::wstring(L"1\r"), std::wstring(1, L'\0')})
        EXPECT_EQ(errorOfWriting(source, L"K", L"S", value), error_number::kPathFileAccess);
    EXPECT_EQ(source.read(L"K", L"S", L"a.ini"), std::nullopt);
    for (const wchar_t* key : {L"a b", L"a;b", L"a]", L"#a", L"\"a\""}) {
        EXPECT_EQ(errorOfWriting(source, key, L"S", L"= [x]; y"), 0);
        EXPECT_EQ(source.read(key, L"S", L"a.ini"), L"= [x]; y");
    }
}

TEST(IniSourceTest, SourceThatIsOnlyReadRefusesEveryWriting) {
    FakeSource source;
    EXPECT_EQ(errorOfWriting(source, L"K", L"S", L"1"), error_number::kPathFileAccess);
}

struct Setting {
    const wchar_t* section;
    const wchar_t* key;
    std::optional<std::wstring> value;
};

void expectSettings(const wchar_t* text, const std::vector<Setting>& settings) {
    const util::IniText ini(text);
    for (const auto& [section, key, value] : settings)
        EXPECT_EQ(ini.find(key, section), value)
            << testing::PrintToString(key) << " in " << testing::PrintToString(text);
}

TEST(IniTextTest, SectionsAndKeysDoNotDependOnCase) {
    expectSettings(L"[Config]\r\nSystem_Path=C:\\Sys\r\n", {{L"CONFIG", L"SYSTEM_PATH", L"C:\\Sys"}});
    expectSettings(L"[CONFIG]\r\nSYSTEM_PATH=C:\\Sys\r\n", {{L"config", L"system_path", L"C:\\Sys"}});
    expectSettings(L"[Größe]\r\nÜber=ja\r\n", {{L"GRÖßE", L"über", L"ja"}});
}

TEST(IniTextTest, TheFirstOfEqualKeysOfASectionCounts) {
    expectSettings(L"[A]\nkey=1\nKEY=2\n[B]\nkey=5\n[a]\nkey=3\nmore=4\n",
                   {{L"A", L"key", L"1"}, {L"A", L"more", L"4"}, {L"B", L"key", L"5"}, {L"C", L"key", {}}});
}

TEST(IniTextTest, BlanksAreTrimmed) {
    expectSettings(L"  [ CONFIG ]  \r\n\t WORK PATH \t=  C:\\My Work \t\r\n",
                   {{L"CONFIG", L"WORK PATH", L"C:\\My Work"}, {L" CONFIG ", L" WORK PATH ", L"C:\\My Work"}});
}

TEST(IniTextTest, ValuesLoseOnePairOfQuotes) {
    expectSettings(L"[S]\n1=\"  a b \"\n2= ' c ' \n3=\"\"d\"\"\n4=\"e'\n5=\"f\n6=\"\n7=\"\"\n8=a\"b\"\n",
                   {{L"S", L"1", L"  a b "},
                    {L"S", L"2", L" c "},
                    {L"S", L"3", L"\"d\""},
                    {L"S", L"4", L"\"e'"},
                    {L"S", L"5", L"\"f"},
                    {L"S", L"6", L"\""},
                    {L"S", L"7", L""},
                    {L"S", L"8", L"a\"b\""}});
}

TEST(IniTextTest, CommentsAreWholeLines) {
    expectSettings(L";[A]\n[S]\n; key=1\n  ;key=2\nkey=3 ; not a comment\n",
                   {{L"S", L"key", L"3 ; not a comment"}, {L"S", L"; key", {}}, {L"S", L";key", {}}});
}

TEST(IniTextTest, AValueMayHoldEqualsSignsAndBrackets) {
    expectSettings(L"[S]\na=b=c\nd=[e]\n", {{L"S", L"a", L"b=c"}, {L"S", L"d", L"[e]"}});
}

TEST(IniTextTest, LinesThatAreNoSettingsAreSkipped) {
    expectSettings(L"before=1\n[S]\nword\n=nothing\n[open\nkey=2\n\n\n[T] rest\nkey=3", {{L"S", L"before", {}},
                                                                                         {L"", L"before", {}},
                                                                                         {L"S", L"word", {}},
                                                                                         {L"S", L"", {}},
                                                                                         {L"S", L"key", L"2"},
                                                                                         {L"T", L"key", L"3"}});
}

TEST(IniTextTest, AnyLineEndsAndAByteOrderMark) {
    for (const wchar_t* text :
         {L"[S]\r\na=1\r\nb=2", L"[S]\na=1\nb=2\n", L"[S]\ra=1\rb=2\r", L"\uFEFF[S]\r\n\r\na=1\r\n\r\nb=2\r\n\r\n"})
        expectSettings(text, {{L"S", L"a", L"1"}, {L"S", L"b", L"2"}});
}

TEST(IniTextTest, AnEmptyTextHasNoSettings) {
    EXPECT_EQ(util::IniText().find(L"a", L"S"), std::nullopt);
    expectSettings(L"", {{L"S", L"a", {}}});
    expectSettings(L"\r\n", {{L"", L"", {}}});
}

}  // namespace
}  // namespace kv::util
