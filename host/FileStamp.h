// Whether files exist, where they are, and by what their changes are noticed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kv::host {

struct FileStamp {
    std::uint64_t written = 0;  ///< the time of the last change
    std::uint64_t size = 0;     ///< in bytes

    bool operator==(const FileStamp&) const = default;
};

/// Whether there is a file or a folder.
[[nodiscard]] bool exists(const std::wstring& path);

/// Nothing if there is no such file.
[[nodiscard]] std::optional<FileStamp> stampOf(const std::wstring& path);

/// The path itself if it cannot be completed.
[[nodiscard]] std::wstring fullPath(const std::wstring& file);

}  // namespace kv::host
