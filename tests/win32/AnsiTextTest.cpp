// Texts as bytes, in the code pages of western Europe, Turkey and Japan, and in UTF-8.
#include "win32/AnsiText.h"

#include <gtest/gtest.h>

namespace kv::win32 {
namespace {

struct Sample {
    UINT codePage;
    const wchar_t* text;
    const char* bytes;
};

TEST(AnsiText, ComesBackFromEveryCodePage) {
    for (const Sample& sample : {Sample{1252, L"Füße",
                                        "F\xFC\xDF"
                                        "e"},
                                 Sample{1254, L"ış", "\xFD\xFE"}, Sample{932, L"日本", "\x93\xFA\x96\x7B"},
                                 Sample{CP_UTF8, L"Füße",
                                        "F\xC3\xBC\xC3\x9F"
                                        "e"},
                                 Sample{CP_UTF8, L"日本", "\xE6\x97\xA5\xE6\x9C\xAC"}, Sample{1252, L"", ""}}) {
        EXPECT_EQ(toCodePage(sample.text, sample.codePage), sample.bytes) << sample.codePage;
        EXPECT_EQ(fromCodePage(sample.bytes, sample.codePage), sample.text) << sample.codePage;
    }
}

TEST(AnsiText, ACharacterThatTheCodePageLacksIsNoText) {
    // The first has a similar letter in the code page, by which it may not be replaced.
    EXPECT_EQ(toCodePage(L"\u0101", 1252), std::nullopt);
    EXPECT_EQ(toCodePage(L"日本", 1252), std::nullopt);
    EXPECT_EQ(toCodePage(std::wstring(1, L'\xD800'), CP_UTF8), std::nullopt);
}

TEST(AnsiText, TheSystemsCodePageIsTheUsualOne) {
    EXPECT_EQ(toCodePage(L"plain"), "plain");
    EXPECT_EQ(fromCodePage("plain"), L"plain");
}

}  // namespace
}  // namespace kv::win32
