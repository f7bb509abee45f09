#include "tests/automation/RecordedContainer.h"

#include <algorithm>

namespace kv::test {

namespace {

template <class Interface, class Object>
HRESULT offer(Object* object, void** out) {
    *out = static_cast<Interface*>(object);
    object->AddRef();
    return S_OK;
}

BOOL CALLBACK countWindow(HWND, LPARAM parameter) {
    ++*reinterpret_cast<int*>(parameter);
    return TRUE;
}

BOOL CALLBACK noteWindow(HWND window, LPARAM parameter) {
    reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
    return TRUE;
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

HRESULT RecordedFrame::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleWindow || iid == IID_IOleInPlaceUIWindow || iid == IID_IOleInPlaceFrame)
        return offer<IOleInPlaceFrame>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT RecordedFrame::GetWindow(HWND* window) {
    *window = window_;
    return S_OK;
}

HRESULT RecordedFrame::SetBorderSpace(LPCBORDERWIDTHS widths) {
    return log_.note(name_ + (widths ? ".SetBorderSpace(some)" : ".SetBorderSpace"));
}

HRESULT RecordedFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) {
    active = object;
    return log_.note(name_ + (object ? ".SetActiveObject" : ".SetActiveObject(null)"));
}

HRESULT RecordedSink::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IAdviseSink)
        return offer<IAdviseSink>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

void RecordedSink::OnDataChange(FORMATETC* changed, STGMEDIUM* data) {
    format = *changed;
    medium = data->tymed;
    log_.note("OnDataChange");
}

void RecordedSink::OnViewChange(DWORD aspect, LONG) {
    EXPECT_NE(aspect, 0U);
    log_.note("OnViewChange");
}

RecordedSite::RecordedSite(CallLog& log, HWND window)
    : place{Container::kLeft, Container::kTop, Container::kLeft + 720, Container::kTop + 480},
      log_(log),
      window_(window) {
    frame = new RecordedFrame(log, window, "frame");
    document = new RecordedFrame(log, window, "document");
}

HRESULT RecordedSite::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleClientSite)
        return offer<IOleClientSite>(this, object);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite)
        return offer<IOleInPlaceSite>(this, object);
    if (iid == IID_IOleControlSite)
        return offer<IOleControlSite>(this, object);
    if (iid == IID_IDispatch && hasAmbients)
        return offer<IDispatch>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT RecordedSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT RecordedSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT RecordedSite::GetWindow(HWND* window) {
    *window = hasWindow ? window_ : nullptr;
    return log_.note("GetWindow");
}

HRESULT RecordedSite::GetWindowContext(IOleInPlaceFrame** frameOut, IOleInPlaceUIWindow** documentOut, LPRECT placeOut,
                                       LPRECT clipOut, LPOLEINPLACEFRAMEINFO info) {
    *frameOut = nullptr;
    *documentOut = nullptr;
    const HRESULT answer = log_.note("GetWindowContext");
    if (FAILED(answer))
        return answer;
    *placeOut = place;
    *clipOut = clip.value_or(place);
    info->hwndFrame = window_;
    // Either may be missing.
    if (frame)
        frame.CopyTo(frameOut);
    return hasDocument && document ? document.CopyTo(documentOut) : answer;
}

HRESULT RecordedSite::OnPosRectChange(LPCRECT wanted) {
    const RECT copy = *wanted;
    const HRESULT answer = log_.note("OnPosRectChange");
    if (const auto heard = onPosRectChange)
        heard(copy);
    return answer;
}

HRESULT RecordedSite::GetExtendedControl(IDispatch** object) {
    *object = nullptr;
    return E_NOTIMPL;
}

HRESULT RecordedSite::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT RecordedSite::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    *info = nullptr;
    return E_NOTIMPL;
}

HRESULT RecordedSite::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
    EXPECT_EQ(flags, DISPATCH_PROPERTYGET);
    const auto found = ambient.find(id);
    const HRESULT answer = log_.note("Ambient(" + std::to_string(id) + ")");
    if (FAILED(answer) || found == ambient.end())
        return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(result, &found->second);
}

RecordedContainer::RecordedContainer() : control(createInstance<_kvBandscope>(CLSID_kvBandscope)) {
    EXPECT_TRUE(control);
    site = new RecordedSite(log, host.get());
    sink = new RecordedSink(log);
}

RecordedContainer::~RecordedContainer() {
    log.inside.clear();
    log.answers.clear();
    if (!control)
        return;
    as<IOleObject>()->Close(OLECLOSE_NOSAVE);
    as<IOleObject>()->SetClientSite(nullptr);
}

HRESULT RecordedContainer::verb(LONG number, MSG* message) const {
    return as<IOleObject>()->DoVerb(number, message, site.Get(), 0, host.get(), &site->place);
}

void RecordedContainer::activate() {
    ASSERT_EQ(setSite(), S_OK);
    ASSERT_EQ(as<IPersistStreamInit>()->InitNew(), S_OK);
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    pump();
    log.calls.clear();
}

void RecordedContainer::advise() {
    DWORD connection = 0;
    FORMATETC any{0, nullptr, DVASPECT_CONTENT, -1, static_cast<DWORD>(-1)};
    EXPECT_EQ(as<IOleObject>()->Advise(sink.Get(), &connection), S_OK);
    EXPECT_EQ(as<IViewObject2>()->SetAdvise(DVASPECT_CONTENT, 0, sink.Get()), S_OK);
    EXPECT_EQ(as<IDataObject>()->DAdvise(&any, ADVF_NODATA, sink.Get(), &connection), S_OK);
}

void RecordedContainer::draw() const {
    long index = -1;
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->AddTXChnl(channel({.freq = 400.0, .power = 30.0, .key = L"TX1"}).Get(), &index), S_OK);
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_EQ(drawn, VARIANT_TRUE);
}

HWND RecordedContainer::root() const {
    HWND window = nullptr;
    as<IOleInPlaceObject>()->GetWindow(&window);
    return window;
}

std::vector<HWND> RecordedContainer::parts() const {
    std::vector<HWND> found;
    EnumChildWindows(root(), &noteWindow, reinterpret_cast<LPARAM>(&found));
    return found;
}

void RecordedContainer::expectNothingLeft() const {
    EXPECT_EQ(canUnloadNow(), S_OK);
    EXPECT_EQ(site->references(), 1U);
    EXPECT_EQ(site->frame->references(), 1U);
    EXPECT_EQ(site->document->references(), 1U);
    EXPECT_EQ(sink->references(), 1U);
    int left = 0;
    if (host.get())
        EnumChildWindows(host.get(), &countWindow, reinterpret_cast<LPARAM>(&left));
    EXPECT_EQ(left, 0);
}

}  // namespace kv::test
