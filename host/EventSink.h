// Receives the events of the control.
#pragma once

#include "host/Com.h"

#include <ocidl.h>

namespace kv::host {

/// What the control tells its host.
class ControlEvents {
  public:
    /// The user chose a range in the grid-range box.
    virtual void gridRangeChosen() = 0;
    /// The panel was collapsed or expanded; the control's new height in twips (1/1440 inch).
    virtual void heightChanged(int twips) = 0;
    /// The displayed range changed; its edges in MHz.
    virtual void rangeChanged(double lowest, double highest) = 0;

  protected:
    ~ControlEvents() = default;
};

/// The object that is handed to the control. Events come by number and arguments from last to first.
class EventSink final : public IDispatch {
  public:
    explicit EventSink(ControlEvents& receiver) : receiver_(&receiver) {}
    virtual ~EventSink() = default;

    /// No event reaches the receiver from now on.
    void detach() noexcept { receiver_ = nullptr; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) override;

  private:
    LONG references_ = 0;
    ControlEvents* receiver_;
};

/// A sink connected to a control for as long as this lives.
class EventConnection {
  public:
    EventConnection(IUnknown* control, ControlEvents& receiver);
    EventConnection(const EventConnection&) = delete;
    EventConnection& operator=(const EventConnection&) = delete;
    ~EventConnection();

  private:
    ComPtr<IConnectionPoint> point_;
    ComPtr<EventSink> sink_;
    DWORD cookie_ = 0;
};

}  // namespace kv::host
