#include "host/FileStamp.h"

#include <windows.h>

namespace kv::host {

namespace {

std::uint64_t joined(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32U) | low;
}

}  // namespace

bool exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileStamp> stampOf(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) {
        return std::nullopt;
    }
    return FileStamp{joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime),
                     joined(data.nFileSizeHigh, data.nFileSizeLow)};
}

std::wstring fullPath(const std::wstring& file) {
    std::wstring result(32768, L'\0');
    const DWORD length = GetFullPathNameW(file.c_str(), static_cast<DWORD>(result.size()), result.data(), nullptr);
    result.resize(length < result.size() ? length : 0);
    return result.empty() ? file : result;
}

}  // namespace kv::host
