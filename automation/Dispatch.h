// IDispatch for our dual interfaces, as scripts and late bound hosts use it.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

namespace kv::automation {

/// One IDispatch::Invoke, as it came.
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

[[nodiscard]] HRESULT dispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept;
[[nodiscard]] HRESULT dispatchGetIDsOfNames(REFIID iid, REFIID reserved, LPOLESTR* names, UINT count,
                                            DISPID* ids) noexcept;
/// Calls a member of the dual interface `iid` that `self` points to. Arguments in variables (VT_BYREF, also of
/// variants) are read through and results written back; left-out optional arguments become 0 or ""; a foreign object
/// is wrapped where a channel is wanted. A failing member is DISP_E_EXCEPTION with the exception filled in.
[[nodiscard]] HRESULT dispatchInvoke(REFIID iid, void* self, const InvokeRequest& request) noexcept;

/// Base of a class that implements the dual interface `Interface`. IUnknown is left to the class.
template <class Interface>
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
        return dispatchInvoke(__uuidof(Interface), static_cast<Interface*>(this),
                              {member, reserved, locale, flags, params, result, exception, argError});
    }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }

  protected:
    ~DispatchImpl() = default;
};

}  // namespace kv::automation
