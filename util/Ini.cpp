#include "util/Ini.h"

#include <cstddef>

#include "util/RuntimeError.h"
#include "util/Text.h"

using namespace std::string_view_literals;

namespace kv::util {

namespace {

constexpr std::wstring_view kBlanks = L" \t";

}  // namespace

std::wstring_view trimBlanks(std::wstring_view text) noexcept {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::wstring_view withoutQuotes(std::wstring_view value) noexcept {
    const bool quoted = value.size() >= 2 && value.front() == value.back() && (value[0] == L'"' || value[0] == L'\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::wstring getINI(IniSource& source, std::wstring_view key, std::wstring_view section, std::wstring_view file,
                    std::wstring_view defaultValue) {
    std::optional<std::wstring> value = source.read(key, section, file);
    return value ? *std::move(value) : std::wstring(defaultValue);
}

void IniSource::write(std::wstring_view, std::wstring_view, std::wstring_view, std::wstring_view) {
    throw RuntimeError(error_number::kPathFileAccess);
}

void IniSource::demandWritable(std::wstring_view key, std::wstring_view section, std::wstring_view value) {
    constexpr std::wstring_view kLineBreakers = L"\r\n\0\x1A"sv;
    const auto holds = [](std::wstring_view text, std::wstring_view characters) {
        return text.find_first_of(characters) != std::wstring_view::npos;
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

}  // namespace kv::util
