#include "util/IniText.h"

#include <algorithm>
#include <cstddef>

#include "util/Ini.h"
#include "util/Text.h"

namespace kv::util {

namespace {

constexpr std::wstring_view kLineEnds = L"\r\n";
constexpr wchar_t kByteOrderMark = 0xFEFF;

/// The form in which names of sections and keys are compared.
std::wstring nameOf(std::wstring_view text) {
    return foldCase(trimBlanks(text));
}

}  // namespace

IniText::IniText(std::wstring_view text) {
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(1);
    std::optional<std::wstring> section;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(kLineEnds), text.size());
        const std::wstring_view line = trimBlanks(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
        if (line.starts_with(L';'))
            continue;
        if (line.starts_with(L'[')) {
            if (const std::size_t close = line.find(L']'); close != std::wstring_view::npos)
                section = nameOf(line.substr(1, close - 1));
            continue;
        }
        const std::size_t equals = line.find(L'=');
        if (!section || equals == std::wstring_view::npos)
            continue;
        std::wstring key = nameOf(line.substr(0, equals));
        if (!key.empty()) {
            values_.try_emplace({*section, std::move(key)}, withoutQuotes(trimBlanks(line.substr(equals + 1))));
        }
    }
}

std::optional<std::wstring> IniText::find(std::wstring_view key, std::wstring_view section) const {
    const auto found = values_.find({nameOf(section), nameOf(key)});
    if (found == values_.end())
        return std::nullopt;
    return found->second;
}

void IniText::set(std::wstring_view key, std::wstring_view section, std::wstring_view value) {
    values_.insert_or_assign({nameOf(section), nameOf(key)}, std::wstring(value));
}

}  // namespace kv::util
