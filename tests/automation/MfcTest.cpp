// The control in a dialog or window of MFC: the order of its calls, and what it relies on.
#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

using testing::ElementsAre;

/// Its site uses the extent that the control returns, and grants each request for a size.
class Mfc : public Replica {
  public:
    explicit Mfc(const SIZE& size) {
        setPlace(size);
        site->onPosRectChange = [this](const RECT& wanted) {
            site->place = wanted;
            EXPECT_EQ(place(wanted, &wanted), S_OK);
        };
    }
    ~Mfc() { release(*this); }

    /// The extent that the control returns decides.
    void negotiate() {
        const SIZE taken = pixelsOf(setExtent(himetricOf(size())));
        setPlace(taken);
    }
    void moveWindow(const SIZE& size) {
        setPlace(size);
        negotiate();
        EXPECT_EQ(place(site->place, &site->place), S_OK);
    }
    [[nodiscard]] SIZE size() const {
        return {site->place.right - site->place.left, site->place.bottom - site->place.top};
    }
    HRESULT verb(LONG number) { return verbAt(number, 0, host.get(), &site->place); }

  private:
    void setPlace(const SIZE& size) { site->place = {10, 10, 10 + size.cx, 10 + size.cy}; }
};

Mfc& mfc(Replica& container) {
    return static_cast<Mfc&>(container);
}

/// Connects the sinks before the control is loaded.
void quickActivate(Replica& container) {
    QACONTAINER from{};
    from.cbSize = sizeof from;
    from.pClientSite = container.site.Get();
    from.pAdviseSink = nullptr;
    from.pPropertyNotifySink = container.properties.Get();
    from.pUnkEventSink = container.events.Get();
    from.dwAmbientFlags = QACONTAINER_USERMODE | QACONTAINER_SUPPORTSMNEMONICS;
    QACONTROL to{};
    to.cbSize = sizeof to;
    EXPECT_EQ(container.as<IQuickActivate>()->QuickActivate(&from, &to), S_OK);
    EXPECT_NE(to.dwEventCookie, 0U);
    EXPECT_NE(to.dwPropNotifyCookie, 0U);
}

void findTheEvents(Replica& container) {
    GUID iid{};
    EXPECT_EQ(container.as<IProvideClassInfo2>()->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &iid), S_OK);
    EXPECT_TRUE(iid == DIID___kvBandscope);
}

constexpr Step kQuickCreation[] = {
    {"quick activation", &quickActivate},
    {"new", &Replica::initNew},
    {"extent", [](Replica& r) { mfc(r).negotiate(); }},
    {"activate", [](Replica& r) { EXPECT_EQ(mfc(r).verb(OLEIVERB_INPLACEACTIVATE), S_OK); }}};

/// Of a control without the style "visible".
constexpr Step kHiddenCreation[] = {{"site", &Replica::setSite},
                                    {"load", &Replica::load},
                                    {"event interface", &findTheEvents},
                                    {"events", &Replica::adviseEvents},
                                    {"property changes", &Replica::adviseProperties},
                                    {"extent", [](Replica& r) { mfc(r).negotiate(); }},
                                    {"hide", [](Replica& r) { EXPECT_EQ(mfc(r).verb(OLEIVERB_HIDE), S_OK); }}};

constexpr Step kMfcEnd[] = {{"deactivate the interface", &Replica::uiDeactivate},
                            {"deactivate", &Replica::deactivate},
                            {"close", &Replica::close},
                            {"close again", &Replica::close},
                            {"no site", &Replica::unsite},
                            {"release", &Replica::release}};

class MfcTest : public testing::Test {
  protected:
    Mfc dialog{{800, 500}};
};

TEST_F(MfcTest, TheExtentOfTheTemplateIsThatOfTheControl) {
    dialog.play(kQuickCreation);
    EXPECT_TRUE(isSize(dialog.size(), 800, 500)) << dialog.size().cx;
    EXPECT_TRUE(isSize(dialog.window(), 800, 500));
    dialog.expectLaidOutFor({800, 500});
    dialog.chooseGridRange();
    EXPECT_FALSE(dialog.events->heard.empty()) << "the sinks of the quick activation hear";
}

TEST_F(MfcTest, AMovedWindowKeepsEachPixel) {
    dialog.play(kQuickCreation);
    for (LONG width = 720; width < 780; ++width) {
        dialog.moveWindow({width, 1200 - width});
        EXPECT_TRUE(isSize(dialog.size(), width, 1200 - width)) << dialog.size().cx;
        EXPECT_TRUE(isSize(dialog.window(), width, 1200 - width));
    }
    pump();
    EXPECT_EQ(dialog.log.count("OnPosRectChange"), 0);
}

TEST_F(MfcTest, ANarrowWindowIsWidenedAtTheControlsRequest) {
    dialog.play(kQuickCreation);
    dialog.moveWindow({600, 400});
    EXPECT_TRUE(isSize(dialog.window(), 600, 400));
    pump();
    EXPECT_TRUE(isSize(dialog.window(), 720, 400));
    EXPECT_TRUE(isSize(dialog.size(), 720, 400));
    EXPECT_EQ(dialog.log.count("OnPosRectChange"), 1);
}

TEST_F(MfcTest, ATinyFirstWindowIsEnlargedToTheNaturalSize) {
    for (const SIZE& first : {SIZE{75, 23}, SIZE{120, 80}, SIZE{800, 40}}) {
        for (const bool repeated : {false, true}) {
            Mfc one(first);
            one.play(kQuickCreation);
            EXPECT_TRUE(isSize(one.window(), first.cx, first.cy));
            if (repeated) {
                EXPECT_EQ(one.place(one.site->place, &one.site->place), S_OK);
            }
            EXPECT_EQ(one.log.count("OnPosRectChange"), 0);
            pump();
            const SIZE expected{std::max<LONG>(first.cx, 720), 480};
            EXPECT_TRUE(isSize(one.window(), expected.cx, expected.cy)) << one.window().cx << " x " << one.window().cy;
            one.expectLaidOutFor(expected);
            EXPECT_TRUE(isSize(pixelsOf(one.extent()), expected.cx, expected.cy));
            // Later a low height is taken as it is.
            one.moveWindow({750, 220});
            pump();
            EXPECT_TRUE(isSize(one.window(), 750, 220));
            EXPECT_EQ(one.log.count("OnPosRectChange"), 1);
        }
    }
}

TEST_F(MfcTest, AHiddenControlHasItsWindowAndIsShownLater) {
    dialog.play(kHiddenCreation);
    const HWND window = dialog.root();
    ASSERT_TRUE(window) << "its handle is the dialog item's";
    EXPECT_TRUE(dialog.isHidden());
    EXPECT_TRUE(isSize(dialog.window(), 800, 500));
    dialog.drawChannel();
    EXPECT_TRUE(dialog.isHidden());
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(dialog.verb(OLEIVERB_SHOW), S_OK);
        EXPECT_EQ(dialog.root(), window);
        EXPECT_TRUE(IsWindowVisible(window));
        EXPECT_EQ(dialog.verb(OLEIVERB_HIDE), S_OK);
        EXPECT_EQ(dialog.root(), window);
        EXPECT_TRUE(dialog.isHidden());
    }
    EXPECT_EQ(dialog.log.count("OnInPlaceActivate"), 1);
    EXPECT_EQ(dialog.log.count("OnInPlaceDeactivate"), 0);
}

TEST_F(MfcTest, ACollapsedPanelMakesTheWindowLower) {
    dialog.play(kQuickCreation);
    postRightClick(dialog.panel(), 5, 5);
    EXPECT_TRUE(isSize(dialog.window(), 800, 500 - 131));
    dialog.expectLaidOutFor({800, 500 - 131});
    EXPECT_TRUE(isSize(pixelsOf(dialog.extent()), 800, 500 - 131));
    postRightClick(dialog.panel(), 5, 5);
    EXPECT_TRUE(isSize(dialog.window(), 800, 500));
    dialog.expectLaidOutFor({800, 500});
    const HeardEvent low{kChgHeight, {(500 - 131) * 15.0}, {VT_I2}};
    const HeardEvent high{kChgHeight, {500 * 15.0}, {VT_I2}};
    EXPECT_TRUE(dialog.events->heard == (std::vector<HeardEvent>{low, high}));
}

TEST_F(MfcTest, ItsEndWithTwoClosesLeavesNothing) {
    dialog.play(kQuickCreation);
    dialog.drawChannel();
    EXPECT_EQ(dialog.verb(OLEIVERB_UIACTIVATE), S_OK);
    dialog.play(kMfcEnd);
    dialog.expectAllReleased();
}

TEST_F(MfcTest, AHiddenControlCanBeClosed) {
    dialog.play(kHiddenCreation);
    dialog.drawChannel();
    Replica::close(dialog);
    EXPECT_FALSE(dialog.root());
    EXPECT_EQ(dialog.verb(OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(dialog.root()) << "what is closed is not made again to be hidden";
    Replica::unsite(dialog);
    Replica::release(dialog);
    dialog.expectAllReleased();
}

}  // namespace
}  // namespace kv::test
