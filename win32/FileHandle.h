// A handle of the system, such as that of a file, with an owner.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace kv::win32 {

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

/// Owns what CreateFileW returned; null if it failed.
[[nodiscard]] inline FileHandle openedFile(HANDLE handle) noexcept {
    return FileHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace kv::win32
