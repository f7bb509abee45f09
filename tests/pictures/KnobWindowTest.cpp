// The windows of the knobs: the messages of the system, and what they show.
#include "win32/KnobWindow.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "win32/DibSurface.h"
#include "win32/WindowTree.h"

namespace {

using namespace kv;
using testing::ElementsAre;
using testing::IsEmpty;

class KnobWindow : public testing::Test {
  protected:
    KnobWindow() {
        knob.dStep = 10.0;
        knob.setDVal(50.0);
        knob.setSCaption(L"Center Freq");
        knob.bShowValue = true;
        knob.move({150.0, 300.0, 1800.0, 1650.0});
        knob.onValueChanged = [this](double value) { heard.push_back("v " + std::to_string(static_cast<int>(value))); };
        knob.onTurnEnd = [this] { heard.emplace_back("end"); };
        window = win32::KnobWindow::create(knob, platform, parent, nullptr);
    }
    ~KnobWindow() override {
        window.reset();
        DestroyWindow(parent);
    }
    /// The host's window on the screen: one for all tests, because showing a new window is slow.
    static void SetUpTestSuite() {
        host = CreateWindowExW(0, L"STATIC", L"host", WS_POPUP | WS_VISIBLE, 20, 20, 300, 300, nullptr, nullptr,
                               nullptr, nullptr);
    }
    static void TearDownTestSuite() { DestroyWindow(host); }
    [[nodiscard]] HWND handle() const { return window->window(); }
    LRESULT send(UINT message, WPARAM wParam = 0, int x = 0, int y = 0) {
        return SendMessageW(handle(), message, wParam, MAKELPARAM(x, y));
    }
    std::vector<std::string> taken() { return std::exchange(heard, {}); }
    /// Presses beside the dial and is past the pixels that turn nothing.
    void take() {
        send(WM_LBUTTONDOWN, MK_LBUTTON, 4, 53);
        send(WM_MOUSEMOVE, MK_LBUTTON, 4, 50);
    }

    win32::WinPlatform platform;
    inline static HWND host = nullptr;
    HWND parent =
        CreateWindowExW(0, L"STATIC", L"panel", WS_CHILD | WS_VISIBLE, 0, 0, 300, 300, host, nullptr, nullptr, nullptr);
    turndial::tdKnob knob{nullptr, L"tdKnCenter"};
    std::unique_ptr<win32::KnobWindow> window;
    std::vector<std::string> heard;
};

std::wstring textOf(HWND window) {
    wchar_t text[100] = L"";
    GetWindowTextW(window, text, 100);
    return text;
}

std::wstring classOf(HWND window) {
    wchar_t text[100] = L"";
    GetClassNameW(window, text, 100);
    return text;
}

TEST_F(KnobWindow, HasTheClassCaptionAndPositionOfItsKnob) {
    ASSERT_TRUE(window);
    EXPECT_EQ(classOf(handle()), L"tdKnob");
    EXPECT_EQ(textOf(handle()), L"Center Freq");
    RECT place{};
    GetWindowRect(handle(), &place);
    EXPECT_EQ(place.left, 30);
    EXPECT_EQ(place.top, 40);
    EXPECT_EQ(place.right - place.left, 120);
    EXPECT_EQ(place.bottom - place.top, 110);
    knob.setSCaption(L"Other");
    EXPECT_EQ(textOf(handle()), L"Other");
    knob.setWidth(1500.0);
    GetWindowRect(handle(), &place);
    EXPECT_EQ(place.right - place.left, 100);
    knob.setVisible(false);
    EXPECT_FALSE(IsWindowVisible(handle()));
    knob.setVisible(true);
    EXPECT_TRUE(IsWindowVisible(handle()));
    knob.setEnabled(false);
    EXPECT_FALSE(IsWindowEnabled(handle()));
    turndial::tdKnMover mover(nullptr, L"m");
    const auto second = win32::KnobWindow::create(mover, platform, parent, nullptr);
    EXPECT_EQ(classOf(second->window()), L"tdKnMover");
}

TEST_F(KnobWindow, TurnsByTheMouseAndCapturesItMeanwhile) {
    take();
    EXPECT_EQ(GetCapture(), handle());
    EXPECT_EQ(GetFocus(), handle());
    EXPECT_TRUE(knob.bMouseDown());
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    EXPECT_THAT(taken(), ElementsAre("v 60"));
    send(WM_LBUTTONUP, 0, 4, 30);
    EXPECT_THAT(taken(), ElementsAre("end"));
    EXPECT_NE(GetCapture(), handle());
}

TEST_F(KnobWindow, LosingTheMouseEndsTheTurn) {
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    SetCapture(parent);
    EXPECT_THAT(taken(), ElementsAre("v 60", "end"));
    EXPECT_EQ(GetCapture(), parent);
    ReleaseCapture();
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    knob.setVisible(false);
    EXPECT_THAT(taken(), ElementsAre("v 70", "end"));
    EXPECT_NE(GetCapture(), handle());
}

TEST_F(KnobWindow, DisablingEndsTheTurn) {
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    knob.setEnabled(false);
    EXPECT_THAT(taken(), ElementsAre("v 60", "end"));
    EXPECT_NE(GetCapture(), handle());
}

TEST_F(KnobWindow, EscapeAndTheRightButtonCancelTheTurn) {
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    send(WM_KEYDOWN, VK_ESCAPE);
    EXPECT_THAT(taken(), ElementsAre("v 60", "v 50"));
    EXPECT_NE(GetCapture(), handle());
    send(WM_LBUTTONUP, 0, 4, 30);
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    send(WM_RBUTTONDOWN, MK_LBUTTON | MK_RBUTTON, 4, 30);
    EXPECT_THAT(taken(), ElementsAre("v 60", "v 50"));
    EXPECT_NE(GetCapture(), handle());
}

TEST_F(KnobWindow, TurnsByWheelAndKeys) {
    send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120));
    send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-60)));
    send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-60)));
    EXPECT_THAT(taken(), ElementsAre("v 60", "end", "v 50", "end"));
    for (const auto& [code, value] : {std::pair{VK_LEFT, "v 40"},
                                      {VK_RIGHT, "v 50"},
                                      {VK_UP, "v 60"},
                                      {VK_DOWN, "v 50"},
                                      {VK_PRIOR, "v 100"},
                                      {VK_NEXT, "v 50"},
                                      {VK_HOME, "v 0"},
                                      {VK_END, "v 100"}}) {
        send(WM_KEYDOWN, static_cast<WPARAM>(code));
        send(WM_KEYUP, static_cast<WPARAM>(code));
        EXPECT_THAT(taken(), ElementsAre(value, "end"));
    }
    SetFocus(handle());
    send(WM_KEYDOWN, VK_LEFT);
    SetFocus(parent);
    EXPECT_THAT(taken(), ElementsAre("v 90", "end"));
}

TEST_F(KnobWindow, WantsOnlyItsOwnKeys) {
    const auto wants = [this](WPARAM code) {
        MSG message{};
        message.hwnd = handle();
        message.message = WM_KEYDOWN;
        message.wParam = code;
        const LRESULT answer = SendMessageW(handle(), WM_GETDLGCODE, code, reinterpret_cast<LPARAM>(&message));
        return (answer & DLGC_WANTALLKEYS) != 0;
    };
    EXPECT_EQ(send(WM_GETDLGCODE), DLGC_WANTARROWS);
    EXPECT_TRUE(wants(VK_LEFT));
    EXPECT_FALSE(wants(VK_ESCAPE));
    EXPECT_FALSE(wants(VK_TAB));
    EXPECT_FALSE(wants(VK_RETURN));
    take();
    EXPECT_TRUE(wants(VK_ESCAPE));
    EXPECT_FALSE(wants(VK_TAB));
    EXPECT_FALSE(wants(VK_RETURN));
    send(WM_LBUTTONUP, 0, 4, 50);
    EXPECT_FALSE(wants(VK_ESCAPE));
}

/// The window's picture, pixel by pixel, through WM_PRINTCLIENT.
std::vector<std::uint32_t> printed(HWND window, win32::WinPlatform& platform) {
    RECT client{};
    GetClientRect(window, &client);
    const auto surface = platform.createSurface({client.right, client.bottom});
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(static_cast<win32::DibSurface&>(*surface).dc()),
                 PRF_CLIENT);
    GdiFlush();
    const raster::PixelBuffer pixels = surface->pixels();
    std::vector<std::uint32_t> all(pixels.pixels, pixels.pixels + pixels.width * pixels.height);
    for (std::uint32_t& pixel : all)
        pixel &= 0xFFFFFFU;
    return all;
}

TEST_F(KnobWindow, ShowsWhatTheKnobPaints) {
    const std::vector<std::uint32_t> before = printed(handle(), platform);
    EXPECT_EQ(before.size(), 120U * 110U);
    EXPECT_EQ(before, printed(handle(), platform));
    UpdateWindow(handle());
    EXPECT_FALSE(GetUpdateRect(handle(), nullptr, FALSE));
    knob.setDVal(80.0);
    EXPECT_TRUE(GetUpdateRect(handle(), nullptr, FALSE));
    const std::vector<std::uint32_t> after = printed(handle(), platform);
    EXPECT_NE(before, after);
    // The picture of a control without windows is the same one.
    const auto surface = platform.createSurface({120, 110});
    win32::KnobWindow::paint(knob, platform, static_cast<win32::DibSurface&>(*surface).dc(), {0, 0}, {120, 110});
    GdiFlush();
    const raster::PixelBuffer pixels = surface->pixels();
    std::size_t different = 0;
    for (std::size_t i = 0; i < after.size(); ++i)
        different += (pixels.pixels[i] & 0xFFFFFFU) != after[i] ? 1U : 0U;
    EXPECT_EQ(different, 0U);
    knob.setWidth(900.0);
    EXPECT_EQ(printed(handle(), platform).size(), 60U * 110U);
}

TEST_F(KnobWindow, PointerAndFocusChangeTheLooks) {
    const std::vector<std::uint32_t> before = printed(handle(), platform);
    send(WM_MOUSEMOVE, 0, 60, 50);
    const std::vector<std::uint32_t> hovered = printed(handle(), platform);
    EXPECT_NE(hovered, before);
    send(WM_MOUSELEAVE);
    EXPECT_EQ(printed(handle(), platform), before);
    SetFocus(handle());
    EXPECT_NE(printed(handle(), platform), before);
    SetFocus(parent);
    EXPECT_EQ(printed(handle(), platform), before);
}

TEST_F(KnobWindow, AnEventMayDestroyTheWindow) {
    knob.onValueChanged = [this](double) {
        window.reset();
        heard.emplace_back("gone");
    };
    const HWND gone = handle();
    take();
    SendMessageW(gone, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(4, 0));
    EXPECT_FALSE(IsWindow(gone));
    EXPECT_THAT(heard, ElementsAre("gone"));
    EXPECT_EQ(knob.peer(), nullptr);
}

TEST_F(KnobWindow, TheSystemMayDestroyTheWindowInAnEvent) {
    knob.onValueChanged = [this](double) { DestroyWindow(parent); };
    send(WM_MOUSEWHEEL, MAKEWPARAM(0, 120));
    EXPECT_EQ(window->window(), nullptr);
    knob.setDVal(3.0);
    knob.setSCaption(L"still safe");
    knob.setVisible(false);
    knob.setWidth(30.0);
    knob.setEnabled(false);
    EXPECT_THAT(heard, ElementsAre("end"));
}

TEST_F(KnobWindow, AThrowingEventReleasesTheMouse) {
    knob.onValueChanged = [](double) { throw std::runtime_error("program's fault"); };
    take();
    send(WM_MOUSEMOVE, MK_LBUTTON, 4, 30);
    EXPECT_NE(GetCapture(), handle());
    EXPECT_FALSE(knob.bMouseDown());
    EXPECT_THAT(heard, IsEmpty());
}

/// The highest slot in the GDI handle table that new objects get; released slots are used first.
int highestHandle() {
    int highest = 0;
    std::vector<HBRUSH> brushes;
    for (int i = 0; i < 32; ++i) {
        brushes.push_back(CreateSolidBrush(RGB(i, i, i)));
        highest = std::max(highest, static_cast<int>(LOWORD(reinterpret_cast<UINT_PTR>(brushes.back()))));
    }
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    return highest;
}

TEST_F(KnobWindow, RepeatedPaintingLeaksNothing) {
    constexpr int kRounds = 1000;
    const auto paintOften = [this](int rounds) {
        for (int i = 0; i < rounds; ++i) {
            knob.setWidth(i % 2 == 0 ? 150.0 : 300.0);
            printed(handle(), platform);
        }
    };
    paintOften(10);
    const int before = highestHandle();
    paintOften(kRounds);
    EXPECT_LT(highestHandle() - before, kRounds / 2);
}

TEST_F(KnobWindow, IsPartOfTheWindowTree) {
    formenv::Widget root(formenv::WidgetKind::UserControl, nullptr, L"root");
    root.move({0.0, 0.0, 4500.0, 3000.0});
    formenv::Frame frame(&root, L"fraControl");
    frame.move({150.0, 150.0, 4000.0, 2500.0});
    turndial::tdKnob inside(&frame, L"tdKnGrid");
    inside.setSCaption(L"Grid (Hz)");
    inside.move({300.0, 300.0, 1800.0, 1650.0});
    win32::WindowTree tree(root, platform, {});
    const auto pictureOf = [&] {
        const auto surface = platform.createSurface({300, 200});
        tree.paint(static_cast<win32::DibSurface&>(*surface).dc(), {0, 0, 300, 200});
        GdiFlush();
        const raster::PixelBuffer pixels = surface->pixels();
        return std::vector<std::uint32_t>(pixels.pixels, pixels.pixels + 300 * 200);
    };
    const auto before = pictureOf();
    inside.setDVal(70.0);
    EXPECT_NE(pictureOf(), before);
    ASSERT_TRUE(tree.create(parent, {0, 0, 300, 200}));
    const HWND frameWindow = FindWindowExW(tree.root(), nullptr, L"kvFrame", nullptr);
    const HWND made = FindWindowExW(frameWindow, nullptr, L"tdKnob", L"Grid (Hz)");
    ASSERT_TRUE(made);
    RECT place{};
    GetWindowRect(made, &place);
    EXPECT_EQ(place.left, 20 + 10 + 20);
    tree.destroy();
    EXPECT_FALSE(IsWindow(made));
    EXPECT_EQ(inside.peer(), nullptr);
}

}  // namespace
