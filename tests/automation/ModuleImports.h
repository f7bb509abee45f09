// The functions that the module under test imports, for tests in which the system behaves in another way.
#pragma once

#include <windows.h>

namespace kv::test {

/// Where the module under test keeps the address of an imported function; null when it does not import it.
[[nodiscard]] FARPROC* importOf(const char* name);
/// The module calls `value` from now on.
void setImport(FARPROC* slot, FARPROC value);

}  // namespace kv::test
