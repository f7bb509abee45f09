#include "tests/unit/Numbers.h"
#include "util/NumberFormat.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kv::util {
namespace {

constexpr double kUnset = 8888888888888.0;

std::wstring zeros(std::size_t count) {
    return std::wstring(count, L'0');
}

/// Expects the texts of the values by `format`.
void expectBy(const std::wstring& format, const std::vector<std::pair<double, std::wstring>>& texts) {
    for (const auto& [value, text] : texts)
        EXPECT_EQ(formatNumber(value, format), text) << value << " by " << testing::PrintToString(format);
}

TEST(FormatNumberTest, PlaceholdersThatAreAlwaysShown) {
    expectBy(L"0", {{7.0, L"7"}, {9007199254740993.0, L"9007199254740992"}});
    expectBy(L"00", {{7.0, L"07"}, {123.0, L"123"}});
    expectBy(L"0.000", {{851.0125, L"851.013"}, {kUnset, L"8888888888888.000"}});
    expectBy(L"#0.00", {{-87.654, L"-87.65"}});
    expectBy(L"##0.00000", {{851.0125, L"851.01250"}, {0.5, L"0.50000"}, {-kUnset, L"-8888888888888.00000"}});
    expectBy(L"####0.00000", {{12345.678901, L"12345.67890"}, {0.0, L"0.00000"}});
}

// NumberFormatPropertyTest proves rounding for random values; these are its limits.
TEST(FormatNumberTest, HalvesOfTheDecimalTextRoundAwayFromZero) {
    expectBy(L"0", {{2.5, L"3"}, {-2.5, L"-3"}, {0.5, L"1"}, {0.49999999999999994, L"0"}, {99.5, L"100"}});
    expectBy(L"0.00", {{1.005, L"1.01"}, {-1.005, L"-1.01"}, {2.675, L"2.68"}, {9.995, L"10.00"}, {5e-324, L"0.00"}});
    expectBy(L"##0.00000", {{999.9999996, L"1000.00000"}});
    expectBy(L"0." + zeros(324), {{5e-324, L"0." + zeros(323) + L"5"}});
    expectBy(L"0." + zeros(323), {{5e-324, L"0." + zeros(322) + L"1"}});
}

TEST(FormatNumberTest, NumbersThatRoundToZeroHaveNoSign) {
    expectBy(L"0.000", {{-0.0, L"0.000"}, {-0.0004, L"0.000"}, {-0.0005, L"-0.001"}, {-5e-324, L"0.000"}});
    expectBy(L"", {{-0.0, L"0"}});
}

// The shorter way of plain formats must leave the numbers that it cannot round to the other way.
TEST(FormatNumberTest, NumbersNextToAHalfRoundByTheirDecimalText) {
    expectBy(L"0.000", {{100.0005, L"100.001"}, {100.00049999999, L"100.000"}, {100.00050000001, L"100.001"}});
    expectBy(L"0.000", {{100.0004999999999, L"100.000"}, {-100.0005, L"-100.001"}, {99.9995, L"100.000"}});
    expectBy(L"##0.000000", {{0.0000005, L"0.000001"}, {-0.0000004, L"0.000000"}, {99999.9999999, L"100000.000000"}});
    expectBy(L"0.000", {{99999999.9995, L"100000000.000"}, {100000000.0005, L"100000000.001"}});
}

TEST(FormatNumberTest, NumbersOfManyDigits) {
    EXPECT_EQ(formatNumber(12345.678901, L"0.000000"), L"12345.678901");
    EXPECT_EQ(formatNumber(10000.000001, L"0.000000"), L"10000.000001");
    EXPECT_EQ(formatNumber(50000.0, L"0.000000"), L"50000.000000");
    EXPECT_EQ(formatNumber(99999999.9, L"0.0"), L"99999999.9");
    EXPECT_EQ(formatNumber(100000000.0, L"0.0"), L"100000000.0");
    EXPECT_EQ(formatNumber(2147.483647, L"0.000000"), L"2147.483647");
    EXPECT_EQ(formatNumber(-2147.483648, L"0.000000"), L"-2147.483648");
}

TEST(FormatNumberTest, AKeptTextIsReplaced) {
    std::wstring text = L"an earlier and longer text";
    formatNumber(1.5, L"0.000", text);
    EXPECT_EQ(text, L"1.500");
    formatNumber(-2.5, L"0.0 MHz", text);
    EXPECT_EQ(text, L"-2.5 MHz");
}

TEST(FormatNumberTest, OptionalDecimalsDropTrailingZerosAndThePoint) {
    expectBy(L"0.###", {{1.5, L"1.5"}, {1.0625, L"1.063"}, {1.05, L"1.05"}, {1.1996, L"1.2"}, {5.0001, L"5"}});
    expectBy(L"0.0##", {{1.5, L"1.5"}, {1.0, L"1.0"}});
    expectBy(L"0.#0#", {{1.0, L"1.00"}});
    expectBy(L"0.### MHz", {{5.0, L"5 MHz"}});
}

TEST(FormatNumberTest, OptionalWholeDigits) {
    expectBy(L"#.00", {{0.5, L".50"}, {-0.5, L"-.50"}, {12.5, L"12.50"}});
    expectBy(L".00", {{0.5, L".50"}, {12.5, L"12.50"}});
    expectBy(L"#", {{0.0, L""}});
    expectBy(L"#.##", {{0.0, L""}});
    expectBy(L"0##", {{5.0, L"005"}});
    expectBy(L"#0#", {{5.0, L"05"}});
}

TEST(FormatNumberTest, TextAroundTheDigitsFollowsTheSign) {
    expectBy(L"0.000 MHz", {{851.5, L"851.500 MHz"}});
    expectBy(L"CH 00", {{3.0, L"CH 03"}});
    expectBy(L"<0.00>", {{2.5, L"<2.50>"}, {-2.5, L"-<2.50>"}, {-0.001, L"<0.00>"}});
    expectBy(L"± 0.00 µ", {{2.5, L"± 2.50 µ"}});
    expectBy(L"0.", {{5.0, L"5."}});
    expectBy(L"0 MHz.", {{5.0, L"5 MHz."}});
    expectBy(L"approx. 0.0", {{5.0, L"approx. 5.0"}});
}

TEST(FormatNumberTest, TextBetweenTheDigits) {
    expectBy(L"000-000", {{123456.0, L"123-456"}, {7.0, L"000-007"}});
    expectBy(L"###-###", {{7.0, L"7"}, {1234567.0, L"1234-567"}});
    expectBy(L"0.000 000", {{1.5, L"1.500 000"}});
    expectBy(L"0.### ###", {{1.5, L"1.5"}, {1.50004, L"1.500 04"}});
    expectBy(L"0.0.0", {{1.25, L"1.2.5"}});
}

TEST(FormatNumberTest, ACommaGroupsWholeDigits) {
    expectBy(L"#,##0", {{999.0, L"999"}, {999.5, L"1,000"}, {-1000.0, L"-1,000"}});
    expectBy(L"#,##0.00", {{1234567.891, L"1,234,567.89"}});
    expectBy(L"0,000", {{5.0, L"0,005"}});
    expectBy(L"0, 0", {{1234.0, L"1,23 4"}});
}

TEST(FormatNumberTest, NumbersThatAreNotFiniteHaveNoOtherText) {
    for (const std::wstring format : {L"", L"0.000", L"<0.00> MHz", L"text"})
        expectBy(format, {{kNaN, L"NaN"}, {-kNaN, L"NaN"}, {kInfinity, L"Infinity"}, {-kInfinity, L"-Infinity"}});
}

TEST(FormatNumberTest, AnEmptyFormatIsTheShortestTextWithoutAnExponent) {
    expectBy(L"", {{0.0, L"0"}, {12.0, L"12"}, {0.1, L"0.1"}, {-851.0125, L"-851.0125"}, {0.000001, L"0.000001"}});
    expectBy(L"", {{1e22, L"1" + zeros(22)}, {5e-324, L"0." + zeros(323) + L"5"}});
}

TEST(FormatNumberTest, AFormatWithoutPlaceholdersIsText) {
    expectBy(L"none", {{5.0, L"none"}});
    expectBy(L".", {{-5.0, L"."}});
}

TEST(FormatNumberTest, TheLocaleDoesNotMatter) {
    const char* const current = std::setlocale(LC_ALL, nullptr);
    const std::string before = current != nullptr ? current : "C";
    for (const char* name : {"de_DE.UTF-8", "de_DE", "German_Germany.1252", ""}) {
        std::setlocale(LC_ALL, name);  // The system may lack some of them.
        EXPECT_EQ(formatNumber(1234.5, L"#,##0.0"), L"1,234.5") << name;
        EXPECT_EQ(formatNumber(0.25, L""), L"0.25") << name;
        EXPECT_EQ(parseNumber(L"1.5"), 1.5) << name;
        EXPECT_EQ(parseNumber(L"1,5"), std::nullopt) << name;
    }
    std::setlocale(LC_ALL, before.c_str());
}

void expectParsed(const std::vector<std::pair<std::wstring, std::optional<double>>>& values) {
    for (const auto& [text, value] : values)
        EXPECT_EQ(parseNumber(text), value) << testing::PrintToString(text);
}

TEST(ParseNumberTest, Numbers) {
    expectParsed({{L"0", 0.0}, {L"12", 12.0}, {L"-12.5", -12.5}, {L"+12.5", 12.5}, {L"  7 ", 7.0}, {L"007", 7.0}});
    expectParsed({{L".5", 0.5}, {L"5.", 5.0}, {L"1e3", 1000.0}, {L"-2.5E-2", -0.025}, {L"1E+3", 1000.0}});
    expectParsed({{L"1" + zeros(300), 1e300}, {L"1.7976931348623157e308", std::numeric_limits<double>::max()}});
    expectParsed({{L"5e-324", std::numeric_limits<double>::denorm_min()}});
}

TEST(ParseNumberTest, OtherTexts) {
    for (const std::wstring_view text :
         {L"",     L" ",     L"+",    L"-",   L".",        L"-.",     L"e5",  L".e5",    L"1e",     L"1e+",   L"e-5",
          L"-E-5", L"1e5.0", L"1e 5", L"1 2", L"- 5",      L"--5",    L"+-5", L"1.2.3",  L"1,5",    L"5-",    L"0x10",
          L"&H10", L"inf",   L"nan",  L"NaN", L"Infinity", L"12 MHz", L"\t5", L"\u0661", L"\u0131", L"\u0130"})
        EXPECT_EQ(parseNumber(text), std::nullopt) << testing::PrintToString(std::wstring(text));
}

TEST(ParseNumberTest, ANumberTooLargeForADoubleIsNoNumber) {
    for (const std::wstring& text :
         {std::wstring(L"1e309"), std::wstring(L"-1e309"), std::wstring(L"0.001e400"),
          std::wstring(L"1e99999999999999999999"), std::wstring(L"100000e2147483647"), L"1" + zeros(309)})
        EXPECT_EQ(parseNumber(text), std::nullopt) << testing::PrintToString(text);
}

TEST(ParseNumberTest, ANumberTooSmallForADoubleIsZero) {
    expectParsed({{L"1e-400", 0.0}, {L"-1e-400", 0.0}, {L"1000e-400", 0.0}, {L"0.00001e-2147483648", 0.0}});
    expectParsed({{L"0e999", 0.0}, {L"0.000e99999999999999999999", 0.0}, {L"1e-99999999999999999999", 0.0}});
    expectParsed({{L"0." + zeros(400) + L"1", 0.0}, {L"0." + zeros(400) + L"1e+5", 0.0}});
}

TEST(SignedNumberTextTest, TheSignOfTheValueFollowsTheDigits) {
    for (const auto& [number, format, text] :
         std::vector<std::array<std::wstring, 3>>{{L"1.5", L"0.000", L"1.500+"},
                                                  {L"-1.5", L"0.000", L"1.500-"},
                                                  {L"0", L"0.000", L"0.000+"},
                                                  {L"-0", L"0.000", L"0.000+"},
                                                  {L" +2.0005 ", L"0.000", L"2.001+"},
                                                  {L"-0.0001", L"0.000", L"0.000-"},
                                                  {L"-2.5e1", L"0.00 MHz", L"25.00 MHz-"},
                                                  {L"-2.5", L"", L"2.5-"}})
        EXPECT_EQ(signedNumberText(number, format, 0, 0), text) << testing::PrintToString(number);
}

TEST(SignedNumberTextTest, OtherTextsComeBackUnchanged) {
    for (const wchar_t* text : {L"", L" n/a ", L"12 MHz"})
        EXPECT_EQ(signedNumberText(text, L"0.000", 10, 20), text);
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
