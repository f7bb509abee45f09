// IDispatch for dual interfaces, as scripts and late-bound hosts use it.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

namespace kv::com {

/// The arguments of one IDispatch::Invoke call.
struct InvokeRequest {
    DISPID member;
    REFIID reserved;
    LCID locale;
    WORD flags;
    DISPPARAMS* params;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* argError;
};

/// How a caller's object becomes the interface pointer that a parameter of a method takes. Without a converter, the
/// parameter takes only objects that VariantChangeTypeEx converts to VT_DISPATCH.
struct ObjectConverter {
    /// The interface of the parameters that this converter serves. It derives from IDispatch.
    const IID* parameterType;
    /// Stores a counted pointer to the interface `parameterType` in `*converted`. `object` is not null. Throws
    /// std::bad_alloc.
    HRESULT (*convert)(IUnknown* object, IDispatch** converted);
};

[[nodiscard]] HRESULT dispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept;
[[nodiscard]] HRESULT dispatchGetIDsOfNames(REFIID iid, REFIID reserved, LPOLESTR* names, UINT count,
                                            DISPID* ids) noexcept;
/// Calls a member of the dual interface `iid` that `self` points to. Arguments in variables (VT_BYREF, also of
/// variants) are read through and results written back. Optional arguments that are left out become 0 or "". Objects
/// go through `converter`, which may be null, if the parameter is of its type. If the member fails, the result is
/// DISP_E_EXCEPTION and the exception is filled in.
[[nodiscard]] HRESULT dispatchInvoke(REFIID iid, void* self, const ObjectConverter* converter,
                                     const InvokeRequest& request) noexcept;

/// Base of a class that implements the dual interface `Interface`. The derived class implements IUnknown.
template <class Interface, const ObjectConverter* Converter = nullptr>
class DispatchImpl : public Interface, public ISupportErrorInfo {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (!count)
            return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return dispatchGetTypeInfo(__uuidof(Interface), index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return dispatchGetIDsOfNames(__uuidof(Interface), reserved, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argError) override {
        return dispatchInvoke(__uuidof(Interface), static_cast<Interface*>(this), Converter,
                              {member, reserved, locale, flags, params, result, exception, argError});
    }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }

  protected:
    ~DispatchImpl() = default;
};

}  // namespace kv::com
