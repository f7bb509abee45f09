// What this process holds of the system.
#pragma once

#include <windows.h>

namespace kv::test {

struct Usage {
    DWORD gdi = 0;
    DWORD user = 0;
    SIZE_T bytes = 0;
};

/// Bytes are those that belong to this process alone.
[[nodiscard]] Usage usage();

}  // namespace kv::test
