// What the fuzz targets share.
#pragma once

#include <string>
#include <string_view>

namespace kv::fuzz {

/// Ends the program when a rule is broken. The fuzzer then reports the input and keeps it in a file.
void require(bool condition, const char* rule);

/// Decodes UTF-8. A byte that is not part of a character becomes the character of the same number, so that any bytes
/// give a text.
[[nodiscard]] std::wstring widened(std::string_view bytes);

/// The text before the first occurrence of `end`, which is removed from `rest` together with `end`. All of `rest` when
/// it does not contain `end`.
[[nodiscard]] std::wstring_view cutUntil(std::wstring_view& rest, wchar_t end);

}  // namespace kv::fuzz
