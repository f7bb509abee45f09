// One call by name: converts a caller's loosely typed arguments for a method of the vtable, and its results back.
//
// ITypeInfo::Invoke is not used for this. It is meant for the same purpose, but its implementations (Windows and Wine)
// differ, and calls that hosts need fail in at least one of them:
// - A parameter that takes an interface pointer must also accept objects that do not implement the interface.
//   ITypeInfo::Invoke requests the interface from the object and fails. Here, an ObjectConverter wraps the object
//   first.
// - Scripts pass each variable as a reference to a variant, and typed languages pass references to their own types. For
//   a by-reference parameter of another type, ITypeInfo::Invoke fails with DISP_E_TYPEMISMATCH. Here, the value is
//   converted, and the result is converted back and stored in the variable.
// - A by-reference parameter that is optional may be left out. With Wine, the method then gets no valid pointer.
// - Colors are OLE_COLOR, an unsigned type. Wine returns them as VT_UI4, which hosts without unsigned numbers cannot
//   use. Here, colors are passed bit for bit as signed numbers.
// - Wine does not report which argument has a wrong type.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <cstddef>
#include <vector>

#include "com/Dispatch.h"
#include "com/MemberTable.h"
#include "com/OleTypes.h"

namespace kv::com {

/// One value for each argument of a call. Most members have few arguments, and their calls need no memory for these.
template <class T>
class PerArgument {
  public:
    explicit PerArgument(std::size_t count) : size_(count), many_(count > kFew ? count : 0) {}
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] T* data() noexcept { return size_ > kFew ? many_.data() : few_.data(); }
    [[nodiscard]] T& operator[](std::size_t i) noexcept { return data()[i]; }

  private:
    static constexpr std::size_t kFew = 4;
    std::size_t size_;
    std::array<T, kFew> few_{};
    std::vector<T> many_;
};

class DispatchCall {
  public:
    /// `converter` may be null.
    DispatchCall(const Member& member, const ObjectConverter* converter, const InvokeRequest& request)
        : member_(member), converter_(converter), request_(request), arguments_(member.parameters.size()) {}

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
    [[nodiscard]] VARTYPE pass(std::size_t i, VARIANT& passed);
    [[nodiscard]] HRESULT call(void* self, Variant& result);
    [[nodiscard]] HRESULT writeBack();
    [[nodiscard]] HRESULT badArgument(UINT index, HRESULT hr) const noexcept;

    const Member& member_;
    const ObjectConverter* converter_;
    const InvokeRequest& request_;
    PerArgument<Argument> arguments_;
};

}  // namespace kv::com
