// The creatable class View: gives the members of _BandscopeView to hosts that cannot query an interface, such as
// scripts.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include "com/Dispatch.h"
#include "com/Module.h"
#include "kvBandscope.h"

namespace kv::automation {

/// Passes each call on to the control that it was given. The control may be in another apartment; then the calls go
/// through its proxy.
class ViewObject final : public com::DispatchImpl<_BandscopeView>, public IProvideClassInfo {
  public:
    ViewObject() noexcept = default;
    ViewObject(const ViewObject&) = delete;
    ViewObject& operator=(const ViewObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;

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
    ~ViewObject() = default;
    HRESULT setScope(IDispatch* value);
    /// Calls a member of the control's own view, which stays alive during the call. Error 91 without a control.
    template <class F>
    HRESULT forward(F&& call) noexcept;

    template <class T>
    HRESULT read(HRESULT (STDMETHODCALLTYPE _BandscopeView::*getter)(T*), T* value) noexcept;

    Microsoft::WRL::ComPtr<IDispatch> scope_;
    Microsoft::WRL::ComPtr<_BandscopeView> view_;  ///< of `scope_`
    LONG references_ = 1;
    [[no_unique_address]] com::ModuleRef module_;
};

/// Creates a View for the class factory.
HRESULT createView(REFIID iid, void** object);

}  // namespace kv::automation
