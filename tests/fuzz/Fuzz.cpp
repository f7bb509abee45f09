#include "tests/fuzz/Fuzz.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace kv::fuzz {

namespace {

/// The length of the character at the start of `bytes`; 1 for a byte that begins no complete character.
std::size_t characterLength(std::string_view bytes) {
    const auto length = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(bytes.front())));
    if (length < 2 || length > 3 || length > bytes.size())
        return 1;
    const bool complete = std::ranges::all_of(bytes.substr(1, length - 1), [](char c) { return (c & 0xC0) == 0x80; });
    return complete ? length : 1;
}

}  // namespace

void require(bool condition, const char* rule) {
    if (condition)
        return;
    std::fprintf(stderr, "Broken rule: %s\n", rule);
    std::abort();
}

std::wstring widened(std::string_view bytes) {
    std::wstring text;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        const auto first = static_cast<unsigned char>(bytes.front());
        unsigned code = length == 1 ? first : first & (0x7FU >> length);
        for (std::size_t i = 1; i < length; ++i)
            code = code << 6U | (static_cast<unsigned char>(bytes[i]) & 0x3FU);
        text += static_cast<wchar_t>(code);
        bytes.remove_prefix(length);
    }
    return text;
}

std::wstring_view cutUntil(std::wstring_view& rest, wchar_t end) {
    const std::size_t length = std::min(rest.find(end), rest.size());
    const std::wstring_view text = rest.substr(0, length);
    rest.remove_prefix(std::min(length + 1, rest.size()));
    return text;
}

}  // namespace kv::fuzz
