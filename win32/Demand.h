// Handles and memory that the system may refuse.
#pragma once

#include "util/RuntimeError.h"

namespace kv::win32 {

/// `made`, or error 7 if it is null.
template <class Made>
[[nodiscard]] Made demand(Made made) {
    if (!made)
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    return made;
}

}  // namespace kv::win32
