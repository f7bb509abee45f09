#include "util/NumberFormat.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace kv::util {
namespace {

constexpr double kUnset = 8888888888888.0;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(FormatNumberTest, FormatsOfTheControl) {
    EXPECT_EQ(formatNumber(851.0125, L"0.000"), L"851.013");
    EXPECT_EQ(formatNumber(851.0125, L"##0.00000"), L"851.01250");
    EXPECT_EQ(formatNumber(0.5, L"##0.00000"), L"0.50000");
    EXPECT_EQ(formatNumber(1234.5, L"##0.00000"), L"1234.50000");
    EXPECT_EQ(formatNumber(12345.678901, L"####0.00000"), L"12345.67890");
    EXPECT_EQ(formatNumber(0.0, L"####0.00000"), L"0.00000");
    EXPECT_EQ(formatNumber(900.1, L"0.00000"), L"900.10000");
    EXPECT_EQ(formatNumber(-87.654, L"#0.00"), L"-87.65");
    EXPECT_EQ(formatNumber(7.0, L"0"), L"7");
    EXPECT_EQ(formatNumber(7.0, L"00"), L"07");
    EXPECT_EQ(formatNumber(123.0, L"00"), L"123");
}

TEST(FormatNumberTest, HalvesRoundAwayFromZeroOnTheDecimalValue) {
    EXPECT_EQ(formatNumber(1.005, L"0.00"), L"1.01");
    EXPECT_EQ(formatNumber(2.5, L"0"), L"3");
    EXPECT_EQ(formatNumber(3.5, L"0"), L"4");
    EXPECT_EQ(formatNumber(0.125, L"0.00"), L"0.13");
    EXPECT_EQ(formatNumber(-2.5, L"0"), L"-3");
    EXPECT_EQ(formatNumber(-1.005, L"0.00"), L"-1.01");
    EXPECT_EQ(formatNumber(0.5, L"0"), L"1");
    EXPECT_EQ(formatNumber(0.49999999999999994, L"0"), L"0");
    EXPECT_EQ(formatNumber(2.675, L"0.00"), L"2.68");
    EXPECT_EQ(formatNumber(0.0005, L"0.000"), L"0.001");
    EXPECT_EQ(formatNumber(0.00049, L"0.000"), L"0.000");
}

TEST(FormatNumberTest, RoundingCarriesThroughNines) {
    EXPECT_EQ(formatNumber(9.995, L"0.00"), L"10.00");
    EXPECT_EQ(formatNumber(99.5, L"0"), L"100");
    EXPECT_EQ(formatNumber(999.9999996, L"##0.00000"), L"1000.00000");
    EXPECT_EQ(formatNumber(0.95, L"0.0"), L"1.0");
    EXPECT_EQ(formatNumber(0.0996, L"0.000"), L"0.100");
}

TEST(FormatNumberTest, WhatRoundsToZeroHasNoSign) {
    EXPECT_EQ(formatNumber(-0.0, L"0.000"), L"0.000");
    EXPECT_EQ(formatNumber(-0.0004, L"0.000"), L"0.000");
    EXPECT_EQ(formatNumber(-0.0005, L"0.000"), L"-0.001");
    EXPECT_EQ(formatNumber(-5e-324, L"0.00"), L"0.00");
    EXPECT_EQ(formatNumber(-0.0, L""), L"0");
}

TEST(FormatNumberTest, AllMagnitudes) {
    EXPECT_EQ(formatNumber(kUnset, L"0.000"), L"8888888888888.000");
    EXPECT_EQ(formatNumber(-kUnset, L"##0.00000"), L"-8888888888888.00000");
    EXPECT_EQ(formatNumber(1e300, L"0.0"), L"1" + std::wstring(300, L'0') + L".0");
    EXPECT_EQ(formatNumber(std::numeric_limits<double>::max(), L"0"), L"17976931348623157" + std::wstring(292, L'0'));
    EXPECT_EQ(formatNumber(5e-324, L"0.00"), L"0.00");
    EXPECT_EQ(formatNumber(5e-324, L"0." + std::wstring(324, L'0')), L"0." + std::wstring(323, L'0') + L"5");
    EXPECT_EQ(formatNumber(5e-324, L"0." + std::wstring(323, L'0')), L"0." + std::wstring(322, L'0') + L"1");
    EXPECT_EQ(formatNumber(9007199254740993.0, L"0"), L"9007199254740992");
}

TEST(FormatNumberTest, OptionalDecimalsDropTrailingZeros) {
    EXPECT_EQ(formatNumber(1.5, L"0.###"), L"1.5");
    EXPECT_EQ(formatNumber(1.0625, L"0.###"), L"1.063");
    EXPECT_EQ(formatNumber(1.05, L"0.###"), L"1.05");
    EXPECT_EQ(formatNumber(1.5, L"0.0##"), L"1.5");
    EXPECT_EQ(formatNumber(1.0, L"0.0##"), L"1.0");
    EXPECT_EQ(formatNumber(1.0, L"0.#0#"), L"1.00");
    EXPECT_EQ(formatNumber(1.1996, L"0.###"), L"1.2");
}

TEST(FormatNumberTest, PointGoesWithTheLastDecimal) {
    EXPECT_EQ(formatNumber(5.0, L"0.###"), L"5");
    EXPECT_EQ(formatNumber(5.0001, L"0.###"), L"5");
    EXPECT_EQ(formatNumber(5.0, L"0.### MHz"), L"5 MHz");
}

TEST(FormatNumberTest, OptionalWholeDigits) {
    EXPECT_EQ(formatNumber(0.5, L"#.00"), L".50");
    EXPECT_EQ(formatNumber(-0.5, L"#.00"), L"-.50");
    EXPECT_EQ(formatNumber(12.5, L"#.00"), L"12.50");
    EXPECT_EQ(formatNumber(0.0, L"#"), L"");
    EXPECT_EQ(formatNumber(0.0, L"#.##"), L"");
    EXPECT_EQ(formatNumber(5.0, L"0##"), L"005");
    EXPECT_EQ(formatNumber(5.0, L"#0#"), L"05");
    EXPECT_EQ(formatNumber(0.5, L".00"), L".50");
    EXPECT_EQ(formatNumber(12.5, L".00"), L"12.50");
}

TEST(FormatNumberTest, LiteralTextAroundTheDigits) {
    EXPECT_EQ(formatNumber(851.5, L"0.000 MHz"), L"851.500 MHz");
    EXPECT_EQ(formatNumber(3.0, L"CH 00"), L"CH 03");
    EXPECT_EQ(formatNumber(2.5, L"<0.00>"), L"<2.50>");
    EXPECT_EQ(formatNumber(2.5, L"± 0.00 µ"), L"± 2.50 µ");
    EXPECT_EQ(formatNumber(5.0, L"0."), L"5.");
    EXPECT_EQ(formatNumber(5.0, L"0 MHz."), L"5 MHz.");
    EXPECT_EQ(formatNumber(5.0, L"approx. 0.0"), L"approx. 5.0");
}

TEST(FormatNumberTest, MinusStandsBeforeThePrefix) {
    EXPECT_EQ(formatNumber(-2.5, L"<0.00>"), L"-<2.50>");
    EXPECT_EQ(formatNumber(-0.001, L"<0.00>"), L"<0.00>");
}

TEST(FormatNumberTest, LiteralTextBetweenTheDigits) {
    EXPECT_EQ(formatNumber(123456.0, L"000-000"), L"123-456");
    EXPECT_EQ(formatNumber(7.0, L"000-000"), L"000-007");
    EXPECT_EQ(formatNumber(7.0, L"###-###"), L"7");
    EXPECT_EQ(formatNumber(1234567.0, L"###-###"), L"1234-567");
    EXPECT_EQ(formatNumber(1.5, L"0.000 000"), L"1.500 000");
    EXPECT_EQ(formatNumber(1.5, L"0.### ###"), L"1.5");
    EXPECT_EQ(formatNumber(1.50004, L"0.### ###"), L"1.500 04");
    EXPECT_EQ(formatNumber(1.25, L"0.0.0"), L"1.2.5");
}

TEST(FormatNumberTest, CommaGroupsWholeDigits) {
    EXPECT_EQ(formatNumber(1234567.891, L"#,##0.00"), L"1,234,567.89");
    EXPECT_EQ(formatNumber(999.0, L"#,##0"), L"999");
    EXPECT_EQ(formatNumber(999.5, L"#,##0"), L"1,000");
    EXPECT_EQ(formatNumber(-1000.0, L"#,##0"), L"-1,000");
    EXPECT_EQ(formatNumber(5.0, L"0,000"), L"0,005");
    EXPECT_EQ(formatNumber(1234.0, L"0, 0"), L"1,23 4");
}

TEST(FormatNumberTest, NotFiniteWithoutLiterals) {
    for (const std::wstring_view format : {L"", L"0.000", L"<0.00> MHz", L"text"}) {
        EXPECT_EQ(formatNumber(std::numeric_limits<double>::quiet_NaN(), format), L"NaN");
        EXPECT_EQ(formatNumber(-std::numeric_limits<double>::quiet_NaN(), format), L"NaN");
        EXPECT_EQ(formatNumber(kInfinity, format), L"Infinity");
        EXPECT_EQ(formatNumber(-kInfinity, format), L"-Infinity");
    }
}

TEST(FormatNumberTest, EmptyFormatIsPlain) {
    EXPECT_EQ(formatNumber(0.0, L""), L"0");
    EXPECT_EQ(formatNumber(12.0, L""), L"12");
    EXPECT_EQ(formatNumber(100000.0, L""), L"100000");
    EXPECT_EQ(formatNumber(0.1, L""), L"0.1");
    EXPECT_EQ(formatNumber(-851.0125, L""), L"-851.0125");
    EXPECT_EQ(formatNumber(0.000001, L""), L"0.000001");
    EXPECT_EQ(formatNumber(kUnset, L""), L"8888888888888");
    EXPECT_EQ(formatNumber(1e22, L""), L"10000000000000000000000");
    EXPECT_EQ(formatNumber(5e-324, L""), L"0." + std::wstring(323, L'0') + L"5");
}

TEST(FormatNumberTest, FormatWithoutPlaceholdersIsText) {
    EXPECT_EQ(formatNumber(5.0, L"none"), L"none");
    EXPECT_EQ(formatNumber(-5.0, L"."), L".");
}

TEST(FormatNumberTest, LocaleDoesNotMatter) {
    const char* const current = std::setlocale(LC_ALL, nullptr);
    const std::string before = current != nullptr ? current : "C";
    for (const char* name : {"de_DE.UTF-8", "de_DE", "German_Germany.1252", ""}) {
        std::setlocale(LC_ALL, name);  // Where the system lacks it, the others still count.
        EXPECT_EQ(formatNumber(1234.5, L"0.000"), L"1234.500") << name;
        EXPECT_EQ(formatNumber(1234.5, L"#,##0.0"), L"1,234.5") << name;
        EXPECT_EQ(formatNumber(0.25, L""), L"0.25") << name;
        EXPECT_EQ(parseNumber(L"1.5"), 1.5) << name;
        EXPECT_EQ(parseNumber(L"1,5"), std::nullopt) << name;
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(ParseNumberTest, Numbers) {
    EXPECT_EQ(parseNumber(L"0"), 0.0);
    EXPECT_EQ(parseNumber(L"12"), 12.0);
    EXPECT_EQ(parseNumber(L"-12.5"), -12.5);
    EXPECT_EQ(parseNumber(L"+12.5"), 12.5);
    EXPECT_EQ(parseNumber(L"  7 "), 7.0);
    EXPECT_EQ(parseNumber(L".5"), 0.5);
    EXPECT_EQ(parseNumber(L"5."), 5.0);
    EXPECT_EQ(parseNumber(L"1e3"), 1000.0);
    EXPECT_EQ(parseNumber(L"-2.5E-2"), -0.025);
    EXPECT_EQ(parseNumber(L"1E+3"), 1000.0);
    EXPECT_EQ(parseNumber(L"007"), 7.0);
    EXPECT_EQ(parseNumber(L"1" + std::wstring(300, L'0')), 1e300);
}

TEST(ParseNumberTest, OtherTexts) {
    for (const std::wstring_view text :
         {L"",      L" ",    L"+",   L"-",   L".",        L"-.",     L"e5",    L".e5",    L"1e",     L"1e+",
          L"1e5.0", L"1e 5", L"1 2", L"- 5", L"--5",      L"+-5",    L"1.2.3", L"1,5",    L"5-",     L"0x10",
          L"&H10",  L"inf",  L"nan", L"NaN", L"Infinity", L"12 MHz", L"\t5",   L"\u0661", L"\u0131", L"\u0130"})
        EXPECT_EQ(parseNumber(text), std::nullopt) << testing::PrintToString(std::wstring(text));
}

TEST(ParseNumberTest, TooLargeIsNoNumber) {
    EXPECT_EQ(parseNumber(L"1e309"), std::nullopt);
    EXPECT_EQ(parseNumber(L"-1e309"), std::nullopt);
    EXPECT_EQ(parseNumber(L"1e99999999999999999999"), std::nullopt);
    EXPECT_EQ(parseNumber(L"0.001e400"), std::nullopt);
    EXPECT_EQ(parseNumber(L"100000e2147483647"), std::nullopt);
    EXPECT_EQ(parseNumber(L"1" + std::wstring(309, L'0')), std::nullopt);
    EXPECT_EQ(parseNumber(L"1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(ParseNumberTest, TooSmallIsZero) {
    EXPECT_EQ(parseNumber(L"1e-400"), 0.0);
    EXPECT_EQ(parseNumber(L"-1e-400"), 0.0);
    EXPECT_EQ(parseNumber(L"1000e-400"), 0.0);
    EXPECT_EQ(parseNumber(L"0.00001e-2147483648"), 0.0);
    EXPECT_EQ(parseNumber(L"1e-99999999999999999999"), 0.0);
    EXPECT_EQ(parseNumber(L"0." + std::wstring(400, L'0') + L"1"), 0.0);
    EXPECT_EQ(parseNumber(L"0." + std::wstring(400, L'0') + L"1e+5"), 0.0);
    EXPECT_EQ(parseNumber(L"0e999"), 0.0);
    EXPECT_EQ(parseNumber(L"0.000e99999999999999999999"), 0.0);
    EXPECT_EQ(parseNumber(L"5e-324"), std::numeric_limits<double>::denorm_min());
}

TEST(SignedNumberTextTest, SignTrailsTheDigits) {
    EXPECT_EQ(signedNumberText(L"1.5", L"0.000", 0, 0), L"1.500+");
    EXPECT_EQ(signedNumberText(L"-1.5", L"0.000", 0, 0), L"1.500-");
    EXPECT_EQ(signedNumberText(L"0", L"0.000", 0, 0), L"0.000+");
    EXPECT_EQ(signedNumberText(L"-0", L"0.000", 0, 0), L"0.000+");
    EXPECT_EQ(signedNumberText(L" +2.0005 ", L"0.000", 0, 0), L"2.001+");
    EXPECT_EQ(signedNumberText(L"-2.5e1", L"0.00 MHz", 0, 0), L"25.00 MHz-");
    EXPECT_EQ(signedNumberText(L"-2.5", L"", 0, 0), L"2.5-");
}

TEST(SignedNumberTextTest, SignIsThatOfTheValueAndNotOfTheDigits) {
    EXPECT_EQ(signedNumberText(L"-0.0001", L"0.000", 0, 0), L"0.000-");
}

TEST(SignedNumberTextTest, OtherTextsComeBackUnchanged) {
    EXPECT_EQ(signedNumberText(L"", L"0.000", 10, 20), L"");
    EXPECT_EQ(signedNumberText(L" n/a ", L"0.000", 10, 20), L" n/a ");
    EXPECT_EQ(signedNumberText(L"12 MHz", L"0.000", 10, 20), L"12 MHz");
}

TEST(SignedNumberTextTest, WidthsPadLeftThenRight) {
    EXPECT_EQ(signedNumberText(L"1.5", L"0.0", 6, 0), L"  1.5+");
    EXPECT_EQ(signedNumberText(L"-1.5", L"0.0", 0, 6), L"1.5-  ");
    EXPECT_EQ(signedNumberText(L"1.5", L"0.0", 6, 9), L"  1.5+   ");
    EXPECT_EQ(signedNumberText(L"1.5", L"0.0", 6, 5), L"  1.5+");
    EXPECT_EQ(signedNumberText(L"123.5", L"0.0", 6, 6), L"123.5+");
    EXPECT_EQ(signedNumberText(L"123.5", L"0.0", 2, 2), L"123.5+");
    EXPECT_EQ(signedNumberText(L"1.5", L"0.0", -6, -32768), L"1.5+");
    EXPECT_EQ(signedNumberText(L"1", L"0", 32767, 0).size(), 32767U);
}

}  // namespace
}  // namespace kv::util
