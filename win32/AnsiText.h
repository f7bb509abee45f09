// Texts in the code page of the system's functions that take bytes.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace kv::win32 {

/// The text in a code page; nothing if the code page lacks a character of it. `codePage` is a number or CP_ACP, which
/// is UTF-8 where the user or the program's manifest chose that.
[[nodiscard]] std::optional<std::string> toCodePage(std::wstring_view text, UINT codePage = CP_ACP);

/// Bytes that are no character of the code page become replacement characters.
[[nodiscard]] std::wstring fromCodePage(std::string_view bytes, UINT codePage = CP_ACP);

}  // namespace kv::win32
