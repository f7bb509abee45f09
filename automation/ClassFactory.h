// The classes that the module makes for hosts.
#pragma once

#include <windows.h>

namespace kv::automation {

/// The class object of one of our classes; CLASS_E_CLASSNOTAVAILABLE for any other.
[[nodiscard]] HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** object) noexcept;

}  // namespace kv::automation
