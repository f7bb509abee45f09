#include "host/hits/NaturalOrder.h"

#include <algorithm>

#include "util/Text.h"

namespace kv::host {

namespace {

bool isDigit(wchar_t character) noexcept {
    return character >= L'0' && character <= L'9';
}

/// Removes the digits at the beginning of `text` and returns them without leading zeros.
std::wstring_view takeNumber(std::wstring_view& text) noexcept {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length])) {
        ++length;
    }
    std::wstring_view number = text.substr(0, length);
    text.remove_prefix(length);
    number.remove_prefix(std::min(number.find_first_not_of(L'0'), number.size()));
    return number;
}

}  // namespace

int compareNaturally(std::wstring_view a, std::wstring_view b) noexcept {
    while (!a.empty() && !b.empty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const std::wstring_view first = takeNumber(a);
            const std::wstring_view second = takeNumber(b);
            if (first.size() != second.size()) {
                return first.size() < second.size() ? -1 : 1;
            }
            if (const int order = first.compare(second); order != 0) {
                return order;
            }
            continue;
        }
        const wchar_t first = util::foldCase(a.front());
        const wchar_t second = util::foldCase(b.front());
        if (first != second) {
            return first < second ? -1 : 1;
        }
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

}  // namespace kv::host
