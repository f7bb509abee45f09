// formatNumber against decimal arithmetic by two other routes, on many random values.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <utility>

#include "util/NumberFormat.h"

namespace kv::util {
namespace {

std::wstring widen(const std::string& text) {
    return {text.begin(), text.end()};
}

/// "0", or "0." and as many '0' as there are decimals.
std::wstring formatOf(int decimals) {
    return decimals == 0 ? L"0" : L"0." + std::wstring(static_cast<std::size_t>(decimals), L'0');
}

std::uint64_t powerOfTen(int exponent) {
    std::uint64_t power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

/// The text of whole / 10^decimals, all decimals written out.
std::string fixedText(std::uint64_t whole, int decimals) {
    std::string text = std::to_string(whole);
    if (decimals == 0)
        return text;
    const auto places = static_cast<std::size_t>(decimals);
    if (text.size() <= places)
        text.insert(0, places + 1 - text.size(), '0');
    return text.insert(text.size() - places, 1, '.');
}

/// The text of whole / 10^scale with so many decimals, rounded as whole numbers are.
std::string roundedText(std::uint64_t whole, int scale, int decimals) {
    if (decimals > scale) {
        const std::string zeros(static_cast<std::size_t>(decimals - scale), '0');
        return fixedText(whole, scale) + (scale == 0 ? "." : "") + zeros;
    }
    const std::uint64_t divisor = powerOfTen(scale - decimals);
    return fixedText((whole + divisor / 2) / divisor, decimals);
}

double parse(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The significant digits of `value` with the fewest that read back as it, and the power of ten of the first.
std::pair<std::string, int> shortestDigits(double value) {
    for (int precision = 0;; ++precision) {
        std::array<char, 40> buffer{};
        const auto written =
            std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::scientific, precision);
        const std::string text(buffer.begin(), written.ptr);
        if (parse(text) != value)
            continue;
        const std::size_t e = text.find('e');
        std::string digits = text.substr(0, 1);
        if (precision > 0)
            digits += text.substr(2, e - 2);
        return {digits, std::stoi(text.substr(e + 1))};
    }
}

/// Written out as a whole number of 10^-decimals by adding a half and cutting, digit by digit.
std::string roundedText(double value, int decimals) {
    const auto [digits, power] = shortestDigits(value);
    // One long row: enough zeros on either side, the first digit of `row` counting for 10^320.
    constexpr int kTop = 320;
    std::string row(700, '0');
    row.replace(static_cast<std::size_t>(kTop - power), digits.size(), digits);
    const int cut = kTop + decimals + 1;  // The first place that is not shown.
    int carry = 5;
    for (int i = cut; i >= 0; --i) {
        char& place = row[static_cast<std::size_t>(i)];
        const int sum = place - '0' + carry;
        place = static_cast<char>('0' + sum % 10);
        carry = sum / 10;
    }
    std::string text = row.substr(0, static_cast<std::size_t>(cut));
    if (decimals > 0)
        text.insert(static_cast<std::size_t>(kTop) + 1, 1, '.');
    const std::size_t first = std::min(text.find_first_not_of('0'), static_cast<std::size_t>(kTop));
    return text.substr(first);
}

std::string withSign(bool negative, const std::string& text) {
    const bool zero = text.find_first_of("123456789") == std::string::npos;
    return negative && !zero ? "-" + text : text;
}

TEST(NumberFormatPropertyTest, AgreesWithWholeNumberArithmetic) {
    // Up to 15 significant digits every decimal has a double of its own, whose shortest text is that decimal.
    std::mt19937_64 random(4711);
    for (int i = 0; i < 40000; ++i) {
        const std::uint64_t whole = random() % powerOfTen(1 + static_cast<int>(random() % 15));
        const int scale = static_cast<int>(random() % 13);
        const int decimals = static_cast<int>(random() % 8);
        const bool negative = random() % 2 == 0;
        const double size = parse(fixedText(whole, scale));
        const std::string expected = withSign(negative, roundedText(whole, scale, decimals));
        ASSERT_EQ(formatNumber(negative ? -size : size, formatOf(decimals)), widen(expected))
            << whole << " / 10^" << scale << ", " << decimals << " decimals";
    }
}

TEST(NumberFormatPropertyTest, TiesRoundAwayFromZero) {
    // Decimals that end in 5 exactly one place beyond those shown.
    std::mt19937_64 random(815);
    for (int i = 0; i < 20000; ++i) {
        const int decimals = static_cast<int>(random() % 6);
        const std::uint64_t shown = random() % powerOfTen(9);
        const double value = parse(fixedText(shown * 10 + 5, decimals + 1));
        const std::string expected = fixedText(shown + 1, decimals);
        ASSERT_EQ(formatNumber(value, formatOf(decimals)), widen(expected));
        ASSERT_EQ(formatNumber(-value, formatOf(decimals)), widen("-" + expected));
    }
}

TEST(NumberFormatPropertyTest, AgreesWithSchoolRoundingForAllMagnitudes) {
    std::mt19937_64 random(1234567);
    int compared = 0;
    while (compared < 3000) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        ++compared;
        const int decimals = static_cast<int>(random() % 340);
        const std::string expected = withSign(value < 0, roundedText(std::fabs(value), decimals));
        ASSERT_EQ(formatNumber(value, formatOf(decimals)), widen(expected)) << value << ", " << decimals;
    }
}

TEST(NumberFormatPropertyTest, AgreesWithSchoolRoundingForFrequencies) {
    std::mt19937_64 random(99);
    std::uniform_real_distribution<double> frequency(-4000.0, 4000.0);
    for (int i = 0; i < 10000; ++i) {
        const double value = frequency(random);
        const int decimals = static_cast<int>(random() % 16);
        const std::string expected = withSign(value < 0, roundedText(std::fabs(value), decimals));
        ASSERT_EQ(formatNumber(value, formatOf(decimals)), widen(expected)) << value << ", " << decimals;
    }
}

TEST(NumberFormatPropertyTest, PlainTextReadsBackAsTheValue) {
    std::mt19937_64 random(31337);
    for (int i = 0; i < 10000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const std::wstring text = formatNumber(value, L"");
        ASSERT_EQ(parseNumber(text), value) << value;
        ASSERT_EQ(text.find(L'e'), std::wstring::npos) << value;
    }
}

}  // namespace
}  // namespace kv::util
