#include "com/ClassFactory.h"

#include <unknwn.h>

#include <new>

#include "com/Firewall.h"
#include "com/Module.h"

namespace kv::com {

namespace {

class ClassFactory final : public IClassFactory {
  public:
    explicit ClassFactory(CreateFunction create) noexcept : create_(create) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != IID_IClassFactory)
            return E_NOINTERFACE;
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (outer)
            return CLASS_E_NOAGGREGATION;
        return firewall({IID_IClassFactory}, [&] { return create_(iid, object); });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        if (lock)
            Module::addLock();
        else
            Module::releaseLock();
        return S_OK;
    }

  private:
    ~ClassFactory() = default;

    LONG references_ = 1;
    CreateFunction create_;
    [[no_unique_address]] ModuleRef module_;
};

}  // namespace

HRESULT getClassObject(std::span<const ClassEntry> classes, REFCLSID clsid, REFIID iid, void** object) noexcept {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    for (const ClassEntry& entry : classes) {
        if (clsid != *entry.clsid)
            continue;
        auto* factory = new (std::nothrow) ClassFactory(entry.create);
        if (!factory)
            return E_OUTOFMEMORY;
        const HRESULT hr = factory->QueryInterface(iid, object);
        factory->Release();
        return hr;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace kv::com
