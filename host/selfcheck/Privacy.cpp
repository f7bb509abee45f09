#include "host/selfcheck/Privacy.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwctype>

namespace kv::host {

namespace {

std::wstring variable(const wchar_t* name) {
    std::array<wchar_t, 32768> text{};
    const DWORD length = GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
    return length >= text.size() ? std::wstring() : std::wstring(text.data(), length);
}

/// Programs that were started with a short path report paths in that form.
std::wstring shortForm(const std::wstring& path) {
    std::array<wchar_t, 32768> text{};
    const DWORD length = GetShortPathNameW(path.c_str(), text.data(), static_cast<DWORD>(text.size()));
    return length >= text.size() ? std::wstring() : std::wstring(text.data(), length);
}

std::vector<Replacement> names() {
    const std::wstring profile = variable(L"USERPROFILE");
    const std::wstring user = variable(L"USERNAME");
    const std::wstring machine = variable(L"COMPUTERNAME");
    std::vector<Replacement> result = {{profile, L"%USERPROFILE%"}, {shortForm(profile), L"%USERPROFILE%"}};
    if (!user.empty()) {
        result.push_back({L"\\" + user, L"\\(user)"});
    }
    if (!machine.empty()) {
        result.push_back({L"\\" + machine, L"\\(machine)"});
    }
    return result;
}

wchar_t small(wchar_t c) {
    return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
}

bool endsName(const std::wstring& line, std::size_t at) {
    return at >= line.size() || std::wstring(L"\\/\"',;:)|<>").find(line[at]) != std::wstring::npos;
}

/// "\\server" becomes "\\(server)".
std::wstring withoutServers(std::wstring line) {
    for (std::size_t at = line.find(L"\\\\"); at != std::wstring::npos; at = line.find(L"\\\\", at + 2)) {
        const std::size_t end = std::min(line.find_first_of(L"\\/\"", at + 2), line.size());
        if (end > at + 2) {
            line.replace(at + 2, end - at - 2, L"(server)");
        }
    }
    return line;
}

}  // namespace

std::wstring withReplacements(std::wstring line, const std::vector<Replacement>& replacements) {
    for (const auto& [text, shown] : replacements) {
        for (std::size_t at = 0; !text.empty() && at < line.size(); ++at) {
            const auto from = line.begin() + static_cast<std::ptrdiff_t>(at);
            const auto found = std::search(from, line.end(), text.begin(), text.end(),
                                           [](wchar_t a, wchar_t b) { return small(a) == small(b); });
            if (found == line.end()) {
                break;
            }
            at = static_cast<std::size_t>(found - line.begin());
            if (endsName(line, at + text.size())) {
                line.replace(at, text.size(), shown);
                at += shown.size() - 1;
            }
        }
    }
    return line;
}

std::wstring withoutNames(const std::wstring& line) {
    static const std::vector<Replacement> replacements = names();
    return withoutServers(withReplacements(line, replacements));
}

}  // namespace kv::host
