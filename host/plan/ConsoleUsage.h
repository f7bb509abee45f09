// The description of the options, for a console.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv::host {

/// Lines of at most `width` characters from lines with a tab between an option and its description. The descriptions
/// are in a column of their own. Other lines are broken between words, too. A word that is too long stays in one piece.
[[nodiscard]] std::wstring consoleUsage(std::wstring_view usage, std::size_t width = 79);

}  // namespace kv::host
