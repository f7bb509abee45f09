#include "host/plan/RecentPlans.h"

#include <algorithm>

#include "host/plan/Quoted.h"
#include "util/Text.h"

namespace kv::host {

namespace {

constexpr std::size_t kMostMenuCharacters = 60;  // of a path in the menu
constexpr std::wstring_view kSeparators = L"\\/";

/// The length of "C:\" or "\\server\".
std::size_t rootLength(std::wstring_view path) {
    const std::size_t begin = path.find_first_not_of(kSeparators);
    const std::size_t end = begin == std::wstring_view::npos ? begin : path.find_first_of(kSeparators, begin);
    return end == std::wstring_view::npos ? 0 : end + 1;
}

/// The beginning of a path and as many of its last folders as there is room for. The file's name is always complete.
std::wstring shortPath(std::wstring_view path) {
    constexpr std::wstring_view kGap = L"...";
    if (path.size() <= kMostMenuCharacters) {
        return std::wstring(path);
    }
    const std::wstring_view root = path.substr(0, rootLength(path));
    const std::size_t last = path.find_last_of(kSeparators);
    if (last == std::wstring_view::npos) {
        return std::wstring(path);
    }
    std::size_t from = path.size() - std::min(kMostMenuCharacters - root.size() - kGap.size(), path.size());
    from = std::min(path.find_first_of(kSeparators, std::max(from, root.size())), last);
    return std::wstring(root) + std::wstring(kGap) + std::wstring(path.substr(from));
}

}  // namespace

void addRecentPlan(std::vector<std::wstring>& plans, const std::wstring& path) {
    removeRecentPlan(plans, path);
    plans.insert(plans.begin(), path);
    plans.resize(std::min(plans.size(), kMostRecentPlans));
}

void removeRecentPlan(std::vector<std::wstring>& plans, const std::wstring& path) {
    std::erase_if(plans,
                  [folded = util::foldCase(path)](const std::wstring& plan) { return util::foldCase(plan) == folded; });
}

std::wstring recentPlanLabel(std::size_t number, std::wstring_view path) {
    std::wstring label = L"&" + std::to_wstring(number) + L" ";
    for (const wchar_t c : singleLine(shortPath(path))) {
        label.append(c == L'&' ? 2 : 1, c);  // a single one would underline the next character
    }
    return label;
}

}  // namespace kv::host
