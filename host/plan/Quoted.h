// Text of a file or of the command line, made fit for a message of one line.
#pragma once

#include <string>
#include <string_view>

namespace kv::host {

/// `text` in double quotes, with at most 60 characters between them; "nothing" without quotes when it is empty.
[[nodiscard]] std::wstring inQuotes(std::wstring_view text);

/// `text` with at most 60 characters, escaped as by singleLine. A shortened text ends with an ellipsis.
[[nodiscard]] std::wstring shortened(std::wstring_view text);

/// `text` with line breaks, other control characters and characters that change the direction of writing escaped, such
/// as \n and \u001B.
[[nodiscard]] std::wstring singleLine(std::wstring_view text);

}  // namespace kv::host
