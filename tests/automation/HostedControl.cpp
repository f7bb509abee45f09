#include "tests/automation/HostedControl.h"

#include <algorithm>

#include "tests/automation/MessageBoxes.h"

namespace kv::test {

namespace {

using AttachControl = HRESULT(WINAPI*)(IUnknown*, HWND, IUnknown**);

AttachControl attachControl() {
    static const auto function = [] {
        const HMODULE library = LoadLibraryW(L"atl100.dll");
        return reinterpret_cast<AttachControl>(
            reinterpret_cast<void*>(library ? GetProcAddress(library, "AtlAxAttachControl") : nullptr));
    }();
    return function;
}

struct Search {
    const std::function<bool(HWND)>& fits;
    HWND found = nullptr;
};

BOOL CALLBACK visit(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    if (!search.fits(window))
        return TRUE;
    search.found = window;
    return FALSE;
}

bool isClass(HWND window, const wchar_t* name) {
    return lstrcmpiW(windowClass(window).c_str(), name) == 0;
}

}  // namespace

int EventLog::count(DISPID id) const {
    return static_cast<int>(std::count_if(events.begin(), events.end(), [id](const Event& e) { return e.id == id; }));
}

HRESULT EventLog::QueryInterface(REFIID iid, void** object) {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != DIID___kvBandscope)
        return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    return S_OK;
}

HRESULT EventLog::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*, UINT*) {
    Event event{id, {}};
    for (UINT i = params->cArgs; i-- > 0;) {
        event.arguments.emplace_back();
        VariantCopy(&event.arguments.back(), &params->rgvarg[i]);
    }
    events.push_back(std::move(event));
    return S_OK;
}

HostedControl::HostedControl(const Scope& scope) {
    // Never shown: the system would wait seconds for it on a display without a window manager.
    window_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 10, 10, 900, 650, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    if (!attachControl()) {
        ADD_FAILURE() << "the system has no container of its own";
        return;
    }
    EXPECT_EQ(attachControl()(scope.get(), window_, container_.GetAddressOf()), S_OK);
    control_ = FindWindowExW(window_, nullptr, L"kvBandscope", nullptr);
    EXPECT_TRUE(control_);
    ComPtr<IConnectionPointContainer> points;
    EXPECT_EQ(scope->QueryInterface(IID_PPV_ARGS(points.GetAddressOf())), S_OK);
    EXPECT_EQ(points->FindConnectionPoint(DIID___kvBandscope, point_.GetAddressOf()), S_OK);
    EXPECT_EQ(point_->Advise(&log, &cookie_), S_OK);
    pumpMessages();
}

HostedControl::~HostedControl() {
    if (point_)
        point_->Unadvise(cookie_);
    point_.Reset();
    DestroyWindow(window_);
    container_.Reset();
    pumpMessages();
}

HWND HostedControl::child(const std::function<bool(HWND)>& fits) const {
    Search search{fits};
    EnumChildWindows(control_, &visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool HostedControl::isToBeSeen(HWND window) const {
    for (; window && window != control_; window = GetParent(window))
        if (!(GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE))
            return false;
    return window == control_;
}

HWND HostedControl::gridRangeBox() const {
    return child([](HWND window) { return isClass(window, L"COMBOBOX"); });
}

bool HostedControl::showsLabel(const std::wstring& text) const {
    pumpMessages();
    return child([&](HWND window) {
               return isClass(window, L"STATIC") && isToBeSeen(window) && windowText(window) == text;
           }) != nullptr;
}

bool HostedControl::hasLabelEnding(const std::wstring& ending) const {
    pumpMessages();
    return child([&](HWND window) { return isClass(window, L"STATIC") && windowText(window).ends_with(ending); }) !=
           nullptr;
}

void HostedControl::clickBackground() const {
    // Left of the frames there is a margin of four pixels.
    SendMessageW(control_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 50));
    SendMessageW(control_, WM_LBUTTONUP, 0, MAKELPARAM(1, 50));
    pumpMessages();
}

void HostedControl::chooseGridRange(int item) const {
    const HWND box = gridRangeBox();
    SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(item), 0);
    SendMessageW(GetParent(box), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(box), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(box));
    pumpMessages();
}

void HostedControl::resize(int width, int height) const {
    SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    pumpMessages();
}

void pumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace kv::test
