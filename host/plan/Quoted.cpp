#include "host/plan/Quoted.h"

#include <cstddef>

namespace kv::host {

namespace {

constexpr std::size_t kMostQuoted = 60;
constexpr wchar_t kEllipsis = L'\u2026';

bool isBetween(wchar_t c, wchar_t first, wchar_t last) {
    return c >= first && c <= last;
}

bool isUnfit(wchar_t c) {
    const bool control = c < 0x20 || isBetween(c, 0x7F, 0x9F);
    const bool lineBreak = c == 0x2028 || c == 0x2029;
    // They would let a message appear to say something else.
    const bool direction =
        c == 0x061C || isBetween(c, 0x200E, 0x200F) || isBetween(c, 0x202A, 0x202E) || isBetween(c, 0x2066, 0x2069);
    return control || lineBreak || direction;
}

bool isFirstOfPair(wchar_t c) {
    return isBetween(c, 0xD800, 0xDBFF);
}

void appendEscaped(std::wstring& text, wchar_t c) {
    switch (c) {
        case L'\t':
            text += L"\\t";
            return;
        case L'\n':
            text += L"\\n";
            return;
        case L'\r':
            text += L"\\r";
            return;
        default:
            break;
    }
    if (!isUnfit(c)) {
        text += c;
        return;
    }
    text += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += L"0123456789ABCDEF"[(static_cast<unsigned>(c) >> shift) & 0xFU];
    }
}

}  // namespace

std::wstring singleLine(std::wstring_view text) {
    std::wstring result;
    for (const wchar_t c : text) {
        appendEscaped(result, c);
    }
    return result;
}

std::wstring shortened(std::wstring_view text) {
    std::wstring result;
    std::size_t cut = 0;  // where the ellipsis follows if the text is too long; not inside an escape or a pair
    for (const wchar_t c : text) {
        appendEscaped(result, c);
        if (result.size() > kMostQuoted) {
            return result.substr(0, cut) + kEllipsis;
        }
        if (result.size() < kMostQuoted && !isFirstOfPair(c)) {
            cut = result.size();
        }
    }
    return result;
}

std::wstring inQuotes(std::wstring_view text) {
    return text.empty() ? L"nothing" : L"\"" + shortened(text) + L"\"";
}

}  // namespace kv::host
