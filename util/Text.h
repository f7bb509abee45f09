// Small helpers for texts: trimming, paths, and letter case that does not depend on the user's locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv::util {

/// `text` without its leading and trailing blanks. A blank is the space character; tabs and line ends stay.
[[nodiscard]] std::wstring_view trim(std::wstring_view text) noexcept;

/// The length of `text` without leading and trailing blanks; below 1 means empty.
[[nodiscard]] std::int32_t getLenTrim(std::wstring_view text) noexcept;

/// `folder` and `file` joined by exactly one backslash, however many the folder ends in or the file begins with.
///
/// An empty folder gives the file alone, without a leading backslash, so that the path is relative to the current
/// folder and not to the root of the drive. A folder of backslashes only is that root: the result begins with one.
/// An empty file leaves the folder closed by one backslash. Backslashes elsewhere, as in "\\server\share", stay.
[[nodiscard]] std::wstring setPathName(std::wstring_view folder, std::wstring_view file);

/// Folds one character so that letters which differ only in case become equal: Unicode's simple case folding for Basic
/// Latin, Latin-1, Latin Extended-A, Greek and Cyrillic. Any other character is returned unchanged.
[[nodiscard]] wchar_t foldCase(wchar_t character) noexcept;
/// The same where most characters are ASCII, as in keys, of which a host may add half a million.
[[nodiscard]] inline wchar_t foldAsciiFast(wchar_t character) noexcept {
    if (character >= L'A' && character <= L'Z')
        return static_cast<wchar_t>(character + (L'a' - L'A'));
    return character < 0x80 ? character : foldCase(character);
}

/// `text` with each character folded, for comparing keys without regard to case. The length does not change.
[[nodiscard]] std::wstring foldCase(std::wstring_view text);

/// The capital of a letter of the same alphabets; any other character, and a letter without a single capital such as
/// U+00DF, is returned unchanged.
[[nodiscard]] wchar_t upperCase(wchar_t character) noexcept;

/// `text` with each letter replaced by its capital. The length does not change.
[[nodiscard]] std::wstring upperCase(std::wstring_view text);

}  // namespace kv::util
