// Calls of control containers: ambient properties, frozen events, and quick activation.
#include <olectl.h>

#include "automation/BandscopeControl.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// Returns 0 if the sink cannot be connected: the container may offer one that the control does not use.
DWORD connectTo(com::ConnectionPointsImpl& points, REFIID iid, IUnknown* sink) {
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    if (sink && SUCCEEDED(points.FindConnectionPoint(iid, &point)))
        point->Advise(sink, &cookie);
    return cookie;
}

}  // namespace

/// The captions have no mnemonics, and the control leaves Enter and Escape to the form.
HRESULT BandscopeControl::GetControlInfo(CONTROLINFO* info) {
    if (!info)
        return E_POINTER;
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = 0;
    return S_OK;
}

HRESULT BandscopeControl::OnMnemonic(MSG* message) {
    return message ? S_OK : E_INVALIDARG;
}

/// Some containers freeze the events while they load and never unfreeze them. The control may go on, because containers
/// ignore events of a frozen control themselves.
HRESULT BandscopeControl::FreezeEvents(BOOL /*freeze*/) {
    return S_OK;
}

bool BandscopeControl::ambientFlag(DISPID property, bool otherwise) noexcept {
    ComPtr<IDispatch> ambient;
    const ComPtr<IOleClientSite> site = site_;
    if (!site || FAILED(site.As(&ambient)))
        return otherwise;
    DISPPARAMS none{};
    com::Variant value;
    if (FAILED(ambient->Invoke(property, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                               nullptr)) ||
        value.vt == VT_EMPTY || FAILED(VariantChangeType(&value, &value, 0, VT_BOOL)))
        return otherwise;
    return value.boolVal != VARIANT_FALSE;
}

/// In a designer, and while the container does not accept input, clicks and keys go to the container's own window.
void BandscopeControl::adoptInputState() noexcept {
    const bool userMode = ambientFlag(DISPID_AMBIENT_USERMODE, ambient_.userMode);
    const bool uiDead = ambientFlag(DISPID_AMBIENT_UIDEAD, ambient_.uiDead);
    const HWND root = rootWindow();
    if (root && (IsWindowEnabled(root) != FALSE) != (userMode && !uiDead))
        EnableWindow(root, userMode && !uiDead);
}

HRESULT BandscopeControl::OnAmbientPropertyChange(DISPID property) {
    const ComPtr<IOleObject> alive(this);
    // The host sets the look through the control's own members, so ambient colors and fonts have no effect.
    if (property == DISPID_UNKNOWN || property == DISPID_AMBIENT_USERMODE || property == DISPID_AMBIENT_UIDEAD)
        adoptInputState();
    return S_OK;
}

HWND BandscopeControl::boxOwner() noexcept {
    ComPtr<IOleWindow> window;
    HWND owner = nullptr;
    const ComPtr<IOleClientSite> site = site_;
    if (!site || FAILED(site.As(&window)) || FAILED(window->GetWindow(&owner)))
        return nullptr;
    return IsWindow(owner) ? owner : nullptr;
}

/// While the container shows a modal window, the control's text window accepts no input either.
HRESULT BandscopeControl::EnableModeless(BOOL enable) {
    const ComPtr<IOleObject> alive(this);
    platform_.enableForms(enable != FALSE);
    return S_OK;
}

HRESULT BandscopeControl::QuickActivate(QACONTAINER* container, QACONTROL* control) {
    if (!container || !control)
        return E_POINTER;
    if (container->cbSize < sizeof *container || control->cbSize < sizeof *control)
        return E_INVALIDARG;
    const ComPtr<IOleObject> alive(this);
    const ULONG size = control->cbSize;
    *control = QACONTROL{};
    control->cbSize = size;
    const HRESULT sited = SetClientSite(container->pClientSite);
    if (FAILED(sited))
        return sited;
    ambient_ = {(container->dwAmbientFlags & QACONTAINER_USERMODE) != 0,
                (container->dwAmbientFlags & QACONTAINER_UIDEAD) != 0};
    if (container->pAdviseSink)
        SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
    control->dwPropNotifyCookie = connectTo(*this, IID_IPropertyNotifySink, container->pPropertyNotifySink);
    control->dwEventCookie = connectTo(*this, DIID___kvBandscope, container->pUnkEventSink);
    GetMiscStatus(DVASPECT_CONTENT, &control->dwMiscStatus);
    GetViewStatus(&control->dwViewStatus);
    return S_OK;
}

HRESULT BandscopeControl::SetContentExtent(LPSIZEL size) {
    return SetExtent(DVASPECT_CONTENT, size);
}

HRESULT BandscopeControl::GetContentExtent(LPSIZEL size) {
    return GetExtent(DVASPECT_CONTENT, size);
}

}  // namespace kv::automation
