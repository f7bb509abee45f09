#include "automation/ScopeView.h"

#include "automation/BandscopeControl.h"
#include "automation/ChannelArray.h"
#include "control/View.h"
#include "util/RuntimeError.h"

namespace kv::automation {

using channels::ChannelKind;

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

HRESULT ScopeView::ShowRange(double min, double max) {
    return control_.member([&] { control::View(*control_.scope_).showRange(min, max); }, IID__BandscopeView);
}

HRESULT ScopeView::ZoomBy(double factor, double around) {
    return control_.member([&] { control::View(*control_.scope_).zoomBy(factor, around); }, IID__BandscopeView);
}

HRESULT ScopeView::PanBy(double MHz) {
    return control_.member([&] { control::View(*control_.scope_).panBy(MHz); }, IID__BandscopeView);
}

HRESULT ScopeView::HitTest(double freq, double tolerance, VARIANT* value) {
    if (!value)
        return E_POINTER;
    VariantInit(value);
    return control_.member(
        [&] { arrayOfChannels(control::View(*control_.scope_).hitTest(freq, tolerance)).moveTo(value); },
        IID__BandscopeView);
}

HRESULT ScopeView::AddTXChannels(VARIANT channels, long* value) {
    return control_.memberReturn(
        value,
        [&] {
            return control::View(*control_.scope_).add(ChannelKind::TX, channelsFromArray(L"AddTXChannels", channels));
        },
        IID__BandscopeView);
}

HRESULT ScopeView::AddRXChannels(VARIANT channels, long* value) {
    return control_.memberReturn(
        value,
        [&] {
            return control::View(*control_.scope_).add(ChannelKind::RX, channelsFromArray(L"AddRXChannels", channels));
        },
        IID__BandscopeView);
}

HRESULT ScopeView::get_RenderTimeMs(double* value) {
    return control_.memberReturn(
        value, [&] { return control::View(*control_.scope_).renderTimeMs(); }, IID__BandscopeView);
}

}  // namespace kv::automation
