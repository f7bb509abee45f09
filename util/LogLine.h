// Lines of the log files.
#pragma once

#include <string>

#include "util/System.h"

namespace kv::util {

/// "2026-03-09 17:04:05": year first and 24 hours, the same in every locale, so that support reads logs from anywhere
/// without guessing which number is the month.
[[nodiscard]] std::wstring logTime(const DateTime& time);

/// Time, ":  ", message and line end.
[[nodiscard]] std::wstring logLine(const DateTime& time, const std::wstring& message);

}  // namespace kv::util
