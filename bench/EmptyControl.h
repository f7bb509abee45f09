// An object with the control's interface whose members do nothing, called by name through the system's own machinery:
// what calls by name cost by themselves.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <wrl/client.h>

#include <array>

#include "kvBandscope.h"

namespace kv::bench {

class EmptyControl final : public IDispatch {
  public:
    /// Takes the description of the interface from a real control.
    explicit EmptyControl(IDispatch& control) {
        members_.fill(reinterpret_cast<void*>(&nothing));
        control.GetTypeInfo(0, LOCALE_USER_DEFAULT, info_.GetAddressOf());
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return info_->GetIDsOfNames(names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                     EXCEPINFO* exception, UINT* argError) override {
        return info_->Invoke(&table_, member, flags, params, result, exception, argError);
    }

  private:
    static HRESULT STDMETHODCALLTYPE nothing(void*, _FreqSlot*, long* index) {
        *index = 0;
        return S_OK;
    }

    std::array<void*, 8> members_{};  // up to the first one after IDispatch's own, AddTXChnl
    void* table_ = members_.data();
    Microsoft::WRL::ComPtr<ITypeInfo> info_;
};

}  // namespace kv::bench
