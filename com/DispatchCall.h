// One call by name: converts a caller's loosely typed arguments for a method of the vtable, and its results back.
//
// ITypeInfo::Invoke does the same for most dual interfaces. It is not used here for these reasons:
// - A parameter that takes an interface pointer must also take objects that do not implement the interface.
//   ITypeInfo::Invoke asks the object for the interface and rejects such an object with DISP_E_TYPEMISMATCH. Here, an
//   ObjectConverter wraps it first.
// - Parameters of other types than VARIANT are optional in some methods and must then be 0 or "" when the caller leaves
//   them out. ITypeInfo::Invoke promises this for VARIANT parameters and for parameters with a default value only.
// - Colors are OLE_COLOR, an unsigned type. Most hosts have signed numbers only, in which system colors are negative.
//   ITypeInfo::Invoke reports an overflow for them. Here, they are passed bit for bit in both directions.
// - Scripts pass each variable as a reference to a variant. For a by-reference parameter of another type, Windows
//   rejects such an argument with DISP_E_TYPEMISMATCH, and Wine accepts it but never stores the result in the variable.
//   Here, the result is stored on both.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include "com/Dispatch.h"
#include "com/MemberTable.h"
#include "com/OleTypes.h"

namespace kv::com {

class DispatchCall {
  public:
    /// `converter` may be null.
    DispatchCall(const Member& member, const ObjectConverter* converter, const InvokeRequest& request)
        : member_(member), converter_(converter), request_(request) {}

    /// Calls the member on the interface pointer `self`. Throws std::bad_alloc.
    [[nodiscard]] HRESULT run(void* self);

  private:
    struct Argument {
        VARIANT* given = nullptr;  ///< null: left out
        UINT index = 0;            ///< of `given` in the caller's list
        Variant value;             ///< in the type that the method takes
    };

    [[nodiscard]] HRESULT match();
    [[nodiscard]] HRESULT matchNamed(DISPID parameter, UINT index);
    [[nodiscard]] HRESULT convert();
    [[nodiscard]] HRESULT convertOne(const Parameter& parameter, Argument& argument) const;
    [[nodiscard]] HRESULT call(void* self, Variant& result);
    [[nodiscard]] HRESULT writeBack();
    [[nodiscard]] HRESULT badArgument(UINT index, HRESULT hr) const noexcept;

    const Member& member_;
    const ObjectConverter* converter_;
    const InvokeRequest& request_;
    std::vector<Argument> arguments_;
};

}  // namespace kv::com
