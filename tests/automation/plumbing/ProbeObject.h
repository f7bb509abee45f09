// An object with the interface IProbe, for the tests of calls by name. It knows nothing of the control.
#pragma once

#include <windows.h>

#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <wrl/client.h>

#include "Probe.h"
#include "com/Dispatch.h"
#include "com/Firewall.h"
#include "com/OleTypes.h"
#include "util/RuntimeError.h"

namespace kv::test {

inline constexpr wchar_t kProbeSource[] = L"Test.Probe";
inline constexpr com::ErrorOrigin kProbeErrors{IID_IProbe, kProbeSource};

/// Wraps a foreign object. The wrapper has the identity of the object.
class PartWrapper final : public IPart {
  public:
    explicit PartWrapper(IUnknown* object) : object_(object) {}
    PartWrapper(const PartWrapper&) = delete;
    PartWrapper& operator=(const PartWrapper&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IPart)
            return object_->QueryInterface(iid, object);
        *object = static_cast<IPart*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE get_Number(LONG*) override { return E_NOTIMPL; }

  private:
    ~PartWrapper() = default;

    ULONG references_ = 1;
    Microsoft::WRL::ComPtr<IUnknown> object_;
};

/// Accepts every object that has IDispatch.
inline HRESULT wrapPart(IUnknown* object, IDispatch** converted) {
    Microsoft::WRL::ComPtr<IDispatch> dispatch;
    if (FAILED(object->QueryInterface(IID_PPV_ARGS(dispatch.GetAddressOf()))))
        return DISP_E_TYPEMISMATCH;
    *converted = new PartWrapper(object);
    return S_OK;
}
inline constexpr com::ObjectConverter kPartConverter{&IID_IPart, wrapPart};

class ProbeObject final : public com::DispatchImpl<IProbe, &kPartConverter> {
  public:
    std::vector<Microsoft::WRL::ComPtr<IPart>> parts;
    short step = 0;
    OLE_COLOR color = 0;
    VARIANT_BOOL flag = VARIANT_TRUE;
    double first = -1.0;
    double last = -1.0;
    double givenHeight = -1.0;  ///< what Measure was given
    double givenWidth = -1.0;
    std::wstring givenName;
    std::wstring removedKey;
    int failure = 0;  ///< Fail: the number of a run-time error; -1: memory; -2: another exception

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_IProbe)
            *object = static_cast<IProbe*>(this);
        else if (iid == IID_ISupportErrorInfo)
            *object = static_cast<ISupportErrorInfo*>(this);
        else
            *object = nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE Measure(double* height, double* width, BSTR* name, BSTR* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] {
            givenHeight = *height;
            givenWidth = *width;
            givenName = com::toWide(*name);
            *height = 1234.5;
            *width = 4321.0;
            SysFreeString(*name);
            *name = com::newBstr(L"new.bmp");
            return std::wstring(L"result.bmp");
        });
    }
    HRESULT STDMETHODCALLTYPE SetRange(double newFirst, double newLast) override {
        first = newFirst;
        last = newLast;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AddPart(IPart* part, LONG* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] {
            if (!part)
                throw util::RuntimeError(util::error_number::kObjectNotSet);
            parts.emplace_back(part);
            return parts.size() - 1;
        });
    }
    HRESULT STDMETHODCALLTYPE GetPart(LONG i, IPart** value) override {
        const auto index = static_cast<std::size_t>(i);
        *value = index < parts.size() ? parts[index].Get() : nullptr;
        if (*value)
            (*value)->AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Count(LONG* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] { return parts.size(); });
    }
    HRESULT STDMETHODCALLTYPE put_Step(short value) override {
        step = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Step(short* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] { return step; });
    }
    HRESULT STDMETHODCALLTYPE put_Color(OLE_COLOR value) override {
        color = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Color(OLE_COLOR* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] { return color; });
    }
    HRESULT STDMETHODCALLTYPE put_Flag(VARIANT_BOOL value) override {
        flag = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Flag(VARIANT_BOOL* value) override {
        return com::firewallReturn(kProbeErrors, value, [&] { return flag != VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE put_Hidden(VARIANT_BOOL /*value*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Remove(BSTR key) override {
        removedKey = com::toWide(key);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Fail() override {
        return com::firewall(kProbeErrors, [&] {
            if (failure == -1)
                throw std::bad_alloc();
            if (failure == -2)
                throw std::runtime_error("unexpected");
            if (failure != 0)
                throw util::RuntimeError(failure);
        });
    }

  private:
    ~ProbeObject() = default;

    ULONG references_ = 1;
};

}  // namespace kv::test
