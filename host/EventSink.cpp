#include "host/EventSink.h"

#include "kvBandscope.h"

namespace kv::host {

namespace {

// The ids of the events in kvBandscope.idl.
constexpr DISPID kChgGridRange = 1;
constexpr DISPID kChgHeight = 2;
constexpr DISPID kChgFreqRange = 3;

/// Argument i, counted from the first, as a number. The arguments are in reverse order.
double numberArgument(const DISPPARAMS& arguments, UINT i) {
    VARIANT value;
    VariantInit(&value);
    check(VariantChangeType(&value, &arguments.rgvarg[arguments.cArgs - 1 - i], 0, VT_R8),
          L"Reading an event's argument");
    return value.dblVal;
}

}  // namespace

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != DIID___kvBandscope) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) EventSink::AddRef() {
    return static_cast<ULONG>(InterlockedIncrement(&references_));
}

STDMETHODIMP_(ULONG) EventSink::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) {
        delete this;
    }
    return static_cast<ULONG>(left);
}

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

STDMETHODIMP EventSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr) {
        *info = nullptr;
    }
    return E_NOTIMPL;
}

STDMETHODIMP EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) try {
    const UINT expected = id == kChgFreqRange ? 2 : id == kChgHeight ? 1 : 0;
    if (arguments == nullptr || arguments->cArgs != expected) {
        return DISP_E_BADPARAMCOUNT;
    }
    if (receiver_ == nullptr) {
        return S_OK;
    }
    switch (id) {
        case kChgGridRange:
            receiver_->gridRangeChosen();
            return S_OK;
        case kChgHeight:
            receiver_->heightChanged(static_cast<int>(numberArgument(*arguments, 0)));
            return S_OK;
        case kChgFreqRange:
            receiver_->rangeChanged(numberArgument(*arguments, 0), numberArgument(*arguments, 1));
            return S_OK;
        default:
            return DISP_E_MEMBERNOTFOUND;
    }
} catch (...) {
    return E_FAIL;  // no exception may leave this call from the control
}

EventConnection::EventConnection(IUnknown* control, ControlEvents& receiver) : sink_(new EventSink(receiver)) {
    ComPtr<IConnectionPointContainer> container;
    check(control->QueryInterface(IID_PPV_ARGS(container.GetAddressOf())),
          L"Getting the connection points of the control");
    check(container->FindConnectionPoint(DIID___kvBandscope, point_.GetAddressOf()),
          L"Getting the connection point of the control's events");
    check(point_->Advise(sink_.Get(), &cookie_), L"Connecting to the control's events");
}

EventConnection::~EventConnection() {
    sink_->detach();
    point_->Unadvise(cookie_);
}

}  // namespace kv::host
