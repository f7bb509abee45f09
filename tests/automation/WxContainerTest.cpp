// The control in the ActiveX window of wxWidgets (wxActiveXContainer): the order of its calls, and what it relies on.
#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// It hides and shows the control around each resize, and grants each request with the size that it has.
class WxContainer : public Replica {
  public:
    int extentsSet = 0;

    explicit WxContainer(const SIZE& size) {
        setPlace(size);
        site->onPosRectChange = [this](const RECT&) { EXPECT_EQ(place(site->place, &site->place), S_OK); };
    }
    ~WxContainer() { release(*this); }

    void resize(const SIZE& size) {
        setPlace(size);
        const HWND before = root();
        EXPECT_EQ(verbAt(OLEIVERB_HIDE, 0, host.get(), &site->place), S_OK);
        EXPECT_EQ(root(), before) << "its handle is kept";
        SIZEL himetric = himetricOf(size);
        const SIZEL now = extent();
        if (now.cx != himetric.cx || now.cy != himetric.cy) {
            ++extentsSet;
            EXPECT_EQ(as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &himetric), S_OK);
        }
        EXPECT_EQ(verbAt(OLEIVERB_SHOW, 0, host.get(), &site->place), S_OK);
        EXPECT_EQ(place(site->place, &site->place), S_OK);
        EXPECT_EQ(root(), before);
        EXPECT_FALSE(isHidden());
    }
    void create();

  private:
    void setPlace(const SIZE& size) { site->place = {0, 0, size.cx, size.cy}; }
};

/// The event interface is the one that the coclass names as its default source.
void walkTheCoclass(Replica& container) {
    ComPtr<ITypeInfo> coclass;
    ASSERT_EQ(container.as<IProvideClassInfo>()->GetClassInfo(&coclass), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(coclass->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    const UINT count = attributes->cImplTypes;
    coclass->ReleaseTypeAttr(attributes);
    int sources = 0;
    for (UINT i = 0; i < count; ++i) {
        int flags = 0;
        EXPECT_EQ(coclass->GetImplTypeFlags(i, &flags), S_OK);
        if ((flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) != (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE))
            continue;
        ++sources;
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> source;
        ASSERT_EQ(coclass->GetRefTypeOfImplType(i, &reference), S_OK);
        ASSERT_EQ(coclass->GetRefTypeInfo(reference, &source), S_OK);
        ASSERT_EQ(source->GetTypeAttr(&attributes), S_OK);
        EXPECT_TRUE(attributes->guid == DIID___kvBandscope);
        EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
        source->ReleaseTypeAttr(attributes);
    }
    EXPECT_EQ(sources, 1);
}

void containAndRun(Replica& container) {
    EXPECT_EQ(OleSetContainedObject(container.control.Get(), TRUE), S_OK);
    EXPECT_EQ(OleRun(container.control.Get()), S_OK);
}

void placeWhileInactive(Replica& container) {
    HWND window = container.host.get();
    EXPECT_NE(container.as<IOleInPlaceObject>()->GetWindow(&window), S_OK);
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(container.place(container.site->place, &container.site->place), S_OK);
    EXPECT_FALSE(container.root());
}

void activateAndShow(Replica& container) {
    EXPECT_EQ(container.verbAt(OLEIVERB_INPLACEACTIVATE, 0, container.host.get(), &container.site->place), S_OK);
    EXPECT_EQ(container.verbAt(OLEIVERB_SHOW, 0, container.host.get(), &container.site->place), S_OK);
    EXPECT_TRUE(IsWindowVisible(container.root()));
}

constexpr Step kWxCreation[] = {{"class information", &walkTheCoclass},
                                {"events", &Replica::adviseEvents},
                                {"changes of the object", &Replica::adviseObject},
                                {"host names", &Replica::setHostNames},
                                {"contained and run", &containAndRun},
                                {"site", &Replica::setSite},
                                {"new", &Replica::initNew},
                                {"placed too early", &placeWhileInactive},
                                {"activate and show", &activateAndShow}};

void hideWithoutARectangle(Replica& container) {
    EXPECT_EQ(container.verbAt(OLEIVERB_HIDE, 0, container.host.get(), nullptr), S_OK);
    EXPECT_FALSE(container.root());
}

/// The event sink is never disconnected.
constexpr Step kWxEnd[] = {{"deactivate", &Replica::deactivate},
                           {"deactivate the interface", &Replica::uiDeactivate},
                           {"changes off", &Replica::unadviseObject},
                           {"hide", &hideWithoutARectangle},
                           {"close", &Replica::close},
                           {"no site", &Replica::unsite},
                           {"release", &Replica::release}};

void WxContainer::create() {
    play(kWxCreation);
    pump();
    log.calls.clear();
}

class WxContainerTest : public testing::Test {
  protected:
    WxContainer container{{800, 500}};

    void toggle() const { postRightClick(container.panel(), 5, 5); }
};

TEST_F(WxContainerTest, TheCreationStepsLeadToEvents) {
    container.create();
    EXPECT_TRUE(isSize(container.window(), 800, 500));
    container.expectLaidOutFor({800, 500});
    container.chooseGridRange();
    EXPECT_FALSE(container.events->heard.empty()) << "the sink was connected before site and start";
}

TEST_F(WxContainerTest, EveryResizeHidesAndShowsTheSameWindow) {
    container.create();
    for (const SIZE& size : {SIZE{900, 600}, SIZE{725, 333}, SIZE{500, 400}, SIZE{1111, 601}}) {
        container.resize(size);
        pump();
        EXPECT_TRUE(isSize(container.window(), size.cx, size.cy)) << container.window().cx;
        container.expectLaidOutFor({std::max<LONG>(size.cx, 720), size.cy});
    }
    EXPECT_EQ(container.log.count("OnInPlaceActivate") + container.log.count("OnInPlaceDeactivate"), 0);
}

TEST_F(WxContainerTest, TheExtentIsTheNumberThatWasSet) {
    container.create();
    container.resize({901, 601});
    EXPECT_EQ(container.extentsSet, 1);
    for (int round = 0; round < 5; ++round)
        container.resize({901, 601});
    EXPECT_EQ(container.extentsSet, 1) << "it is set again wherever one digit differs";
}

TEST_F(WxContainerTest, AResizeTakesNoFocus) {
    container.create();
    const HWND box = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 20, 10, container.host.get(),
                                     nullptr, nullptr, nullptr);
    SetFocus(box);
    for (const SIZE& size : {SIZE{900, 600}, SIZE{800, 500}}) {
        container.resize(size);
        pump();
        EXPECT_EQ(GetFocus(), box);
    }
    EXPECT_THAT(container.log.take(), IsEmpty());
    DestroyWindow(box);
}

TEST_F(WxContainerTest, ANarrowControlAsksOnceAndAcceptsTheResult) {
    container.create();
    container.resize({600, 400});
    EXPECT_EQ(container.log.count("OnPosRectChange"), 0);
    pump();
    EXPECT_EQ(container.log.count("OnPosRectChange"), 1);
    for (int round = 0; round < 4; ++round) {
        container.resize({600, 400});
        pump();
        EXPECT_TRUE(isSize(container.window(), 600, 400));
        EXPECT_TRUE(isSize(pixelsOf(container.extent()), 600, 400));
    }
    EXPECT_EQ(container.log.count("OnPosRectChange"), 1);
}

TEST_F(WxContainerTest, ACollapseKeepsAllTheRoomThatTheContainerGives) {
    container.create();
    container.drawChannel();
    for (int round = 0; round < 2; ++round) {
        toggle();
        EXPECT_EQ(windowText(container.panel()), L"+");
        EXPECT_TRUE(isSize(container.window(), 800, 500));
        container.expectLaidOutFor({800, 500});
        toggle();
        EXPECT_EQ(windowText(container.panel()), L"-");
        EXPECT_TRUE(isSize(container.window(), 800, 500));
        container.expectLaidOutFor({800, 500});
    }
    const HeardEvent same{kChgHeight, {500 * 15.0}, {VT_I2}};
    EXPECT_TRUE(container.events->heard == (std::vector<HeardEvent>{same, same, same, same}));
    EXPECT_EQ(container.log.count("OnPosRectChange"), 2) << "an expansion into kept room needs no more of it";
}

TEST_F(WxContainerTest, AContainerThatStartsTinyIsAskedForMoreRoom) {
    WxContainer tiny({20, 20});
    tiny.create();
    EXPECT_TRUE(isSize(tiny.window(), 20, 20)) << "its answer is the room that it has";
    EXPECT_TRUE(isSize(pixelsOf(tiny.extent()), 20, 20)) << "and the control agrees then";
    tiny.resize({800, 500});
    pump();
    tiny.expectLaidOutFor({800, 500});
    EXPECT_TRUE(isSize(pixelsOf(tiny.extent()), 800, 500));
}

TEST_F(WxContainerTest, ItsEndWithAHideAfterTheDeactivationLeavesNothing) {
    container.create();
    container.drawChannel();
    container.play(kWxEnd);
    EXPECT_EQ(container.log.count("OnInPlaceActivate"), 0) << "a verb of the end makes nothing new";
    container.expectAllReleased();
}

TEST_F(WxContainerTest, NoEventComesAfterTheEnd) {
    container.create();
    container.drawChannel();
    // The container never disconnects its sink, which then points to a deleted object. The control is closed inside the
    // first event.
    container.events->onEvent = [&](DISPID) {
        container.events->onEvent = nullptr;
        Replica::deactivate(container);
        Replica::close(container);
        Replica::unsite(container);
    };
    container.chooseGridRange();
    EXPECT_EQ(container.events->heard.size(), 1U);
}

}  // namespace
}  // namespace kv::test
