// The control on a machine where it is not registered: through an activation context of its manifest, and in a program
// that names the control in its own manifest.
#include <gmock/gmock.h>

#include <functional>
#include <future>
#include <thread>
#include <vector>

#include "tests/automation/ChildProcess.h"
#include "tests/automation/ControlFixture.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kChannelColor = RGB(31, 119, 180);
constexpr OLE_COLOR kGreen = RGB(56, 142, 60);

/// Moves registry keys of an earlier registration away during a test.
class NothingRegistered {
  public:
    NothingRegistered() {
        RegDeleteTreeW(HKEY_CURRENT_USER, kAside);
        for (const auto& [root, key] : keys())
            move(root, L"Software\\Classes\\" + key, HKEY_CURRENT_USER, aside(root, key));
    }
    ~NothingRegistered() {
        for (const auto& [root, key] : keys())
            move(HKEY_CURRENT_USER, aside(root, key), root, L"Software\\Classes\\" + key);
        RegDeleteTreeW(HKEY_CURRENT_USER, kAside);
    }
    NothingRegistered(const NothingRegistered&) = delete;
    NothingRegistered& operator=(const NothingRegistered&) = delete;

  private:
    static constexpr wchar_t kAside[] = L"Software\\kvBandscope put aside by a test";

    static std::vector<std::pair<HKEY, std::wstring>> keys() {
        std::vector<std::pair<HKEY, std::wstring>> result;
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
            for (const wchar_t* key :
                 {L"CLSID\\{3C676CE2-05C1-42D9-9D9B-E86519090CF2}", L"CLSID\\{5399D6D5-00E6-4ED8-B089-74B4D5760492}",
                  L"TypeLib\\{221D1500-C8C3-4EFD-AE3C-0DE90FB9A204}",
                  L"Interface\\{BE00EA69-42B9-4444-906A-75034DF66A6E}",
                  L"Interface\\{425D1FE5-512D-4D80-8369-0FD953B2B465}",
                  L"Interface\\{0DBCF754-BC64-45C6-8C2F-8BF2E1C974D2}", L"kvBandscope.kvBandscope",
                  L"kvBandscope.kvBandscope.1", L"kvBandscope.FreqSlot", L"kvBandscope.FreqSlot.1",
                  L"CLSID\\{A3981632-DBFD-4DB9-83E0-BDF2BEE762E6}",
                  L"Interface\\{540DDED9-E952-4AFF-95B4-69DB6C47886F}", L"kvBandscope.View", L"kvBandscope.View.1"})
                result.emplace_back(root, key);
        }
        return result;
    }
    static std::wstring aside(HKEY root, const std::wstring& key) {
        return std::wstring(kAside) + (root == HKEY_LOCAL_MACHINE ? L"\\machine\\" : L"\\user\\") + key;
    }
    static void move(HKEY from, const std::wstring& source, HKEY to, const std::wstring& target) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(from, source.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return;
        HKEY copy = nullptr;
        RegCreateKeyExW(to, target.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &copy, nullptr);
        EXPECT_EQ(RegCopyTreeW(key, nullptr, copy), ERROR_SUCCESS);
        RegCloseKey(copy);
        RegCloseKey(key);
        EXPECT_EQ(RegDeleteTreeW(from, source.c_str()), ERROR_SUCCESS);
    }
};

/// The classes of a manifest, for the calling thread, during its lifetime.
class Activation {
  public:
    explicit Activation(const std::wstring& manifest) {
        ACTCTXW wanted{};
        wanted.cbSize = sizeof wanted;
        wanted.lpSource = manifest.c_str();
        context_ = CreateActCtxW(&wanted);
        EXPECT_NE(context_, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
    }
    ~Activation() {
        EXPECT_TRUE(DeactivateActCtx(0, cookie_));
        ReleaseActCtx(context_);
    }
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;

  private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

/// What a host's set-up program copies: the module and its manifest, with the programs that use them.
class Delivery {
  public:
    Delivery() {
        const std::wstring built = modulePath().substr(0, modulePath().find_last_of(L'\\') + 1);
        for (const wchar_t* name :
             {L"kvBandscope.ocx", L"kvBandscope.manifest", L"FirstPicture.exe", L"SpectrumWindow.exe"})
            EXPECT_TRUE(CopyFileW((built + name).c_str(), file(name).c_str(), TRUE)) << testing::PrintToString(name);
    }
    [[nodiscard]] std::wstring file(const std::wstring& name) const { return folder_.file(name); }

  private:
    TempFolder folder_{L"kvRegFree"};
};

class RegistrationFreeTest : public testing::Test {
  protected:
    // Undone in reverse order: the module is unloaded, its folder deleted, and the registry restored.
    NothingRegistered nothingRegistered;
    Delivery delivery;

    void TearDown() override { CoFreeUnusedLibrariesEx(0, 0); }
    [[nodiscard]] std::wstring manifest() const { return delivery.file(L"kvBandscope.manifest"); }
    /// Calls `body` with the control's proxy in a thread of another apartment. This thread handles messages meanwhile.
    HRESULT inAnotherApartment(_kvBandscope* scope, const std::function<HRESULT(_kvBandscope*)>& body,
                               DWORD kind = COINIT_MULTITHREADED) const {
        IStream* stream = nullptr;
        EXPECT_EQ(CoMarshalInterThreadInterfaceInStream(IID__kvBandscope, scope, &stream), S_OK);
        std::future<HRESULT> result = std::async(std::launch::async, [&] {
            const Activation inThread(manifest());
            CoInitializeEx(nullptr, kind);
            HRESULT hr = E_FAIL;
            {
                ComPtr<_kvBandscope> proxy;
                hr = CoGetInterfaceAndReleaseStream(stream, IID_PPV_ARGS(proxy.GetAddressOf()));
                if (SUCCEEDED(hr))
                    hr = body(proxy.Get());
            }
            CoUninitialize();
            return hr;
        });
        const DWORD end = GetTickCount() + 20000;
        while (result.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready && GetTickCount() < end) {
            MSG message{};
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageW(&message);
        }
        return result.get();
    }
    [[nodiscard]] std::wstring quoted(const std::wstring& name) const { return L"\"" + delivery.file(name) + L"\""; }
};

HRESULT makeByName(const wchar_t* progId, REFIID iid, void** object) {
    *object = nullptr;
    CLSID clsid{};
    const HRESULT hr = CLSIDFromProgID(progId, &clsid);
    return FAILED(hr) ? hr : CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid, object);
}

std::wstring moduleOf(IUnknown* object) {
    HMODULE handle = nullptr;
    const auto* const code = *reinterpret_cast<const wchar_t* const*>(*reinterpret_cast<void* const*>(object));
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, code,
                       &handle);
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(handle, path.data(), MAX_PATH));
    return path;
}

TEST_F(RegistrationFreeTest, WithoutTheManifestNoClassIsFound) {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(L"kvBandscope.kvBandscope", &clsid), CO_E_CLASSSTRING);
    EXPECT_EQ(CLSIDFromProgID(L"kvBandscope.FreqSlot", &clsid), CO_E_CLASSSTRING);
    EXPECT_EQ(CLSIDFromProgID(L"kvBandscope.View", &clsid), CO_E_CLASSSTRING);
    ComPtr<IUnknown> object;
    for (const CLSID* id : {&CLSID_kvBandscope, &CLSID_FreqSlot, &CLSID_View})
        EXPECT_EQ(CoCreateInstance(*id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(object.GetAddressOf())),
                  REGDB_E_CLASSNOTREG);
    ComPtr<ITypeLib> library;
    EXPECT_NE(LoadRegTypeLib(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, library.GetAddressOf()), S_OK);
}

TEST_F(RegistrationFreeTest, ObjectsAreCreatedByClsidAndByProgId) {
    const Activation activation(manifest());
    ComPtr<_kvBandscope> scope;
    ASSERT_EQ(CoCreateInstance(CLSID_kvBandscope, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(scope.GetAddressOf())),
              S_OK);
    EXPECT_EQ(lstrcmpiW(moduleOf(scope.Get()).c_str(), delivery.file(L"kvBandscope.ocx").c_str()), 0);
    for (const wchar_t* name : {L"kvBandscope.FreqSlot", L"kvBandscope.FreqSlot.1"}) {
        ComPtr<_FreqSlot> slot;
        ASSERT_EQ(makeByName(name, IID_PPV_ARGS(slot.GetAddressOf())), S_OK);
        slot->put_dFreq(450.0);
        const Text key(name);
        slot->put_sKey(key.get());
        long index = -1;
        EXPECT_EQ(scope->AddTXChnl(slot.Get(), &index), S_OK);
    }
    long count = 0;
    EXPECT_EQ(scope->get_NumTX(&count), S_OK);
    EXPECT_EQ(count, 2);
    for (const wchar_t* name : {L"kvBandscope.kvBandscope", L"kvBandscope.kvBandscope.1"}) {
        ComPtr<_kvBandscope> other;
        EXPECT_EQ(makeByName(name, IID_PPV_ARGS(other.GetAddressOf())), S_OK);
    }
}

TEST_F(RegistrationFreeTest, TheTypeLibraryIsFound) {
    const Activation activation(manifest());
    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadRegTypeLib(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, library.GetAddressOf()), S_OK);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(library->GetTypeInfoOfGuid(IID__kvBandscope, info.GetAddressOf()), S_OK);
}

TEST_F(RegistrationFreeTest, TheControlCanBeCalledFromAnotherApartment) {
    const Activation activation(manifest());
    ComPtr<_kvBandscope> scope;
    ASSERT_EQ(CoCreateInstance(CLSID_kvBandscope, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(scope.GetAddressOf())),
              S_OK);
    scope->put_nGridX(14);
    short value = -1;
    EXPECT_EQ(inAnotherApartment(scope.Get(), [&](_kvBandscope* proxy) { return proxy->get_nGridX(&value); }), S_OK);
    EXPECT_EQ(value, 14);
}

TEST_F(RegistrationFreeTest, AViewReachesAControlInAnotherApartment) {
    const Activation activation(manifest());
    ComPtr<_kvBandscope> scope;
    ASSERT_EQ(CoCreateInstance(CLSID_kvBandscope, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(scope.GetAddressOf())),
              S_OK);
    HRESULT wrong = S_OK;
    const auto work = [&](_kvBandscope* proxy) {
        ComPtr<_BandscopeView> view;
        HRESULT result = CoCreateInstance(CLSID_View, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(view.GetAddressOf()));
        if (SUCCEEDED(result))
            result = view->putref_Scope(proxy);
        if (SUCCEEDED(result))
            result = view->ShowRange(440.0, 460.0);
        if (SUCCEEDED(result))
            wrong = view->ShowRange(460.0, 440.0);
        return result;
    };
    // From a multithreaded apartment, the system would make the view in a thread of its own, which keeps the module.
    const HRESULT hr = inAnotherApartment(scope.Get(), work, COINIT_APARTMENTTHREADED);
    EXPECT_EQ(hr, S_OK);
    EXPECT_EQ(wrong, static_cast<HRESULT>(0x800A0005L));
    double maximum = 0.0;
    EXPECT_EQ(scope->get_DisplayMaxFreq(&maximum), S_OK);
    EXPECT_EQ(maximum, 460.0);
}

TEST_F(RegistrationFreeTest, AProgramOpensTheManifestAndSavesAPicture) {
    const std::wstring picture = delivery.file(L"first.bmp");
    const ChildProcess without(quoted(L"FirstPicture.exe") + L" \"\" \"" + picture + L"\"");
    EXPECT_EQ(without.wait(), 1U);
    EXPECT_FALSE(fileExists(picture));
    const ChildProcess with(quoted(L"FirstPicture.exe") + L" \"" + manifest() + L"\" \"" + picture + L"\"");
    EXPECT_EQ(with.wait(), 0U);
    const Picture saved = Picture::read(picture);
    EXPECT_GT(saved.count(kChannelColor, saved.all()), 100);
}

TEST_F(RegistrationFreeTest, AProgramWithTheDependencyHostsAndDraws) {
    const std::wstring picture = delivery.file(L"window.bmp");
    const ChildProcess program(quoted(L"SpectrumWindow.exe") + L" --save \"" + picture + L"\"");
    EXPECT_EQ(program.wait(), 0U);
    const Picture saved = Picture::read(picture);
    const auto blue = saved.find(kChannelColor, saved.all());
    const auto green = saved.find(kGreen, saved.all());
    ASSERT_TRUE(blue && green);
    // The window is wider than the control's own size, so the picture has the size of the window.
    EXPECT_GT(saved.width, 800);
    EXPECT_LT(blue->right, green->left);
    EXPECT_LT(blue->top, green->top);
}

HWND windowOf(DWORD process) {
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, L"SpectrumWindow", nullptr)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process && IsWindowVisible(window))
            return window;
    }
    return nullptr;
}

BOOL CALLBACK findPicture(HWND window, LPARAM found) {
    if (windowClass(window) != L"kvPictureBox" || windowText(window) != L"picSpectrum")
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// The panel's window, whose text is its caption: "-" while it is expanded.
BOOL CALLBACK findPanel(HWND window, LPARAM found) {
    const std::wstring text = windowText(window);
    if (windowClass(window) != L"kvFrame" || (text != L"-" && text != L"+"))
        return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

int clientHeight(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return client.bottom;
}

/// SpectrumWindow.exe without arguments, with its window on the screen.
class OpenWindow {
  public:
    explicit OpenWindow(const std::wstring& command) : program_(command) {
        for (int tries = 0; tries < 600 && !spectrum; ++tries) {
            Sleep(50);
            window = windowOf(program_.id());
            if (window)
                EnumChildWindows(window, findPicture, reinterpret_cast<LPARAM>(&spectrum));
        }
    }
    void close() const {
        PostMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_EQ(program_.wait(), 0U);
    }
    HWND window = nullptr;
    HWND spectrum = nullptr;

  private:
    ChildProcess program_;
};

TEST_F(RegistrationFreeTest, ADoubleClickOpensTheWindow) {
    const OpenWindow opened(quoted(L"SpectrumWindow.exe"));
    ASSERT_NE(opened.spectrum, nullptr);
    EXPECT_TRUE(IsWindowVisible(opened.spectrum));
    opened.close();
}

TEST_F(RegistrationFreeTest, TheWindowFollowsTheHeightOfItsControl) {
    const OpenWindow opened(quoted(L"SpectrumWindow.exe"));
    ASSERT_NE(opened.spectrum, nullptr);
    HWND panel = nullptr;
    EnumChildWindows(opened.window, findPanel, reinterpret_cast<LPARAM>(&panel));
    ASSERT_NE(panel, nullptr);
    const int before = clientHeight(opened.window);
    const auto toggle = [&] {
        // Beyond the time of a double-click, and after the window has handled its own change of size.
        Sleep(GetDoubleClickTime() + 100);
        const int height = clientHeight(opened.window);
        SendMessageW(panel, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        for (int tries = 0; tries < 100 && clientHeight(opened.window) == height; ++tries)
            Sleep(20);
        RECT control{};
        GetWindowRect(GetParent(panel), &control);
        EXPECT_EQ(control.bottom - control.top, clientHeight(opened.window));
    };
    toggle();
    EXPECT_LT(clientHeight(opened.window), before - 50);
    toggle();
    EXPECT_NEAR(clientHeight(opened.window), before, 1);
    opened.close();
}

}  // namespace
}  // namespace kv::test
