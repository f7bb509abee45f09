// The picture of the control when the host captures it: by WM_PRINT, in a bitmap at any position, and of a control that
// was never active.
#include <gmock/gmock.h>

#include "tests/automation/Colors.h"
#include "tests/automation/Container.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

/// As the control draws itself for a container.
Picture drawn(IUnknown* control, int width, int height) {
    ComPtr<IViewObject> view;
    EXPECT_EQ(control->QueryInterface(IID_PPV_ARGS(view.GetAddressOf())), S_OK);
    GdiPicture paper(width, height, kPaper);
    const RECTL bounds{0, 0, width, height};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, paper.dc(), &bounds, nullptr, nullptr, 0),
              S_OK);
    return paper.read();
}

class PrintedControl : public testing::Test {
  protected:
    Container container;

    void SetUp() override {
        // A pointer over the window would be read out in the panel.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
        ASSERT_NO_FATAL_FAILURE(container.activate());
        EXPECT_EQ(container.control->put_lColorSpecBack(kBack), S_OK);
        container.addTx({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = RGB(200, 30, 40)});
        EXPECT_TRUE(container.draw());
    }
    Picture printed(UINT message, LPARAM what) const {
        const SIZE size = container.size();
        GdiPicture paper(static_cast<int>(size.cx), static_cast<int>(size.cy), kPaper);
        SendMessageW(container.root(), message, reinterpret_cast<WPARAM>(paper.dc()), what);
        return paper.read();
    }
    Picture whole() const {
        const SIZE size = container.size();
        return drawn(container.control.Get(), static_cast<int>(size.cx), static_cast<int>(size.cy));
    }
};

TEST_F(PrintedControl, PrintingTheWindowShowsAllOfIt) {
    // Forms that save themselves as a bitmap send this.
    constexpr LPARAM kForms = PRF_CHILDREN | PRF_CLIENT | PRF_ERASEBKGND | PRF_NONCLIENT;
    EXPECT_EQ(printed(WM_PRINT, kForms), whole());
    EXPECT_EQ(printed(WM_PRINTCLIENT, PRF_CHILDREN | PRF_CLIENT), whole());
    EXPECT_GT(whole().count(kBack, whole().all()), 1000);
}

TEST_F(PrintedControl, WithoutItsChildrenOnlyTheBackgroundIsPrinted) {
    const Picture background = printed(WM_PRINTCLIENT, PRF_CLIENT);
    EXPECT_EQ(background.count(background.at(0, 0), background.all()), background.width * background.height);
    EXPECT_NE(background.at(0, 0), kPaper);
}

TEST_F(PrintedControl, AHiddenWindowIsPrintedOnRequestOnly) {
    const Picture before = whole();
    ShowWindow(container.host.get(), SW_HIDE);
    const Picture skipped = printed(WM_PRINT, PRF_CHILDREN | PRF_CLIENT | PRF_CHECKVISIBLE);
    EXPECT_EQ(skipped.count(kPaper, skipped.all()), skipped.width * skipped.height);
    EXPECT_EQ(printed(WM_PRINT, PRF_CHILDREN | PRF_CLIENT), before);
}

TEST_F(PrintedControl, AFramePrintsItsContent) {
    const HWND strip = container.pictureBox(L"picUnits");
    RECT client{};
    GetClientRect(strip, &client);
    GdiPicture paper(static_cast<int>(client.right), static_cast<int>(client.bottom), kPaper);
    SendMessageW(strip, WM_PRINT, reinterpret_cast<WPARAM>(paper.dc()), PRF_CHILDREN | PRF_CLIENT);
    EXPECT_EQ(paper.read(), windowPicture(strip));
}

TEST_F(PrintedControl, WindowBoundsOnABitmapChangeNothing) {
    ComPtr<IViewObject> view;
    ASSERT_EQ(container.control.As(&view), S_OK);
    const SIZE size = container.size();
    const int width = static_cast<int>(size.cx);
    const int height = static_cast<int>(size.cy);
    GdiPicture paper(width + 40, height + 30, kPaper);
    const RECTL bounds{25, 15, 25 + width, 15 + height};
    const RECTL window{-500, -400, 4000, 3000};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, paper.dc(), &bounds, &window, nullptr, 0),
              S_OK);
    const Picture result = paper.read();
    EXPECT_EQ(result.cut(25, 15, width, height), whole());
    EXPECT_EQ(result.count(kPaper, result.all()), result.width * result.height - width * height);
}

class NeverActive : public testing::Test {
  protected:
    ComPtr<IOleObject> object = createInstance<IOleObject>(CLSID_kvBandscope);

    void SetUp() override {
        ComPtr<IPersistStreamInit> persist;
        ASSERT_TRUE(object);
        ASSERT_EQ(object.As(&persist), S_OK);
        ASSERT_EQ(persist->InitNew(), S_OK);
    }
};

TEST_F(NeverActive, ShowsItsPanelAndItsEmptySpectrum) {
    const Picture picture = drawn(object.Get(), 720, 480);
    EXPECT_EQ(picture.count(kPaper, picture.all()), 0);
    EXPECT_GT(picture.count(GetSysColor(COLOR_WINDOW), picture.all()), 10000) << "the spectrum";
    EXPECT_GT(picture.count(GetSysColor(COLOR_BTNFACE), picture.all()), 10000) << "the panel";
}

TEST_F(NeverActive, AnExtentOfZeroStillShowsThePicture) {
    SIZEL none{0, 0};
    EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &none), S_OK);
    const Picture picture = drawn(object.Get(), 360, 240);
    EXPECT_EQ(picture.count(kPaper, picture.all()), 0);
    EXPECT_GT(picture.count(GetSysColor(COLOR_WINDOW), picture.all()), 2500) << "the spectrum";
}

}  // namespace
}  // namespace kv::test
