// Texts for standard output and standard error.
#pragma once

#include <string>

namespace kv::host {

/// Writes lines that end with \n. A program with windows has a standard stream only if its caller has passed one to it;
/// without one the text is written to the console that the program was started from. False if there is neither.
bool writeOutput(const std::wstring& text);
bool writeError(const std::wstring& text);

[[nodiscard]] std::string utf8Of(const std::wstring& text);

}  // namespace kv::host
