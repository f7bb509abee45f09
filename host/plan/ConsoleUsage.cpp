#include "host/plan/ConsoleUsage.h"

#include <algorithm>

namespace kv::host {

namespace {

constexpr std::size_t kDescriptions = 18;  // the column of the descriptions

/// Appends a text in words. A word that would go beyond `width` begins a new line at the column `indent`.
void appendWords(std::wstring& result, std::size_t column, std::wstring_view text, std::size_t indent,
                 std::size_t width) {
    bool first = true;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(L' '), text.size());
        const std::size_t blank = first ? 0 : 1;
        if (!first && column + blank + length > width) {
            result += L'\n' + std::wstring(indent, L' ');
            column = indent;
        } else {
            result.append(blank, L' ');
            column += blank;
        }
        result += text.substr(0, length);
        column += length;
        first = false;
        text.remove_prefix(std::min(length + 1, text.size()));
    }
}

void appendOption(std::wstring& result, std::wstring_view option, std::wstring_view description, std::size_t width) {
    result += option;
    if (option.size() + 2 > kDescriptions) {
        result += L'\n' + std::wstring(kDescriptions, L' ');
    } else {
        result.append(kDescriptions - option.size(), L' ');
    }
    appendWords(result, kDescriptions, description, kDescriptions, width);
}

}  // namespace

std::wstring consoleUsage(std::wstring_view usage, std::size_t width) {
    std::wstring result;
    while (!usage.empty()) {
        const std::size_t length = std::min(usage.find(L'\n'), usage.size());
        const std::wstring_view line = usage.substr(0, length);
        if (const std::size_t tab = line.find(L'\t'); tab != std::wstring_view::npos) {
            appendOption(result, line.substr(0, tab), line.substr(tab + 1), width);
        } else {
            appendWords(result, 0, line, 0, width);
        }
        result += L'\n';
        usage.remove_prefix(std::min(length + 1, usage.size()));
    }
    return result;
}

}  // namespace kv::host
