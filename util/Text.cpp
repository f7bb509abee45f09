#include "util/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kv::util {

namespace {

/// Capitals from `first` to `last`; the small letter of each is `distance` above it. With a distance of 1, capitals and
/// small letters alternate.
struct CapitalRange {
    int first;
    int last;
    int distance;
};

constexpr auto kCapitals = std::to_array<CapitalRange>({
    {0x0041, 0x005A, 32},    // Basic Latin
    {0x00C0, 0x00D6, 32},    // Latin-1, around the multiplication sign
    {0x00D8, 0x00DE, 32},    //
    {0x0100, 0x012E, 1},     // Latin Extended-A, around the dotted and dotless i
    {0x0132, 0x0136, 1},     //
    {0x0139, 0x0147, 1},     //
    {0x014A, 0x0176, 1},     //
    {0x0178, 0x0178, -121},  // Y with diaeresis, whose small letter is in Latin-1
    {0x0179, 0x017D, 1},     //
    {0x0370, 0x0372, 1},     // Greek
    {0x0376, 0x0376, 1},     //
    {0x037F, 0x037F, 116},   // Yot
    {0x0386, 0x0386, 38},    // Vowels with tonos
    {0x0388, 0x038A, 37},    //
    {0x038C, 0x038C, 64},    //
    {0x038E, 0x038F, 63},    //
    {0x0391, 0x03A1, 32},    //
    {0x03A3, 0x03AB, 32},    //
    {0x03CF, 0x03CF, 8},     // Kai symbol
    {0x03D8, 0x03EE, 1},     // Archaic and Coptic letters
    {0x03F7, 0x03F7, 1},     //
    {0x03F9, 0x03F9, -7},    // Lunate sigma
    {0x03FA, 0x03FA, 1},     //
    {0x03FD, 0x03FF, -130},  // Reversed and dotted lunate sigmas
    {0x0400, 0x040F, 80},    // Cyrillic
    {0x0410, 0x042F, 32},    //
    {0x0460, 0x0480, 1},     //
    {0x048A, 0x04BE, 1},     //
    {0x04C0, 0x04C0, 15},    // Palochka
    {0x04C1, 0x04CD, 1},     //
    {0x04D0, 0x052E, 1},     //
});

/// A variant of a letter that is not the small letter of any capital: it folds together with the ordinary letter.
struct Variant {
    int code;
    int folded;
    int capital;
};

constexpr auto kVariants = std::to_array<Variant>({
    {0x00B5, 0x03BC, 0x039C},  // Micro sign
    {0x0131, 0x0131, 0x0049},  // Dotless i, a letter of its own that shares its capital with i
    {0x017F, 0x0073, 0x0053},  // Long s
    {0x03C2, 0x03C3, 0x03A3},  // Final sigma
    {0x03D0, 0x03B2, 0x0392},  // Symbol forms of Greek letters
    {0x03D1, 0x03B8, 0x0398},
    {0x03D5, 0x03C6, 0x03A6},
    {0x03D6, 0x03C0, 0x03A0},
    {0x03F0, 0x03BA, 0x039A},
    {0x03F1, 0x03C1, 0x03A1},
    {0x03F4, 0x03B8, 0x03F4},
    {0x03F5, 0x03B5, 0x0395},
});

int codeOf(wchar_t character) {
    return static_cast<int>(std::char_traits<wchar_t>::to_int_type(character));
}

bool contains(const CapitalRange& range, int capital) {
    return capital >= range.first && capital <= range.last && (range.distance != 1 || (capital - range.first) % 2 == 0);
}

const Variant* findVariant(int code) {
    const auto found = std::ranges::find(kVariants, code, &Variant::code);
    return found == kVariants.end() ? nullptr : &*found;
}

template <class Change>
std::wstring changed(std::wstring_view text, Change change) {
    std::wstring result(text);
    std::ranges::transform(result, result.begin(), change);
    return result;
}

}  // namespace

std::wstring_view trim(std::wstring_view text) noexcept {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

std::int32_t getLenTrim(std::wstring_view text) noexcept {
    return static_cast<std::int32_t>(trim(text).size());
}

std::wstring setPathName(std::wstring_view folder, std::wstring_view file) {
    file.remove_prefix(std::min(file.find_first_not_of(L'\\'), file.size()));
    if (folder.empty())
        return std::wstring(file);
    // For a folder of backslashes only, the search returns npos, and npos + 1 is 0.
    std::wstring path(folder.substr(0, folder.find_last_not_of(L'\\') + 1));
    path += L'\\';
    path += file;
    return path;
}

wchar_t foldCase(wchar_t character) noexcept {
    const int code = codeOf(character);
    // Most keys are ASCII, and a host may add half a million. The micro sign is the first other character that folds.
    if (code < 0x00B5)
        return code >= L'A' && code <= L'Z' ? static_cast<wchar_t>(code + 32) : character;
    if (const Variant* variant = findVariant(code))
        return static_cast<wchar_t>(variant->folded);
    for (const CapitalRange& range : kCapitals) {
        if (contains(range, code))
            return static_cast<wchar_t>(code + range.distance);
    }
    return character;
}

std::wstring foldCase(std::wstring_view text) {
    return changed(text, [](wchar_t character) { return foldCase(character); });
}

wchar_t upperCase(wchar_t character) noexcept {
    const int code = codeOf(character);
    if (const Variant* variant = findVariant(code))
        return static_cast<wchar_t>(variant->capital);
    for (const CapitalRange& range : kCapitals) {
        if (contains(range, code - range.distance))
            return static_cast<wchar_t>(code - range.distance);
    }
    return character;
}

std::wstring upperCase(std::wstring_view text) {
    return changed(text, [](wchar_t character) { return upperCase(character); });
}

}  // namespace kv::util
