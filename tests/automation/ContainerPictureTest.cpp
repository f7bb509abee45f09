// What the control's windows and its drawing for a container show.
#include <gmock/gmock.h>

#include <array>

#include "tests/automation/Colors.h"
#include "tests/automation/Container.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr OLE_COLOR kGrid = RGB(1, 160, 2);

void fill(_kvBandscope* control) {
    long index = -1;
    control->put_FreqEndBuffer(20.0);
    control->put_lColorSpecBack(kBack);
    control->put_GridColor(kGrid);
    const ComPtr<_FreqSlot> slot = channel({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = kBox});
    EXPECT_EQ(control->AddTXChnl(slot.Get(), &index), S_OK);
    VARIANT_BOOL drawn = VARIANT_FALSE;
    EXPECT_EQ(control->DrawDisplay(&drawn), S_OK);
    EXPECT_EQ(drawn, VARIANT_TRUE);
}

/// The part of a picture that begins at a pixel.
Picture fileOf(_kvBandscope* control) {
    const TempFile file(L"window.bmp");
    double height = 0.0;
    double width = 0.0;
    BSTR name = SysAllocString(file.path().c_str());
    Text written;
    EXPECT_EQ(control->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
    SysFreeString(name);
    return Picture::read(file.path());
}

class ContainerPicture : public testing::Test {
  protected:
    Container container;
    void SetUp() override {
        // A pointer over the window would be read out in the panel.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        ASSERT_NO_FATAL_FAILURE(container.activate());
        fill(container.control.Get());
        pump();
    }
    HWND spectrum() const { return container.pictureBox(L"picSpectrum"); }
    Picture shown() const { return windowPicture(spectrum()); }
};

TEST_F(ContainerPicture, TheWindowsShowTheExportedPicture) {
    const Picture file = fileOf(container.control.Get());
    const Picture strip = windowPicture(container.pictureBox(L"picUnits"));
    ASSERT_EQ(file.width, strip.width);
    ASSERT_EQ(file.height, strip.height);
    const RECT place = placeOf(spectrum());
    const Picture window = shown();
    EXPECT_EQ(window, file.cut(place.left, place.top, window.width, window.height));
    const int below = place.bottom;
    EXPECT_EQ(strip.cut(0, below, strip.width, strip.height - below),
              file.cut(0, below, file.width, file.height - below));
    EXPECT_GT(window.count(kBox, window.all()), 1000);
}

TEST_F(ContainerPicture, ABackgroundColorIsShownAtOnce) {
    const Picture before = shown();
    constexpr OLE_COLOR kOther = RGB(10, 20, 90);
    EXPECT_EQ(container.control->put_lColorSpecBack(kOther), S_OK);
    pump();
    const Picture after = shown();
    EXPECT_EQ(after.count(kBack, after.all()), 0);
    EXPECT_EQ(after.count(kOther, after.all()), before.count(kBack, before.all()));
    EXPECT_EQ(after.count(kBox, after.all()), before.count(kBox, before.all()));
}

TEST_F(ContainerPicture, LabelColorsAreShownAtOnce) {
    constexpr OLE_COLOR kStrip = RGB(9, 8, 7);
    constexpr OLE_COLOR kText = RGB(255, 254, 0);
    EXPECT_EQ(container.control->put_lColorLblBack(kStrip), S_OK);
    EXPECT_EQ(container.control->put_lColorLblFore(kText), S_OK);
    pump();
    const Picture strip = windowPicture(container.pictureBox(L"picUnits"));
    EXPECT_GT(strip.count(kStrip, strip.all()), 1000);
    EXPECT_GT(strip.count(kText, strip.all()), 10);
}

TEST_F(ContainerPicture, OtherSettingsAreShownByTheNextDrawing) {
    const Picture before = shown();
    EXPECT_EQ(container.control->put_GridColor(RGB(0, 0, 255)), S_OK);
    EXPECT_EQ(container.control->put_nGridX(4), S_OK);
    EXPECT_EQ(container.control->put_lCursorColor(RGB(9, 9, 9)), S_OK);
    EXPECT_EQ(container.control->put_bXLog(VARIANT_FALSE), S_OK);
    EXPECT_EQ(container.control->put_bLoadingAll(VARIANT_TRUE), S_OK);
    InvalidateRect(spectrum(), nullptr, TRUE);
    pump();
    EXPECT_EQ(shown(), before);
    EXPECT_TRUE(container.draw());
    const Picture after = shown();
    EXPECT_EQ(after.count(kGrid, after.all()), 0);
    EXPECT_GT(after.count(RGB(0, 0, 255), after.all()), 1000);
}

TEST_F(ContainerPicture, UncoveringNeedsNoDrawing) {
    // A pointer that an earlier test left on the spectrum would be read out as soon as the cover is removed.
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    pump();
    const Picture before = windowPicture(container.root());
    const HWND cover = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"cover", WS_POPUP, 100, 100, 400, 300, nullptr,
                                       nullptr, nullptr, nullptr);
    ShowWindow(cover, SW_SHOWNOACTIVATE);
    UpdateWindow(cover);
    pump();
    DestroyWindow(cover);
    pump();
    EXPECT_EQ(windowPicture(container.root()), before);
    // Overwritten on the screen and invalidated.
    const HDC dc = GetDC(spectrum());
    const RECT spot{20, 20, 120, 90};
    FillRect(dc, &spot, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    ReleaseDC(spectrum(), dc);
    EXPECT_NE(windowPicture(container.root()), before);
    RedrawWindow(container.root(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    pump();
    EXPECT_EQ(windowPicture(container.root()), before);
    ShowWindow(container.host.get(), SW_HIDE);
    pump();
    ShowWindow(container.host.get(), SW_SHOWNOACTIVATE);
    pump();
    EXPECT_EQ(windowPicture(container.root()), before);
}

TEST_F(ContainerPicture, AWindowPrintsItself) {
    const Picture window = shown();
    GdiPicture paper(window.width, window.height, RGB(1, 2, 3));
    SendMessageW(spectrum(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(paper.dc()), PRF_CLIENT);
    EXPECT_EQ(paper.read(), window);
}

/// The control as a container draws it by itself.
class DrawnByContainer : public testing::Test {
  protected:
    ComPtr<_kvBandscope> control = createInstance<_kvBandscope>(CLSID_kvBandscope);
    ComPtr<IViewObject2> view;
    void SetUp() override {
        fill(control.Get());
        ASSERT_EQ(control.As(&view), S_OK);
    }
    HRESULT draw(HDC dc, RECTL bounds) const {
        return view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0);
    }
};

TEST_F(DrawnByContainer, AnUnsitedControlShowsItsPicture) {
    GdiPicture paper(820, 560, RGB(1, 2, 3));
    ASSERT_EQ(draw(paper.dc(), {50, 30, 770, 510}), S_OK);
    const Picture all = paper.read();
    const Picture file = fileOf(control.Get());
    // fraPic is 4 pixels from the left, picUnits at 5, 11 inside it.
    EXPECT_EQ(all.cut(50 + 4 + 5, 30 + 11, file.width, file.height), file);
    EXPECT_EQ(all.count(RGB(1, 2, 3), {0, 0, 819, 29}), 820 * 30);
    EXPECT_EQ(all.count(RGB(1, 2, 3), {0, 0, 49, 559}), 50 * 560);
    EXPECT_EQ(all.count(RGB(1, 2, 3), {770, 0, 819, 559}), 50 * 560);
    EXPECT_EQ(all.count(RGB(1, 2, 3), {50, 30, 769, 509}), 0);
    RECT frame{};
    EXPECT_EQ(GetClipBox(paper.dc(), &frame), SIMPLEREGION);
    EXPECT_EQ(frame.right, 820);
    EXPECT_EQ(GetMapMode(paper.dc()), MM_TEXT);
}

TEST_F(DrawnByContainer, FillsAnyBounds) {
    GdiPicture paper(320, 240, RGB(1, 2, 3));
    ASSERT_EQ(draw(paper.dc(), {10, 10, 310, 230}), S_OK);
    const Picture all = paper.read();
    EXPECT_EQ(all.count(RGB(1, 2, 3), {10, 10, 309, 229}), 0);
    // The thin lines of the hatch are still there.
    EXPECT_GT(all.count(kBox, all.all()), 100);
    EXPECT_EQ(all.count(RGB(1, 2, 3), {0, 0, 319, 9}), 3200);
}

TEST_F(DrawnByContainer, ReportsItsSizeAndRefusesUnsupportedAspects) {
    SIZEL size{};
    EXPECT_EQ(view->GetExtent(DVASPECT_CONTENT, -1, nullptr, &size), S_OK);
    EXPECT_EQ(size.cx, 19050);
    EXPECT_EQ(size.cy, 12700);
    EXPECT_EQ(view->GetExtent(DVASPECT_ICON, -1, nullptr, &size), DV_E_DVASPECT);
    GdiPicture paper(10, 10, 0);
    RECTL bounds{0, 0, 10, 10};
    EXPECT_EQ(view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, paper.dc(), &bounds, nullptr, nullptr, 0),
              DV_E_DVASPECT);
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr, &bounds, nullptr, nullptr, 0),
              E_INVALIDARG);
    EXPECT_EQ(draw(paper.dc(), {5, 5, 5, 5}), S_OK);
}

/// The library that hosts controls in ordinary windows, with the control's class registered for the time of a test.
struct HostLibrary {
    const wchar_t* file;
    const wchar_t* windowClass;
};

class HostedByLibrary : public testing::TestWithParam<HostLibrary> {
  protected:
    HMODULE library = nullptr;
    void SetUp() override {
        ASSERT_EQ(exported<ExportedFunction>("DllRegisterServer")(), S_OK);
        library = LoadLibraryW(GetParam().file);
        ASSERT_TRUE(library) << "this library hosts the control in many programs and has to be here";
        using Init = BOOL(WINAPI*)();
        ASSERT_TRUE(function<Init>("AtlAxWinInit")());
    }
    void TearDown() override {
        EXPECT_EQ(canUnloadNow(), S_OK);
        EXPECT_EQ(exported<ExportedFunction>("DllUnregisterServer")(), S_OK);
        if (library)
            FreeLibrary(library);
    }
    template <class Function>
    Function function(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    }
};

BOOL CALLBACK findSpectrum(HWND window, LPARAM parameter) {
    if (windowClass(window) == L"kvPictureBox" && windowText(window) == L"picSpectrum")
        *reinterpret_cast<HWND*>(parameter) = window;
    return TRUE;
}

TEST_P(HostedByLibrary, ShowsItselfRaisesEventsAndIsReleased) {
    HostWindow host;
    const HWND outer = CreateWindowExW(0, GetParam().windowClass, L"kvBandscope.kvBandscope", WS_CHILD | WS_VISIBLE, 10,
                                       10, 800, 500, host.get(), nullptr, nullptr, nullptr);
    ASSERT_TRUE(outer);
    pump();
    {
        using GetControl = HRESULT(WINAPI*)(HWND, IUnknown**);
        ComPtr<IUnknown> unknown;
        ComPtr<_kvBandscope> control;
        ASSERT_EQ(function<GetControl>("AtlAxGetControl")(outer, unknown.GetAddressOf()), S_OK);
        ASSERT_EQ(unknown.As(&control), S_OK);
        HWND spectrum = nullptr;
        EnumChildWindows(outer, &findSpectrum, reinterpret_cast<LPARAM>(&spectrum));
        ASSERT_TRUE(spectrum);
        EXPECT_TRUE(IsWindowVisible(spectrum));
        const OracleLayout layout = oracleLayout(800 * 15.0, 500 * 15.0, 152 * 15.0);
        const RECT place = placeOf(spectrum);
        EXPECT_TRUE(EqualRect(&place, &layout.spectrum)) << place.right << " " << place.bottom;
        fill(control.Get());
        pump();
        const Picture window = windowPicture(spectrum);
        EXPECT_EQ(window, fileOf(control.Get()).cut(place.left, place.top, window.width, window.height));
        postClick(GetParent(GetParent(GetParent(spectrum))), 1, 100);
        long count = 0;
        EXPECT_EQ(control->get_NumTX(&count), S_OK);
        EXPECT_EQ(count, 1);
    }
    DestroyWindow(outer);
}

INSTANTIATE_TEST_SUITE_P(Atl, HostedByLibrary,
                         testing::Values(HostLibrary{L"atl100.dll", L"AtlAxWin100"},
                                         HostLibrary{L"atl.dll", L"AtlAxWin"}),
                         [](const auto& tested) { return std::string(tested.index == 0 ? "Atl100" : "Atl"); });

}  // namespace
}  // namespace kv::test
