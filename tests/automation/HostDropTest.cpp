// Files that are dragged from another program, which is this one, onto the sample host.
#include <gmock/gmock.h>

#include <ole2.h>
#include <shlobj.h>

#include <cstring>
#include <optional>

#include "tests/automation/HostProcess.h"
#include "tests/automation/Module.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {
namespace {

using testing::HasSubstr;

/// Objects of a drag, which live on the test's stack.
template <class Interface>
class OnStack : public Interface {
  public:
    virtual ~OnStack() = default;
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == __uuidof(Interface);
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

/// Paths of files, or a text if there are none.
class Dragged final : public OnStack<IDataObject> {
  public:
    explicit Dragged(const std::vector<std::wstring>& files) : format_(files.empty() ? CF_UNICODETEXT : CF_HDROP) {
        for (const std::wstring& file : files)
            names_ += file + L'\0';
        names_ += L'\0';
    }
    STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override {
        if (QueryGetData(format) != S_OK)
            return DV_E_FORMATETC;
        const std::size_t size = names_.size() * sizeof(wchar_t);
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + size);
        auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
        drop->pFiles = sizeof(DROPFILES);
        drop->fWide = TRUE;
        std::memcpy(drop + 1, names_.data(), size);
        GlobalUnlock(memory);
        *medium = {};
        medium->tymed = TYMED_HGLOBAL;
        medium->hGlobal = memory;
        return S_OK;
    }
    STDMETHODIMP QueryGetData(FORMATETC* format) override {
        return format->cfFormat == format_ && (format->tymed & TYMED_HGLOBAL) != 0 ? S_OK : DV_E_FORMATETC;
    }
    STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP EnumFormatEtc(DWORD, IEnumFORMATETC**) override { return E_NOTIMPL; }
    STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    CLIPFORMAT format_;
    std::wstring names_;
};

/// Drops as soon as the target has answered.
class Source final : public OnStack<IDropSource> {
  public:
    STDMETHODIMP QueryContinueDrag(BOOL, DWORD) override { return answered_ ? DRAGDROP_S_DROP : S_OK; }
    STDMETHODIMP GiveFeedback(DWORD effect) override {
        answered_ = answered_ || ++feedbacks_ > 1;
        effect_ = effect;
        return DRAGDROP_S_USEDEFAULTCURSORS;
    }
    [[nodiscard]] DWORD effect() const noexcept { return effect_; }

  private:
    bool answered_ = false;
    int feedbacks_ = 0;
    DWORD effect_ = DROPEFFECT_NONE;
};

class HostDrop : public testing::Test {
  protected:
    /// Drops in the middle of the host's spectrum. The effect that the host has announced.
    DWORD drop(const std::vector<std::wstring>& files) {
        RECT rect{};
        GetWindowRect(host.main(), &rect);
        SetCursorPos((rect.left + rect.right) / 2, rect.top + (rect.bottom - rect.top) / 3);
        Dragged dragged(files);
        Source source;
        DWORD effect = DROPEFFECT_NONE;
        const HRESULT result = DoDragDrop(&dragged, &source, DROPEFFECT_COPY | DROPEFFECT_LINK, &effect);
        EXPECT_EQ(result, DRAGDROP_S_DROP);
        EXPECT_EQ(effect, source.effect() & (DROPEFFECT_COPY | DROPEFFECT_LINK));
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        return effect;
    }
    [[nodiscard]] std::wstring plan(const std::wstring& name) const {
        writeContent(folder.file(name), "kind,key,frequency,bandwidth\nTX,TX1,160,20\nTX,TX2,160.1,20\n");
        return folder.file(name);
    }

    TempFolder folder{L"kv host drop "};
    HostProcess host{L"--no-settings"};
};

TEST_F(HostDrop, OpensThePlan) {
    EXPECT_EQ(drop({plan(L"dropped plan.csv")}), static_cast<DWORD>(DROPEFFECT_COPY));
    EXPECT_TRUE(host.showsPlan(L"dropped plan.csv"));
    EXPECT_THAT(host.status(2), HasSubstr(L"2 transmitters"));
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostDrop, OfSeveralFilesIsExplained) {
    drop({plan(L"one.csv"), plan(L"two.csv"), plan(L"three.csv")});
    const HWND box = host.waitForDialog();
    std::wstring message;
    for (HWND label = nullptr; (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr;)
        message += textOf(label);
    EXPECT_THAT(message, HasSubstr(L"3 files were dropped, but only one plan can be shown."));
    host.closeDialog(box);
    EXPECT_EQ(host.title(), L"BandscopeHost");
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostDrop, OfAFolderListsTheError) {
    drop({folder.path()});
    const HWND dialog = host.waitForDialog();
    EXPECT_THAT(textOf(FindWindowExW(dialog, nullptr, L"Edit", nullptr)), HasSubstr(L"cannot be opened or read"));
    host.closeDialog(dialog);
    EXPECT_EQ(host.close(), 0U);
}

TEST_F(HostDrop, OfATextIsRefused) {
    EXPECT_EQ(drop({}), static_cast<DWORD>(DROPEFFECT_NONE));
    EXPECT_EQ(host.title(), L"BandscopeHost");
    EXPECT_EQ(host.close(), 0U);
}

}  // namespace
}  // namespace kv::test
