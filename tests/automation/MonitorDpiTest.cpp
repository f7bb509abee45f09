// Monitors of different resolutions: the control follows the monitor of its window, and passes lengths to the host in
// the resolution of the whole screen.
#include <gmock/gmock.h>

#include <array>
#include <cstdlib>

#include "tests/automation/Container.h"
#include "tests/automation/FakeDpi.h"
#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"

namespace kv::test {
namespace {

constexpr UINT kDpiChanged = 0x02E0;
constexpr UINT kDpiChangedAfterParent = 0x02E3;

int screenDpi() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
}

int fontHeight(HWND window) {
    LOGFONTW font{};
    const auto used = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    EXPECT_EQ(GetObjectW(used, sizeof font, &font), static_cast<int>(sizeof font));
    return std::abs(static_cast<int>(font.lfHeight));
}

SIZE sizeOf(HWND window) {
    const RECT place = placeOf(window);
    return {place.right - place.left, place.bottom - place.top};
}

/// So that a control of twice the usual size is shown whole.
void enlarge(const HostWindow& host) {
    SetWindowPos(host.get(), nullptr, 0, 0, 1500, 1000, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

/// The control on a monitor of some resolution, with the size in pixels that it needs there.
class Shown {
  public:
    explicit Shown(int percent) {
        container.site->place = {0, 0, 720 * percent / 100, 480 * percent / 100};
        enlarge(container.host);
        container.activate();
        container.addTx({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = RGB(200, 30, 40)});
        EXPECT_TRUE(container.draw());
    }
    Container container;

    HWND part(const wchar_t* className, const wchar_t* text) const { return container.child(className, text); }
    HWND knob() const { return container.children(L"tdKnMover").at(0); }
    Picture spectrum() const { return windowPicture(container.pictureBox(L"picSpectrum")); }
    Picture strip() const { return windowPicture(container.pictureBox(L"picUnits")); }
    /// Sends what the system sends to the child windows of a window that moved to another monitor.
    void comeTo(UINT dpi) const {
        FakeDpi::set(dpi);
        SendMessageW(container.root(), kDpiChangedAfterParent, 0, 0);
    }
    void resize(int percent) {
        const RECT place{0, 0, 720 * percent / 100, 480 * percent / 100};
        EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
        pump();
    }
};

class MonitorDpi : public testing::Test {
  protected:
    const int base = screenDpi();
    FakeDpi dpi{static_cast<UINT>(base)};
    UINT times(int percent) const { return static_cast<UINT>(base * percent / 100); }

    void SetUp() override {
        // A pointer over the window would be read out in the panel.
        SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    }
};

TEST_F(MonitorDpi, TheControlStartsAtTheResolutionOfItsMonitor) {
    const Shown usual(100);
    FakeDpi::set(times(200));
    const Shown large(200);
    EXPECT_EQ(sizeOf(large.container.root()).cx, 1440);
    const SIZE small = sizeOf(usual.knob());
    EXPECT_EQ(sizeOf(large.knob()).cx, 2 * small.cx);
    EXPECT_EQ(sizeOf(large.knob()).cy, 2 * small.cy);
    EXPECT_NEAR(fontHeight(large.part(L"Button", L"Clear")), 2 * fontHeight(usual.part(L"Button", L"Clear")), 1);
    EXPECT_EQ(sizeOf(large.part(L"Button", L"Clear")).cx, 2 * sizeOf(usual.part(L"Button", L"Clear")).cx);
    EXPECT_EQ(large.strip().width, 2 * usual.strip().width);
}

TEST_F(MonitorDpi, AMoveToAnotherMonitorGivesTheSamePictureAsAStartThere) {
    Shown moved(100);
    const Picture before = moved.spectrum();
    const Picture labels = moved.strip();
    FakeDpi::set(times(200));
    const Shown fresh(200);
    moved.comeTo(times(200));
    moved.resize(200);
    EXPECT_EQ(moved.spectrum(), fresh.spectrum());
    EXPECT_EQ(moved.strip(), fresh.strip());
    EXPECT_EQ(sizeOf(moved.knob()).cx, sizeOf(fresh.knob()).cx);
    EXPECT_EQ(windowPicture(moved.knob()), windowPicture(fresh.knob()));
    for (const wchar_t* className : {L"Button", L"Static", L"ComboBox"}) {
        const std::vector<HWND> here = moved.container.children(className);
        const std::vector<HWND> there = fresh.container.children(className);
        ASSERT_EQ(here.size(), there.size());
        for (std::size_t i = 0; i < here.size(); ++i) {
            EXPECT_TRUE(EqualRect(std::array{placeOf(here[i])}.data(), std::array{placeOf(there[i])}.data()));
            EXPECT_EQ(fontHeight(here[i]), fontHeight(there[i]));
        }
    }
    // And back.
    moved.comeTo(times(100));
    moved.resize(100);
    EXPECT_EQ(moved.spectrum(), before);
    EXPECT_EQ(moved.strip(), labels);
}

TEST_F(MonitorDpi, AResizeByTheContainerFollowsTheMonitorToo) {
    Shown moved(100);
    FakeDpi::set(times(150));
    const Shown fresh(150);
    moved.resize(150);
    EXPECT_EQ(moved.spectrum(), fresh.spectrum());
    EXPECT_EQ(fontHeight(moved.part(L"Button", L"Clear")), fontHeight(fresh.part(L"Button", L"Clear")));
}

TEST_F(MonitorDpi, WithoutACallOfTheContainerTheNextPaintFollowsTheMonitor) {
    const Shown moved(100);
    const int before = fontHeight(moved.part(L"Button", L"Clear"));
    FakeDpi::set(times(150));
    InvalidateRect(moved.knob(), nullptr, FALSE);
    pump();
    EXPECT_NEAR(fontHeight(moved.part(L"Button", L"Clear")), before * 3 / 2, 1);
    EXPECT_EQ(sizeOf(moved.container.root()).cx, 720) << "the size is the container's";
}

TEST_F(MonitorDpi, ADisplayDrawnBeforeItIsShownIsDrawnAgain) {
    FakeDpi::set(times(200));
    const Shown fresh(200);
    Container container;
    enlarge(container.host);
    container.addTx({.freq = 430.0, .lo = 400.0, .hi = 460.0, .power = 30.0, .color = RGB(200, 30, 40)});
    EXPECT_TRUE(container.draw());
    container.site->place = {0, 0, 1440, 960};
    ASSERT_NO_FATAL_FAILURE(container.activate());
    EXPECT_EQ(windowPicture(container.pictureBox(L"picSpectrum")), fresh.spectrum());
}

TEST_F(MonitorDpi, MembersAndEventsUseTheResolutionOfTheScreen) {
    FakeDpi::set(times(200));
    Shown shown(200);
    const double twips = 1440.0 / base;
    const ComPtr<EventSink> sink(new EventSink);
    shown.container.connect(sink.Get());
    double height = 0.0;
    double width = 0.0;
    const TempFile file(L"monitor.bmp");
    BSTR name = SysAllocString(file.path().c_str());
    Text written;
    EXPECT_EQ(shown.container.control->DisplayToBMP(&height, &width, &name, written.put()), S_OK);
    SysFreeString(name);
    const Picture saved = Picture::read(file.path());
    EXPECT_NEAR(width, saved.width * twips, twips);
    EXPECT_NEAR(height, saved.height * twips, twips);
    short least = 0;
    EXPECT_EQ(shown.container.control->get_MinWid(&least), S_OK);
    EXPECT_EQ(least, 10800) << "when it was created";
    SIZEL extent{};
    EXPECT_EQ(shown.container.as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, MulDiv(1440, 2540, base));
    postRightClick(shown.container.panel(), 4, 4);
    ASSERT_THAT(sink->ids(), testing::ElementsAre(kChgHeight));
    EXPECT_NEAR(sink->heard[0].arguments.at(0), static_cast<double>(shown.container.size().cy) * twips, twips);
}

TEST_F(MonitorDpi, ASystemWithoutMonitorResolutionsIgnoresTheNotification) {
    FakeDpi::set(0);
    Shown shown(100);
    const int before = fontHeight(shown.part(L"Button", L"Clear"));
    const Picture picture = shown.spectrum();
    SendMessageW(shown.container.root(), kDpiChangedAfterParent, 0, 0);
    pump();
    EXPECT_EQ(fontHeight(shown.part(L"Button", L"Clear")), before);
    EXPECT_EQ(shown.spectrum(), picture);
}

TEST_F(MonitorDpi, TheTextWindowFollowsItsOwnMonitor) {
    const Shown shown(100);
    EXPECT_EQ(shown.container.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
    pump();
    const HWND form = textWindow();
    ASSERT_TRUE(form);
    const HWND text = FindWindowExW(form, nullptr, L"EDIT", nullptr);
    const HWND button = FindWindowExW(form, nullptr, L"BUTTON", nullptr);
    ASSERT_TRUE(text && button);
    SetWindowPos(form, nullptr, 0, 0, 600, 400, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const int font = fontHeight(text);
    const SIZE pressed = sizeOf(button);
    RECT place{};
    GetWindowRect(form, &place);
    RECT next{20, 10, 20 + (place.right - place.left) * 3 / 2, 10 + (place.bottom - place.top) * 3 / 2};
    SendMessageW(form, kDpiChanged, MAKEWPARAM(times(150), times(150)), reinterpret_cast<LPARAM>(&next));
    pump();
    RECT now{};
    GetWindowRect(form, &now);
    EXPECT_EQ(now.left, next.left);
    EXPECT_EQ(now.top, next.top);
    EXPECT_EQ(now.right, next.right);
    EXPECT_EQ(now.bottom, next.bottom);
    EXPECT_NEAR(fontHeight(text), font * 3 / 2, 1);
    EXPECT_NEAR(sizeOf(button).cy, pressed.cy * 3 / 2, 1);
    RECT client{};
    GetClientRect(form, &client);
    const RECT inner = placeOf(text);
    EXPECT_LE(inner.right, client.right);
    EXPECT_GT(inner.right, client.right * 8 / 10) << "the text fills the window";
    EXPECT_NEAR(fontHeight(shown.part(L"Button", L"Clear")), fontHeight(button) * 2 / 3, 1) << "the control stays";
    EXPECT_EQ(shown.container.control->put_bMouseInfo(VARIANT_FALSE), S_OK);
    pump();
}

}  // namespace
}  // namespace kv::test
