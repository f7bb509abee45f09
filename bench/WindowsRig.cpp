// The module as a program on Windows uses it, in the system's own container.
#include <windows.h>

#include <initguid.h>

#include <cguid.h>

#include <ocidl.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <psapi.h>

#include <cmath>
#include <stdexcept>

#include "bench/EmptyControl.h"
#include "bench/Rig.h"
#include "kvBandscope.h"

namespace kv::bench {

namespace {

using Microsoft::WRL::ComPtr;

void check(HRESULT hr, const char* what) {
    if (FAILED(hr))
        throw std::runtime_error(what);
}

std::wstring folderOfProgram() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

template <class Function>
Function exported(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

ComPtr<IClassFactory> factory(REFCLSID classId) {
    static const HMODULE module = LoadLibraryW((folderOfProgram() + L"kvBandscope.ocx").c_str());
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    ComPtr<IClassFactory> result;
    check(exported<GetClassObject>(module, "DllGetClassObject")(classId, IID_PPV_ARGS(result.GetAddressOf())),
          "class object");
    return result;
}

void pump() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

/// The edit window of the report: of the multi-line ones of this thread, the one with the longest text.
HWND reportBox() {
    struct Search {
        HWND found = nullptr;
        int longest = -1;
        static BOOL CALLBACK child(HWND window, LPARAM search) {
            wchar_t name[8] = L"";
            GetClassNameW(window, name, 8);
            const bool fits = lstrcmpiW(name, L"EDIT") == 0 && (GetWindowLongPtrW(window, GWL_STYLE) & ES_MULTILINE);
            if (const int length = GetWindowTextLengthW(window);
                fits && length > reinterpret_cast<Search*>(search)->longest)
                *reinterpret_cast<Search*>(search) = {window, length};
            return TRUE;
        }
        static BOOL CALLBACK top(HWND window, LPARAM search) {
            EnumChildWindows(window, &child, search);
            return TRUE;
        }
    } search;
    EnumThreadWindows(GetCurrentThreadId(), &Search::top, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

class Bstring {
  public:
    explicit Bstring(const std::wstring& text)
        : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    ~Bstring() { SysFreeString(text_); }
    Bstring(const Bstring&) = delete;
    Bstring& operator=(const Bstring&) = delete;
    [[nodiscard]] BSTR get() const noexcept { return text_; }

  private:
    BSTR text_;
};

struct Wanted {
    const wchar_t* className;
    const wchar_t* text;
    HWND found = nullptr;
};

BOOL CALLBACK visit(HWND window, LPARAM parameter) {
    auto& wanted = *reinterpret_cast<Wanted*>(parameter);
    wchar_t className[64] = L"";
    wchar_t text[64] = L"";
    GetClassNameW(window, className, 64);
    GetWindowTextW(window, text, 64);
    if (lstrcmpiW(className, wanted.className) != 0 || lstrcmpW(text, wanted.text) != 0)
        return TRUE;
    wanted.found = window;
    return FALSE;
}

class WindowsRig final : public Rig {
  public:
    WindowsRig() {
        check(factory(CLSID_kvBandscope)->CreateInstance(nullptr, IID_PPV_ARGS(control_.GetAddressOf())), "control");
        // Never shown: nothing but the display itself is to be measured.
        window_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1700, 1000, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
        using Attach = HRESULT(WINAPI*)(IUnknown*, HWND, IUnknown**);
        const HMODULE atl = LoadLibraryW(L"atl100.dll");
        check(exported<Attach>(atl, "AtlAxAttachControl")(control_.Get(), window_, container_.GetAddressOf()),
              "container");
        pump();
        spectrum_ = child(L"kvPictureBox", L"picSpectrum");
        gridKnob_ = child(L"tdKnob", L"Grid (Hz)");
        RECT room{};
        GetClientRect(spectrum_, &room);
        SetWindowPos(window_, nullptr, 0, 0, 1700 + kPictureWidth - room.right, 1000 + kPictureHeight - room.bottom,
                     SWP_NOMOVE | SWP_NOZORDER);
        pump();
        GetClientRect(spectrum_, &room);
        if (room.right != kPictureWidth || room.bottom != kPictureHeight)
            throw std::runtime_error("the picture is not of the wanted size");
    }
    ~WindowsRig() override {
        if (page_)
            DestroyWindow(page_);
        DestroyWindow(window_);
        container_.Reset();
        pump();
    }
    WindowsRig(const WindowsRig&) = delete;
    WindowsRig& operator=(const WindowsRig&) = delete;

    void makeRecords(const ChannelSet& set) override {
        records_.clear();
        records_.reserve(set.channels.size());
        const ComPtr<IClassFactory> slots = factory(CLSID_FreqSlot);
        for (std::size_t i = 0; i < set.channels.size(); ++i)
            records_.push_back(makeRecord(*slots.Get(), set.channels[i], i + 1));
    }
    void addAll() override {
        long index = 0;
        for (const ComPtr<_FreqSlot>& record : records_)
            control_->AddTXChnl(record.Get(), &index);
    }
    void addAllByName() override { callByName(*control_.Get()); }
    void callEmptyByName() override {
        EmptyControl empty(*control_.Get());
        callByName(empty);
    }
    void clear() override { check(control_->ClearAllChnls(), "ClearAllChnls"); }

    void showRange(const ChannelSet& set) override {
        control_->put_DisplayMaxPwr(set.top);
        control_->put_DisplayMinPwr(set.floor);
        control_->put_FreqEndBuffer(0.0);
        check(control_->DrawByRange(set.lowest, set.highest), "DrawByRange");
        pump();
    }
    void drawDisplay() override {
        VARIANT_BOOL drawn = VARIANT_FALSE;
        check(control_->DrawDisplay(&drawn), "DrawDisplay");
    }
    void panTo(double center) override {
        control_->put_DisplayCenterFreq(center);
        check(control_->DrawNewCenterFreq(), "DrawNewCenterFreq");
    }
    void turnGridKnob(bool up) override {
        SendMessageW(gridKnob_, WM_KEYDOWN, up ? VK_UP : VK_DOWN, 1);
        SendMessageW(gridKnob_, WM_KEYUP, up ? VK_UP : VK_DOWN, static_cast<LPARAM>(0xC0000001));
    }
    void showOverlays(const Overlaid& wanted) override {
        ComPtr<_BandscopeView> view;
        check(control_.As(&view), "_BandscopeView");
        const auto flag = [](bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; };
        check(view->put_PowerAxis(flag(wanted.powerAxis)), "PowerAxis");
        check(view->put_Legend(flag(wanted.legend)), "Legend");
        check(view->put_ChannelLabels(flag(wanted.channelLabels)), "ChannelLabels");
    }
    void showMouseInfo(bool on) override { control_->put_bMouseInfo(on ? VARIANT_TRUE : VARIANT_FALSE); }
    void moveMouseTo(double frequency) override {
        const View now = view();
        const auto x = std::lround((frequency - now.minFreq) / (now.maxFreq - now.minFreq) * kPictureWidth);
        SendMessageW(spectrum_, WM_MOUSEMOVE, 0, MAKELPARAM(x, 100));
    }
    void showText(const std::wstring& text) override {
        if (!page_) {
            // As wide as that of the report and with its font, which decide where lines are broken.
            const HWND report = reportBox();
            if (!report)
                throw std::runtime_error("the report has no window");
            RECT size{};
            GetWindowRect(report, &size);
            page_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 600, 600, nullptr, nullptr,
                                    GetModuleHandleW(nullptr), nullptr);
            edit_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"",
                                    WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_AUTOVSCROLL | ES_READONLY, 0,
                                    0, size.right - size.left, size.bottom - size.top, page_, nullptr,
                                    GetModuleHandleW(nullptr), nullptr);
            SendMessageW(edit_, WM_SETFONT, static_cast<WPARAM>(SendMessageW(report, WM_GETFONT, 0, 0)), FALSE);
        }
        SetWindowTextW(edit_, text.c_str());
    }
    View view() override {
        View shown;
        control_->get_DisplayMinFreq(&shown.minFreq);
        control_->get_DisplayMaxFreq(&shown.maxFreq);
        control_->get_DisplayMinPwr(&shown.minPwr);
        control_->get_DisplayMaxPwr(&shown.maxPwr);
        return shown;
    }

    bool find(const std::wstring& key) override {
        ComPtr<_FreqSlot> found;
        control_->GetChnlByKey(Bstring(key).get(), found.GetAddressOf());
        return found.Get() != nullptr;
    }
    void remove(const std::wstring& key) override {
        check(control_->RemoveChnlByKey(Bstring(key).get()), "RemoveChnlByKey");
    }
    void setPower(std::size_t number, double dbm) override { records_[number - 1]->put_dPwrDBM(dbm); }
    void exportPicture() override {
        double height = 0.0;
        double width = 0.0;
        BSTR name = SysAllocString(L"kv bench.bmp");  // in the current folder, which is the one for temporary files
        BSTR written = nullptr;
        control_->DisplayToBMP(&height, &width, &name, &written);
        DeleteFileW(written);
        SysFreeString(written);
        SysFreeString(name);
    }

  private:
    [[nodiscard]] HWND child(const wchar_t* className, const wchar_t* text) const {
        Wanted wanted{className, text};
        EnumChildWindows(window_, &visit, reinterpret_cast<LPARAM>(&wanted));
        return wanted.found;
    }

    static ComPtr<_FreqSlot> makeRecord(IClassFactory& slots, const Channel& channel, std::size_t number) {
        ComPtr<_FreqSlot> slot;
        check(slots.CreateInstance(nullptr, IID__FreqSlot, reinterpret_cast<void**>(slot.GetAddressOf())), "record");
        slot->put_dFreq(channel.dFreq);
        slot->put_dBW(channel.dBW);
        slot->put_dFreqLo(channel.dFreqLo);
        slot->put_dFreqHi(channel.dFreqHi);
        slot->put_dPwrDBM(channel.dPwrDBM);
        slot->put_lColor(channel.lColor);
        slot->put_lColorLine(channel.lColorLine);
        slot->put_sLabel(Bstring(channel.sLabel).get());
        slot->put_sKey(Bstring(Channel::key(number)).get());
        return slot;
    }

    void callByName(IDispatch& target) const {
        wchar_t name[] = L"AddTXChnl";
        LPOLESTR names = name;
        DISPID id = DISPID_UNKNOWN;
        check(target.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
        for (const ComPtr<_FreqSlot>& record : records_) {
            VARIANT argument;
            VariantInit(&argument);
            argument.vt = VT_DISPATCH;
            argument.pdispVal = record.Get();
            DISPPARAMS params{&argument, nullptr, 1, 0};
            VARIANT result;
            VariantInit(&result);
            check(target.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr),
                  "Invoke");
        }
    }

    ComPtr<_kvBandscope> control_;
    ComPtr<IUnknown> container_;
    HWND window_ = nullptr;
    HWND page_ = nullptr;
    HWND edit_ = nullptr;
    HWND spectrum_ = nullptr;
    HWND gridKnob_ = nullptr;
    std::vector<ComPtr<_FreqSlot>> records_;
};

}  // namespace

std::unique_ptr<Rig> makeRig() {
    return std::make_unique<WindowsRig>();
}

std::size_t privateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.PagefileUsage : 0;
}

}  // namespace kv::bench
