// The interface _BandscopeView of the control.
#pragma once

#include <windows.h>

#include "com/Dispatch.h"
#include "control/Overlays.h"
#include "kvBandscope.h"

namespace kv::automation {

class BandscopeControl;

/// A part of the control with an IDispatch of its own, because members of both interfaces have the same numbers. Its
/// identity and its life are the control's.
class ScopeView final : public com::DispatchImpl<_BandscopeView> {
  public:
    explicit ScopeView(BandscopeControl& control) noexcept : control_(control) {}
    ScopeView(const ScopeView&) = delete;
    ScopeView& operator=(const ScopeView&) = delete;
    ~ScopeView() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE get_Scope(IDispatch** value) override;
    HRESULT STDMETHODCALLTYPE put_Scope(IDispatch* value) override;
    HRESULT STDMETHODCALLTYPE putref_Scope(IDispatch* value) override;
    HRESULT STDMETHODCALLTYPE ShowRange(double min, double max) override;
    HRESULT STDMETHODCALLTYPE ZoomBy(double factor, double around) override;
    HRESULT STDMETHODCALLTYPE PanBy(double MHz) override;
    HRESULT STDMETHODCALLTYPE HitTest(double freq, double tolerance, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE AddTXChannels(VARIANT channels, long* value) override;
    HRESULT STDMETHODCALLTYPE AddRXChannels(VARIANT channels, long* value) override;
    HRESULT STDMETHODCALLTYPE get_RenderTimeMs(double* value) override;
    HRESULT STDMETHODCALLTYPE BeginUpdate() override;
    HRESULT STDMETHODCALLTYPE EndUpdate() override;
    HRESULT STDMETHODCALLTYPE Back(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE Forward(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_CanGoBack(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_CanGoForward(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Marker(double* value) override;
    HRESULT STDMETHODCALLTYPE put_Marker(double value) override;
    HRESULT STDMETHODCALLTYPE get_MarkerVisible(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_MarkerVisible(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_WheelZoom(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_WheelZoom(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_SnapToChannels(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_SnapToChannels(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_PowerAxis(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_PowerAxis(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_Legend(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_Legend(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE get_ChannelLabels(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE put_ChannelLabels(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE SavePicture(BSTR file, long width, long height, long dpi) override;
    HRESULT STDMETHODCALLTYPE CopyPicture() override;
    HRESULT STDMETHODCALLTYPE PrintPicture(double hdc, long left, long top, long width, long height) override;

  private:
    /// Calls a member of the view; the result goes to `value`.
    template <class F>
    HRESULT act(F&& call);
    template <class Out, class F>
    HRESULT answer(Out* value, F&& call);
    HRESULT readFlag(VARIANT_BOOL* value, bool (control::Overlays::*flag)() const noexcept);
    HRESULT switchOverlay(void (control::Overlays::*flag)(bool) noexcept, VARIANT_BOOL value);

    BandscopeControl& control_;
};

}  // namespace kv::automation
