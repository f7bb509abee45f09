// The type library inside the module. Nothing here depends on registration.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <memory>

#include "com/MemberTable.h"

namespace kv::com {

/// What dispatching to an interface needs: its type description and its members.
struct InterfaceInfo {
    Microsoft::WRL::ComPtr<ITypeInfo> typeInfo;
    MemberTable members;
};

/// Loads the type library from the module's own file. `*library` is NULL after a failure.
[[nodiscard]] HRESULT loadOwnTypeLib(ITypeLib** library) noexcept;

/// The description of a dual interface of the library, read once and kept.
[[nodiscard]] HRESULT getInterfaceInfo(REFIID iid, std::shared_ptr<const InterfaceInfo>& info) noexcept;

/// The description of a coclass, for IProvideClassInfo. E_POINTER for a null `info`.
[[nodiscard]] HRESULT getClassInfo(REFCLSID clsid, ITypeInfo** info) noexcept;

/// Releases everything that is kept. Called before the module is unloaded.
void forgetTypeInfo() noexcept;

}  // namespace kv::com
