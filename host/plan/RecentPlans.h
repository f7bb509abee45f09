// The plans that were opened last, the latest first.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kv::host {

constexpr std::size_t kMostRecentPlans = 9;  ///< one for each digit that selects an item of the menu

/// Puts a path in front. Paths that differ only in case are the same file.
void addRecentPlan(std::vector<std::wstring>& plans, const std::wstring& path);
void removeRecentPlan(std::vector<std::wstring>& plans, const std::wstring& path);

/// The text of a menu item: "&1 C:\...\plans\gmrs.csv". Numbers begin with 1.
[[nodiscard]] std::wstring recentPlanLabel(std::size_t number, std::wstring_view path);

}  // namespace kv::host
