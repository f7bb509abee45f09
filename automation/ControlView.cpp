#include "automation/ControlView.h"
#include "automation/Identity.h"

#include "automation/Snapshot.h"
#include "automation/VectorView.h"
#include "com/Firewall.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

namespace {

/// The content and its printed form are the same, and an opaque object is drawn in a single pass.
bool isDrawnAspect(DWORD aspect) {
    return aspect == DVASPECT_CONTENT || aspect == DVASPECT_DOCPRINT || aspect == DVASPECT_OPAQUE;
}

/// The same, for questions about place and size in two-pass drawing.
bool isPlacedAspect(DWORD aspect) {
    return aspect == DVASPECT_CONTENT || aspect == DVASPECT_OPAQUE;
}

}  // namespace

Snapshot ViewImpl::snapshot() {
    SIZE size = viewPixels();
    // Without an extent, it shows the start size.
    if (size.cx < 1 || size.cy < 1)
        size = viewStartPixels();
    return Snapshot(size, [this](HDC dc, const RECT& bounds) { paintView(dc, bounds); });
}

bool ViewImpl::drawView(HDC dc, const RECTL& bounds) {
    const Snapshot whole = snapshot();
    if (!takesVectors(dc))
        return whole.drawTo(dc, bounds);
    return drawWithVectors(dc, bounds, whole, {viewStrip(), [this](double scale) { return viewVectors(scale); }});
}

HRESULT ViewImpl::Draw(DWORD aspect, LONG /*index*/, void* /*aspectInfo*/, DVTARGETDEVICE* /*device*/, HDC /*deviceDc*/,
                       HDC dc, LPCRECTL bounds, LPCRECTL /*windowBounds*/, BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR),
                       ULONG_PTR argument) {
    if (!isDrawnAspect(aspect))
        return DV_E_DVASPECT;
    if (!dc || !bounds)
        return E_INVALIDARG;
    const ComPtr<IDataObject> alive(this);
    return com::firewall(controlErrors(IID_IViewObject), [&] {
        if (goOn && !goOn(argument))
            return E_ABORT;
        // Only logical units of `dc` are used and its mapping does not change, so the window bounds of a metafile need
        // not be known.
        return drawView(dc, *bounds) ? S_OK : E_FAIL;
    });
}

HRESULT ViewImpl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors) {
    if (!colors)
        return E_POINTER;
    *colors = nullptr;
    return S_FALSE;
}

HRESULT ViewImpl::Freeze(DWORD, LONG, void*, DWORD* key) {
    if (key)
        *key = 0;
    return E_NOTIMPL;
}

HRESULT ViewImpl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    if (sink && !(aspects & (DVASPECT_CONTENT | DVASPECT_DOCPRINT | DVASPECT_OPAQUE)))
        return DV_E_DVASPECT;
    const ComPtr<IDataObject> alive(this);
    viewAspects_ = aspects;
    viewFlags_ = flags;
    // The previous sink may call back when it is released.
    const ComPtr<IAdviseSink> before = std::move(viewSink_);
    viewSink_ = sink;
    if (sink && (flags & ADVF_PRIMEFIRST))
        tellViewSink();
    return S_OK;
}

HRESULT ViewImpl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
    if (aspects)
        *aspects = viewAspects_;
    if (flags)
        *flags = viewFlags_;
    return sink ? viewSink_.CopyTo(sink) : S_OK;
}

HRESULT ViewImpl::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*device*/, LPSIZEL size) {
    if (!size)
        return E_POINTER;
    *size = SIZEL{};
    if (!isDrawnAspect(aspect))
        return DV_E_DVASPECT;
    *size = viewExtent();
    return S_OK;
}

HRESULT ViewImpl::GetRect(DWORD aspect, LPRECTL rect) {
    if (!rect)
        return E_POINTER;
    *rect = RECTL{};
    if (!isPlacedAspect(aspect))
        return DV_E_DVASPECT;
    const SIZEL extent = viewExtent();
    rect->right = extent.cx;
    rect->bottom = extent.cy;
    return S_OK;
}

HRESULT ViewImpl::GetViewStatus(DWORD* status) {
    if (!status)
        return E_POINTER;
    *status = VIEWSTATUS_OPAQUE | VIEWSTATUS_DVASPECTOPAQUE;
    return S_OK;
}

LONG ViewImpl::closePixels(LONG himetric) {
    const SIZEL extent = viewExtent();
    return extent.cx > 0 && himetric > 0 ? static_cast<LONG>(MulDiv(himetric, viewPixels().cx, extent.cx)) : 0;
}

HRESULT ViewImpl::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT at, LONG close, DWORD* result) {
    if (!result)
        return E_POINTER;
    *result = HITRESULT_OUTSIDE;
    if (!bounds)
        return E_POINTER;
    if (!isPlacedAspect(aspect))
        return DV_E_DVASPECT;
    RECT around = *bounds;
    InflateRect(&around, closePixels(close), closePixels(close));
    if (PtInRect(bounds, at))
        *result = HITRESULT_HIT;
    else if (PtInRect(&around, at))
        *result = HITRESULT_CLOSE;
    return S_OK;
}

HRESULT ViewImpl::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT area, LONG close, DWORD* result) {
    if (!result)
        return E_POINTER;
    *result = HITRESULT_OUTSIDE;
    if (!bounds || !area)
        return E_POINTER;
    if (!isPlacedAspect(aspect))
        return DV_E_DVASPECT;
    RECT around = *bounds;
    InflateRect(&around, closePixels(close), closePixels(close));
    RECT common{};
    if (IntersectRect(&common, bounds, area))
        *result = HITRESULT_HIT;
    else if (IntersectRect(&common, &around, area))
        *result = HITRESULT_CLOSE;
    return S_OK;
}

HRESULT ViewImpl::GetNaturalExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*device*/, HDC /*deviceDc*/,
                                   DVEXTENTINFO* wanted, LPSIZEL size) {
    if (!size)
        return E_POINTER;
    *size = SIZEL{};
    if (!wanted)
        return E_POINTER;
    if (!isPlacedAspect(aspect))
        return DV_E_DVASPECT;
    if (wanted->dwExtentMode != DVEXTENT_CONTENT && wanted->dwExtentMode != DVEXTENT_INTEGRAL)
        return E_INVALIDARG;
    *size = viewNaturalExtent(wanted->dwExtentMode == DVEXTENT_INTEGRAL ? &wanted->sizelProposed : nullptr);
    return S_OK;
}

void ViewImpl::tellViewSink() noexcept {
    const ComPtr<IAdviseSink> sink = viewSink_;
    if (!sink)
        return;
    const DWORD aspects = viewAspects_;
    if (viewFlags_ & ADVF_ONLYONCE)
        viewSink_.Reset();
    sink->OnViewChange(aspects, -1);
}

void ViewImpl::forgetViewSink() noexcept {
    // The sink may call back when it is released.
    const ComPtr<IAdviseSink> before = std::move(viewSink_);
}

void ViewImpl::tellViewChanged() noexcept {
    const ComPtr<IDataObject> alive(this);
    tellViewSink();
    if (const ComPtr<IDataAdviseHolder> sinks = dataSinks_)
        sinks->SendOnDataChange(this, 0, 0);
}

}  // namespace kv::automation
