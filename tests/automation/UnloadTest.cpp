// A module that is unloaded leaves nothing behind in the process.
#include <gtest/gtest.h>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

/// The control of another copy of the module, in a window.
void showOnce(HMODULE copy) {
    const auto getClassObject =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(copy, "DllGetClassObject")));
    ASSERT_TRUE(getClassObject);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(getClassObject(CLSID_kvBandscope, IID_PPV_ARGS(&factory)), S_OK);
    ComPtr<IOleObject> control;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&control)), S_OK);
    HostWindow host;
    CallLog log;
    const ComPtr<ContainerSite> site(new ContainerSite(log, host.get(), {}));
    site->place = {0, 0, 600, 440};
    ASSERT_EQ(control->SetClientSite(site.Get()), S_OK);
    ASSERT_EQ(control->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, host.get(), nullptr), S_OK);
    EXPECT_EQ(control->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(control->SetClientSite(nullptr), S_OK);
}

TEST(Unloading, UnregistersTheWindowClasses) {
    wchar_t folder[MAX_PATH + 1]{};
    ASSERT_NE(GetTempPathW(MAX_PATH, folder), 0U);
    const std::wstring path = std::wstring(folder) + L"kvBandscopeCopy.ocx";
    ASSERT_TRUE(CopyFileW(modulePath().c_str(), path.c_str(), FALSE));
    const HMODULE copy = LoadLibraryW(path.c_str());
    ASSERT_TRUE(copy);
    showOnce(copy);
    WNDCLASSEXW known{};
    known.cbSize = sizeof known;
    EXPECT_TRUE(GetClassInfoExW(copy, L"kvPictureBox", &known));
    const auto canUnload =
        reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(copy, "DllCanUnloadNow")));
    EXPECT_EQ(canUnload(), S_OK);
    EXPECT_TRUE(FreeLibrary(copy));
    for (const wchar_t* name : {L"kvBandscope", L"kvFrame", L"kvPictureBox"})
        EXPECT_FALSE(GetClassInfoExW(copy, name, &known)) << name;
    DeleteFileW(path.c_str());
}

}  // namespace
}  // namespace kv::test
