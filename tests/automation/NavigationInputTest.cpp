// The wheel, the buttons for back and forward, the drag of the frequency scale and the marker, in real windows.
#include "tests/automation/ActiveControl.h"
#include "tests/automation/UserInput.h"
#include "tests/automation/WindowHook.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// 380 to 480 MHz; the spectrum has the focus.
class NavigationInput : public UserInput {
  protected:
    ComPtr<_BandscopeView> view;

    void SetUp() override {
        UserInput::SetUp();
        fill();
        ASSERT_EQ(container.control.As(&view), S_OK);
        SetFocus(spectrum());
        sink->heard.clear();
    }
    /// The wheel over a point of the spectrum.
    LRESULT wheelOver(HWND target, int delta, int x, int y, WORD keys = 0) const {
        POINT at{x, y};
        ClientToScreen(spectrum(), &at);
        return SendMessageW(target, WM_MOUSEWHEEL, MAKEWPARAM(keys, static_cast<WORD>(delta)), MAKELPARAM(at.x, at.y));
    }
    [[nodiscard]] HWND scale() const { return GetParent(spectrum()); }
    [[nodiscard]] bool flag(HRESULT (STDMETHODCALLTYPE _BandscopeView::*getter)(VARIANT_BOOL*)) const {
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ((view.Get()->*getter)(&value), S_OK);
        return value != VARIANT_FALSE;
    }
};

TEST_F(NavigationInput, TheWheelZoomsAroundThePointer) {
    const int width = shown().width;
    const double at = 380.0 + 100.0 * 200 / width;
    wheelOver(spectrum(), WHEEL_DELTA, 200, 30);
    EXPECT_NEAR(maxFreq() - minFreq(), 80.0, 1e-9);
    EXPECT_NEAR((at - minFreq()) / 80.0, 200.0 / width, 1e-9);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    wheelOver(spectrum(), WHEEL_DELTA, 0, 30, MK_CONTROL);
    EXPECT_NEAR(maxFreq() - minFreq(), 80.0 / 1.05, 1e-9);
}

TEST_F(NavigationInput, TheWheelPansWithShift) {
    wheelOver(spectrum(), -WHEEL_DELTA, 200, 30, MK_SHIFT);
    expectRange(385.0, 485.0);
}

TEST_F(NavigationInput, AWheelThatIsNotUsedGoesToTheContainer) {
    int heard = 0;
    const WindowHook hook(
        container.host.get(), [&] { ++heard; }, WM_MOUSEWHEEL);
    wheelOver(spectrum(), WHEEL_DELTA, -5, 30);
    EXPECT_EQ(heard, 1) << "not over the spectrum";
    SetFocus(gridKnob());
    wheelOver(spectrum(), WHEEL_DELTA, 200, 30);
    EXPECT_EQ(heard, 2) << "without the focus";
    SetFocus(spectrum());
    EXPECT_EQ(view->put_WheelZoom(VARIANT_FALSE), S_OK);
    wheelOver(spectrum(), WHEEL_DELTA, 200, 30);
    EXPECT_EQ(heard, 3) << "switched off";
    expectRange(380.0, 480.0);
    EXPECT_EQ(view->put_WheelZoom(VARIANT_TRUE), S_OK);
    wheelOver(spectrum(), WHEEL_DELTA, 200, 30);
    EXPECT_EQ(heard, 3);
    EXPECT_EQ(container.control->ClearAllChnls(), S_OK);
    EXPECT_EQ(container.control->DrawInitialDisplay(), S_OK);
    wheelOver(spectrum(), WHEEL_DELTA, 200, 30);
    EXPECT_EQ(heard, 4) << "no range";
}

TEST_F(NavigationInput, TheMousesButtonsGoBackAndForward) {
    wheelOver(spectrum(), WHEEL_DELTA, 0, 30);
    const double zoomed = maxFreq();
    sink->heard.clear();
    EXPECT_TRUE(flag(&_BandscopeView::get_CanGoBack));
    EXPECT_EQ(SendMessageW(spectrum(), WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON1), 0), TRUE);
    expectRange(380.0, 480.0);
    EXPECT_EQ(SendMessageW(scale(), WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON2), 0), TRUE);
    EXPECT_NEAR(maxFreq(), zoomed, 1e-9);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange, kChgFreqRange));
    EXPECT_FALSE(flag(&_BandscopeView::get_CanGoForward));
}

TEST_F(NavigationInput, ADragOfTheScalePansLive) {
    const int width = shown().width;
    mouse(scale(), WM_LBUTTONDOWN, MK_LBUTTON, 300, 5);
    mouse(scale(), WM_MOUSEMOVE, MK_LBUTTON, 260, 5);
    EXPECT_NEAR(minFreq(), 380.0 + 40 * 100.0 / width, 0.11 * 100.0 / width);
    EXPECT_THAT(sink->ids(), IsEmpty());
    mouse(scale(), WM_MOUSEMOVE, MK_LBUTTON, 300 - width, 5);
    EXPECT_NEAR(minFreq(), 480.0, 0.11 * 100.0 / width);
    mouse(scale(), WM_LBUTTONUP, 0, 300 - width, 5);
    EXPECT_THAT(sink->ids(), ElementsAre(kChgFreqRange));
    EXPECT_NE(GetCapture(), scale());
    VARIANT_BOOL went = VARIANT_FALSE;
    EXPECT_EQ(view->Back(&went), S_OK);
    EXPECT_EQ(went, VARIANT_TRUE);
    expectRange(380.0, 480.0);
}

TEST_F(NavigationInput, TheMarkerIsPutByCtrlAndAClickAndReadOutInALabel) {
    EXPECT_EQ(container.control->put_CursorVal(430.0), S_OK);
    const Picture before = shown();
    const int x = columnOf(440.0);
    mouse(spectrum(), WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, x, 60);
    mouse(spectrum(), WM_LBUTTONUP, MK_CONTROL, x, 60);
    EXPECT_TRUE(flag(&_BandscopeView::get_MarkerVisible));
    double marker = 0.0;
    EXPECT_EQ(view->get_Marker(&marker), S_OK);
    EXPECT_NEAR(marker, 440.0, 100.0 / before.width);
    const HWND label = FindWindowExW(spectrum(), nullptr, L"STATIC", nullptr);
    ASSERT_NE(label, nullptr);
    EXPECT_TRUE(IsWindowVisible(label));
    EXPECT_EQ(windowText(label).rfind(L"Cursor - marker: -", 0), 0U) << windowText(label).c_str();
    key(spectrum(), 'D');
    EXPECT_FALSE(flag(&_BandscopeView::get_MarkerVisible));
    EXPECT_FALSE(IsWindowVisible(label));
    expectSame(shown(), before);
}

using NavigationKeys = ActiveControl;

TEST_F(NavigationKeys, AltWithLeftIsTheSpectrumsWhenItHasTheFocus) {
    const HWND spectrum = container.pictureBox(L"picSpectrum");
    SetFocus(spectrum);
    double before = 0.0;
    double now = 0.0;
    EXPECT_EQ(container.control->get_DisplayMinFreq(&before), S_OK);
    EXPECT_EQ(key(VK_RIGHT), S_OK);
    EXPECT_EQ(container.control->get_DisplayMinFreq(&now), S_OK);
    EXPECT_GT(now, before);
    const auto withAlt = [&](WPARAM code) {
        MSG pressed{GetFocus(), WM_SYSKEYDOWN, code, 1 | (1 << 29), 0, {}};
        return active->TranslateAccelerator(&pressed);
    };
    const KeysDown alt({VK_MENU, VK_LMENU});
    EXPECT_EQ(withAlt(VK_LEFT), S_OK);
    EXPECT_EQ(container.control->get_DisplayMinFreq(&now), S_OK);
    EXPECT_NEAR(now, before, 1e-9);
    log.calls.clear();
    EXPECT_EQ(withAlt(VK_UP), S_FALSE);
    EXPECT_EQ(log.count("TranslateAccelerator"), 1);
    SetFocus(stop(L"tdKnMover"));
    log.calls.clear();
    withAlt(VK_LEFT);
    EXPECT_EQ(log.count("TranslateAccelerator"), 1) << "the knobs do not use it";
}

}  // namespace
}  // namespace kv::test
