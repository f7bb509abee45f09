#include "com/ClassFactory.h"

#include <unknwn.h>

#include <new>

#include "com/Counted.h"
#include "com/Firewall.h"
#include "com/Module.h"

namespace kv::com {

namespace {

class ClassFactory final : public Counted<IClassFactory> {
  public:
    explicit ClassFactory(CreateFunction create) noexcept : create_(create) {}

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
    ~ClassFactory() override = default;

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
