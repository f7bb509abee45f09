// The control as an embedded object: site, size, verbs, life.
#include "automation/BandscopeControl.h"

#include <olectl.h>

#include <cwchar>

#include "formenv/Twips.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

constexpr double kHimetricPerInch = 2540.0;

LONG twipsToHimetric(double twips) {
    return static_cast<LONG>(twips * kHimetricPerInch / formenv::kTwipsPerInch + 0.5);
}

double himetricToTwips(LONG himetric) {
    return himetric * formenv::kTwipsPerInch / kHimetricPerInch;
}

}  // namespace

HRESULT BandscopeControl::SetClientSite(IOleClientSite* site) {
    const ComPtr<IOleObject> alive(this);
    return firewall(IID_IOleObject, [&] {
        if (!site)
            deactivate();
        site_ = site;
        inPlaceSite_.Reset();
        frame_.Reset();
    });
}

HRESULT BandscopeControl::GetClientSite(IOleClientSite** site) {
    return site ? site_.CopyTo(site) : E_POINTER;
}

HRESULT BandscopeControl::Close(DWORD /*saveOption*/) {
    const ComPtr<IOleObject> alive(this);
    deactivate();
    scope_->closeMouseInfo();
    if (adviseHolder_)
        adviseHolder_->SendOnClose();
    return S_OK;
}

HRESULT BandscopeControl::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    if (!moniker)
        return E_POINTER;
    *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT BandscopeControl::GetClipboardData(DWORD, IDataObject** data) {
    if (!data)
        return E_POINTER;
    *data = nullptr;
    return E_NOTIMPL;
}

HRESULT BandscopeControl::EnumVerbs(IEnumOLEVERB** verbs) {
    if (!verbs)
        return E_POINTER;
    *verbs = nullptr;
    return OLE_S_USEREG;
}

HRESULT BandscopeControl::GetUserClassID(CLSID* clsid) {
    return GetClassID(clsid);
}

HRESULT BandscopeControl::GetUserType(DWORD /*form*/, LPOLESTR* type) {
    constexpr wchar_t kName[] = L"kvBandscope Control";
    if (!type)
        return E_POINTER;
    *type = static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof kName));
    if (!*type)
        return E_OUTOFMEMORY;
    std::wmemcpy(*type, kName, sizeof kName / sizeof *kName);
    return S_OK;
}

SIZEL BandscopeControl::extentHimetric() noexcept {
    const formenv::Widget& control = scope_->children().userControl;
    return {twipsToHimetric(control.width()), twipsToHimetric(control.height())};
}

HRESULT BandscopeControl::SetExtent(DWORD aspect, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    if (!size)
        return E_POINTER;
    if (size->cx < 0 || size->cy < 0)
        return E_INVALIDARG;
    // While windows stand, their size is set by SetObjectRects, in pixels; an extent then only repeats it, rounded.
    if (inPlaceActive_)
        return S_OK;
    return member([&] { scope_->resize(himetricToTwips(size->cx), himetricToTwips(size->cy)); });
}

HRESULT BandscopeControl::GetExtent(DWORD aspect, SIZEL* size) {
    if (!size)
        return E_POINTER;
    *size = SIZEL{};
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    *size = extentHimetric();
    return S_OK;
}

HRESULT BandscopeControl::Advise(IAdviseSink* sink, DWORD* connection) {
    if (!connection)
        return E_POINTER;
    *connection = 0;
    if (!adviseHolder_) {
        const HRESULT made = CreateOleAdviseHolder(&adviseHolder_);
        if (FAILED(made))
            return made;
    }
    return adviseHolder_->Advise(sink, connection);
}

HRESULT BandscopeControl::Unadvise(DWORD connection) {
    return adviseHolder_ ? adviseHolder_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

HRESULT BandscopeControl::EnumAdvise(IEnumSTATDATA** advise) {
    if (!advise)
        return E_POINTER;
    *advise = nullptr;
    return adviseHolder_ ? adviseHolder_->EnumAdvise(advise) : S_OK;
}

HRESULT BandscopeControl::GetMiscStatus(DWORD aspect, DWORD* status) {
    if (!status)
        return E_POINTER;
    *status = aspect == DVASPECT_CONTENT
                  ? static_cast<DWORD>(OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                                       OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST)
                  : 0;
    return S_OK;
}

HRESULT BandscopeControl::GetControlInfo(CONTROLINFO* info) {
    if (!info)
        return E_POINTER;
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = 0;
    return S_OK;
}

HRESULT BandscopeControl::FreezeEvents(BOOL freeze) {
    if (freeze)
        ++freezeCount_;
    else if (freezeCount_ > 0)
        --freezeCount_;
    return S_OK;
}

HRESULT BandscopeControl::GetClassID(CLSID* clsid) {
    if (!clsid)
        return E_POINTER;
    *clsid = CLSID_kvBandscope;
    return S_OK;
}

HRESULT BandscopeControl::GetSizeMax(ULARGE_INTEGER* size) {
    if (!size)
        return E_POINTER;
    size->QuadPart = 0;
    return S_OK;
}

}  // namespace kv::automation
