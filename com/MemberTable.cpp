#include "com/MemberTable.h"

#include <wrl/client.h>

#include <memory>

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;

struct ReleaseAttr {
    ITypeInfo* owner;
    void operator()(TYPEATTR* attr) const noexcept { owner->ReleaseTypeAttr(attr); }
};
struct ReleaseFunc {
    ITypeInfo* owner;
    void operator()(FUNCDESC* func) const noexcept { owner->ReleaseFuncDesc(func); }
};
using TypeAttr = std::unique_ptr<TYPEATTR, ReleaseAttr>;
using FuncDesc = std::unique_ptr<FUNCDESC, ReleaseFunc>;

HRESULT typeAttr(ITypeInfo* info, TypeAttr& out) {
    TYPEATTR* attr = nullptr;
    const HRESULT hr = info->GetTypeAttr(&attr);
    out = TypeAttr(attr, ReleaseAttr{info});
    return hr;
}

struct ResolvedType {
    VARTYPE type = VT_EMPTY;
    int pointers = 0;
    IID interfaceId{};
};

/// Follows pointers and aliases to an automation type. An interface pointer is VT_DISPATCH, and its own pointer does
/// not count.
HRESULT resolve(ITypeInfo* info, const TYPEDESC& desc, ResolvedType& out) {
    const TYPEDESC* type = &desc;
    while (type->vt == VT_PTR) {
        ++out.pointers;
        type = type->lptdesc;
    }
    if (type->vt != VT_USERDEFINED) {
        out.type = type->vt;
        return S_OK;
    }
    ComPtr<ITypeInfo> named;
    HRESULT hr = info->GetRefTypeInfo(type->hreftype, named.GetAddressOf());
    TypeAttr attr(nullptr, ReleaseAttr{nullptr});
    if (SUCCEEDED(hr))
        hr = typeAttr(named.Get(), attr);
    if (FAILED(hr))
        return hr;
    if (attr->typekind == TKIND_ALIAS)
        return resolve(named.Get(), attr->tdescAlias, out);
    out.type = VT_DISPATCH;
    out.interfaceId = attr->guid;
    --out.pointers;
    return S_OK;
}

HRESULT describe(ITypeInfo* info, const FUNCDESC& func, Member& member) {
    member.id = func.memid;
    member.kind = func.invkind;
    member.vtableOffset = static_cast<ULONG_PTR>(func.oVft);
    for (SHORT i = 0; i < func.cParams; ++i) {
        const ELEMDESC& element = func.lprgelemdescParam[i];
        ResolvedType type;
        if (const HRESULT hr = resolve(info, element.tdesc, type); FAILED(hr))
            return hr;
        const USHORT flags = element.paramdesc.wParamFlags;
        if (flags & PARAMFLAG_FRETVAL)
            member.result = type.type;
        else
            member.parameters.push_back(
                {type.type, type.pointers > 0, (flags & PARAMFLAG_FOPT) != 0, type.interfaceId});
    }
    return S_OK;
}

}  // namespace

HRESULT MemberTable::read(ITypeInfo* dispatchInfo) {
    // The vtable half of a dual interface describes the methods as they are in the vtable, with their result
    // parameters.
    HREFTYPE reference = 0;
    HRESULT hr = dispatchInfo->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
    ComPtr<ITypeInfo> vtable;
    if (SUCCEEDED(hr))
        hr = dispatchInfo->GetRefTypeInfo(reference, vtable.GetAddressOf());
    TypeAttr attr(nullptr, ReleaseAttr{nullptr});
    if (SUCCEEDED(hr))
        hr = typeAttr(vtable.Get(), attr);
    for (UINT i = 0; SUCCEEDED(hr) && i < attr->cFuncs; ++i) {
        FUNCDESC* raw = nullptr;
        hr = vtable->GetFuncDesc(i, &raw);
        if (FAILED(hr))
            break;
        const FuncDesc func(raw, ReleaseFunc{vtable.Get()});
        Member member;
        hr = describe(vtable.Get(), *func, member);
        if (SUCCEEDED(hr))
            members_.push_back(std::move(member));
    }
    return hr;
}

const Member* MemberTable::find(DISPID id, WORD flags) const noexcept {
    for (const Member& member : members_)
        if (member.id == id && (static_cast<WORD>(member.kind) & flags) != 0)
            return &member;
    return nullptr;
}

}  // namespace kv::com
