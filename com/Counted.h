// The reference count and the only interface of a COM object.
#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kv::com {

/// Base of an object with one interface besides IUnknown. It begins with one reference and is deleted with the last.
/// QueryInterface returns E_POINTER for a null `object`.
template <class Interface>
class Counted : public Interface {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && iid != __uuidof(Interface))
            return E_NOINTERFACE;
        *object = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    ULONG STDMETHODCALLTYPE Release() final {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

  protected:
    virtual ~Counted() = default;

  private:
    LONG references_ = 1;
};

}  // namespace kv::com
