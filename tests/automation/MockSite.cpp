#include "tests/automation/MockSite.h"

#include <algorithm>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {

namespace {

constexpr wchar_t kHostClass[] = L"kvBandscopeTestHost";

struct Search {
    const wchar_t* className;
    const wchar_t* text;  ///< null: any
    std::vector<HWND> found;
};

BOOL CALLBACK collect(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (lstrcmpiW(windowClass(window).c_str(), search.className) == 0 &&
        (!search.text || windowText(window) == search.text))
        search.found.push_back(window);
    return TRUE;
}

template <class Interface, class Object>
HRESULT handOut(Object* object, void** out) {
    *out = static_cast<Interface*>(object);
    object->AddRef();
    return S_OK;
}

}  // namespace

LRESULT CALLBACK HostWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* host = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_APP && host) {
        if (const auto heard = host->onMessage)
            heard();
        return 0;
    }
    if (message == WM_DESTROY && host)
        host->window_ = nullptr;
    return DefWindowProcW(window, message, wParam, lParam);
}

HostWindow::HostWindow() {
    WNDCLASSW info{};
    info.lpfnWndProc = &HostWindow::procedure;
    info.hInstance = GetModuleHandleW(nullptr);
    info.lpszClassName = kHostClass;
    info.hbrBackground = static_cast<HBRUSH>(GetStockObject(DKGRAY_BRUSH));
    RegisterClassW(&info);
    window_ =
        CreateWindowExW(0, kHostClass, L"", WS_POPUP, 40, 40, 900, 640, nullptr, nullptr, info.hInstance, nullptr);
    EXPECT_TRUE(window_);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    // Shown without activation: a window that was active is taken down slowly where no window manager runs.
    ShowWindow(window_, SW_SHOWNOACTIVATE);
}

void HostWindow::destroy() {
    if (window_)
        DestroyWindow(window_);
}

HRESULT MockFrame::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleWindow || iid == IID_IOleInPlaceUIWindow || iid == IID_IOleInPlaceFrame)
        return handOut<IOleInPlaceFrame>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT MockFrame::GetWindow(HWND* window) {
    *window = window_;
    return S_OK;
}

HRESULT MockFrame::SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR /*name*/) {
    calls.push_back(object ? "SetActiveObject" : "SetActiveObject(null)");
    return S_OK;
}

MockSite::MockSite(HWND window)
    : place{Container::kLeft, Container::kTop, Container::kLeft + 720, Container::kTop + 480}, window_(window) {
    frame = new MockFrame(window);
}

HRESULT MockSite::note(const char* call) {
    calls.push_back(call);
    return S_OK;
}

int MockSite::count(const std::string& call) const {
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

HRESULT MockSite::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleClientSite)
        return handOut<IOleClientSite>(this, object);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite)
        return handOut<IOleInPlaceSite>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT MockSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

HRESULT MockSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

HRESULT MockSite::GetWindow(HWND* window) {
    *window = window_;
    return note("GetWindow");
}

HRESULT MockSite::CanInPlaceActivate() {
    note("CanInPlaceActivate");
    return canActivate ? S_OK : S_FALSE;
}

HRESULT MockSite::GetWindowContext(IOleInPlaceFrame** frameOut, IOleInPlaceUIWindow** document, LPRECT placeOut,
                                   LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
    note("GetWindowContext");
    *frameOut = nullptr;
    *document = nullptr;
    if (!hasContext)
        return E_FAIL;
    *placeOut = place;
    *clip = place;
    info->fMDIApp = FALSE;
    info->hwndFrame = window_;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return frame.CopyTo(frameOut);
}

HRESULT MockSite::OnInPlaceDeactivate() {
    note("OnInPlaceDeactivate");
    if (const auto heard = onDeactivate)
        heard();
    return S_OK;
}

HRESULT MockSite::OnPosRectChange(LPCRECT wanted) {
    note("OnPosRectChange");
    if (const auto heard = onPosRectChange)
        heard(*wanted);
    return S_OK;
}

std::vector<DISPID> EventSink::ids() const {
    std::vector<DISPID> result;
    for (const HeardEvent& event : heard)
        result.push_back(event.id);
    return result;
}

HRESULT EventSink::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___kvBandscope)
        return handOut<IDispatch>(this, object);
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT EventSink::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

HRESULT EventSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    *info = nullptr;
    return E_NOTIMPL;
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

Container::Container() : control(createInstance<_kvBandscope>(CLSID_kvBandscope)) {
    EXPECT_TRUE(control);
    site = new MockSite(host.get());
}

Container::~Container() {
    if (!control)
        return;
    const auto object = as<IOleObject>();
    object->Close(OLECLOSE_NOSAVE);
    object->SetClientSite(nullptr);
}

void Container::activate() {
    const auto object = as<IOleObject>();
    const auto persist = as<IPersistStreamInit>();
    ASSERT_EQ(object->SetClientSite(site.Get()), S_OK);
    ASSERT_EQ(persist->InitNew(), S_OK);
    ASSERT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, host.get(), &site->place), S_OK);
    pump();
}

void Container::resize(int width, int height) {
    const RECT place{kLeft, kTop, kLeft + width, kTop + height};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
    pump();
}

DWORD Container::connect(EventSink* sink) {
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    EXPECT_EQ(as<IConnectionPointContainer>()->FindConnectionPoint(DIID___kvBandscope, point.GetAddressOf()), S_OK);
    EXPECT_EQ(point->Advise(sink, &cookie), S_OK);
    return cookie;
}

void Container::addTx(const ChannelSpec& spec) {
    long index = -1;
    EXPECT_EQ(control->AddTXChnl(channel(spec).Get(), &index), S_OK);
}

void Container::addRx(const ChannelSpec& spec) {
    long index = -1;
    EXPECT_EQ(control->AddRXChnl(channel(spec).Get(), &index), S_OK);
}

bool Container::draw() {
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    pump();
    return drawn != VARIANT_FALSE;
}

HWND Container::root() const {
    HWND window = nullptr;
    EXPECT_EQ(as<IOleInPlaceObject>()->GetWindow(&window), S_OK);
    return window;
}

SIZE Container::size() const {
    const RECT place = placeOf(root());
    return {place.right - place.left, place.bottom - place.top};
}

HWND Container::child(const wchar_t* className, const wchar_t* text) const {
    Search search{className, text, {}};
    EnumChildWindows(root(), &collect, reinterpret_cast<LPARAM>(&search));
    EXPECT_EQ(search.found.size(), 1U) << className << " " << text;
    return search.found.empty() ? nullptr : search.found.front();
}

HWND Container::panel() const {
    for (const HWND frame : children(L"kvFrame")) {
        const std::wstring caption = windowText(frame);
        if (caption == L"-" || caption == L"+")
            return frame;
    }
    ADD_FAILURE() << "no panel";
    return nullptr;
}

std::vector<HWND> Container::children(const wchar_t* className) const {
    Search search{className, nullptr, {}};
    EnumChildWindows(root(), &collect, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

Sited::Sited(const Scope& scope) {
    site = new MockSite(host.get());
    EXPECT_EQ(scope.get()->QueryInterface(IID_PPV_ARGS(object_.GetAddressOf())), S_OK);
    EXPECT_EQ(object_->SetClientSite(site.Get()), S_OK);
}

Sited::~Sited() {
    object_->SetClientSite(nullptr);
}

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

RECT placeOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

bool isShown(HWND window) {
    return (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

void postClick(HWND window, int x, int y) {
    PostMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    pump();
}

void postRightClick(HWND window, int x, int y) {
    PostMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(x, y));
    PostMessageW(window, WM_RBUTTONUP, 0, MAKELPARAM(x, y));
    pump();
}

Picture windowPicture(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    Picture picture{static_cast<int>(area.right), static_cast<int>(area.bottom), {}};
    const HDC source = GetDC(window);
    const HDC memory = CreateCompatibleDC(source);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = -picture.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    EXPECT_TRUE(BitBlt(memory, 0, 0, picture.width, picture.height, source, 0, 0, SRCCOPY));
    GdiFlush();
    const auto* stored = static_cast<const std::uint32_t*>(bits);
    for (int i = 0; i < picture.width * picture.height; ++i)
        picture.pixels.push_back(RGB(stored[i] >> 16U & 0xFFU, stored[i] >> 8U & 0xFFU, stored[i] & 0xFFU));
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, source);
    return picture;
}

}  // namespace kv::test
