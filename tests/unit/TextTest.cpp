#include "util/Text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kv::util {
namespace {

TEST(GetLenTrimTest, CountsWithoutBlanksAtTheEnds) {
    EXPECT_EQ(getLenTrim(L"MHz"), 3);
    EXPECT_EQ(getLenTrim(L"  MHz "), 3);
    EXPECT_EQ(getLenTrim(L"a  b"), 4);
    EXPECT_EQ(getLenTrim(L" a  b  "), 4);
}

TEST(GetLenTrimTest, EmptyIsBelowOne) {
    EXPECT_EQ(getLenTrim(L""), 0);
    EXPECT_EQ(getLenTrim(L" "), 0);
    EXPECT_EQ(getLenTrim(L"      "), 0);
    EXPECT_EQ(getLenTrim({}), 0);
}

TEST(GetLenTrimTest, OnlyTheSpaceCharacterIsABlank) {
    EXPECT_EQ(getLenTrim(L"\t"), 1);
    EXPECT_EQ(getLenTrim(L" \r\n "), 2);
    EXPECT_EQ(getLenTrim(L"\u00A0"), 1);
    EXPECT_EQ(getLenTrim(std::wstring_view(L" \0 ", 3)), 1);
}

TEST(TrimTest, KeepsWhatIsInside) {
    EXPECT_EQ(trim(L"  KV Base  "), L"KV Base");
    EXPECT_EQ(trim(L"KV"), L"KV");
    EXPECT_EQ(trim(L"   "), L"");
    EXPECT_EQ(trim(L" \tKV\t "), L"\tKV\t");
}

TEST(SetPathNameTest, JoinsByOneBackslash) {
    EXPECT_EQ(setPathName(L"C:\\KV", L"A.INI"), L"C:\\KV\\A.INI");
    EXPECT_EQ(setPathName(L"C:\\KV\\", L"A.INI"), L"C:\\KV\\A.INI");
    EXPECT_EQ(setPathName(L"C:\\KV", L"\\A.INI"), L"C:\\KV\\A.INI");
    EXPECT_EQ(setPathName(L"C:\\KV\\", L"\\A.INI"), L"C:\\KV\\A.INI");
    EXPECT_EQ(setPathName(L"C:\\KV\\\\\\", L"\\\\A.INI"), L"C:\\KV\\A.INI");
    EXPECT_EQ(setPathName(L"C:\\", L"A.INI"), L"C:\\A.INI");
}

TEST(SetPathNameTest, EmptyFolderGivesARelativePath) {
    EXPECT_EQ(setPathName(L"", L"SYSTEM"), L"SYSTEM");
    EXPECT_EQ(setPathName(L"", L"\\SYSTEM"), L"SYSTEM");
    EXPECT_EQ(setPathName(L"", L""), L"");
    EXPECT_EQ(setPathName(setPathName(L"", L"SYSTEM"), L"TEMP"), L"SYSTEM\\TEMP");
}

TEST(SetPathNameTest, FolderOfBackslashesIsTheRoot) {
    EXPECT_EQ(setPathName(L"\\", L"TEMP"), L"\\TEMP");
    EXPECT_EQ(setPathName(L"\\\\", L"\\TEMP"), L"\\TEMP");
}

TEST(SetPathNameTest, EmptyFileClosesTheFolder) {
    EXPECT_EQ(setPathName(L"C:\\KV", L""), L"C:\\KV\\");
    EXPECT_EQ(setPathName(L"C:\\KV\\\\", L"\\"), L"C:\\KV\\");
}

TEST(SetPathNameTest, OtherBackslashesStay) {
    EXPECT_EQ(setPathName(L"\\\\server\\share", L"a\\b.txt"), L"\\\\server\\share\\a\\b.txt");
    EXPECT_EQ(setPathName(L"C:/KV/", L"a"), L"C:/KV/\\a");
}

// The alphabets letter by letter, written out independently of the ranges that the implementation has.
constexpr std::wstring_view kCapitals =
    L"ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    L"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŸ"
    L"ĀĂĄĆĈĊČĎĐĒĔĖĘĚĜĞĠĢĤĦĨĪĬĮĲĴĶĹĻĽĿŁŃŅŇŊŌŎŐŒŔŖŘŚŜŞŠŢŤŦŨŪŬŮŰŲŴŶŹŻŽ"
    L"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩΪΫΆΈΉΊΌΎΏϏϷϹϺͰͲͶͿϽϾϿϘϞϠ"
    L"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏѠѢѴҀҊҐҖҢҮҰӀӁӃӍӐӘӨӮԀ"
    L"Ԯ";
constexpr std::wstring_view kSmall =
    L"abcdefghijklmnopqrstuvwxyz"
    L"àáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿ"
    L"āăąćĉċčďđēĕėęěĝğġģĥħĩīĭįĳĵķĺļľŀłńņňŋōŏőœŕŗřśŝşšţťŧũūŭůűųŵŷźżž"
    L"αβγδεζηθικλμνξοπρστυφχψωϊϋάέήίόύώϗϸϲϻͱͳͷϳͻͼͽϙϟϡ"
    L"абвгдежзийклмнопрстуфхцчшщъыьэюяѐёђѓєѕіїјљњћќѝўџѡѣѵҁҋґҗңүұӏӂӄӎӑәөӯԁ"
    L"ԯ";

TEST(CaseTest, CapitalsAndSmallLettersBelongTogether) {
    ASSERT_EQ(kCapitals.size(), kSmall.size());
    for (std::size_t i = 0; i < kSmall.size(); ++i) {
        EXPECT_EQ(foldCase(kCapitals[i]), kSmall[i]) << i;
        EXPECT_EQ(foldCase(kSmall[i]), kSmall[i]) << i;
        EXPECT_EQ(upperCase(kSmall[i]), kCapitals[i]) << i;
        EXPECT_EQ(upperCase(kCapitals[i]), kCapitals[i]) << i;
    }
    EXPECT_EQ(foldCase(kCapitals), kSmall);
    EXPECT_EQ(upperCase(kSmall), kCapitals);
}

TEST(CaseTest, VariantsFoldWithTheOrdinaryLetter) {
    EXPECT_EQ(foldCase(L"ς"), foldCase(L"Σ"));
    EXPECT_EQ(foldCase(L"ſ"), L"s");
    EXPECT_EQ(foldCase(L"µϐϑϕϖϰϱϴϵ"), L"μβθφπκρθε");
    EXPECT_EQ(upperCase(L"µςſıϐϑϕϖϰϱϵ"), L"ΜΣSIΒΘΦΠΚΡΕ");
}

TEST(CaseTest, OtherCharactersStay) {
    const std::wstring_view others = L" !\"#0123456789:;@[\\]^_`{|}~\u00A0±²°×÷ßİĸŉΐΰ\u0482\u0483\u0489漢字\uFFFF";
    EXPECT_EQ(foldCase(others), others);
    EXPECT_EQ(upperCase(others), others);
    EXPECT_EQ(foldCase(L"ı"), L"ı");
    EXPECT_EQ(foldCase(std::wstring_view(L"A\0B", 3)), std::wstring_view(L"a\0b", 3));
}

TEST(CaseTest, FoldingTwiceChangesNothingMore) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto letter = static_cast<wchar_t>(code);
        EXPECT_EQ(foldCase(foldCase(letter)), foldCase(letter)) << code;
        EXPECT_EQ(upperCase(upperCase(letter)), upperCase(letter)) << code;
        if (letter != L'ı') {  // It shares the capital of i without being one.
            EXPECT_EQ(foldCase(upperCase(letter)), foldCase(letter)) << code;
        }
    }
}

TEST(CaseTest, KeysDifferInMoreThanCase) {
    EXPECT_EQ(foldCase(L"Tx-Größe 1"), foldCase(L"TX-GRÖßE 1"));
    EXPECT_NE(foldCase(L"Tx 1"), foldCase(L"Tx 2"));
    EXPECT_NE(foldCase(L"e"), foldCase(L"é"));
}

}  // namespace
}  // namespace kv::util
