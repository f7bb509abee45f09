#include "util/Ini.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "headless/IniText.h"
#include "util/RuntimeError.h"

namespace kv::util {
namespace {

/// Remembers what it was asked and answers as told.
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

TEST(GetIniTest, DefaultComesBackWhenTheKeyIsMissing) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[CONFIG]\r\nOTHER=1\r\n");
    EXPECT_EQ(getINI(source, L"WORK PATH", L"CONFIG", L"a.ini", L"default"), L"default");
    EXPECT_EQ(getINI(source, L"OTHER", L"SETTINGS", L"a.ini", L"default"), L"default");
}

TEST(GetIniTest, DefaultComesBackWhenTheFileIsMissing) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[CONFIG]\r\nKEY=1\r\n");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"b.ini", L"default"), L"default");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"b.ini", L""), L"");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"A.INI", L"default"), L"1");
}

TEST(GetIniTest, EmptyValueIsNotMissing) {
    headless::TextIniSource source;
    source.setFile(L"a.ini", L"[CONFIG]\r\nKEY=\r\n");
    EXPECT_EQ(getINI(source, L"KEY", L"CONFIG", L"a.ini", L"default"), L"");
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

TEST(IniTextTest, SectionsAndKeysWithoutRegardToCase) {
    const headless::IniText ini(L"[Config]\r\nSystem_Path=C:\\Sys\r\n");
    EXPECT_EQ(ini.find(L"SYSTEM_PATH", L"CONFIG"), L"C:\\Sys");
    EXPECT_EQ(ini.find(L"system_path", L"config"), L"C:\\Sys");
    const headless::IniText foreign(L"[Größe]\r\nÜber=ja\r\n");
    EXPECT_EQ(foreign.find(L"über", L"GRÖßE"), L"ja");
}

TEST(IniTextTest, SameKeyInDifferentSections) {
    const headless::IniText ini(L"[A]\nkey=1\n[B]\nkey=2\n");
    EXPECT_EQ(ini.find(L"key", L"A"), L"1");
    EXPECT_EQ(ini.find(L"key", L"B"), L"2");
    EXPECT_EQ(ini.find(L"key", L"C"), std::nullopt);
}

TEST(IniTextTest, FirstOfEqualKeysCounts) {
    const headless::IniText ini(L"[A]\nkey=1\nKEY=2\n[B]\nx=1\n[a]\nkey=3\nmore=4\n");
    EXPECT_EQ(ini.find(L"key", L"A"), L"1");
    EXPECT_EQ(ini.find(L"more", L"A"), L"4");
}

TEST(IniTextTest, BlanksAreTrimmed) {
    const headless::IniText ini(L"  [ CONFIG ]  \r\n\t WORK PATH \t=  C:\\My Work \t\r\n");
    EXPECT_EQ(ini.find(L"WORK PATH", L"CONFIG"), L"C:\\My Work");
    EXPECT_EQ(ini.find(L" WORK PATH ", L" CONFIG "), L"C:\\My Work");
}

TEST(IniTextTest, ValuesLoseOnePairOfQuotes) {
    const headless::IniText ini(
        L"[S]\n"
        L"double=\"  a b \"\nsingle= ' c ' "
        L"\ntwice=\"\"d\"\"\nmixed=\"e'\nopen=\"f\nlone=\"\nempty=\"\"\ninner=a\"b\"\n");
    EXPECT_EQ(ini.find(L"double", L"S"), L"  a b ");
    EXPECT_EQ(ini.find(L"single", L"S"), L" c ");
    EXPECT_EQ(ini.find(L"twice", L"S"), L"\"d\"");
    EXPECT_EQ(ini.find(L"mixed", L"S"), L"\"e'");
    EXPECT_EQ(ini.find(L"open", L"S"), L"\"f");
    EXPECT_EQ(ini.find(L"lone", L"S"), L"\"");
    EXPECT_EQ(ini.find(L"empty", L"S"), L"");
    EXPECT_EQ(ini.find(L"inner", L"S"), L"a\"b\"");
}

TEST(IniTextTest, CommentsAreWholeLines) {
    const headless::IniText ini(L";[A]\n[S]\n; key=1\n  ;key=2\nkey=3 ; not a comment\n");
    EXPECT_EQ(ini.find(L"key", L"S"), L"3 ; not a comment");
    EXPECT_EQ(ini.find(L"; key", L"S"), std::nullopt);
    EXPECT_EQ(ini.find(L";key", L"S"), std::nullopt);
}

TEST(IniTextTest, ValueMayHoldEqualsSignsAndBrackets) {
    const headless::IniText ini(L"[S]\na=b=c\nd=[e]\n");
    EXPECT_EQ(ini.find(L"a", L"S"), L"b=c");
    EXPECT_EQ(ini.find(L"d", L"S"), L"[e]");
}

TEST(IniTextTest, LinesThatAreNoSettingsArePassedOver) {
    const headless::IniText ini(L"before=1\n[S]\nword\n=nothing\n[open\nkey=2\n\n\n[T] rest\nkey=3");
    EXPECT_EQ(ini.find(L"before", L"S"), std::nullopt);
    EXPECT_EQ(ini.find(L"before", L""), std::nullopt);
    EXPECT_EQ(ini.find(L"word", L"S"), std::nullopt);
    EXPECT_EQ(ini.find(L"", L"S"), std::nullopt);
    EXPECT_EQ(ini.find(L"key", L"S"), L"2");
    EXPECT_EQ(ini.find(L"key", L"T"), L"3");
}

TEST(IniTextTest, AnyLineEndsAndAByteOrderMark) {
    for (const std::wstring_view text :
         {L"[S]\r\na=1\r\nb=2", L"[S]\na=1\nb=2\n", L"[S]\ra=1\rb=2\r", L"\uFEFF[S]\r\n\r\na=1\r\n\r\nb=2\r\n\r\n"}) {
        const headless::IniText ini(text);
        EXPECT_EQ(ini.find(L"a", L"S"), L"1");
        EXPECT_EQ(ini.find(L"b", L"S"), L"2");
    }
}

TEST(IniTextTest, NothingInAnEmptyText) {
    EXPECT_EQ(headless::IniText().find(L"a", L"S"), std::nullopt);
    EXPECT_EQ(headless::IniText(L"").find(L"a", L"S"), std::nullopt);
    EXPECT_EQ(headless::IniText(L"\r\n").find(L"", L""), std::nullopt);
}

}  // namespace
}  // namespace kv::util
