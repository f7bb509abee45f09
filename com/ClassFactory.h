// The class objects through which COM creates the module's objects.
#pragma once

#include <windows.h>

#include <span>

namespace kv::com {

/// Creates an object of a class and returns the requested interface; `*object` is NULL after a failure.
using CreateFunction = HRESULT (*)(REFIID iid, void** object);

/// One class that a module offers to hosts.
struct ClassEntry {
    const CLSID* clsid;
    CreateFunction create;
};

/// The class object of the class `clsid` in `classes`; CLASS_E_CLASSNOTAVAILABLE if it is not in them.
[[nodiscard]] HRESULT getClassObject(std::span<const ClassEntry> classes, REFCLSID clsid, REFIID iid,
                                     void** object) noexcept;

}  // namespace kv::com
