// Removes names of people and machines from the lines of a report.
#pragma once

#include <string>
#include <vector>

namespace kv::host {

struct Replacement {
    std::wstring text;  ///< found in any case; as a whole, or up to a character that no name contains
    std::wstring shown;
};

/// Replaces each occurrence; empty texts are skipped.
[[nodiscard]] std::wstring withReplacements(std::wstring line, const std::vector<Replacement>& replacements);

/// The line with the user's profile folder shortened to %USERPROFILE%, and without the names of the user, of the
/// machine, and of servers in paths.
[[nodiscard]] std::wstring withoutNames(const std::wstring& line);

}  // namespace kv::host
