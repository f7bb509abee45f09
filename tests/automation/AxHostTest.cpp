// The control in the ActiveX host of WinForms (AxHost): the order of its calls, and what each form relies on.
#include <gmock/gmock.h>

#include <array>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr SIZE kDropped{75, 23};  ///< the size of a WinForms control before it is set

/// The calls that this container makes when its size is set, when the control shows its window, and when that window
/// is destroyed.
class AxHost : public Replica {
  public:
    static constexpr RECT kClip{INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2};  ///< of every rectangle

    SIZE size{};  ///< of the WinForms control, pixels
    bool designMode = false;
    std::vector<SIZE> forced;  ///< sizes that the control forced upon the form

    AxHost() {
        site->offers.document = false;
        site->clip = kClip;
        log.inside["ShowObject"] = [this] { attachWindow(); };
        site->onPosRectChange = [this](const RECT& wanted) {
            EXPECT_EQ(place(wanted, &kClip), S_OK);
            // The window is the WinForms control's own: its messages report the new size to the form.
            size = window();
            site->place = placeOf(root());
        };
        setPlace(kDropped);
    }
    ~AxHost() { release(*this); }

    void setPlace(const SIZE& wanted) {
        size = wanted;
        site->place = {30, 20, 30 + wanted.cx, 20 + wanted.cy};
    }
    /// Sets the size in the form.
    void setBounds(const SIZE& wanted) {
        if (isSize(size, wanted.cx, wanted.cy))
            return;
        setPlace(negotiate(wanted));
        EXPECT_EQ(place(site->place, &kClip), S_OK);
    }
    HRESULT activate(LONG verb = OLEIVERB_INPLACEACTIVATE) { return verbAt(verb, -1, nullptr, &site->place); }
    void create(const SIZE& wanted);

    HWND attached = nullptr;

  private:
    /// The extent that the control returns decides.
    SIZE negotiate(const SIZE& wanted) {
        SIZEL himetric = himetricOf(wanted);
        const HRESULT taken = as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &himetric);
        if (taken != S_OK || designMode) {
            himetric = extent();
            EXPECT_EQ(as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &himetric), S_OK);
        }
        return pixelsOf(extent());
    }
    void attachWindow() {
        attached = root();
        ASSERT_TRUE(attached) << "a control without a window ends in an exception";
        const SIZE users = size;
        const SIZE controls = pixelsOf(extent());
        if (users.cx < controls.cx || users.cy < controls.cy) {
            forced.push_back(controls);
            setBounds(controls);
            return;
        }
        const SIZE taken = negotiate(users);
        if (!isSize(taken, users.cx, users.cy))
            setBounds(taken);
    }
};

AxHost& axHost(Replica& container) {
    return static_cast<AxHost&>(container);
}

constexpr Step kNew[] = {{"property changes", &Replica::adviseProperties},
                         {"freeze", &Replica::freeze},
                         {"new", &Replica::initNew},
                         {"site", &Replica::setSite},
                         {"events", &Replica::adviseEvents},
                         {"activate", [](Replica& r) { EXPECT_EQ(axHost(r).activate(), S_OK); }},
                         {"thaw", &Replica::thaw}};

/// As after SETCLIENTSITEFIRST, from saved state.
constexpr Step kLoaded[] = {{"property changes", &Replica::adviseProperties},
                            {"site", &Replica::setSite},
                            {"freeze", &Replica::freeze},
                            {"load", &Replica::load},
                            {"events", &Replica::adviseEvents},
                            {"activate", [](Replica& r) { EXPECT_EQ(axHost(r).activate(), S_OK); }},
                            {"thaw", &Replica::thaw}};

/// A form is opened in the designer: the same object gets a second site and is initialized again.
constexpr Step kSitedAgain[] = {{"events off", &Replica::unadviseEvents},
                                {"deactivate the interface", &Replica::uiDeactivate},
                                {"deactivate", &Replica::deactivate},
                                {"no site", &Replica::unsite},
                                {"freeze", &Replica::freeze},
                                {"new again", &Replica::initNew},
                                {"site again", &Replica::setSite},
                                {"activate", [](Replica& r) { EXPECT_EQ(axHost(r).activate(), S_OK); }},
                                {"events", &Replica::adviseEvents}};

/// Without Close.
constexpr Step kAxHostEnd[] = {{"deactivate the interface", &Replica::uiDeactivate},
                               {"deactivate", &Replica::deactivate},
                               {"property changes off", &Replica::unadviseProperties},
                               {"events off", &Replica::unadviseEvents},
                               {"no site", &Replica::unsite},
                               {"release", &Replica::release}};

void AxHost::create(const SIZE& wanted) {
    setPlace(wanted);
    play(kNew);
}

class AxHostTest : public testing::Test {
  protected:
    AxHost host;

    void expectSize(LONG width, LONG height) const {
        EXPECT_TRUE(isSize(host.size, width, height)) << host.size.cx << " x " << host.size.cy;
        EXPECT_TRUE(isSize(host.window(), width, height)) << host.window().cx << " x " << host.window().cy;
        const SIZEL extent = host.extent();
        const SIZEL expected = himetricOf({width, height});
        EXPECT_EQ(extent.cx, expected.cx);
        EXPECT_EQ(extent.cy, expected.cy);
    }
};

TEST_F(AxHostTest, CreationAndLoadLeadToTheSameControl) {
    host.create({800, 500});
    const Picture fresh = windowPicture(host.root());
    expectSize(800, 500);
    AxHost other;
    other.setPlace({800, 500});
    other.play(kLoaded);
    EXPECT_EQ(windowPicture(other.root()), fresh);
    EXPECT_TRUE(isSize(other.size, 800, 500));
}

TEST_F(AxHostTest, TheWindowIsCreatedAfterOnInPlaceActivateAndBeforeShowObject) {
    host.create({800, 500});
    std::vector<std::string> calls;
    for (const std::string& call : host.log.take())
        if (call == "OnInPlaceActivate" || call == "ShowObject")
            calls.push_back(call);
    EXPECT_THAT(calls, ElementsAre("OnInPlaceActivate", "ShowObject"));
    EXPECT_EQ(host.attached, host.root());
    EXPECT_TRUE(IsWindowVisible(host.root()));
}

TEST_F(AxHostTest, TheRectangleOfTheActivationIsTheExtent) {
    for (const SIZE& wanted : {SIZE{800, 500}, SIZE{600, 400}, SIZE{120, 80}, SIZE{1600, 900}}) {
        AxHost one;
        one.create(wanted);
        EXPECT_THAT(one.forced, IsEmpty()) << "the form is laid out again for " << wanted.cx;
        EXPECT_TRUE(isSize(pixelsOf(one.extent()), wanted.cx, wanted.cy)) << wanted.cx;
        EXPECT_TRUE(isSize(one.window(), wanted.cx, wanted.cy)) << wanted.cx;
    }
}

TEST_F(AxHostTest, AControlDroppedOnAFormGetsItsNaturalSize) {
    for (const bool design : {false, true}) {
        AxHost one;
        one.designMode = design;
        one.create(kDropped);
        EXPECT_TRUE(isSize(one.size, 720, 480)) << one.size.cx << " x " << one.size.cy;
        EXPECT_TRUE(isSize(one.window(), 720, 480));
        one.expectLaidOutFor({720, 480});
        pump();
        EXPECT_TRUE(isSize(one.size, 720, 480)) << "and keeps it";
        EXPECT_EQ(one.log.count("OnPosRectChange"), 0);
    }
}

TEST_F(AxHostTest, ADroppedControlWithATinyExtentGetsItsNaturalSizeToo) {
    // The designer sets the size of a new control before the window exists.
    SIZEL tiny = himetricOf(kDropped);
    EXPECT_EQ(host.as<IOleObject>()->SetExtent(DVASPECT_CONTENT, &tiny), S_OK);
    EXPECT_TRUE(isSize(pixelsOf(host.extent()), kDropped.cx, kDropped.cy));
    host.create(kDropped);
    expectSize(720, 480);
}

TEST_F(AxHostTest, TheFormResizesTheControl) {
    for (const bool design : {false, true}) {
        AxHost one;
        one.designMode = design;
        one.create({800, 500});
        for (const SIZE& wanted : {SIZE{900, 500}, SIZE{721, 481}, SIZE{1003, 777}, SIZE{720, 240}}) {
            one.setBounds(wanted);
            EXPECT_TRUE(isSize(one.size, wanted.cx, wanted.cy)) << one.size.cx << " x " << one.size.cy;
            EXPECT_TRUE(isSize(one.window(), wanted.cx, wanted.cy));
            one.expectLaidOutFor(wanted);
        }
        pump();
        EXPECT_TRUE(isSize(one.size, 720, 240));
        EXPECT_EQ(one.log.count("OnPosRectChange"), 0);
    }
}

TEST_F(AxHostTest, NoPixelIsLostByConversion) {
    host.create({800, 500});
    for (const int dpi : {96, 120, 144}) {
        for (LONG pixels = 1; pixels <= 2000; ++pixels) {
            const SIZEL set = himetricOf({pixels, 2001 - pixels}, dpi);
            const SIZEL got = host.setExtent(set);
            ASSERT_EQ(got.cx, set.cx) << pixels << " at " << dpi;
            ASSERT_EQ(got.cy, set.cy) << pixels << " at " << dpi;
        }
    }
    EXPECT_TRUE(isSize(host.window(), 800, 500)) << "an extent alone moves no window";
    host.setBounds({801, 500});
    expectSize(801, 500);
}

TEST_F(AxHostTest, ANarrowControlAsksForItsWidthAfterTheCallOfTheForm) {
    host.create({800, 500});
    for (int round = 0; round < 3; ++round) {
        host.setBounds({600, 400});
        expectSize(600, 400);
        EXPECT_EQ(host.log.count("OnPosRectChange"), round) << "not from inside";
        pump();
        expectSize(720, 400);
        host.expectLaidOutFor({720, 400});
        EXPECT_EQ(host.log.count("OnPosRectChange"), round + 1);
    }
}

TEST_F(AxHostTest, ADockedControlThatIsResizedBackAtOnceKeepsThatSize) {
    host.create({800, 500});
    // The form docks the control and lays it out again when its size changes.
    const auto echo = host.site->onPosRectChange;
    host.site->onPosRectChange = [&](const RECT& wanted) {
        echo(wanted);
        host.setBounds({600, 400});
    };
    host.setBounds({600, 400});
    pump();
    expectSize(600, 400);
    EXPECT_EQ(host.log.count("OnPosRectChange"), 1);
    host.setBounds({800, 500});
    host.setBounds({600, 400});
    pump();
    expectSize(600, 400);
}

TEST_F(AxHostTest, RectanglesAreTakenAtAnyTime) {
    const RECT place{10, 10, 810, 510};
    const RECT empty{10, 10, 10, 10};
    const RECT turned{50, 50, 10, 10};
    const auto all = [&](const char* when) {
        for (const RECT* rect : {&place, &empty, &turned, &place, &place})
            for (const RECT* clip : {&AxHost::kClip, rect, static_cast<const RECT*>(nullptr)})
                EXPECT_EQ(host.place(*rect, clip), S_OK) << when;
    };
    all("before everything");
    host.create({800, 500});
    all("while active");
    EXPECT_TRUE(isSize(host.window(), 800, 500));
    host.expectLaidOutFor({800, 500});
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(GetWindowRgn(host.root(), region), ERROR) << "the whole window shows";
    DeleteObject(region);
    EXPECT_EQ(host.as<IOleInPlaceObject>()->SetObjectRects(nullptr, &place), E_POINTER);
    Replica::deactivate(host);
    all("afterwards");
    pump();
    EXPECT_EQ(host.log.count("OnPosRectChange"), 0);
}

TEST_F(AxHostTest, VerbsAcceptAnyIndexRectangleAndParent) {
    Replica::initNew(host);
    Replica::setSite(host);
    host.setPlace({800, 500});
    for (const LONG verb :
         {OLEIVERB_INPLACEACTIVATE, OLEIVERB_SHOW, OLEIVERB_PRIMARY, OLEIVERB_UIACTIVATE, OLEIVERB_HIDE})
        for (const LONG index : {-1L, 0L, 1L})
            for (const HWND parent : {static_cast<HWND>(nullptr), host.host.get()})
                for (const RECT* rect : {static_cast<const RECT*>(nullptr), const_cast<const RECT*>(&host.site->place)})
                    EXPECT_EQ(host.verbAt(verb, index, parent, rect), S_OK) << verb;
    EXPECT_EQ(host.log.count("OnInPlaceActivate"), 1);
    EXPECT_TRUE(isSize(host.window(), 800, 500));
}

TEST_F(AxHostTest, HidingKeepsTheWindowAndShowingLeavesTheFocusAlone) {
    host.create({800, 500});
    const HWND box = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 20, 10, host.host.get(), nullptr,
                                     nullptr, nullptr);
    const HWND before = host.root();
    SetFocus(box);
    host.log.calls.clear();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(host.activate(OLEIVERB_HIDE), S_OK);
        EXPECT_EQ(host.root(), before);
        EXPECT_TRUE(host.isHidden());
        EXPECT_EQ(host.activate(OLEIVERB_SHOW), S_OK);
        EXPECT_EQ(host.root(), before);
        EXPECT_FALSE(host.isHidden());
        EXPECT_EQ(GetFocus(), box);
    }
    EXPECT_EQ(host.activate(OLEIVERB_HIDE), S_OK);
    EXPECT_EQ(host.activate(OLEIVERB_INPLACEACTIVATE), S_OK);
    EXPECT_FALSE(host.isHidden());
    EXPECT_THAT(host.log.take(), IsEmpty()) << "it stays active in place";
    DestroyWindow(box);
}

TEST_F(AxHostTest, HidingReturnsTheFocusAndEndsTheUiActivation) {
    host.create({800, 500});
    EXPECT_EQ(host.activate(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_TRUE(IsChild(host.root(), GetFocus()));
    host.log.calls.clear();
    EXPECT_EQ(host.activate(OLEIVERB_HIDE), S_OK);
    EXPECT_EQ(GetFocus(), host.host.get());
    EXPECT_THAT(host.log.take(), ElementsAre("frame.SetActiveObject(null)", "OnUIDeactivate", "OnFocus(lost)"));
    EXPECT_EQ(host.activate(OLEIVERB_SHOW), S_OK);
    EXPECT_EQ(GetFocus(), host.host.get());
}

TEST_F(AxHostTest, SavingIsNeverNecessary) {
    const auto persist = host.as<IPersistStreamInit>();
    Replica::initNew(host);
    EXPECT_EQ(persist->IsDirty(), S_FALSE);
    ComPtr<IStream> saved;
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, &saved), S_OK);
    EXPECT_EQ(persist->Save(saved.Get(), TRUE), S_OK);
    EXPECT_EQ(persist->IsDirty(), S_FALSE);
    // No changed value is part of the saved state.
    host.drawChannel();
    host.setExtent({20000, 15000});
    EXPECT_EQ(host.control->put_FreqEndBuffer(7.0), S_OK);
    EXPECT_EQ(persist->IsDirty(), S_FALSE);
    AxHost other;
    Replica::load(other);
    EXPECT_EQ(other.as<IPersistStreamInit>()->IsDirty(), S_FALSE);
}

TEST_F(AxHostTest, TheSameObjectCanBeSitedAndInitializedAgain) {
    host.create({800, 500});
    host.drawChannel();
    pump();
    const Picture before = windowPicture(host.root());
    for (int round = 0; round < 2; ++round)
        host.play(kSitedAgain);
    pump();
    EXPECT_EQ(windowPicture(host.root()), before) << "channels and pictures are the running program's";
    long count = 0;
    EXPECT_EQ(host.control->get_NumTX(&count), S_OK);
    EXPECT_EQ(count, 1);
    expectSize(800, 500);
}

TEST_F(AxHostTest, AVisibleControlCanBeLoadedAndRaisesEventsAfterwards) {
    host.setPlace({800, 500});
    host.play(kLoaded);
    host.drawChannel();
    pump();
    const Picture before = windowPicture(host.root());
    for (int round = 0; round < 2; ++round) {
        // This way of loading is never followed by a thaw.
        Replica::freeze(host);
        Replica::load(host);
    }
    pump();
    EXPECT_EQ(windowPicture(host.root()), before);
    host.events->heard.clear();
    host.chooseGridRange();
    EXPECT_THAT(host.events->heard, Not(IsEmpty()));
}

TEST_F(AxHostTest, ItsEndWithoutACloseLeavesNothing) {
    host.create({800, 500});
    host.drawChannel();
    EXPECT_EQ(host.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(host.activate(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_TRUE(FindWindowW(L"kvForm", nullptr)) << "the window with the mouse information";
    host.play(kAxHostEnd);
    EXPECT_FALSE(FindWindowW(L"kvForm", nullptr));
    host.expectAllReleased();
}

}  // namespace
}  // namespace kv::test
