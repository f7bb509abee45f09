// The control as an embedded object: site, size, verbs, life.
#include "automation/BandscopeControl.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "automation/Enumerator.h"
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

/// The caller's, to be freed by CoTaskMemFree; null when there is no memory.
LPOLESTR taskText(const wchar_t* text) noexcept {
    const std::size_t count = std::wcslen(text) + 1;
    auto* const copy = static_cast<LPOLESTR>(CoTaskMemAlloc(count * sizeof *text));
    if (copy)
        std::wmemcpy(copy, text, count);
    return copy;
}

struct Verb {
    LONG number;
    const wchar_t* name;
};

/// For programs that list them; none belongs on a container's menu.
constexpr Verb kVerbs[] = {{OLEIVERB_PRIMARY, L"Activate"},
                           {OLEIVERB_SHOW, L"Show"},
                           {OLEIVERB_HIDE, L"Hide"},
                           {OLEIVERB_INPLACEACTIVATE, L"Activate in place"},
                           {OLEIVERB_UIACTIVATE, L"Activate with the keyboard"}};

struct VerbPolicy {
    using Stored = Verb;
    using Item = OLEVERB;
    static void copy(const Verb& verb, OLEVERB* item) noexcept {
        *item = {verb.number, taskText(verb.name), 0, OLEVERBATTRIB_NEVERDIRTIES};
    }
};

}  // namespace

HRESULT BandscopeControl::SetClientSite(IOleClientSite* site) {
    const ComPtr<IOleObject> alive(this);
    if (site == site_.Get())
        return S_OK;
    deactivate();
    // The one before may call back when it is let go.
    const ComPtr<IOleClientSite> before = std::move(site_);
    site_ = site;
    return S_OK;
}

HRESULT BandscopeControl::GetClientSite(IOleClientSite** site) {
    return site ? site_.CopyTo(site) : E_POINTER;
}

/// There is never anything to save, whatever the option says.
HRESULT BandscopeControl::Close(DWORD /*saveOption*/) {
    const ComPtr<IOleObject> alive(this);
    deactivate();
    scope_->closeMouseInfo();
    if (closed_)
        return S_OK;
    closed_ = true;
    tellDataEnds();
    if (const ComPtr<IOleAdviseHolder> sinks = adviseHolder_)
        sinks->SendOnClose();
    return S_OK;
}

void BandscopeControl::saved() noexcept {
    if (const ComPtr<IOleAdviseHolder> sinks = adviseHolder_)
        sinks->SendOnSave();
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
    return firewall(IID_IOleObject, [&] {
        Enumerator<IEnumOLEVERB, VerbPolicy>::create({std::begin(kVerbs), std::end(kVerbs)}, verbs);
    });
}

HRESULT BandscopeControl::GetUserClassID(CLSID* clsid) {
    return GetClassID(clsid);
}

HRESULT BandscopeControl::GetUserType(DWORD /*form*/, LPOLESTR* type) {
    if (!type)
        return E_POINTER;
    *type = taskText(L"kvBandscope Control");
    return *type ? S_OK : E_OUTOFMEMORY;
}

SIZEL BandscopeControl::viewExtent() {
    const formenv::Widget& control = scope_->children().userControl;
    return {twipsToHimetric(toHostTwips(control.width())), twipsToHimetric(toHostTwips(control.height()))};
}

SIZE BandscopeControl::viewPixels() {
    const formenv::Widget& control = scope_->children().userControl;
    return {formenv::twipsToPixels(control.width(), platform_.dpi()),
            formenv::twipsToPixels(control.height(), platform_.dpi())};
}

SIZE BandscopeControl::viewStartPixels() {
    return {formenv::twipsToPixels(scope_->MinWid(), platform_.dpi()),
            formenv::twipsToPixels(scope_->MinHgt(), platform_.dpi())};
}

SIZEL BandscopeControl::viewNaturalExtent(const SIZEL* proposed) {
    const SIZEL start{twipsToHimetric(toHostTwips(scope_->MinWid())), twipsToHimetric(toHostTwips(scope_->MinHgt()))};
    return proposed ? SIZEL{std::max(proposed->cx, start.cx), std::max<LONG>(proposed->cy, 0)} : start;
}

void BandscopeControl::paintView(HDC dc, const RECT& bounds) {
    windowTree().paint(dc, bounds);
}

HRESULT BandscopeControl::SetExtent(DWORD aspect, SIZEL* size) {
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    if (!size)
        return E_POINTER;
    if (size->cx < 0 || size->cy < 0)
        return E_INVALIDARG;
    // While windows stand, their size is set by SetObjectRects, in pixels; an extent then only repeats it, rounded.
    if (rootWindow())
        return S_OK;
    return member(
        [&] { scope_->resize(fromHostTwips(himetricToTwips(size->cx)), fromHostTwips(himetricToTwips(size->cy))); });
}

HRESULT BandscopeControl::GetExtent(DWORD aspect, SIZEL* size) {
    if (!size)
        return E_POINTER;
    *size = SIZEL{};
    if (aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    *size = viewExtent();
    return S_OK;
}

HRESULT BandscopeControl::Advise(IAdviseSink* sink, DWORD* connection) {
    if (!connection)
        return E_POINTER;
    *connection = 0;
    if (!sink)
        return E_INVALIDARG;
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

}  // namespace kv::automation
