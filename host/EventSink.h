// Receives the events of the control.
#pragma once

#include "host/Com.h"

#include <ocidl.h>

namespace kv::host {

/// The receiver of the control's events.
class ControlEvents {
  public:
    /// The user chose an entry of the drop-down list Grid Step.
    virtual void gridRangeChosen() = 0;
    /// The user collapsed or expanded the control panel; `twips` is the control's new height (1 twip is 1/1440 inch).
    virtual void heightChanged(int twips) = 0;
    /// The user changed the displayed range; its edges are in MHz.
    virtual void rangeChanged(double lowest, double highest) = 0;

  protected:
    ~ControlEvents() = default;
};

/// The object that the control calls. Events are identified by number, and their arguments are in reverse order.
class EventSink final : public IDispatch {
  public:
    explicit EventSink(ControlEvents& receiver) : receiver_(&receiver) {}
    virtual ~EventSink() = default;

    /// From now on no event is passed to the receiver.
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

/// A sink that is connected to a control while this object exists.
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
