// The members of a dual interface as calls by name need them: parameter types and positions in the vtable.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

namespace kv::com {

struct Parameter {
    VARTYPE type = VT_EMPTY;   ///< VT_DISPATCH for an interface pointer
    bool byReference = false;  ///< the method returns a value through the parameter
    bool optional = false;
    IID interfaceId{};  ///< of an interface pointer; IID_NULL for all other types
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
    /// Reads the members of a dual interface. Returns the failures of the type description; throws std::bad_alloc.
    [[nodiscard]] HRESULT read(ITypeInfo* dispatchInfo);
    /// The member that a call with these DISPATCH_ flags means, or null.
    [[nodiscard]] const Member* find(DISPID id, WORD flags) const noexcept;
    [[nodiscard]] const std::vector<Member>& all() const noexcept { return members_; }

  private:
    std::vector<Member> members_;
};

}  // namespace kv::com
