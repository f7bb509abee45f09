#include "automation/ScopeView.h"

#include "automation/BandscopeControl.h"
#include "automation/ChannelArray.h"
#include "control/View.h"
#include "control/ViewPictures.h"
#include "util/RuntimeError.h"

namespace kv::automation {

using channels::ChannelKind;
using control::View;

HRESULT ScopeView::QueryInterface(REFIID iid, void** object) {
    return control_.QueryInterface(iid, object);
}

ULONG ScopeView::AddRef() {
    return control_.AddRef();
}

ULONG ScopeView::Release() {
    return control_.Release();
}

HRESULT ScopeView::get_Scope(IDispatch** value) {
    return control_.QueryInterface(IID_IDispatch, reinterpret_cast<void**>(value));
}

HRESULT ScopeView::put_Scope(IDispatch* value) {
    return putref_Scope(value);
}

HRESULT ScopeView::putref_Scope(IDispatch* /*value*/) {
    return control_.member(
        [] {
            throw util::RuntimeError(util::error_number::kInvalidProcedureCall,
                                     L"Scope: the control's own view cannot be set to another control. Create a "
                                     L"kvBandscope.View for that.");
        },
        IID__BandscopeView);
}

template <class F>
HRESULT ScopeView::act(F&& call) {
    return control_.member(
        [&] {
            control::View view(*control_.scope_);
            call(view);
        },
        IID__BandscopeView);
}

template <class Out, class F>
HRESULT ScopeView::answer(Out* value, F&& call) {
    return control_.memberReturn(
        value,
        [&] {
            control::View view(*control_.scope_);
            return call(view);
        },
        IID__BandscopeView);
}

HRESULT ScopeView::ShowRange(double min, double max) {
    return act([&](View& view) { view.showRange(min, max); });
}

HRESULT ScopeView::ZoomBy(double factor, double around) {
    return act([&](View& view) { view.zoomBy(factor, around); });
}

HRESULT ScopeView::PanBy(double MHz) {
    return act([&](View& view) { view.panBy(MHz); });
}

HRESULT ScopeView::HitTest(double freq, double tolerance, VARIANT* value) {
    if (!value)
        return E_POINTER;
    VariantInit(value);
    return act([&](View& view) { arrayOfChannels(view.hitTest(freq, tolerance)).moveTo(value); });
}

HRESULT ScopeView::AddTXChannels(VARIANT channels, long* value) {
    return answer(value,
                  [&](View& view) { return view.add(ChannelKind::TX, channelsFromArray(L"AddTXChannels", channels)); });
}

HRESULT ScopeView::AddRXChannels(VARIANT channels, long* value) {
    return answer(value,
                  [&](View& view) { return view.add(ChannelKind::RX, channelsFromArray(L"AddRXChannels", channels)); });
}

HRESULT ScopeView::get_RenderTimeMs(double* value) {
    return answer(value, [](View& view) { return view.renderTimeMs(); });
}

HRESULT ScopeView::BeginUpdate() {
    return act([](View& view) { view.beginUpdate(); });
}

HRESULT ScopeView::EndUpdate() {
    return act([](View& view) { view.endUpdate(); });
}

HRESULT ScopeView::Back(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.back(); });
}

HRESULT ScopeView::Forward(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.forward(); });
}

HRESULT ScopeView::get_CanGoBack(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.canGoBack(); });
}

HRESULT ScopeView::get_CanGoForward(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.canGoForward(); });
}

HRESULT ScopeView::get_Marker(double* value) {
    return answer(value, [](View& view) { return view.marker(); });
}

HRESULT ScopeView::put_Marker(double value) {
    return act([&](View& view) { view.setMarker(value); });
}

HRESULT ScopeView::get_MarkerVisible(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.isMarkerVisible(); });
}

HRESULT ScopeView::put_MarkerVisible(VARIANT_BOOL value) {
    return act([&](View& view) { view.setMarkerVisible(com::boolFromIn(value)); });
}

HRESULT ScopeView::get_WheelZoom(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.wheelZoom(); });
}

HRESULT ScopeView::put_WheelZoom(VARIANT_BOOL value) {
    return act([&](View& view) { view.setWheelZoom(com::boolFromIn(value)); });
}

HRESULT ScopeView::get_SnapToChannels(VARIANT_BOOL* value) {
    return answer(value, [](View& view) { return view.snapToChannels(); });
}

HRESULT ScopeView::put_SnapToChannels(VARIANT_BOOL value) {
    return act([&](View& view) { view.setSnapToChannels(com::boolFromIn(value)); });
}

HRESULT ScopeView::get_PowerAxis(VARIANT_BOOL* value) {
    return readFlag(value, &control::Overlays::hasPowerAxis);
}

HRESULT ScopeView::put_PowerAxis(VARIANT_BOOL value) {
    return switchOverlay(&control::Overlays::setPowerAxis, value);
}

HRESULT ScopeView::get_Legend(VARIANT_BOOL* value) {
    return readFlag(value, &control::Overlays::hasLegend);
}

HRESULT ScopeView::put_Legend(VARIANT_BOOL value) {
    return switchOverlay(&control::Overlays::setLegend, value);
}

HRESULT ScopeView::get_ChannelLabels(VARIANT_BOOL* value) {
    return readFlag(value, &control::Overlays::hasChannelLabels);
}

HRESULT ScopeView::put_ChannelLabels(VARIANT_BOOL value) {
    return switchOverlay(&control::Overlays::setChannelLabels, value);
}

HRESULT ScopeView::readFlag(VARIANT_BOOL* value, bool (control::Overlays::*flag)() const noexcept) {
    return answer(value, [&](const control::View& view) { return (view.overlays().*flag)(); });
}

HRESULT ScopeView::switchOverlay(void (control::Overlays::*flag)(bool) noexcept, VARIANT_BOOL value) {
    return act([&](control::View& view) {
        control::Overlays overlays = view.overlays();
        (overlays.*flag)(value != VARIANT_FALSE);
        view.setOverlays(overlays);
    });
}

HRESULT ScopeView::SavePicture(BSTR file, long width, long height, long dpi) {
    return control_.member([&] { control::ViewPictures(*control_.scope_).save(com::fromIn(file), width, height, dpi); },
                           IID__BandscopeView);
}

HRESULT ScopeView::CopyPicture() {
    return control_.member([&] { control::ViewPictures(*control_.scope_).copy(); }, IID__BandscopeView);
}

HRESULT ScopeView::PrintPicture(double hdc, long left, long top, long width, long height) {
    return control_.member([&] { control::ViewPictures(*control_.scope_).print(hdc, left, top, width, height); },
                           IID__BandscopeView);
}

}  // namespace kv::automation
