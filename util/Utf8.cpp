#include "util/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace kv::util {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kLast = 0x10FFFF;

bool isHighSurrogate(std::uint32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(std::uint32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The code unit as an unsigned number, because wchar_t is signed on some systems.
std::uint32_t unitOf(wchar_t character) noexcept {
    return static_cast<std::make_unsigned_t<wchar_t>>(character);
}

/// Reads the character at `at` and moves `at` behind it. If wchar_t has 16 bits, some characters are pairs of units.
std::uint32_t characterAt(std::wstring_view text, std::size_t& at) noexcept {
    const auto unit = unitOf(text[at++]);
    if (isHighSurrogate(unit) && at < text.size()) {
        const auto low = unitOf(text[at]);
        if (isLowSurrogate(low)) {
            ++at;
            return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return isHighSurrogate(unit) || isLowSurrogate(unit) || unit > kLast ? kReplacement : unit;
}

void append(std::string& bytes, std::uint32_t lead, std::uint32_t character, int following) {
    bytes.push_back(static_cast<char>(lead | (character >> (6 * following))));
    while (following-- > 0)
        bytes.push_back(static_cast<char>(0x80U | ((character >> (6 * following)) & 0x3FU)));
}

}  // namespace

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::uint32_t character = characterAt(text, at);
        if (character < 0x80) {
            append(bytes, 0x00, character, 0);
        } else if (character < 0x800) {
            append(bytes, 0xC0, character, 1);
        } else if (character < 0x10000) {
            append(bytes, 0xE0, character, 2);
        } else {
            append(bytes, 0xF0, character, 3);
        }
    }
    return bytes;
}

}  // namespace kv::util
