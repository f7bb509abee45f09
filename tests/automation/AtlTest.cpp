// The control in simple containers: the window of ATL, which loads the control before it sites it and has no ambient
// properties, and a container that only releases the control.
#include <gmock/gmock.h>

#include "tests/automation/MessageBoxes.h"
#include "tests/automation/Picture.h"
#include "tests/automation/Replica.h"

namespace kv::test {
namespace {

/// It uses neither the extent that the control returns nor its requests.
class Atl : public Replica {
  public:
    explicit Atl(const SIZE& size) {
        site->place = {0, 0, size.cx, size.cy};
        site->offers.ambients = false;
        site->offers.document = false;
        for (const char* call :
             {"OnPosRectChange", "OnFocus", "OnFocus(lost)", "OnUIDeactivate", "TranslateAccelerator"})
            log.answers[call] = E_NOTIMPL;
    }
    ~Atl() { release(*this); }

    void resize(const SIZE& size) {
        site->place = {0, 0, size.cx, size.cy};
        setExtent(himetricOf(size));
        EXPECT_EQ(place(site->place, &site->place), S_OK);
    }
};

void setExtentOfTheWindow(Replica& container) {
    // Some versions pass pixels where hundredths of a millimeter are expected.
    container.setExtent({container.site->place.right, container.site->place.bottom});
}

void activate(Replica& container) {
    EXPECT_EQ(container.verbAt(OLEIVERB_INPLACEACTIVATE, 0, container.host.get(), &container.site->place), S_OK);
    EXPECT_TRUE(IsWindowVisible(container.root()));
}

/// The control is initialized before it has a site, although its status asks for the site first.
constexpr Step kCreation[] = {
    {"new", &Replica::initNew},        {"site", &Replica::setSite}, {"host names", &Replica::setHostNames},
    {"extent", &setExtentOfTheWindow}, {"activate", &activate},     {"events", &Replica::adviseEvents}};

constexpr Step kLoadedCreation[] = {
    {"load", &Replica::load},          {"site", &Replica::setSite}, {"host names", &Replica::setHostNames},
    {"extent", &setExtentOfTheWindow}, {"activate", &activate},     {"events", &Replica::adviseEvents}};

constexpr Step kSiteFirst[] = {{"site", &Replica::setSite},
                               {"new", &Replica::initNew},
                               {"host names", &Replica::setHostNames},
                               {"activate", &activate},
                               {"events", &Replica::adviseEvents}};

/// While the host's window is being destroyed: its site has no window any more.
constexpr Step kAtlEnd[] = {{"no window", [](Replica& r) { r.site->hasWindow = false; }},
                            {"close", &Replica::close},
                            {"no site", &Replica::unsite},
                            {"release", &Replica::release}};

class AtlTest : public testing::Test {
  protected:
    Atl container{{800, 500}};
};

TEST_F(AtlTest, TheControlCanBeSitedBeforeOrAfterItIsInitialized) {
    container.play(kCreation);
    pump();
    const Picture first = windowPicture(container.root());
    for (const std::span<const Step>& steps :
         {std::span<const Step>(kLoadedCreation), std::span<const Step>(kSiteFirst)}) {
        Atl other({800, 500});
        other.play(steps);
        pump();
        EXPECT_EQ(windowPicture(other.root()), first);
        for (const auto getter : {&_kvBandscope::get_FreqEndBuffer, &_kvBandscope::get_dFreqMin,
                                  &_kvBandscope::get_dPwrMax, &_kvBandscope::get_CursorVal}) {
            double one = 0.0;
            double two = -1.0;
            EXPECT_EQ((container.control.Get()->*getter)(&one), S_OK);
            EXPECT_EQ((other.control.Get()->*getter)(&two), S_OK);
            EXPECT_EQ(one, two);
        }
    }
}

TEST_F(AtlTest, TheRectangleDecidesTheSizeAndNotTheExtent) {
    container.play(kCreation);
    EXPECT_TRUE(isSize(container.window(), 800, 500));
    EXPECT_TRUE(isSize(pixelsOf(container.extent()), 800, 500));
    for (const SIZE& size : {SIZE{900, 600}, SIZE{500, 300}, SIZE{500, 300}}) {
        container.resize(size);
        pump();
        EXPECT_TRUE(isSize(container.window(), size.cx, size.cy)) << "its answer to a wish is an error";
        EXPECT_TRUE(isSize(pixelsOf(container.extent()), size.cx, size.cy));
    }
}

TEST_F(AtlTest, ActivationIsReportedBeforeTheWindowIsShown) {
    container.play(kCreation);
    const std::vector<std::string> calls = container.log.take();
    EXPECT_LT(std::find(calls.begin(), calls.end(), "OnInPlaceActivate"),
              std::find(calls.begin(), calls.end(), "ShowObject"));
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "ShowObject"), 1);
}

TEST_F(AtlTest, AControlWhoseSiteHasNoWindowAnyMoreCanBeClosed) {
    container.play(kCreation);
    container.drawChannel();
    EXPECT_EQ(container.verbAt(OLEIVERB_UIACTIVATE, 0, container.host.get(), nullptr), S_OK);
    container.play(kAtlEnd);
    container.expectAllReleased();
}

TEST_F(AtlTest, TheHostsWindowIsDestroyedFirst) {
    container.play(kCreation);
    container.drawChannel();
    container.host.destroy();
    EXPECT_FALSE(container.root());
    container.play(kAtlEnd);
    container.expectAllReleased();
}

TEST_F(AtlTest, ASiteWithoutAWindowActivatesNothing) {
    Replica::initNew(container);
    Replica::setSite(container);
    container.site->hasWindow = false;
    EXPECT_TRUE(FAILED(container.verbAt(OLEIVERB_INPLACEACTIVATE, 0, nullptr, nullptr)));
    EXPECT_FALSE(container.root());
    EXPECT_EQ(container.log.count("OnInPlaceActivate"), container.log.count("OnInPlaceDeactivate"));
    container.site->hasWindow = true;
    activate(container);
}

TEST_F(AtlTest, AContainerThatOnlyReleasesLeavesNothing) {
    Replica::release(container);
    for (const bool active : {false, true}) {
        Atl other({800, 500});
        other.advise();
        Replica::initNew(other);
        Replica::setSite(other);
        if (active)
            activate(other);
        other.drawChannel();
        EXPECT_EQ(other.control->put_bMouseInfo(VARIANT_TRUE), S_OK);
        EXPECT_EQ(other.control.Reset(), 0U);
        EXPECT_FALSE(FindWindowW(L"kvForm", nullptr));
        other.expectAllReleased();
    }
}

}  // namespace
}  // namespace kv::test
