// Memory and system objects that run out anywhere in a control's life in a container: no crash, no hang, nothing is
// left, and the next control works.
#include <algorithm>
#include <string>
#include <utility>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/ModuleImports.h"

namespace kv::test {
namespace {

int callsLeft = 0;  // until the one that fails; below 1 it has happened or is not wanted
int callsSeen = 0;
FARPROC original = nullptr;

bool failsNow() {
    ++callsSeen;
    return callsLeft > 0 && --callsLeft == 0;
}

template <class Function>
Function real() {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(original));
}

void* __cdecl failingMalloc(std::size_t size) {
    return failsNow() ? nullptr : real<void*(__cdecl*)(std::size_t)>()(size);
}
void* WINAPI failingTaskMemory(SIZE_T size) {
    return failsNow() ? nullptr : real<void*(WINAPI*)(SIZE_T)>()(size);
}
BSTR WINAPI failingTextOfLength(const OLECHAR* text, UINT length) {
    return failsNow() ? nullptr : real<BSTR(WINAPI*)(const OLECHAR*, UINT)>()(text, length);
}
HGLOBAL WINAPI failingGlobal(UINT flags, SIZE_T size) {
    return failsNow() ? nullptr : real<HGLOBAL(WINAPI*)(UINT, SIZE_T)>()(flags, size);
}
HWND WINAPI failingWindow(DWORD exStyle, LPCWSTR name, LPCWSTR text, DWORD style, int x, int y, int width, int height,
                          HWND parent, HMENU menu, HINSTANCE instance, LPVOID data) {
    if (failsNow())
        return nullptr;
    return real<decltype(&CreateWindowExW)>()(exStyle, name, text, style, x, y, width, height, parent, menu, instance,
                                              data);
}
HBITMAP WINAPI failingSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD offset) {
    return failsNow() ? nullptr : real<decltype(&CreateDIBSection)>()(dc, info, usage, bits, section, offset);
}
HDC WINAPI failingContext(HDC dc) {
    return failsNow() ? nullptr : real<decltype(&CreateCompatibleDC)>()(dc);
}
HBITMAP WINAPI failingBitmap(HDC dc, int width, int height) {
    return failsNow() ? nullptr : real<decltype(&CreateCompatibleBitmap)>()(dc, width, height);
}

struct Import {
    const char* name;
    FARPROC replacement;
};

template <class Function>
FARPROC address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

const Import kImports[] = {
    {"malloc", address(&failingMalloc)},
    {"CoTaskMemAlloc", address(&failingTaskMemory)},
    {"SysAllocStringLen", address(&failingTextOfLength)},
    {"GlobalAlloc", address(&failingGlobal)},
    {"CreateWindowExW", address(&failingWindow)},
    {"CreateDIBSection", address(&failingSection)},
    {"CreateCompatibleDC", address(&failingContext)},
    {"CreateCompatibleBitmap", address(&failingBitmap)},
};

/// While it lives, the n-th call of an import fails; 0 for none.
class Failing {
  public:
    Failing(const Import& import, int n) : slot_(importOf(import.name)) {
        EXPECT_TRUE(slot_) << import.name;
        if (!slot_)
            return;
        original = *slot_;
        callsLeft = n;
        callsSeen = 0;
        setImport(slot_, import.replacement);
    }
    ~Failing() {
        if (slot_)
            setImport(slot_, original);
    }
    Failing(const Failing&) = delete;
    Failing& operator=(const Failing&) = delete;

  private:
    FARPROC* slot_;
};

/// What a host does in a control's life. Each call may fail; it goes on with the next one.
void use(_kvBandscope* control) {
    for (int i = 0; i < 3; ++i) {
        const ComPtr<_FreqSlot> slot = createInstance<_FreqSlot>(CLSID_FreqSlot);
        if (!slot)
            continue;
        slot->put_dFreq(450.0 + i);
        slot->put_dPwrDBM(20.0);
        slot->put_sKey(Text(L"TX" + std::to_wstring(i)).get());
        long index = 0;
        control->AddTXChnl(slot.Get(), &index);
    }
    VARIANT_BOOL drawn = VARIANT_FALSE;
    control->DrawDisplay(&drawn);
    double height = 0.0;
    double width = 0.0;
    Text name;
    Text written;
    EXPECT_EQ(control->DisplayToBMP(&height, &width, name.put(), written.put()), S_OK);
    EXPECT_EQ(height > 0.0, !written.str().empty());
    call(control, L"RemoveChnlByKey", {Var(L"TX1")});
    control->put_bMouseInfo(VARIANT_TRUE);
    control->put_bMouseInfo(VARIANT_FALSE);
    control->CopyDisplayToClipboard();
}

void show(IOleObject* object, ContainerSite* site, HWND host) {
    object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site, 0, host, &site->place);
    pump();
    MoveWindow(host, 0, 0, 700, 500, TRUE);
    pump();
    LPOLESTR type = nullptr;
    if (SUCCEEDED(object->GetUserType(USERCLASSTYPE_FULL, &type)))
        CoTaskMemFree(type);
    ComPtr<IDataObject> data;
    if (FAILED(object->QueryInterface(IID_PPV_ARGS(data.GetAddressOf()))))
        return;
    for (const auto& [clip, kind] :
         {std::pair<CLIPFORMAT, DWORD>{CF_METAFILEPICT, TYMED_MFPICT}, {CF_DIB, TYMED_HGLOBAL}}) {
        FORMATETC format{clip, nullptr, DVASPECT_CONTENT, -1, kind};
        STGMEDIUM medium{};
        if (SUCCEEDED(data->GetData(&format, &medium)))
            ReleaseStgMedium(&medium);
    }
}

class Faults : public testing::TestWithParam<Import> {
  protected:
    /// One life in a container, in which the n-th call fails; the number of calls.
    static int live(int n) {
        CallLog log;
        HostWindow host;
        const ComPtr<ContainerSite> site(new ContainerSite(log, host.get(), kOffersAll));
        const MessageBoxes boxes;
        {
            const Failing failing(GetParam(), n);
            ComPtr<_kvBandscope> control = createInstance<_kvBandscope>(CLSID_kvBandscope);
            ComPtr<IOleObject> object;
            if (control && SUCCEEDED(control.As(&object))) {
                object->SetClientSite(site.Get());
                show(object.Get(), site.Get(), host.get());
                use(control.Get());
                object->Close(OLECLOSE_NOSAVE);
                object->SetClientSite(nullptr);
            }
        }
        pump();
        EXPECT_EQ(GetWindow(host.get(), GW_CHILD), nullptr) << "a window is left";
        EXPECT_EQ(canUnloadNow(), S_OK) << "an object is left";
        SetErrorInfo(0, nullptr);
        return callsSeen;
    }
    /// A control in which nothing fails shows its channels.
    static void expectNextOneWorks() {
        Container container;
        ASSERT_NO_FATAL_FAILURE(container.activate());
        container.addTx({.freq = 450.0, .power = 20.0, .key = L"TX1"});
        EXPECT_TRUE(container.draw());
        long count = 0;
        EXPECT_EQ(container.control->get_NumTX(&count), S_OK);
        EXPECT_EQ(count, 1);
    }
};

TEST_P(Faults, AreSurvived) {
    constexpr int kRuns = 12;
    const int calls = live(0);
    ASSERT_GT(calls, 0) << "the life never calls it";
    const int count = std::min(kRuns, calls);
    for (int run = 0; run < count && !HasFailure(); ++run) {
        const int n = 1 + static_cast<int>(static_cast<long long>(run) * calls / count);
        SCOPED_TRACE(testing::Message() << "call " << n << " of " << calls);
        live(n);
        expectNextOneWorks();
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Faults, testing::ValuesIn(kImports),
                         [](const auto& import) { return std::string(import.param.name); });

}  // namespace
}  // namespace kv::test
