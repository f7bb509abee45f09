#include "util/Text.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace kv::util {
namespace {

TEST(TrimTest, OnlySpacesAtTheEndsAreTakenOff) {
    using Case = std::pair<std::wstring_view, std::wstring_view>;
    for (const auto& [text, rest] :
         {Case{L"MHz", L"MHz"}, Case{L"  MHz ", L"MHz"}, Case{L" a  b  ", L"a  b"}, Case{L"", L""}, Case{L"   ", L""},
          Case{{}, L""}, Case{L"\t", L"\t"}, Case{L" \tKV\t ", L"\tKV\t"}, Case{L" \r\n ", L"\r\n"},
          Case{L"\u00A0", L"\u00A0"}, Case{{L" \0 ", 3}, {L"\0", 1}}}) {
        EXPECT_EQ(trim(text), rest);
        EXPECT_EQ(getLenTrim(text), static_cast<std::int32_t>(rest.size()));
    }
}

TEST(SetPathNameTest, JoinsByOneBackslash) {
    struct Case {
        const wchar_t* folder;
        const wchar_t* file;
        const wchar_t* path;
    };
    for (const auto& [folder, file, path] : std::to_array<Case>({
             {L"C:\\KV", L"A.INI", L"C:\\KV\\A.INI"},
             {L"C:\\KV\\", L"A.INI", L"C:\\KV\\A.INI"},
             {L"C:\\KV", L"\\A.INI", L"C:\\KV\\A.INI"},
             {L"C:\\KV\\\\\\", L"\\\\A.INI", L"C:\\KV\\A.INI"},
             {L"C:\\", L"A.INI", L"C:\\A.INI"},
             // An empty folder gives a relative path, a folder of backslashes the root.
             {L"", L"SYSTEM", L"SYSTEM"},
             {L"", L"\\SYSTEM", L"SYSTEM"},
             {L"", L"", L""},
             {L"\\", L"TEMP", L"\\TEMP"},
             {L"\\\\", L"\\TEMP", L"\\TEMP"},
             // An empty file closes the folder.
             {L"C:\\KV", L"", L"C:\\KV\\"},
             {L"C:\\KV\\\\", L"\\", L"C:\\KV\\"},
             // Other backslashes stay.
             {L"\\\\server\\share", L"a\\b.txt", L"\\\\server\\share\\a\\b.txt"},
             {L"C:/KV/", L"a", L"C:/KV/\\a"},
         }))
        EXPECT_EQ(setPathName(folder, file), path);
}

// Every letter that has a case, from the Unicode character database and not from the ranges of the implementation.
constexpr std::wstring_view kCapitals =
    L"ABCDEFGHIJKLMNOPQRSTUVWXYZÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞŸĀĂĄĆĈĊČĎĐĒĔĖ"
    L"ĘĚĜĞĠĢĤĦĨĪĬĮĲĴĶĹĻĽĿŁŃŅŇŊŌŎŐŒŔŖŘŚŜŞŠŢŤŦŨŪŬŮŰŲŴŶŹŻŽΑΒΓΔΕΖΗ"
    L"ΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩΪΫΆΈΉΊΌΎΏϏϷϹϺͰͲͶͿϽϾϿϘϞϠАБВГДЕЖЗИЙКЛМНОП"
    L"РСТУФХЦЧШЩЪЫЬЭЮЯЀЁЂЃЄЅІЇЈЉЊЋЌЍЎЏѠѢѴҀҊҐҖҢҮҰӀӁӃӍӐӘӨӮԀԮϚϜϢϤ"
    L"ϦϨϪϬϮѤѦѨѪѬѮѰѲѶѸѺѼѾҌҎҒҔҘҚҜҞҠҤҦҨҪҬҲҴҶҸҺҼҾӅӇӉӋӒӔӖӚӜӞӠӢӤӦӪӬӰ"
    L"ӲӴӶӸӺӼӾԂԄԆԈԊԌԎԐԒԔԖԘԚԜԞԠԢԤԦԨԪԬ";
constexpr std::wstring_view kSmall =
    L"abcdefghijklmnopqrstuvwxyzàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþÿāăąćĉċčďđēĕė"
    L"ęěĝğġģĥħĩīĭįĳĵķĺļľŀłńņňŋōŏőœŕŗřśŝşšţťŧũūŭůűųŵŷźżžαβγδεζη"
    L"θικλμνξοπρστυφχψωϊϋάέήίόύώϗϸϲϻͱͳͷϳͻͼͽϙϟϡабвгдежзийклмноп"
    L"рстуфхцчшщъыьэюяѐёђѓєѕіїјљњћќѝўџѡѣѵҁҋґҗңүұӏӂӄӎӑәөӯԁԯϛϝϣϥ"
    L"ϧϩϫϭϯѥѧѩѫѭѯѱѳѷѹѻѽѿҍҏғҕҙқҝҟҡҥҧҩҫҭҳҵҷҹһҽҿӆӈӊӌӓӕӗӛӝӟӡӣӥӧӫӭӱ"
    L"ӳӵӷӹӻӽӿԃԅԇԉԋԍԏԑԓԕԗԙԛԝԟԡԣԥԧԩԫԭ";

TEST(CaseTest, CapitalsAndSmallLettersBelongTogether) {
    ASSERT_EQ(kCapitals.size(), 322U);
    ASSERT_EQ(kSmall.size(), kCapitals.size());
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
    EXPECT_EQ(foldCase(L"µςſϐϑϕϖϰϱϴϵ"), L"μσsβθφπκρθε");
    EXPECT_EQ(upperCase(L"µςſıϐϑϕϖϰϱϵ"), L"ΜΣSIΒΘΦΠΚΡΕ");
}

TEST(CaseTest, OtherCharactersStay) {
    const std::wstring_view others = L" !\"#0123456789:;@[\\]^_`{|}~\u00A0±²°×÷ßİĸŉΐΰ\u0482\u0483\u0489漢字\uFFFF";
    EXPECT_EQ(foldCase(others), others);
    EXPECT_EQ(upperCase(others), others);
    EXPECT_EQ(foldCase(L"ı"), L"ı");
    EXPECT_EQ(foldCase(std::wstring_view(L"A\0B", 3)), std::wstring_view(L"a\0b", 3));
}

TEST(CaseTest, OnlyLettersChange) {
    int folded = 0;
    int raised = 0;
    for (int code = 0; code <= 0xFFFF; ++code) {
        const auto character = static_cast<wchar_t>(code);
        folded += foldCase(character) != character ? 1 : 0;
        raised += upperCase(character) != character ? 1 : 0;
    }
    // Besides the letters, eleven variants fold together with an ordinary letter and eleven have its capital. The
    // capital theta symbol has no capital of its own, and the dotless i does not fold.
    EXPECT_EQ(folded, static_cast<int>(kCapitals.size()) + 11);
    EXPECT_EQ(raised, static_cast<int>(kCapitals.size()) + 11);
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

}  // namespace
}  // namespace kv::util
