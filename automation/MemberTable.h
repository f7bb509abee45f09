// The members of a dual interface as calls by name need them: parameter types and places in the vtable.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

namespace kv::automation {

struct Parameter {
    VARTYPE type = VT_EMPTY;   ///< VT_DISPATCH for a channel
    bool byReference = false;  ///< the callee writes a result back
    bool optional = false;
    bool isChannel = false;  ///< _FreqSlot*, for which any object with the same members will do
};

struct Member {
    DISPID id = DISPID_UNKNOWN;
    INVOKEKIND kind = INVOKE_FUNC;
    ULONG_PTR vtableOffset = 0;  ///< bytes
    VARTYPE result = VT_EMPTY;   ///< VT_EMPTY: none
    std::vector<Parameter> parameters;
};

class MemberTable {
  public:
    /// Reads the members of a dual interface. Failures of the type description are handed on; throws std::bad_alloc.
    [[nodiscard]] HRESULT read(ITypeInfo* dispatchInfo);
    /// The member that a call with these DISPATCH_ flags means, or null.
    [[nodiscard]] const Member* find(DISPID id, WORD flags) const noexcept;
    [[nodiscard]] const std::vector<Member>& all() const noexcept { return members_; }

  private:
    std::vector<Member> members_;
};

}  // namespace kv::automation
