// Text as the bytes of a file.
#pragma once

#include <string>
#include <string_view>

namespace kv::util {

/// `text` in UTF-8. A half of a pair that has lost the other, and a number that is no letter, become U+FFFD.
[[nodiscard]] std::string toUtf8(std::wstring_view text);

}  // namespace kv::util
