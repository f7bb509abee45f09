// The control as an embedded object: site, verbs, lifetime.
#include "automation/BandscopeControl.h"

#include <cwchar>
#include <utility>

#include "com/Enumerator.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// A copy that the caller frees with CoTaskMemFree; null if there is no memory.
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

/// For programs that list the verbs. None belongs in a container's menu.
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
    // The previous site may call back when it is released.
    const ComPtr<IOleClientSite> before = std::move(site_);
    site_ = site;
    silent_ = !site;
    activatedBefore_ = false;
    if (site)
        return S_OK;
    // Some containers make no further call: they neither close the control nor remove their sink.
    scope_->closeMouseInfo();
    forgetViewSink();
    return S_OK;
}

HRESULT BandscopeControl::GetClientSite(IOleClientSite** site) {
    return site ? site_.CopyTo(site) : E_POINTER;
}

/// The option has no effect, because there is never anything to save.
HRESULT BandscopeControl::Close(DWORD /*saveOption*/) {
    const ComPtr<IOleObject> alive(this);
    deactivate();
    scope_->closeMouseInfo();
    silent_ = true;
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
    return com::firewall(controlErrors(IID_IOleObject), [&] {
        com::Enumerator<IEnumOLEVERB, VerbPolicy>::create({std::begin(kVerbs), std::end(kVerbs)}, verbs);
    });
}

HRESULT BandscopeControl::GetUserClassID(CLSID* clsid) {
    return GetClassID(clsid);
}

HRESULT BandscopeControl::GetUserType(DWORD /*form*/, LPOLESTR* type) {
    if (!type)
        return E_POINTER;
    *type = taskText(kControlTitle);
    return *type ? S_OK : E_OUTOFMEMORY;
}

void BandscopeControl::paintView(HDC dc, const RECT& bounds) {
    windowTree().paint(dc, bounds);
}

RECT BandscopeControl::viewStrip() {
    const formenv::Widget& frame = scope_->children().fraPic;
    const formenv::Widget& strip = scope_->children().picUnits;
    const LONG left = pixelsOf(frame.left());
    const LONG top = pixelsOf(frame.top());
    return {left + pixelsOf(strip.left()), top + pixelsOf(strip.top()), left + pixelsOf(strip.left() + strip.width()),
            top + pixelsOf(strip.top() + strip.height())};
}

formenv::VectorPicture BandscopeControl::viewVectors(double scale) {
    const raster::PixelSize size = scope_->children().picUnits.pixelSize();
    const int dpi = std::max(1, static_cast<int>(std::lround(platform_.dpi() * scale)));
    return control::PictureCopy::vectors(
        scope_->shown(),
        {raster::pixelsToTwips(size.width, platform_.dpi()), raster::pixelsToTwips(size.height, platform_.dpi())}, dpi);
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
    *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
    return S_OK;
}

}  // namespace kv::automation
