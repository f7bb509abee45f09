#include "com/TypeLib.h"

#include <ocidl.h>

#include <mutex>
#include <utility>
#include <vector>

#include "com/Firewall.h"
#include "com/Module.h"

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;

struct Cache {
    std::mutex mutex;
    ComPtr<ITypeLib> library;
    std::vector<std::pair<IID, std::shared_ptr<const InterfaceInfo>>> interfaces;
};

/// Never destroyed: at the end of the process, the system's libraries may be unloaded before this module.
Cache& cache() {
    static Cache* const instance = new Cache;
    return *instance;
}

HRESULT cachedLibrary(Cache& kept) {
    if (kept.library)
        return S_OK;
    return loadOwnTypeLib(kept.library.GetAddressOf());
}

HRESULT findOrRead(REFIID iid, std::shared_ptr<const InterfaceInfo>& info) {
    Cache& kept = cache();
    const std::lock_guard lock(kept.mutex);
    for (const auto& [id, known] : kept.interfaces) {
        if (id == iid) {
            info = known;
            return S_OK;
        }
    }
    auto fresh = std::make_shared<InterfaceInfo>();
    HRESULT hr = cachedLibrary(kept);
    if (SUCCEEDED(hr))
        hr = kept.library->GetTypeInfoOfGuid(iid, fresh->typeInfo.GetAddressOf());
    if (SUCCEEDED(hr))
        hr = fresh->members.read(fresh->typeInfo.Get());
    if (FAILED(hr))
        return hr;
    kept.interfaces.emplace_back(iid, fresh);
    info = std::move(fresh);
    return S_OK;
}

}  // namespace

HRESULT loadOwnTypeLib(ITypeLib** library) noexcept {
    *library = nullptr;
    return firewall({IID_NULL}, [&] { return LoadTypeLibEx(Module::path().c_str(), REGKIND_NONE, library); });
}

HRESULT getInterfaceInfo(REFIID iid, std::shared_ptr<const InterfaceInfo>& info) noexcept {
    return firewall({iid}, [&] { return findOrRead(iid, info); });
}

HRESULT getClassInfo(REFCLSID clsid, ITypeInfo** info) noexcept {
    if (!info)
        return E_POINTER;
    *info = nullptr;
    return firewall({IID_IProvideClassInfo}, [&] {
        Cache& kept = cache();
        const std::lock_guard lock(kept.mutex);
        const HRESULT hr = cachedLibrary(kept);
        return FAILED(hr) ? hr : kept.library->GetTypeInfoOfGuid(clsid, info);
    });
}

void forgetTypeInfo() noexcept {
    Cache& kept = cache();
    const std::lock_guard lock(kept.mutex);
    kept.interfaces.clear();
    kept.library.Reset();
}

}  // namespace kv::com
