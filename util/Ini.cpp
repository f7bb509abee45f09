#include "util/Ini.h"

#include <algorithm>
#include <cstddef>

#include "util/RuntimeError.h"
#include "util/Text.h"

namespace kv::util {

namespace {

constexpr std::wstring_view kBlanks = L" \t";
constexpr std::wstring_view kLineEnds = L"\r\n";
constexpr wchar_t kByteOrderMark = 0xFEFF;

std::wstring_view trimBlanks(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::wstring_view withoutQuotes(std::wstring_view value) {
    const bool quoted = value.size() >= 2 && value.front() == value.back() && (value[0] == L'"' || value[0] == L'\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

/// The form in which names of sections and keys are compared.
std::wstring nameOf(std::wstring_view text) {
    return foldCase(trimBlanks(text));
}

}  // namespace

std::wstring getINI(IniSource& source, std::wstring_view key, std::wstring_view section, std::wstring_view file,
                    std::wstring_view defaultValue) {
    std::optional<std::wstring> value = source.read(key, section, file);
    return value ? *std::move(value) : std::wstring(defaultValue);
}

void IniSource::write(std::wstring_view, std::wstring_view, std::wstring_view, std::wstring_view) {
    throw RuntimeError(error_number::kPathFileAccess);
}

void IniSource::demandWritable(std::wstring_view key, std::wstring_view section, std::wstring_view value) {
    constexpr std::wstring_view kLineBreakers(L"\r\n\0\x1A", 4);
    const auto holds = [](std::wstring_view text, std::wstring_view letters) {
        return text.find_first_of(letters) != std::wstring_view::npos;
    };
    const std::wstring_view name = trimBlanks(key);
    if (name.empty() || name != key || name[0] == L';' || name[0] == L'[' || holds(key, L"=") ||
        holds(key, kLineBreakers) || trimBlanks(section) != section || section.empty() || holds(section, L"[]") ||
        holds(section, kLineBreakers) || holds(value, kLineBreakers))
        throw RuntimeError(error_number::kPathFileAccess);
}

std::wstring IniSource::written(std::wstring_view value) {
    if (trimBlanks(value) == value && withoutQuotes(value) == value)
        return std::wstring(value);
    return L'"' + std::wstring(value) + L'"';
}

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
        if (!key.empty())
            values_.try_emplace({*section, std::move(key)}, withoutQuotes(trimBlanks(line.substr(equals + 1))));
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
    files_.insert_or_assign(foldCase(path), IniText(text));
}

std::optional<std::wstring> TextIniSource::read(std::wstring_view key, std::wstring_view section,
                                                std::wstring_view file) {
    const auto found = files_.find(foldCase(file));
    return found == files_.end() ? std::nullopt : found->second.find(key, section);
}

void TextIniSource::write(std::wstring_view key, std::wstring_view section, std::wstring_view file,
                          std::wstring_view value) {
    demandWritable(key, section, value);
    files_[foldCase(file)].set(key, section, value);
}

}  // namespace kv::util
