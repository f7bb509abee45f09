// Texts at the bounds of their forms: quoted INI values, times in the log, letters in UTF-8.
#include <gtest/gtest.h>

#include <string>

#include "headless/IniText.h"
#include "util/LogLine.h"
#include "util/Utf8.h"

namespace kv::util {
namespace {

/// The protected rule of all sources.
class AnySource final : public IniSource {
  public:
    std::optional<std::wstring> read(std::wstring_view, std::wstring_view, std::wstring_view) override { return {}; }
    using IniSource::written;
};

TEST(SettingTextTest, AValueIsQuotedOnlyWhenItWouldLoseSomething) {
    EXPECT_EQ(AnySource::written(L"D:\\Projects"), L"D:\\Projects");
    EXPECT_EQ(AnySource::written(L"a b"), L"a b");
    EXPECT_EQ(AnySource::written(L""), L"");
    EXPECT_EQ(AnySource::written(L" a"), L"\" a\"");
    EXPECT_EQ(AnySource::written(L"a\t"), L"\"a\t\"");
    EXPECT_EQ(AnySource::written(L"\"a\""), L"\"\"a\"\"");
    EXPECT_EQ(AnySource::written(L"'a'"), L"\"'a'\"");
    EXPECT_EQ(AnySource::written(L"\"a'"), L"\"a'");
    EXPECT_EQ(AnySource::written(L"\""), L"\"");
    EXPECT_EQ(AnySource::written(L"aba"), L"aba") << "equal ends that are no quotes";
}

TEST(SettingTextTest, WhatIsWrittenIsReadBack) {
    for (const wchar_t* value : {L"plain", L" a ", L"\"a\"", L"'a'", L"\"\"", L"''", L"\"", L"aba", L"a=b", L"; a"}) {
        const headless::IniText ini(L"[S]\r\nK=" + AnySource::written(value) + L"\r\n");
        EXPECT_EQ(ini.find(L"k", L"s"), value) << testing::PrintToString(std::wstring(value));
    }
}

TEST(SettingTextTest, NumbersWithMoreDigitsThanTheirPlaceAreWrittenWhole) {
    EXPECT_EQ(logTime({12345, 1, 2, 3, 4, 5}), L"12345-01-02 03:04:05");
    EXPECT_EQ(logTime({33, 10, 11, 12, 13, 14}), L"0033-10-11 12:13:14");
}

TEST(SettingTextTest, PairsOfHalvesReachFromTheFirstToTheLast) {
    const auto pair = [](int high, int low) {
        return std::wstring{static_cast<wchar_t>(high), static_cast<wchar_t>(low)};
    };
    EXPECT_EQ(toUtf8(pair(0xD800, 0xDC00)), "\xF0\x90\x80\x80");
    EXPECT_EQ(toUtf8(pair(0xD83D, 0xDC00)), "\xF0\x9F\x90\x80");
    EXPECT_EQ(toUtf8(pair(0xDBFF, 0xDFFF)), "\xF4\x8F\xBF\xBF");
    EXPECT_EQ(toUtf8(pair(0xD83D, 0xDBFF)), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(pair(0xD83D, 0xE000)), "\xEF\xBF\xBD\xEE\x80\x80");
    EXPECT_EQ(toUtf8(pair(0xD7FF, 0xDC00)), "\xED\x9F\xBF\xEF\xBF\xBD");
}

}  // namespace
}  // namespace kv::util
