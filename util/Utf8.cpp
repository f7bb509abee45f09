#include "util/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace kv::util {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kLast = 0x10FFFF;

bool isHighHalf(std::uint32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowHalf(std::uint32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Of the unsigned type of a wide letter's size, so that none counts as negative.
std::uint32_t unitOf(wchar_t letter) noexcept {
    return static_cast<std::make_unsigned_t<wchar_t>>(letter);
}

/// The letter at `at`, which moves on by what it takes. Where a wchar_t has 16 bits letters beyond come in pairs.
std::uint32_t letterAt(std::wstring_view text, std::size_t& at) noexcept {
    const auto unit = unitOf(text[at++]);
    if (isHighHalf(unit) && at < text.size()) {
        const auto low = unitOf(text[at]);
        if (isLowHalf(low)) {
            ++at;
            return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return isHighHalf(unit) || isLowHalf(unit) || unit > kLast ? kReplacement : unit;
}

void append(std::string& bytes, std::uint32_t lead, std::uint32_t letter, int following) {
    bytes.push_back(static_cast<char>(lead | (letter >> (6 * following))));
    while (following-- > 0)
        bytes.push_back(static_cast<char>(0x80U | ((letter >> (6 * following)) & 0x3FU)));
}

}  // namespace

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::uint32_t letter = letterAt(text, at);
        if (letter < 0x80)
            append(bytes, 0x00, letter, 0);
        else if (letter < 0x800)
            append(bytes, 0xC0, letter, 1);
        else if (letter < 0x10000)
            append(bytes, 0xE0, letter, 2);
        else
            append(bytes, 0xF0, letter, 3);
    }
    return bytes;
}

}  // namespace kv::util
