#include "tests/automation/Container.h"

#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {

namespace {

constexpr wchar_t kHostClass[] = L"kvBandscopeTestHost";

struct ChildSearch {
    const wchar_t* className;  ///< null: any
    const wchar_t* text;       ///< null: any
    std::vector<HWND> found;
};

BOOL CALLBACK collect(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<ChildSearch*>(parameter);
    if ((!search.className || lstrcmpiW(windowClass(window).c_str(), search.className) == 0) &&
        (!search.text || windowText(window) == search.text))
        search.found.push_back(window);
    return TRUE;
}

std::vector<HWND> windowsIn(HWND parent, const wchar_t* className, const wchar_t* text) {
    ChildSearch search{className, text, {}};
    // Without a parent the system would list the windows of all programs.
    if (parent)
        EnumChildWindows(parent, &collect, reinterpret_cast<LPARAM>(&search));
    return search.found;
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
    // Shown without activation, because without a window manager an active window is destroyed slowly.
    ShowWindow(window_, SW_SHOWNOACTIVATE);
}

void HostWindow::destroy() {
    if (window_)
        DestroyWindow(window_);
}

Container::Container(const Offers& offers) : control(createInstance<_kvBandscope>(CLSID_kvBandscope)) {
    EXPECT_TRUE(control);
    site = new ContainerSite(log, host.get(), offers);
    sink = new ViewSink(log);
}

Container::~Container() {
    log.inside.clear();
    log.answers.clear();
    if (!control)
        return;
    as<IOleObject>()->Close(OLECLOSE_NOSAVE);
    as<IOleObject>()->SetClientSite(nullptr);
}

HRESULT Container::verb(LONG number, MSG* message) const {
    return as<IOleObject>()->DoVerb(number, message, site.Get(), 0, host.get(), &site->place);
}

void Container::activate() {
    ASSERT_EQ(setSite(), S_OK);
    ASSERT_EQ(as<IPersistStreamInit>()->InitNew(), S_OK);
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    pump();
}

void Container::resize(int width, int height) const {
    const RECT place{kLeft, kTop, kLeft + width, kTop + height};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
    pump();
}

DWORD Container::connect(IDispatch* events) const {
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    EXPECT_EQ(as<IConnectionPointContainer>()->FindConnectionPoint(DIID___kvBandscope, point.GetAddressOf()), S_OK);
    EXPECT_EQ(point->Advise(events, &cookie), S_OK);
    return cookie;
}

void Container::advise() const {
    DWORD connection = 0;
    FORMATETC any{0, nullptr, DVASPECT_CONTENT, -1, static_cast<DWORD>(-1)};
    EXPECT_EQ(as<IOleObject>()->Advise(sink.Get(), &connection), S_OK);
    EXPECT_EQ(as<IViewObject2>()->SetAdvise(DVASPECT_CONTENT, 0, sink.Get()), S_OK);
    EXPECT_EQ(as<IDataObject>()->DAdvise(&any, ADVF_NODATA, sink.Get(), &connection), S_OK);
}

void Container::addTx(const ChannelSpec& spec) const {
    long index = -1;
    EXPECT_EQ(control->AddTXChnl(channel(spec).Get(), &index), S_OK);
}

void Container::addRx(const ChannelSpec& spec) const {
    long index = -1;
    EXPECT_EQ(control->AddRXChnl(channel(spec).Get(), &index), S_OK);
}

bool Container::draw() const {
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    pump();
    return drawn != VARIANT_FALSE;
}

void Container::chooseGridRange(int item) const {
    const HWND box = child(L"ComboBox", nullptr);
    SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(GetParent(box), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(box), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(box));
}

HWND Container::root() const {
    HWND window = nullptr;
    as<IOleInPlaceObject>()->GetWindow(&window);
    return window;
}

SIZE Container::size() const {
    const RECT place = placeOf(root());
    return {place.right - place.left, place.bottom - place.top};
}

HWND Container::child(const wchar_t* className, const wchar_t* text) const {
    const std::vector<HWND> found = windowsIn(root(), className, text);
    EXPECT_EQ(found.size(), 1U) << className << " " << (text ? text : L"(any)");
    return found.empty() ? nullptr : found.front();
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
    return windowsIn(root(), className, nullptr);
}

HWND Container::part(const wchar_t* className, const wchar_t* text) const {
    for (const HWND window : windowsIn(root(), className, text))
        if (isShown(window))
            return window;
    ADD_FAILURE() << "no such part: " << testing::PrintToString(std::wstring(className));
    return nullptr;
}

std::vector<HWND> Container::tabStops() const {
    std::vector<HWND> stops = children();
    std::erase_if(stops, [](HWND window) {
        return !(GetWindowLongPtrW(window, GWL_STYLE) & WS_TABSTOP) || !IsWindowVisible(window);
    });
    EXPECT_GT(stops.size(), 4U);
    return stops;
}

std::vector<HWND> Container::windows() const {
    return windowsIn(host.get(), nullptr, nullptr);
}

void Container::expectNothingLeft() const {
    EXPECT_EQ(canUnloadNow(), S_OK);
    EXPECT_EQ(site->references(), 1U);
    EXPECT_EQ(site->frame->references(), 1U);
    EXPECT_EQ(site->document->references(), 1U);
    EXPECT_EQ(sink->references(), 1U);
    EXPECT_TRUE(windows().empty());
}

void FullContainer::activate() {
    Container::activate();
    log.calls.clear();
}

void FullContainer::drawChannel() const {
    VARIANT_BOOL drawn = VARIANT_FALSE;
    addTx({.freq = 400.0, .power = 30.0, .key = L"TX1"});
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_EQ(drawn, VARIANT_TRUE);
}

Sited::Sited(const Scope& scope) {
    site = new ContainerSite(log, host.get(), {});
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
