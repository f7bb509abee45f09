#include "automation/ViewObject.h"

#include <utility>

#include "automation/Identity.h"
#include "com/Firewall.h"
#include "com/TypeLib.h"
#include "util/RuntimeError.h"

namespace kv::automation {

using Microsoft::WRL::ComPtr;

HRESULT ViewObject::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == IID__BandscopeView)
        *object = static_cast<_BandscopeView*>(this);
    else if (iid == IID_ISupportErrorInfo)
        *object = static_cast<ISupportErrorInfo*>(this);
    else if (iid == IID_IProvideClassInfo)
        *object = static_cast<IProvideClassInfo*>(this);
    else
        *object = nullptr;
    if (!*object)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ViewObject::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

ULONG ViewObject::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0)
        delete this;
    return static_cast<ULONG>(left);
}

HRESULT ViewObject::GetClassInfo(ITypeInfo** info) {
    return com::getClassInfo(CLSID_View, info);
}

HRESULT ViewObject::get_Scope(IDispatch** value) {
    return value ? scope_.CopyTo(value) : E_POINTER;
}

HRESULT ViewObject::put_Scope(IDispatch* value) {
    return putref_Scope(value);
}

HRESULT ViewObject::putref_Scope(IDispatch* value) {
    return com::firewall(kViewErrors, [&] { return setScope(value); });
}

HRESULT ViewObject::setScope(IDispatch* value) {
    ComPtr<IDispatch> scope(value);
    ComPtr<_BandscopeView> view;
    if (scope) {
        // A View has the interface as well, but it is no control: two of them could refer to each other.
        ComPtr<_kvBandscope> control;
        HRESULT hr = scope.As(&control);
        if (SUCCEEDED(hr))
            hr = control.As(&view);
        if (hr == E_NOINTERFACE)
            throw util::RuntimeError(util::error_number::kTypeMismatch,
                                     L"Scope: the object is no kvBandscope control, or its version is older than this "
                                     L"one. Set Scope to a control, or to Nothing to release it.");
        if (FAILED(hr))
            return hr;
    }
    // The earlier control may be released last, when this object is in its new state.
    std::swap(scope_, scope);
    std::swap(view_, view);
    return S_OK;
}

template <class F>
HRESULT ViewObject::forward(F&& call) noexcept {
    const ComPtr<_BandscopeView> view(view_);
    if (view)
        return std::forward<F>(call)(*view.Get());
    return com::firewall(kViewErrors, [] {
        throw util::RuntimeError(util::error_number::kObjectNotSet,
                                 L"Scope is not set. Set it to a kvBandscope control first.");
    });
}

HRESULT ViewObject::ShowRange(double min, double max) {
    return forward([&](_BandscopeView& view) { return view.ShowRange(min, max); });
}

HRESULT ViewObject::ZoomBy(double factor, double around) {
    return forward([&](_BandscopeView& view) { return view.ZoomBy(factor, around); });
}

HRESULT ViewObject::PanBy(double MHz) {
    return forward([&](_BandscopeView& view) { return view.PanBy(MHz); });
}

HRESULT ViewObject::HitTest(double freq, double tolerance, VARIANT* value) {
    if (!value)
        return E_POINTER;
    VariantInit(value);
    return forward([&](_BandscopeView& view) { return view.HitTest(freq, tolerance, value); });
}

HRESULT ViewObject::AddTXChannels(VARIANT channels, long* value) {
    if (!value)
        return E_POINTER;
    *value = 0;
    return forward([&](_BandscopeView& view) { return view.AddTXChannels(channels, value); });
}

HRESULT ViewObject::AddRXChannels(VARIANT channels, long* value) {
    if (!value)
        return E_POINTER;
    *value = 0;
    return forward([&](_BandscopeView& view) { return view.AddRXChannels(channels, value); });
}

template <class T>
HRESULT ViewObject::read(HRESULT (STDMETHODCALLTYPE _BandscopeView::*getter)(T*), T* value) noexcept {
    if (!value)
        return E_POINTER;
    *value = T{};
    return forward([&](_BandscopeView& view) { return (view.*getter)(value); });
}

HRESULT ViewObject::get_RenderTimeMs(double* value) {
    return read(&_BandscopeView::get_RenderTimeMs, value);
}

HRESULT ViewObject::BeginUpdate() {
    return forward([](_BandscopeView& view) { return view.BeginUpdate(); });
}

HRESULT ViewObject::EndUpdate() {
    return forward([](_BandscopeView& view) { return view.EndUpdate(); });
}

HRESULT ViewObject::Back(VARIANT_BOOL* value) {
    return read(&_BandscopeView::Back, value);
}

HRESULT ViewObject::Forward(VARIANT_BOOL* value) {
    return read(&_BandscopeView::Forward, value);
}

HRESULT ViewObject::get_CanGoBack(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_CanGoBack, value);
}

HRESULT ViewObject::get_CanGoForward(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_CanGoForward, value);
}

HRESULT ViewObject::get_Marker(double* value) {
    return read(&_BandscopeView::get_Marker, value);
}

HRESULT ViewObject::put_Marker(double value) {
    return forward([&](_BandscopeView& view) { return view.put_Marker(value); });
}

HRESULT ViewObject::get_MarkerVisible(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_MarkerVisible, value);
}

HRESULT ViewObject::put_MarkerVisible(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_MarkerVisible(value); });
}

HRESULT ViewObject::get_WheelZoom(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_WheelZoom, value);
}

HRESULT ViewObject::put_WheelZoom(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_WheelZoom(value); });
}

HRESULT ViewObject::get_SnapToChannels(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_SnapToChannels, value);
}

HRESULT ViewObject::put_SnapToChannels(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_SnapToChannels(value); });
}

HRESULT ViewObject::get_PowerAxis(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_PowerAxis, value);
}

HRESULT ViewObject::put_PowerAxis(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_PowerAxis(value); });
}

HRESULT ViewObject::get_Legend(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_Legend, value);
}

HRESULT ViewObject::put_Legend(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_Legend(value); });
}

HRESULT ViewObject::get_ChannelLabels(VARIANT_BOOL* value) {
    return read(&_BandscopeView::get_ChannelLabels, value);
}

HRESULT ViewObject::put_ChannelLabels(VARIANT_BOOL value) {
    return forward([&](_BandscopeView& view) { return view.put_ChannelLabels(value); });
}

HRESULT ViewObject::SavePicture(BSTR file, long width, long height, long dpi) {
    return forward([&](_BandscopeView& view) { return view.SavePicture(file, width, height, dpi); });
}

HRESULT ViewObject::CopyPicture() {
    return forward([&](_BandscopeView& view) { return view.CopyPicture(); });
}

HRESULT ViewObject::PrintPicture(double hdc, long left, long top, long width, long height) {
    return forward([&](_BandscopeView& view) { return view.PrintPicture(hdc, left, top, width, height); });
}

HRESULT createView(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    return com::firewall(kViewErrors, [&] {
        auto* const view = new ViewObject;
        const HRESULT hr = view->QueryInterface(iid, object);
        view->Release();
        return hr;
    });
}

}  // namespace kv::automation
