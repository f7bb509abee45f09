#include "com/Dispatch.h"

#include "com/DispatchCall.h"
#include "com/Firewall.h"
#include "com/TypeLib.h"

namespace kv::com {

HRESULT dispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept {
    if (!info)
        return E_POINTER;
    *info = nullptr;
    if (index != 0)
        return DISP_E_BADINDEX;
    std::shared_ptr<const InterfaceInfo> known;
    const HRESULT hr = getInterfaceInfo(iid, known);
    return FAILED(hr) ? hr : known->typeInfo.CopyTo(info);
}

HRESULT dispatchGetIDsOfNames(REFIID iid, REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    if (!names || !ids)
        return E_POINTER;
    for (UINT i = 0; i < count; ++i)
        ids[i] = DISPID_UNKNOWN;
    if (reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    std::shared_ptr<const InterfaceInfo> known;
    const HRESULT hr = getInterfaceInfo(iid, known);
    return FAILED(hr) ? hr : known->typeInfo->GetIDsOfNames(names, count, ids);
}

HRESULT dispatchInvoke(REFIID iid, void* self, const ObjectConverter* converter,
                       const InvokeRequest& request) noexcept {
    if (request.reserved != IID_NULL)
        return DISP_E_UNKNOWNINTERFACE;
    if (!request.params)
        return E_INVALIDARG;
    std::shared_ptr<const InterfaceInfo> known;
    if (const HRESULT hr = getInterfaceInfo(iid, known); FAILED(hr))
        return hr;
    const Member* member = known->members.find(request.member, request.flags);
    if (!member)
        return DISP_E_MEMBERNOTFOUND;
    return firewall({iid}, [&] { return DispatchCall(*member, converter, request).run(self); });
}

}  // namespace kv::com
