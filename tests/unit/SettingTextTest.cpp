// Texts at the limits of their forms: quoted INI values and surrogate pairs in UTF-8.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "headless/TextIniSource.h"
#include "util/Utf8.h"

namespace kv::util {
namespace {

/// The protected rule of all sources.
class AnySource final : public IniSource {
  public:
    std::optional<std::wstring> read(std::wstring_view, std::wstring_view, std::wstring_view) override { return {}; }
    using IniSource::written;
};

TEST(SettingTextTest, AValueIsQuotedOnlyWhenItWouldLoseSomethingAndIsReadBack) {
    using Case = std::pair<std::wstring, std::wstring>;
    for (const auto& [value, written] :
         {Case{L"D:\\Projects", L"D:\\Projects"}, Case{L"a b", L"a b"}, Case{L"", L""}, Case{L" a", L"\" a\""},
          Case{L"a\t", L"\"a\t\""}, Case{L"\"a\"", L"\"\"a\"\""}, Case{L"'a'", L"\"'a'\""}, Case{L"\"a'", L"\"a'"},
          Case{L"\"\"", L"\"\"\"\""}, Case{L"''", L"\"''\""}, Case{L"\"", L"\""}, Case{L"aba", L"aba"},
          Case{L"a=b", L"a=b"}, Case{L"; a", L"; a"}}) {
        EXPECT_EQ(AnySource::written(value), written);
        const util::IniText ini(L"[S]\r\nK=" + written + L"\r\n");
        EXPECT_EQ(ini.find(L"k", L"s"), value) << testing::PrintToString(value);
    }
}

TEST(SettingTextTest, SurrogatePairsReachFromTheFirstToTheLast) {
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
