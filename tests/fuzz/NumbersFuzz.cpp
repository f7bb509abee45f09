// Numbers and number formats of any text, compared with the C library's own conversions.
//
// An input is three lines: a format, a number, and two characters that stand for the widths of signedNumberText. Its
// last eight bytes are also taken as the bits of another number.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "tests/fuzz/Fuzz.h"
#include "util/NumberFormat.h"

namespace kv::util {
namespace {

using fuzz::require;

std::wstring widened(std::string_view text) {
    return {text.begin(), text.end()};
}

/// The number of a text, read by strtod.
std::optional<double> expectedNumber(std::wstring_view text) {
    while (text.starts_with(L' '))
        text.remove_prefix(1);
    while (text.ends_with(L' '))
        text.remove_suffix(1);
    if (text.empty() || text.find_first_not_of(L"0123456789.eE+-") != std::wstring_view::npos)
        return std::nullopt;
    const std::string narrow(text.begin(), text.end());
    char* end = nullptr;
    const double value = std::strtod(narrow.c_str(), &end);
    if (end != narrow.data() + narrow.size() || std::isinf(value))
        return std::nullopt;
    return value;
}

void checkParsing(std::wstring_view text) {
    const std::optional<double> number = parseNumber(text);
    const std::optional<double> expected = expectedNumber(text);
    require(number.has_value() == expected.has_value(), "strtod accepts the same texts");
    require(!number || (*number == *expected && std::signbit(*number) == std::signbit(*expected)),
            "strtod reads the same number");
}

std::string printed(double value, int decimals) {
    std::string text(static_cast<std::size_t>(decimals) + 400, '\0');
    const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

/// `size` (0 or above) with so many decimals, a half of the shortest decimal text rounded up.
///
/// snprintf rounds the binary value instead, which makes a difference in two cases only. When the shortest text has no
/// digit to round, the digits that snprintf writes beyond it are zeros. When it ends in a 5 that is rounded, the value
/// itself can be smaller, but the next double is not.
std::string fixedText(double size, int decimals) {
    std::array<char, 32> shortest{};
    const auto end = std::to_chars(shortest.begin(), shortest.end(), size, std::chars_format::scientific).ptr;
    const std::string_view text(shortest.begin(), end);
    const std::size_t e = text.find('e');
    const int exponent = std::atoi(std::string(text.substr(e + 1)).c_str());
    std::string digits(text.substr(0, 1));
    if (e > 2)
        digits += text.substr(2, e - 2);
    const int textDecimals = static_cast<int>(digits.size()) - 1 - exponent;
    if (textDecimals == decimals + 1 && digits.back() == '5')
        return printed(std::nextafter(size, HUGE_VAL), decimals);
    if (textDecimals > decimals)
        return printed(size, decimals);
    // The point is behind the digit of 10^0.
    digits.insert(0, static_cast<std::size_t>(std::max(-exponent, 0)), '0');
    const auto whole = static_cast<std::size_t>(std::max(exponent, 0) + 1);
    digits.resize(whole + static_cast<std::size_t>(decimals), '0');
    if (decimals > 0)
        digits.insert(whole, 1, '.');
    return digits;
}

bool isPlaceholder(wchar_t c) {
    return c == L'0' || c == L'#';
}

int countPlaceholders(std::wstring_view text) {
    return static_cast<int>(std::ranges::count_if(text, isPlaceholder));
}

/// A format divided at its first and last placeholder and at the point.
struct Picture {
    explicit Picture(std::wstring_view format) {
        std::size_t begin = 0;
        while (!isPlaceholder(format[begin]) && !(format[begin] == L'.' && isPlaceholder(format[begin + 1])))
            ++begin;
        std::size_t end = format.size();
        while (!isPlaceholder(format[end - 1]))
            --end;
        before = format.substr(0, begin);
        after = format.substr(end);
        decimals = format.substr(begin, end - begin);
        whole = fuzz::cutUntil(decimals, L'.');
    }
    std::wstring_view before;
    std::wstring_view whole;
    std::wstring_view decimals;
    std::wstring_view after;
};

/// The digits in the placeholders of the whole part, from left to right.
std::wstring wholeText(std::wstring digits, std::wstring_view tokens) {
    digits.erase(0, std::min(digits.find_first_not_of(L'0'), digits.size()));
    const std::size_t firstZero = std::min(tokens.find(L'0'), tokens.size());
    const auto least = static_cast<std::size_t>(countPlaceholders(tokens.substr(firstZero)));
    digits.insert(0, std::max(least, digits.size()) - digits.size(), L'0');
    const bool grouped = tokens.find(L',') != std::wstring_view::npos;
    std::size_t left = digits.size();
    std::wstring text;
    const auto show = [&](std::size_t until) {
        for (; left > until; --left) {
            text += digits[digits.size() - left];
            if (grouped && left > 1 && (left - 1) % 3 == 0)
                text += L',';
        }
    };
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const auto following = static_cast<std::size_t>(countPlaceholders(tokens.substr(i)));
        if (isPlaceholder(tokens[i]))
            show(following - 1);
        else if (tokens[i] != L',' && digits.size() > following)
            text += tokens[i];
    }
    show(0);
    return text;
}

std::wstring decimalsText(std::wstring digits, std::wstring_view tokens) {
    std::size_t least = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i] == L'0')
            least = static_cast<std::size_t>(countPlaceholders(tokens.substr(0, i + 1)));
    }
    while (digits.size() > least && digits.back() == L'0')
        digits.pop_back();
    if (digits.empty())
        return {};
    std::wstring text = L".";
    std::size_t shown = 0;
    for (std::size_t i = 0; i < tokens.size() && shown < digits.size(); ++i)
        text += isPlaceholder(tokens[i]) ? digits[shown++] : tokens[i];
    return text;
}

std::wstring expectedText(double value, std::wstring_view format) {
    const Picture picture(format);
    const int decimals = countPlaceholders(picture.decimals);
    const std::wstring fixed = widened(fixedText(std::fabs(value), decimals));
    std::wstring_view fraction = fixed;
    const std::wstring_view whole = fuzz::cutUntil(fraction, L'.');
    std::wstring text(picture.before);
    text += wholeText(std::wstring(whole), picture.whole);
    text += decimalsText(std::wstring(fraction), picture.decimals);
    text += picture.after;
    const bool isZero = fixed.find_first_of(L"123456789") == std::wstring::npos;
    return value < 0 && !isZero ? L"-" + text : text;
}

void checkFormat(double value, std::wstring_view format) {
    const std::wstring text = formatNumber(value, format);
    if (!std::isfinite(value)) {
        require(text == (std::isnan(value) ? L"NaN" : value < 0 ? L"-Infinity" : L"Infinity"), "no finite number");
    } else if (format.empty()) {
        require(parseNumber(text) == value, "the shortest text is read back");
        require(text.find_first_not_of(L"-.0123456789") == std::wstring::npos, "the shortest text has no exponent");
    } else if (format.find_first_of(L"0#") == std::wstring_view::npos) {
        require(text == format, "a format without placeholders is shown");
    } else {
        require(text == expectedText(value, format), "snprintf writes the same digits");
    }
}

/// The shortest text is the one that to_chars writes, unless to_chars adds digits that are not needed.
void checkShortest(double value) {
    if (!(std::fabs(value) < 9007199254740992.0))
        return;
    std::array<char, 512> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed).ptr;
    const std::string expected = value == 0.0 ? "0" : std::string(text.begin(), end);
    require(formatNumber(value, L"") == widened(expected), "to_chars writes the same text");
}

void checkSigned(std::wstring_view number, std::wstring_view format, std::int16_t before, std::int16_t after) {
    const std::wstring text = signedNumberText(number, format, before, after);
    const std::optional<double> value = parseNumber(number);
    if (!value) {
        require(text == number, "what is no number comes back");
        return;
    }
    const std::wstring core = formatNumber(std::fabs(*value), format) + (*value < 0 ? L'-' : L'+');
    const auto length = [](std::int16_t width) { return static_cast<std::size_t>(std::max<int>(width, 0)); };
    const std::size_t left = std::max(core.size(), length(before)) - core.size();
    const std::size_t right = std::max(core.size() + left, length(after)) - core.size() - left;
    require(text == std::wstring(left, L' ') + core + std::wstring(right, L' '), "the sign follows, blanks around it");
}

void check(std::string_view bytes) {
    const std::size_t bits = std::min<std::size_t>(sizeof(double), bytes.size());
    double other = 0.0;
    std::memcpy(&other, bytes.data() + bytes.size() - bits, bits);
    const std::wstring text = fuzz::widened(bytes);
    std::wstring_view rest = text;
    const std::wstring_view format = fuzz::cutUntil(rest, L'\n');
    const std::wstring_view number = fuzz::cutUntil(rest, L'\n');
    const auto width = [&rest](std::size_t index) {
        return index < rest.size() ? static_cast<std::int16_t>(rest[index] << 4) : std::int16_t{0};
    };
    checkParsing(number);
    checkSigned(number, format, width(0), width(1));
    for (const double value : {parseNumber(number).value_or(0.0), other}) {
        checkFormat(value, format);
        checkFormat(-value, format);
        checkFormat(value, L"");
        checkShortest(value);
    }
}

}  // namespace
}  // namespace kv::util

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kv::util::check(std::string(data, data + size));
    return 0;
}
