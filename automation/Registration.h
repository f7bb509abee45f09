// What the module writes into the registry, and its complete removal.
#pragma once

#include <windows.h>

namespace kv::automation {

enum class RegistrationScope {
    machine,  ///< HKEY_LOCAL_MACHINE\Software\Classes
    user,     ///< HKEY_CURRENT_USER\Software\Classes
};

/// The machine's scope when this process may write there, the user's otherwise.
[[nodiscard]] RegistrationScope allowedScope() noexcept;

/// True when this copy of the module is what hosts get for our classes in a scope.
[[nodiscard]] bool isRegistered(RegistrationScope scope) noexcept;

/// Writes all keys and registers the type library; after a failure nothing of it stays.
[[nodiscard]] HRESULT registerModule(RegistrationScope scope) noexcept;
/// Removes what registerModule() wrote and nothing else. Succeeds when nothing is there; leaves the entries of another
/// copy of the module alone.
[[nodiscard]] HRESULT unregisterModule(RegistrationScope scope) noexcept;

}  // namespace kv::automation
