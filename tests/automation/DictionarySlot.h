// A host's own channel class, as in a script or a late bound program: its members are found by name only.
#pragma once

#include <windows.h>

#include <dispex.h>

#include <map>
#include <string>

#include "tests/automation/Module.h"

namespace kv::test {

/// Properties by name, indexed ones as "name(i)". It counts the requests for member numbers.
class DictionarySlot final : public IDispatchEx {
  public:
    /// A record with every member and the start values of a channel.
    static ComPtr<DictionarySlot> create();

    std::map<std::wstring, Var> values;
    std::map<std::wstring, HRESULT> failing;  ///< members that fail, by name, with DISP_E_EXCEPTION and this code
    bool answersExtendedOnly = false;  ///< like the objects of some script engines: IDispatch itself does nothing
    int nameQuestions = 0;
    int destroyedCounter = 0;
    int* destroyed = &destroyedCounter;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override;

    HRESULT STDMETHODCALLTYPE GetDispID(BSTR name, DWORD flags, DISPID* id) override;
    HRESULT STDMETHODCALLTYPE InvokeEx(DISPID id, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                       EXCEPINFO* exception, IServiceProvider*) override {
        return invokeMember(id, flags, params, result, exception);
    }
    HRESULT STDMETHODCALLTYPE DeleteMemberByName(BSTR, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeleteMemberByDispID(DISPID) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMemberProperties(DISPID, DWORD, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMemberName(DISPID, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNextDispID(DWORD, DISPID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetNameSpaceParent(IUnknown**) override { return E_NOTIMPL; }

    [[nodiscard]] ULONG references() const noexcept { return references_; }

  private:
    DictionarySlot() = default;
    ~DictionarySlot() = default;

    HRESULT numberOf(const std::wstring& name, DISPID* id);
    HRESULT invokeMember(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception);

    ULONG references_ = 1;
    std::vector<std::wstring> names_;
};

}  // namespace kv::test
