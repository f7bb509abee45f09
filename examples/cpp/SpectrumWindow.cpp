// A window that hosts the control: client site, events, and no registration. The program's manifest names kvBandscope
// as a dependency, so the program needs only kvBandscope.ocx and kvBandscope.manifest in its own folder.
//
//   SpectrumWindow [--save PICTURE]
//
// With --save the program draws, saves the picture, and ends; the exit code is 0 when the picture was saved.
#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <initguid.h>  // the identifiers that kvBandscope.h declares are defined here

#include "kvBandscope.h"

#include <wrl/client.h>

#include <cwchar>

using Microsoft::WRL::ComPtr;

namespace {

constexpr DISPID kChgGridRange = 1;
constexpr DISPID kChgHeight = 2;
constexpr DISPID kChgFreqRange = 3;
constexpr UINT kFollowHeight = WM_APP + 1;  // wParam: the control's new height in pixels

int pixelsOfTwips(int twips) {
    const HDC screen = GetDC(nullptr);
    const int pixels = MulDiv(twips, GetDeviceCaps(screen, LOGPIXELSY), 1440);
    ReleaseDC(nullptr, screen);
    return pixels;
}

// [site]
/// The container's side of the control: client site, in-place site, frame, and the receiver of the control's events.
/// The object is a local variable that outlives the control, so its references need not be counted.
class Site final : public IOleClientSite, public IOleInPlaceSite, public IOleInPlaceFrame, public IDispatch {
  public:
    explicit Site(HWND window) : window_(window) {}
    virtual ~Site() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IOleClientSite)
            *object = static_cast<IOleClientSite*>(this);
        else if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite)
            *object = static_cast<IOleInPlaceSite*>(this);
        else if (iid == IID_IDispatch || iid == DIID___kvBandscope)
            *object = static_cast<IDispatch*>(this);
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }

    // Called while the control is activated in the window.
    STDMETHODIMP GetWindow(HWND* window) override {
        *window = window_;
        return S_OK;
    }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* place, RECT* clip,
                                  OLEINPLACEFRAMEINFO* info) override {
        *frame = this;
        *document = nullptr;
        GetClientRect(window_, place);
        *clip = *place;
        info->fMDIApp = FALSE;
        info->hwndFrame = window_;
        info->haccel = nullptr;
        info->cAccelEntries = 0;
        return S_OK;
    }
    STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* object, LPCOLESTR) override {
        active_ = object;
        return S_OK;
    }
    STDMETHODIMP SetBorderSpace(const BORDERWIDTHS*) override { return S_OK; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }

    // Events are identified by number. Their arguments are in reverse order. Questions about ambient properties have
    // numbers as well; this window answers none of them.
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override {
        if (event == kChgFreqRange && arguments->cArgs == 2) {
            wchar_t title[100] = L"";
            swprintf(title, 100, L"%.5f to %.5f MHz", arguments->rgvarg[1].dblVal, arguments->rgvarg[0].dblVal);
            SetWindowTextW(window_, title);
            return S_OK;
        }
        if (event == kChgHeight && arguments->cArgs == 1) {
            // The panel was collapsed or expanded. The control has not finished yet, so the window follows later.
            const int twips = arguments->rgvarg[0].iVal;
            PostMessageW(window_, kFollowHeight, static_cast<WPARAM>(pixelsOfTwips(twips)), 0);
            return S_OK;
        }
        return event == kChgGridRange ? S_OK : DISP_E_MEMBERNOTFOUND;
    }

    /// Passes a keyboard message to the control first; true when the control has handled it.
    bool translate(MSG& message) {
        const ComPtr<IOleInPlaceActiveObject> active = active_;
        return active && message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST &&
               active->TranslateAccelerator(&message) == S_OK;
    }
    void adopt(IOleInPlaceObject* control) { control_ = control; }
    void forget() {
        active_.Reset();
        control_.Reset();
    }

    // The control asks for another size, for example when the user collapses its panel. Without the call of
    // SetObjectRects it would not get it.
    STDMETHODIMP OnPosRectChange(const RECT* place) override {
        return control_ ? control_->SetObjectRects(place, place) : E_UNEXPECTED;
    }

    // Methods that this window does not need.
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override {
        *moniker = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP GetContainer(IOleContainer** container) override {
        *container = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(const BORDERWIDTHS*) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }

  private:
    HWND window_;
    ComPtr<IOleInPlaceActiveObject> active_;
    ComPtr<IOleInPlaceObject> control_;
};
// [end]

// [spectrum]
/// The control in the window. The destructor closes and releases it.
class Spectrum {
  public:
    Spectrum(HWND window, Site& site) : site_(site) {
        if (FAILED(CoCreateInstance(CLSID_kvBandscope, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_PPV_ARGS(scope_.GetAddressOf()))))
            return;
        scope_.As(&object_);
        scope_.As(&inPlace_);
        site.adopt(inPlace_.Get());
        object_->SetClientSite(&site);
        ComPtr<IPersistStreamInit> start;
        if (SUCCEEDED(scope_.As(&start)))
            start->InitNew();
        RECT place{};
        GetClientRect(window, &place);
        object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, window, &place);
        ComPtr<IConnectionPointContainer> points;
        scope_.As(&points);
        if (SUCCEEDED(points->FindConnectionPoint(DIID___kvBandscope, events_.GetAddressOf())))
            events_->Advise(static_cast<IDispatch*>(&site), &cookie_);
    }
    ~Spectrum() {
        if (events_)
            events_->Unadvise(cookie_);
        if (object_) {
            object_->Close(OLECLOSE_NOSAVE);
            object_->SetClientSite(nullptr);
        }
        site_.forget();
    }
    Spectrum(const Spectrum&) = delete;
    Spectrum& operator=(const Spectrum&) = delete;

    [[nodiscard]] _kvBandscope* scope() const { return scope_.Get(); }

    void place(const RECT& area) {
        if (inPlace_)
            inPlace_->SetObjectRects(&area, &area);
    }

  private:
    Site& site_;
    ComPtr<_kvBandscope> scope_;
    ComPtr<IOleObject> object_;
    ComPtr<IOleInPlaceObject> inPlace_;
    ComPtr<IConnectionPoint> events_;
    DWORD cookie_ = 0;
};
// [end]

/// A transmit channel of 16 kHz, its frequency in MHz, power in dBm and color.
void addChannel(_kvBandscope* scope, const wchar_t* key, double frequency, double power, OLE_COLOR color) {
    ComPtr<_FreqSlot> channel;
    if (FAILED(CoCreateInstance(CLSID_FreqSlot, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(channel.GetAddressOf()))))
        return;
    BSTR text = SysAllocString(key);
    channel->put_sKey(text);
    SysFreeString(text);
    channel->put_dFreq(frequency);
    channel->put_dFreqLo(frequency - 0.008);  // 16 kHz wide; without edges the box would be twice dBW wide
    channel->put_dFreqHi(frequency + 0.008);
    channel->put_dBW(16.0);
    channel->put_dPwrDBM(power);
    channel->put_lColor(color);
    long index = 0;
    scope->AddTXChnl(channel.Get(), &index);
}

bool save(_kvBandscope* scope, const wchar_t* file) {
    double height = 0.0;
    double width = 0.0;
    BSTR name = SysAllocString(file);
    BSTR written = nullptr;
    scope->DisplayToBMP(&height, &width, &name, &written);
    const bool saved = SysStringLen(written) > 0;
    SysFreeString(written);
    SysFreeString(name);
    return saved;
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const spectrum = reinterpret_cast<Spectrum*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_SIZE && spectrum) {
        RECT area{};
        GetClientRect(window, &area);
        spectrum->place(area);
        return 0;
    }
    if (message == kFollowHeight) {
        RECT outer{};
        RECT inner{};
        GetWindowRect(window, &outer);
        GetClientRect(window, &inner);
        const int border = (outer.bottom - outer.top) - inner.bottom;
        SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left, static_cast<int>(wParam) + border,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    }
    if (message == WM_CLOSE) {
        PostQuitMessage(0);  // run() releases the control before it destroys the window
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND makeWindow() {
    WNDCLASSW kind{};
    kind.lpfnWndProc = windowProcedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    kind.lpszClassName = L"SpectrumWindow";
    RegisterClassW(&kind);
    return CreateWindowW(kind.lpszClassName, L"Spectrum", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                         CW_USEDEFAULT, 900, 600, nullptr, nullptr, kind.hInstance, nullptr);
}

int run(const wchar_t* file) {
    const HWND window = makeWindow();
    Site site(window);
    int result = 1;
    {
        Spectrum spectrum(window, site);
        if (_kvBandscope* const scope = spectrum.scope()) {
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&spectrum));
            ShowWindow(window, SW_SHOWDEFAULT);
            addChannel(scope, L"TX1", 462.55, 46.99, RGB(31, 119, 180));
            addChannel(scope, L"TX2", 462.65, 30.0, RGB(56, 142, 60));
            scope->put_DisplayMaxPwr(60.0);
            scope->put_FreqEndBuffer(0.0);  // no margin, so that exactly the range below is shown
            scope->put_nGridX(10);          // 10 divisions of 20 kHz; the channels are between two grid lines
            scope->DrawByRange(462.5, 462.7);
            result = *file && !save(scope, file) ? 1 : 0;
            MSG message{};
            while (!*file && GetMessageW(&message, nullptr, 0, 0) > 0) {
                if (site.translate(message))
                    continue;
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        } else {
            MessageBoxW(window,
                        L"The control cannot be created. kvBandscope.ocx and kvBandscope.manifest must be in the "
                        L"folder of this program.",
                        L"Spectrum", MB_OK);
        }
    }
    DestroyWindow(window);
    return result;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (FAILED(OleInitialize(nullptr)))
        return 1;
    const int result = run(argc > 2 && std::wcscmp(argv[1], L"--save") == 0 ? argv[2] : L"");
    OleUninitialize();
    return result;
}
