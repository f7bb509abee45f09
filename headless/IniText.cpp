#include "headless/IniText.h"

#include <algorithm>
#include <cstddef>

#include "util/Text.h"

namespace kv::headless {

namespace {

constexpr std::wstring_view kLineEnds = L"\r\n";
constexpr wchar_t kByteOrderMark = 0xFEFF;

/// The form in which names of sections and keys are compared.
std::wstring nameOf(std::wstring_view text) {
    return util::foldCase(util::trimBlanks(text));
}

}  // namespace

IniText::IniText(std::wstring_view text) {
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(1);
    std::optional<std::wstring> section;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(kLineEnds), text.size());
        const std::wstring_view line = util::trimBlanks(text.substr(0, length));
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
            values_.try_emplace({*section, std::move(key)},
                                util::withoutQuotes(util::trimBlanks(line.substr(equals + 1))));
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

void TextIniSource::setFile(std::wstring_view path, std::wstring_view text) {
    files_.insert_or_assign(util::foldCase(path), IniText(text));
}

std::optional<std::wstring> TextIniSource::read(std::wstring_view key, std::wstring_view section,
                                                std::wstring_view file) {
    const auto found = files_.find(util::foldCase(file));
    return found == files_.end() ? std::nullopt : found->second.find(key, section);
}

void TextIniSource::write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
                          std::wstring_view value) {
    demandWritable(key, section, value);
    files_[util::foldCase(file)].set(key, section, value);
}

}  // namespace kv::headless
