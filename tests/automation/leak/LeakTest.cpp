// A form's typical calls of the control, repeated a thousand times, leave nothing behind.
#include <gmock/gmock.h>

#include "tests/automation/Container.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/leak/Usage.h"

namespace kv::test {
namespace {

constexpr int kChannels = 1000;
constexpr int kWarmUp = 20;
constexpr int kCycles = 1000;

class Leaks : public testing::Test {
  protected:
    HostWindow host;
    CallLog log;
    ComPtr<ContainerSite> site{new ContainerSite(log, host.get(), kOffersAll)};
    ComPtr<ViewSink> sink{new ViewSink(log)};
    TempFile file{L"leaks.bmp"};
    ComPtr<IClassFactory> channels;

    void SetUp() override {
        // Showing the window would take half of the time and is not tested here.
        ShowWindow(host.get(), SW_HIDE);
        ASSERT_EQ(getClassObject(CLSID_FreqSlot, IID_PPV_ARGS(&channels)), S_OK);
    }

    void load(_kvBandscope* control) const {
        long index = -1;
        for (int i = 0; i < kChannels; ++i) {
            ComPtr<_FreqSlot> slot;
            ASSERT_EQ(channels->CreateInstance(nullptr, IID_PPV_ARGS(&slot)), S_OK);
            const Text key(L"TX" + std::to_wstring(i));
            slot->put_dFreq(400.0 + 0.05 * i);
            slot->put_dBW(25.0);
            slot->put_dPwrDBM(i % 40);
            slot->put_sKey(key.get());
            ASSERT_EQ(control->AddTXChnl(slot.Get(), &index), S_OK);
        }
        ASSERT_EQ(index, kChannels - 1);
    }
    void exportTo(_kvBandscope* control) const {
        double height = 0.0;
        double width = 0.0;
        BSTR name = SysAllocString(file.path().c_str());
        Text written;
        EXPECT_EQ(control->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
        EXPECT_EQ(written.str(), file.path());
        SysFreeString(name);
    }
    /// As a container draws or copies it.
    static void view(_kvBandscope* control) {
        ComPtr<IDataObject> data;
        ASSERT_EQ(control->QueryInterface(IID_PPV_ARGS(&data)), S_OK);
        for (const auto& [clip, kind] : {std::pair<CLIPFORMAT, DWORD>{CF_ENHMETAFILE, TYMED_ENHMF},
                                         {CF_DIB, TYMED_HGLOBAL},
                                         {CF_BITMAP, TYMED_GDI}}) {
            FORMATETC format{clip, nullptr, DVASPECT_CONTENT, -1, kind};
            STGMEDIUM medium{};
            ASSERT_EQ(data->GetData(&format, &medium), S_OK);
            ReleaseStgMedium(&medium);
        }
    }
    /// As the mouse does, which fills the report.
    void pointAtChannels() const {
        HWND spectrum = nullptr;
        EnumChildWindows(host.get(), &Leaks::findSpectrum, reinterpret_cast<LPARAM>(&spectrum));
        ASSERT_TRUE(spectrum);
        for (int x = 100; x < 300; x += 50)
            SendMessageW(spectrum, WM_MOUSEMOVE, 0, MAKELPARAM(x, 20));
    }
    static BOOL CALLBACK findSpectrum(HWND window, LPARAM found) {
        if (windowText(window) != L"picSpectrum")
            return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }
    void cycle() {
        ComPtr<_kvBandscope> control = createInstance<_kvBandscope>(CLSID_kvBandscope);
        ComPtr<IOleObject> object;
        ComPtr<IPersistStreamInit> persist;
        ASSERT_EQ(control.As(&object), S_OK);
        ASSERT_EQ(control.As(&persist), S_OK);
        ASSERT_EQ(object->SetClientSite(site.Get()), S_OK);
        ASSERT_EQ(persist->InitNew(), S_OK);
        DWORD connection = 0;
        ASSERT_EQ(object->Advise(sink.Get(), &connection), S_OK);
        ASSERT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, host.get(), &site->place), S_OK);
        ASSERT_NO_FATAL_FAILURE(load(control.Get()));
        VARIANT_BOOL drawn = VARIANT_FALSE;
        EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
        EXPECT_EQ(drawn, VARIANT_TRUE);
        EXPECT_EQ(control->put_bMouseInfo(VARIANT_TRUE), S_OK);
        ASSERT_NO_FATAL_FAILURE(pointAtChannels());
        exportTo(control.Get());
        ASSERT_NO_FATAL_FAILURE(view(control.Get()));
        EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
        EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
        object.Reset();
        persist.Reset();
        EXPECT_EQ(control.Reset(), 0U);
        pump();
        log.calls.clear();
    }
};

TEST_F(Leaks, AThousandCyclesLeaveNothing) {
    for (int i = 0; i < kWarmUp; ++i)
        ASSERT_NO_FATAL_FAILURE(cycle());
    const Usage before = usage();
    for (int i = 0; i < kCycles; ++i)
        ASSERT_NO_FATAL_FAILURE(cycle());
    const Usage after = usage();
    RecordProperty("bytesBefore", std::to_string(before.bytes));
    RecordProperty("bytesAfter", std::to_string(after.bytes));
    EXPECT_LE(after.gdi, before.gdi + 2);
    EXPECT_LE(after.user, before.user + 2);
    // One lost reference to each channel would be 200 MB; one lost picture or window in each cycle would be more.
    EXPECT_LT(after.bytes, before.bytes + 4 * 1024 * 1024)
        << before.bytes << " to " << after.bytes << " in " << kCycles << " lives";
    EXPECT_EQ(site->references(), 1U);
    EXPECT_EQ(site->frame->references(), 1U);
    EXPECT_EQ(sink->references(), 1U);
    channels.Reset();
    EXPECT_EQ(canUnloadNow(), S_OK);
}

}  // namespace
}  // namespace kv::test
