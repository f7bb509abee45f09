// The order of texts with numbers in them.
#pragma once

#include <string_view>

namespace kv::host {

/// Compares without regard to case, and numbers by their value, so that TX2 precedes TX10. Returns a value below 0, 0
/// or a value above 0.
[[nodiscard]] int compareNaturally(std::wstring_view a, std::wstring_view b) noexcept;

}  // namespace kv::host
