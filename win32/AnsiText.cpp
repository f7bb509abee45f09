#include "win32/AnsiText.h"

namespace kv::win32 {

std::optional<std::string> toCodePage(std::wstring_view text, UINT codePage) {
    if (text.empty())
        return std::string();
    // UTF-8 refuses the flag and the question whether a character was replaced; it has its own flag for halves of
    // surrogate pairs, the only thing that it cannot hold.
    const UINT page = codePage == CP_ACP ? GetACP() : codePage;
    const DWORD flags = page == CP_UTF8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL lossy = FALSE;
    BOOL* const replaced = page == CP_UTF8 ? nullptr : &lossy;
    const auto length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(page, flags, text.data(), length, nullptr, 0, nullptr, replaced);
    if (size <= 0 || lossy)
        return std::nullopt;
    std::string result(static_cast<std::size_t>(size), '\0');
    if (WideCharToMultiByte(page, flags, text.data(), length, result.data(), size, nullptr, replaced) != size || lossy)
        return std::nullopt;
    return result;
}

std::wstring fromCodePage(std::string_view bytes, UINT codePage) {
    const auto length = static_cast<int>(bytes.size());
    // No code page makes more characters than there are bytes.
    std::wstring result(bytes.size(), L'\0');
    result.resize(static_cast<std::size_t>(
        MultiByteToWideChar(codePage, 0, bytes.data(), length, result.data(), static_cast<int>(result.size()))));
    return result;
}

}  // namespace kv::win32
