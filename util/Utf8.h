// Encoding of text for files.
#pragma once

#include <string>
#include <string_view>

namespace kv::util {

/// Encodes `text` in UTF-8. Unpaired surrogates and numbers that are not Unicode characters become U+FFFD.
[[nodiscard]] std::string toUtf8(std::wstring_view text);

}  // namespace kv::util
