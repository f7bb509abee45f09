// The interface _BandscopeView of the control.
#pragma once

#include <windows.h>

#include "com/Dispatch.h"
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

  private:
    BandscopeControl& control_;
};

}  // namespace kv::automation
