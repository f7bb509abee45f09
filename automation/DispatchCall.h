// One call by name: a caller's loosely typed arguments onto a method of the vtable, and its results back.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include "automation/Dispatch.h"
#include "automation/MemberTable.h"
#include "automation/OleTypes.h"

namespace kv::automation {

class DispatchCall {
  public:
    DispatchCall(const Member& member, const InvokeRequest& request) : member_(member), request_(request) {}

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
    const InvokeRequest& request_;
    std::vector<Argument> arguments_;
};

}  // namespace kv::automation
