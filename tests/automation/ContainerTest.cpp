// The control in a window of a container: its parts, its layout and its size.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/automation/Container.h"
#include "tests/automation/GdiOracle.h"
#include "tests/automation/MessageBoxes.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

constexpr int kPanelHeight = 152;  // pixels, as laid out

class ContainerTest : public testing::Test {
  protected:
    Container container;
    void SetUp() override { ASSERT_NO_FATAL_FAILURE(container.activate()); }

    std::vector<std::wstring> textsOf(const wchar_t* className, bool shown) const {
        std::vector<std::wstring> texts;
        for (const HWND window : container.children(className)) {
            if (isShown(window) == shown)
                texts.push_back(windowText(window));
        }
        return texts;
    }
    /// The children are where the layout puts them in a control of this size in pixels, at 96 dpi.
    void expectLayout(int width, int height, int panelHeight = kPanelHeight) const {
        const OracleLayout layout = oracleLayout(width * 15.0, height * 15.0, panelHeight * 15.0);
        const HWND units = container.pictureBox(L"picUnits");
        const HWND spectrum = container.pictureBox(L"picSpectrum");
        const int picHeight = height - 4 - panelHeight - 4;
        expectPlace(GetParent(units), {4, 0, width - 4, picHeight});
        expectPlace(container.panel(), {4, picHeight + 4, width - 4, picHeight + 4 + panelHeight});
        expectPlace(units, {5, 11, 5 + layout.unitsPixelWidth, 11 + layout.unitsPixelHeight});
        expectPlace(spectrum, layout.spectrum);
        EXPECT_EQ(GetParent(spectrum), units);
        EXPECT_EQ(GetParent(container.panel()), container.root());
    }
    static void expectPlace(HWND window, const RECT& expected) {
        const RECT place = placeOf(window);
        EXPECT_TRUE(EqualRect(&place, &expected))
            << windowText(window) << ": " << place.left << "," << place.top << " to " << place.right << ","
            << place.bottom << " instead of " << expected.left << "," << expected.top << " to " << expected.right << ","
            << expected.bottom;
    }
};

TEST_F(ContainerTest, ActivatesInTheUsualOrder) {
    EXPECT_THAT(container.log.calls,
                ElementsAre("CanInPlaceActivate", "OnInPlaceActivate", "GetWindowContext", "GetWindow", "ShowObject"));
    EXPECT_EQ(GetParent(container.root()), container.host.get());
    EXPECT_TRUE(IsWindowVisible(container.root()));
    EXPECT_EQ(windowClass(container.root()), L"kvBandscope");
    EXPECT_EQ(container.verb(OLEIVERB_SHOW), S_OK);
    EXPECT_EQ(container.log.count("OnInPlaceActivate"), 1);
}

TEST_F(ContainerTest, TakesTheFocusWhenUiActive) {
    container.log.calls.clear();
    EXPECT_EQ(container.verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_THAT(container.log.take(), ElementsAre("OnUIActivate", "frame.SetActiveObject", "frame.SetBorderSpace"));
    const HWND focus = GetFocus();
    EXPECT_TRUE(focus == container.root() || IsChild(container.root(), focus));
    EXPECT_EQ(container.as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_THAT(container.log.take(), ElementsAre("frame.SetActiveObject(null)", "OnUIDeactivate"));
    EXPECT_TRUE(IsWindow(container.root()));
}

TEST_F(ContainerTest, ItsPartsAreRealWindows) {
    EXPECT_THAT(textsOf(L"kvPictureBox", true), UnorderedElementsAre(L"picUnits", L"picSpectrum"));
    EXPECT_THAT(textsOf(L"kvFrame", true), UnorderedElementsAre(L"", L"-"));
    EXPECT_THAT(textsOf(L"Static", true), testing::Contains(L"Grid Step"));
    EXPECT_THAT(textsOf(L"Button", true),
                IsSupersetOf({L"Show Mouse Info", L"View All", L"Order", L"Draw TX", L"DrawRX", L"Clear"}));
    const HWND combo = container.children(L"ComboBox").at(0);
    EXPECT_EQ(container.children(L"ComboBox").size(), 1U);
    EXPECT_TRUE(isShown(combo));
    EXPECT_EQ(SendMessageW(combo, CB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(windowText(combo), L"MHz");
    for (int i = 0; i < 3; ++i) {
        wchar_t item[16] = L"";
        SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(item));
        EXPECT_STREQ(item, i == 0 ? L"KHz" : i == 1 ? L"MHz" : L"GHz");
    }
}

TEST_F(ContainerTest, DevelopmentAidsAreThereAndHidden) {
    EXPECT_THAT(textsOf(L"Button", false),
                IsSupersetOf({L"Resize Test", L"Redraw Test", L"Add Test Freqs", L"Labels Test", L"", L""}));
    EXPECT_THAT(textsOf(L"Edit", false), UnorderedElementsAre(L"", L"", L"", L"grid step", L"c freq"));
    EXPECT_THAT(textsOf(L"Edit", true), ElementsAre());
    for (const bool shown : {true, false})
        EXPECT_THAT(textsOf(L"Static", shown), testing::Not(testing::Contains(testing::HasSubstr(L"DEBUGGING"))));
}

TEST_F(ContainerTest, PlacesItsChildrenBySize) {
    expectLayout(720, 480);
    for (const SIZE& size : {SIZE{731, 533}, SIZE{720, 300}, SIZE{850, 720}, SIZE{721, 481}, SIZE{720, 480}}) {
        container.resize(size.cx, size.cy);
        EXPECT_EQ(container.size().cx, size.cx);
        EXPECT_EQ(container.size().cy, size.cy);
        expectLayout(size.cx, size.cy);
    }
    EXPECT_EQ(container.log.count("OnPosRectChange"), 0);
}

TEST_F(ContainerTest, IsWidenedBackToItsStartWidth) {
    std::vector<RECT> asked;
    container.site->onPosRectChange = [&](const RECT& wanted) {
        asked.push_back(wanted);
        EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&wanted, &wanted), S_OK);
    };
    container.resize(450, 400);
    ASSERT_EQ(asked.size(), 1U);
    const RECT expected{Container::kLeft, Container::kTop, Container::kLeft + 720, Container::kTop + 400};
    EXPECT_TRUE(EqualRect(&asked[0], &expected)) << asked[0].right << " " << asked[0].bottom;
    EXPECT_EQ(container.size().cx, 720);
    expectLayout(720, 400);
    container.resize(599, 400);
    EXPECT_EQ(asked.size(), 2U);
    expectLayout(720, 400);
}

TEST_F(ContainerTest, IsClippedWhenTheHostDoesNotChangeTheSize) {
    for (int round = 0; round < 2; ++round) {
        container.resize(300, 410);
        EXPECT_EQ(container.log.count("OnPosRectChange"), 1);
        EXPECT_EQ(container.size().cx, 300);
        EXPECT_EQ(container.size().cy, 410);
        expectLayout(720, 410);
    }
}

TEST_F(ContainerTest, AcceptsALowerHeight) {
    container.resize(720, 300);
    EXPECT_EQ(container.size().cy, 300);
    expectLayout(720, 300);
    EXPECT_EQ(container.log.count("OnPosRectChange"), 0);
    // Too low for the frames: the layout stops half way, and the next size arranges all children again.
    container.resize(720, 40);
    EXPECT_EQ(container.size().cy, 40);
    container.resize(760, 480);
    expectLayout(760, 480);
}

TEST_F(ContainerTest, ReportsTheSizeItStartedWith) {
    short width = 0;
    short height = 0;
    for (const SIZE& size : {SIZE{720, 480}, SIZE{800, 240}}) {
        container.resize(size.cx, size.cy);
        EXPECT_EQ(container.control->get_MinWid(&width), S_OK);
        EXPECT_EQ(container.control->get_MinHgt(&height), S_OK);
        EXPECT_EQ(width, 10800);
        EXPECT_EQ(height, 7200);
    }
}

TEST_F(ContainerTest, ReportsTheSizeOfTheLastRectangleOrExtent) {
    container.resize(720, 480);
    SIZEL extent{};
    EXPECT_EQ(container.as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, 720 * 2540 / 96);
    EXPECT_EQ(extent.cy, 480 * 2540 / 96);
    // A container sets the extent, reads it back, and then places the window for it.
    extent = {(800 * 2540 + 48) / 96, (500 * 2540 + 48) / 96};
    SIZEL taken{};
    EXPECT_EQ(container.as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(container.as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &taken), S_OK);
    EXPECT_EQ(taken.cx, extent.cx);
    EXPECT_EQ(taken.cy, extent.cy);
    EXPECT_EQ(container.size().cx, 720) << "only a rectangle moves the window";
    expectLayout(720, 480);
    container.resize(800, 500);
    expectLayout(800, 500);
    EXPECT_EQ(container.as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &taken), S_OK);
    EXPECT_EQ(taken.cx, extent.cx);
    EXPECT_EQ(taken.cy, extent.cy);
    // The next rectangle decides, whatever extent was set.
    extent = {5000, 5000};
    EXPECT_EQ(container.as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &extent), S_OK);
    container.resize(720, 480);
    EXPECT_EQ(container.as<IOleObject>()->GetExtent(DVASPECT_CONTENT, &taken), S_OK);
    EXPECT_EQ(taken.cx, 720 * 2540 / 96);
    EXPECT_EQ(taken.cy, 480 * 2540 / 96);
}

TEST_F(ContainerTest, RefusesExtentsOfOtherAspectsAndNegativeOnes) {
    const auto object = container.as<IOleObject>();
    SIZEL extent{20000, 15000};
    EXPECT_EQ(object->SetExtent(DVASPECT_ICON, &extent), DV_E_DVASPECT);
    EXPECT_EQ(object->GetExtent(DVASPECT_ICON, &extent), DV_E_DVASPECT);
    EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
    for (SIZEL negative : {SIZEL{-1, 15000}, SIZEL{20000, -1}})
        EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &negative), E_INVALIDARG);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, 720 * 2540 / 96);
    EXPECT_EQ(extent.cy, 480 * 2540 / 96);
}

TEST_F(ContainerTest, IsClippedToTheClipRectangle) {
    const RECT place{Container::kLeft, Container::kTop, Container::kLeft + 720, Container::kTop + 480};
    const RECT clip{Container::kLeft + 100, 0, Container::kLeft + 300, Container::kTop + 50};
    const auto object = container.as<IOleInPlaceObject>();
    EXPECT_EQ(object->SetObjectRects(&place, &clip), S_OK);
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    RECT box{};
    EXPECT_EQ(GetWindowRgn(container.root(), region), SIMPLEREGION);
    GetRgnBox(region, &box);
    const RECT expected{100, 0, 300, 50};
    EXPECT_TRUE(EqualRect(&box, &expected)) << box.left << " " << box.top << " " << box.right << " " << box.bottom;
    EXPECT_EQ(object->SetObjectRects(&place, &place), S_OK);
    EXPECT_EQ(GetWindowRgn(container.root(), region), ERROR);
    DeleteObject(region);
    EXPECT_EQ(object->SetObjectRects(nullptr, nullptr), E_POINTER);
}

TEST_F(ContainerTest, CollapsesAndExpands) {
    ComPtr<EventSink> sink;
    sink = new EventSink;
    container.connect(sink.Get());
    container.resize(740, 500);
    container.site->onPosRectChange = [&](const RECT& wanted) {
        EXPECT_EQ(container.as<IOleInPlaceObject>()->SetObjectRects(&wanted, &wanted), S_OK);
    };
    // 400 twips are 26.7 pixels and 315 are 21.
    for (const POINT& outside : {POINT{27, 21}, POINT{26, 22}, POINT{300, 5}})
        postRightClick(container.panel(), outside.x, outside.y);
    postClick(container.panel(), 5, 5);
    EXPECT_TRUE(sink->heard.empty());
    constexpr int kCollapsed = 500 - kPanelHeight + 21;
    for (int round = 0; round < 2; ++round) {
        postRightClick(container.panel(), 26, 21);
        EXPECT_EQ(windowText(container.panel()), L"+");
        EXPECT_EQ(container.size().cy, kCollapsed);
        EXPECT_EQ(container.size().cx, 740);
        expectLayout(740, kCollapsed, 21);
        postRightClick(container.panel(), 0, 0);
        EXPECT_EQ(windowText(container.panel()), L"-");
        EXPECT_EQ(container.size().cy, 500);
        expectLayout(740, 500);
    }
    const HeardEvent collapsed{kChgHeight, {kCollapsed * 15.0}, {VT_I2}};
    const HeardEvent expanded{kChgHeight, {500 * 15.0}, {VT_I2}};
    EXPECT_TRUE(sink->heard == (std::vector<HeardEvent>{collapsed, expanded, collapsed, expanded}));
    EXPECT_EQ(container.log.count("OnPosRectChange"), 4);
}

}  // namespace
}  // namespace kv::test
