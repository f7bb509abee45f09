// The keys and values that registration writes for this module.
#pragma once

#include <string>

#include "com/Registration.h"

namespace kv::automation {

/// The classes and the type library of a module file at `modulePath`. Throws std::bad_alloc.
[[nodiscard]] com::ModuleRegistration registrationTable(const std::wstring& modulePath);

}  // namespace kv::automation
