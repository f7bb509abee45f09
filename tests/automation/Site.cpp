#include "tests/automation/Site.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace kv::test {

namespace {

template <class Interface, class Object>
HRESULT offer(Object* object, void** out) {
    *out = static_cast<Interface*>(object);
    object->AddRef();
    return S_OK;
}

}  // namespace

HRESULT CallLog::note(const std::string& call, HRESULT usual) {
    calls.push_back(call);
    if (const auto found = inside.find(call); found != inside.end()) {
        const std::function<void()> action = found->second;
        action();
    }
    const auto answer = answers.find(call);
    return answer == answers.end() ? usual : answer->second;
}

int CallLog::count(const std::string& call) const {
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

HRESULT ContainerFrame::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleWindow || iid == IID_IOleInPlaceUIWindow || iid == IID_IOleInPlaceFrame)
        return offer<IOleInPlaceFrame>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT ContainerFrame::GetWindow(HWND* window) {
    *window = window_;
    return S_OK;
}

HRESULT ContainerFrame::SetBorderSpace(LPCBORDERWIDTHS widths) {
    return log_.note(name_ + (widths ? ".SetBorderSpace(some)" : ".SetBorderSpace"));
}

HRESULT ContainerFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
    active = object;
    return log_.note(name_ + (object ? ".SetActiveObject" : ".SetActiveObject(null)"));
}

HRESULT ViewSink::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IAdviseSink)
        return offer<IAdviseSink>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

void ViewSink::OnDataChange(FORMATETC* changed, STGMEDIUM* data) {
    format = *changed;
    medium = data->tymed;
    log_.note("OnDataChange");
}

void ViewSink::OnViewChange(DWORD aspect, LONG) {
    EXPECT_NE(aspect, 0U);
    log_.note("OnViewChange");
}

ContainerSite::ContainerSite(CallLog& log, HWND window, const Offers& offered)
    : offers(offered), place{kLeft, kTop, kLeft + 720, kTop + 480}, log_(log), window_(window) {
    frame = new ContainerFrame(log, window, "frame");
    document = new ContainerFrame(log, window, "document");
}

HRESULT ContainerSite::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleClientSite)
        return offer<IOleClientSite>(this, object);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite)
        return offer<IOleInPlaceSite>(this, object);
    if (iid == IID_IOleControlSite && offers.controlSite)
        return offer<IOleControlSite>(this, object);
    if (iid == IID_IDispatch && offers.ambients)
        return offer<IDispatch>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT ContainerSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT ContainerSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT ContainerSite::GetWindow(HWND* window) {
    *window = hasWindow ? window_ : nullptr;
    return log_.note("GetWindow");
}

HRESULT ContainerSite::GetWindowContext(IOleInPlaceFrame** frameOut, IOleInPlaceUIWindow** documentOut, LPRECT placeOut,
                                        LPRECT clipOut, LPOLEINPLACEFRAMEINFO info) {
    *frameOut = nullptr;
    *documentOut = nullptr;
    const HRESULT answer = log_.note("GetWindowContext");
    if (FAILED(answer))
        return answer;
    *placeOut = place;
    *clipOut = clip.value_or(place);
    info->hwndFrame = window_;
    // Both can be missing.
    if (frame)
        frame.CopyTo(frameOut);
    return offers.document && document ? document.CopyTo(documentOut) : answer;
}

HRESULT ContainerSite::OnPosRectChange(LPCRECT wanted) {
    const RECT copy = *wanted;
    const HRESULT answer = log_.note("OnPosRectChange");
    if (const auto heard = onPosRectChange)
        heard(copy);
    return answer;
}

HRESULT ContainerSite::GetExtendedControl(IDispatch** object) {
    *object = nullptr;
    return E_NOTIMPL;
}

HRESULT ContainerSite::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
    EXPECT_EQ(flags, DISPATCH_PROPERTYGET);
    const auto found = ambient.find(id);
    const HRESULT answer = log_.note("Ambient(" + std::to_string(id) + ")");
    if (FAILED(answer) || found == ambient.end())
        return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(result, &found->second);
}

std::vector<DISPID> EventSink::ids() const {
    std::vector<DISPID> result;
    for (const HeardEvent& event : heard)
        result.push_back(event.id);
    return result;
}

HRESULT EventSink::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___kvBandscope)
        return offer<IDispatch>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT EventSink::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) {
    EXPECT_EQ(flags, DISPATCH_METHOD);
    EXPECT_EQ(params->cNamedArgs, 0U);
    HeardEvent event{id, {}, {}};
    for (UINT i = params->cArgs; i-- > 0;) {
        event.types.push_back(params->rgvarg[i].vt);
        Var number;
        VariantChangeType(&number, &params->rgvarg[i], 0, VT_R8);
        event.arguments.push_back(number.dblVal);
    }
    heard.push_back(event);
    if (const auto action = onEvent)
        action(id);
    return answer;
}

HRESULT PropertySink::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IPropertyNotifySink)
        return offer<IPropertyNotifySink>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT PropertySink::OnChanged(DISPID id) {
    changed.push_back(id);
    return S_OK;
}

}  // namespace kv::test
