// How the members of a view answer arguments that they cannot use.
#pragma once

#include <string>

#include "util/RuntimeError.h"

namespace kv::control {

/// Throws error 5. `why` begins with the member and says which values it takes.
[[noreturn]] inline void refuse(const std::wstring& why) {
    throw util::RuntimeError(util::error_number::kInvalidProcedureCall, why);
}

}  // namespace kv::control
