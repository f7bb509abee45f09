#include "util/NumberFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <system_error>

#include "util/Text.h"

namespace kv::util {

namespace {

/// A non-negative decimal number, 0.d1d2d3... × 10^point. The last digit is never 0; no digits at all is zero.
class Decimal {
  public:
    /// The shortest decimal that reads back as `value`, which must be finite and not negative.
    explicit Decimal(double value) {
        std::array<char, 32> text{};  // At most 17 digits, the point, and an exponent such as e-324.
        char* const end = std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific).ptr;
        char* const exponent = std::find(text.begin(), end, 'e');
        std::copy_if(text.begin(), exponent, std::back_inserter(digits_), [](char c) { return c != '.'; });
        const char* const power = exponent[1] == '+' ? exponent + 2 : exponent + 1;
        std::from_chars(power, end, point_);
        ++point_;
        normalize();
    }

    [[nodiscard]] bool isZero() const { return digits_.empty(); }
    /// The number of digits before the decimal point, without leading zeros.
    [[nodiscard]] int wholeDigits() const { return std::max(point_, 0); }
    /// The number of digits after the decimal point, without trailing zeros.
    [[nodiscard]] int decimals() const { return std::max(size() - point_, 0); }

    /// The digit of 10^power.
    [[nodiscard]] wchar_t digit(int power) const {
        const int index = point_ - 1 - power;
        if (index < 0 || index >= size())
            return L'0';
        return static_cast<wchar_t>(digits_[static_cast<std::size_t>(index)]);
    }

    /// Rounds to `decimals` digits after the decimal point, a half upwards.
    void round(int decimals) {
        const int keep = point_ + decimals;
        if (keep >= size())
            return;
        const bool up = keep >= 0 && digits_[static_cast<std::size_t>(keep)] >= '5';
        digits_.resize(static_cast<std::size_t>(std::max(keep, 0)));
        if (up)
            increment();
        normalize();
    }

  private:
    [[nodiscard]] int size() const { return static_cast<int>(digits_.size()); }

    /// Adds one to the last digit.
    void increment() {
        while (!digits_.empty() && digits_.back() == '9')
            digits_.pop_back();
        if (!digits_.empty()) {
            ++digits_.back();
        } else {
            digits_.assign(1, '1');
            ++point_;
        }
    }

    void normalize() {
        digits_.erase(digits_.find_last_not_of('0') + 1);
        if (digits_.empty())
            point_ = 0;
    }

    std::string digits_;
    int point_ = 0;
};

bool isPlaceholder(wchar_t c) {
    return c == L'0' || c == L'#';
}

/// The placeholders of one side of the decimal point, with the text between them.
struct Side {
    std::wstring_view tokens;

    [[nodiscard]] int placeholders() const { return static_cast<int>(std::ranges::count_if(tokens, isPlaceholder)); }
};

/// How many whole digits are always shown: all from the first '0' on.
int leastWhole(const Side& side) {
    const std::size_t first = side.tokens.find(L'0');
    return first == std::wstring_view::npos ? 0 : Side{side.tokens.substr(first)}.placeholders();
}

/// How many decimals are always shown: all up to the last '0'.
int leastDecimals(const Side& side) {
    return Side{side.tokens.substr(0, side.tokens.rfind(L'0') + 1)}.placeholders();
}

std::wstring wholeText(const Decimal& number, const Side& side) {
    const int shown = std::max(number.wholeDigits(), leastWhole(side));
    const bool grouped = side.tokens.find(L',') != std::wstring_view::npos;
    std::wstring reversed;
    int power = 0;
    const auto addDigit = [&] {
        if (grouped && power > 0 && power % 3 == 0)
            reversed += L',';
        reversed += number.digit(power++);
    };
    for (auto token = side.tokens.rbegin(); token != side.tokens.rend() && power < shown; ++token) {
        if (isPlaceholder(*token)) {
            addDigit();
        } else if (*token != L',') {
            reversed += *token;
        }
    }
    while (power < shown)
        addDigit();
    return {reversed.rbegin(), reversed.rend()};
}

std::wstring decimalsText(const Decimal& number, const Side& side) {
    const int shown = std::max(number.decimals(), leastDecimals(side));
    std::wstring text;
    if (shown > 0)
        text = L'.';
    int place = 0;
    for (const wchar_t token : side.tokens) {
        if (place >= shown)
            break;
        text += isPlaceholder(token) ? number.digit(-++place) : token;
    }
    return text;
}

std::wstring plainText(const Decimal& number) {
    std::wstring text = wholeText(number, Side{L"0"});
    if (number.decimals() > 0)
        text += L'.';
    for (int place = 1; place <= number.decimals(); ++place)
        text += number.digit(-place);
    return text;
}

/// `number` by a format with placeholders; the digits that are not shown are rounded off `number`.
std::wstring pictureText(Decimal& number, std::wstring_view format) {
    const std::size_t firstDigit = format.find_first_of(L"0#");
    const std::size_t begin = firstDigit > 0 && format[firstDigit - 1] == L'.' ? firstDigit - 1 : firstDigit;
    const std::size_t end = format.find_last_of(L"0#") + 1;
    const std::wstring_view picture = format.substr(begin, end - begin);
    const std::size_t point = std::min(picture.find(L'.'), picture.size());
    const Side whole{picture.substr(0, point)};
    const Side decimals{picture.substr(std::min(point + 1, picture.size()))};

    number.round(decimals.placeholders());
    std::wstring text(format.substr(0, begin));
    text += wholeText(number, whole);
    text += decimalsText(number, decimals);
    text += format.substr(end);
    return text;
}

/// Length of the run of digits at the start of `text`.
std::size_t digitRun(std::wstring_view text) {
    return std::min(text.find_first_not_of(L"0123456789"), text.size());
}

/// Whether `text` is digits with at most one point, and an exponent if any; no sign, no blanks.
bool isUnsignedNumber(std::wstring_view text) {
    const std::size_t whole = digitRun(text);
    text.remove_prefix(whole);
    std::size_t decimals = 0;
    if (text.starts_with(L'.')) {
        text.remove_prefix(1);
        decimals = digitRun(text);
        text.remove_prefix(decimals);
    }
    if (whole + decimals == 0)
        return false;
    if (text.empty())
        return true;
    if (text.front() != L'e' && text.front() != L'E')
        return false;
    text.remove_prefix(1);
    if (text.starts_with(L'+') || text.starts_with(L'-'))
        text.remove_prefix(1);
    return !text.empty() && digitRun(text) == text.size();
}

/// Whether an unsigned number that no double can hold is below 1, which means too small and not too large.
bool isBelowOne(std::string_view text) {
    const std::size_t e = std::min(text.find_first_of("eE"), text.size());
    const std::string_view mantissa = text.substr(0, e);
    // The power of ten of the first digit that is not zero, or the next one: the number is so far from 1 that both are
    // on the same side.
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const std::int64_t position = point - static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    if (e == text.size())
        return position < 0;
    const std::size_t start = text[e + 1] == '+' ? e + 2 : e + 1;
    int exponent = 0;
    if (std::from_chars(text.data() + start, text.data() + text.size(), exponent).ec != std::errc{})
        return text[start] == '-';
    return position + exponent < 0;
}

/// By any format, from the shortest decimal text.
std::wstring decimalText(double value, std::wstring_view format) {
    if (std::isnan(value))
        return L"NaN";
    if (std::isinf(value))
        return value < 0 ? L"-Infinity" : L"Infinity";
    Decimal number(std::fabs(value));
    std::wstring text;
    if (format.empty()) {
        text = plainText(number);
    } else if (format.find_first_of(L"0#") == std::wstring_view::npos) {
        return std::wstring(format);
    } else {
        text = pictureText(number, format);
    }
    return value < 0 && !number.isZero() ? L'-' + text : text;
}

/// The decimals of a format of any number of '#', one '0', a point and one to six '0'; nothing for another format.
std::optional<int> plainDecimals(std::wstring_view format) {
    constexpr std::size_t kMost = 6;
    const std::size_t whole = std::min(format.find(L'0'), format.size());
    if (format.find_first_not_of(L'#') != whole || !format.substr(whole).starts_with(L"0."))
        return std::nullopt;
    const std::wstring_view decimals = format.substr(whole + 2);
    if (decimals.empty() || decimals.size() > kMost || decimals.find_first_not_of(L'0') != std::wstring_view::npos)
        return std::nullopt;
    return static_cast<int>(decimals.size());
}

/// The steps of 10^-decimals that are nearest to `size`; nothing unless a double shows that beyond doubt.
std::optional<std::uint64_t> nearestSteps(double size, int decimals) {
    constexpr std::array<double, 7> kPowers = {1.0, 10.0, 100.0, 1e3, 1e4, 1e5, 1e6};
    constexpr double kMost = 1e11;  // there the product and the shortest decimal text are off by less than the doubt
    constexpr double kDoubt = 1e-3;
    const double scaled = size * kPowers[static_cast<std::size_t>(decimals)];
    if (!(scaled < kMost))
        return std::nullopt;
    // Nearly all numbers are below that limit, where 32-bit programs need no call to convert.
    constexpr double kSmall = 2147483648.0;
    const auto whole = scaled < kSmall ? static_cast<std::uint64_t>(static_cast<std::int32_t>(scaled))
                                       : static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(whole);
    if (rest > 0.5 - kDoubt && rest < 0.5 + kDoubt)
        return std::nullopt;
    return whole + (rest > 0.5 ? 1U : 0U);
}

void writeSteps(std::uint64_t steps, int decimals, bool isNegative, std::wstring& text) {
    std::array<wchar_t, 24> reversed;
    std::size_t count = 0;
    const bool hasSign = isNegative && steps != 0;
    // In parts of nine digits, because 32-bit programs divide larger numbers by calls.
    constexpr std::uint64_t kPart = 1000000000;
    constexpr int kPartDigits = 9;
    const bool isShort = steps < kPart;
    auto part = static_cast<std::uint32_t>(isShort ? steps : steps % kPart);
    std::uint64_t rest = isShort ? 0 : steps / kPart;
    for (int place = 0; place <= decimals || part != 0 || rest != 0; ++place) {
        if (place > 0 && place % kPartDigits == 0) {
            part = static_cast<std::uint32_t>(rest % kPart);
            rest /= kPart;
        }
        if (place == decimals) {
            reversed[count++] = L'.';
        }
        reversed[count++] = static_cast<wchar_t>(L'0' + part % 10);
        part /= 10;
    }
    if (hasSign)
        reversed[count++] = L'-';
    text.assign(reversed.rend() - static_cast<std::ptrdiff_t>(count), reversed.rend());
}

}  // namespace

void formatNumber(double value, std::wstring_view format, std::wstring& text) {
    if (const std::optional<int> decimals = plainDecimals(format)) {
        if (const std::optional<std::uint64_t> steps = nearestSteps(std::fabs(value), *decimals)) {
            writeSteps(*steps, *decimals, value < 0, text);
            return;
        }
    }
    text = decimalText(value, format);
}

std::wstring formatNumber(double value, std::wstring_view format) {
    std::wstring text;
    formatNumber(value, format, text);
    return text;
}

std::optional<double> parseNumber(std::wstring_view text) {
    text = trim(text);
    const bool negative = text.starts_with(L'-');
    if (negative || text.starts_with(L'+'))
        text.remove_prefix(1);
    if (!isUnsignedNumber(text))
        return std::nullopt;
    std::string narrow;  // Only digits, the point, signs and the exponent's character are left.
    std::ranges::transform(text, std::back_inserter(narrow), [](wchar_t c) { return static_cast<char>(c); });
    double value = 0.0;
    const std::errc error = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value).ec;
    if (error != std::errc{} || !std::isfinite(value)) {
        if (!isBelowOne(narrow))
            return std::nullopt;
        value = 0.0;
    }
    return negative ? -value : value;
}

std::wstring signedNumberText(std::wstring_view number, std::wstring_view format, std::int16_t widthBefore,
                              std::int16_t widthAfter) {
    const std::optional<double> value = parseNumber(number);
    if (!value)
        return std::wstring(number);
    std::wstring text = formatNumber(std::fabs(*value), format);
    text += *value < 0 ? L'-' : L'+';
    const auto atLeast = [](std::int16_t width) { return static_cast<std::size_t>(std::max<std::int16_t>(width, 0)); };
    text.insert(0, std::max(atLeast(widthBefore), text.size()) - text.size(), L' ');
    text.append(std::max(atLeast(widthAfter), text.size()) - text.size(), L' ');
    return text;
}

}  // namespace kv::util
