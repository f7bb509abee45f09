// Which monitor a restored form goes to, and which ones count.
#include <gmock/gmock.h>

#include "forms/FormPlacement.h"
#include "forms/WorkArea.h"
#include "forms/clsMonitors.h"
#include "tests/unit/FakeForm.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {
namespace {

using formenv::Place;
using formenv::ScreenRect;

constexpr wchar_t kINI[] = L"C:\\places.ini";

class PlacementMonitorsTest : public ::testing::Test {
  protected:
    Place restored(double left, double top, double width, double height) {
        for (const auto& [name, value] :
             {std::pair{L"Left", left}, {L"Top", top}, {L"Width", width}, {L"Height", height}})
            files.settings.write(name, L"CONFIG", kINI, std::to_wstring(std::lround(value)));
        FakeForm form({-500.0, -500.0, 6000.0, 4500.0});
        RestoreFormPlacement(form, store);
        return form.at;
    }

    AskedDesktop desktop;
    control::MemoryFiles files;
    PlacementStore store{files, desktop, kINI, L""};
};

TEST_F(PlacementMonitorsTest, TheNearestMonitorIsLookedForByTheWholeTitleBar) {
    restored(1500.0, 750.0, 7500.0, 6000.0);
    // 450 twips of title are 30 pixels.
    EXPECT_THAT(desktop.probes, testing::Contains(AskedDesktop::Probe{{100, 50, 600, 80}, 2}));
}

TEST_F(PlacementMonitorsTest, AFormThatReachesFurtherIntoTheSecondMonitorGoesThere) {
    desktop.monitors.clear();
    desktop.add({0, 0, 1000, 800});
    desktop.add({1000, 900, 2000, 1700});
    // Its title is above both; most of it is above the second one.
    const Place at = restored(900.0 * 15.0, 850.0 * 15.0, 800.0 * 15.0, 400.0 * 15.0);
    EXPECT_EQ(at, (Place{1000.0 * 15.0, 900.0 * 15.0, 800.0 * 15.0, 400.0 * 15.0}));
}

TEST_F(PlacementMonitorsTest, AMonitorWithoutAWorkAreaIsNone) {
    desktop.add({1920, 0, 3840, 1080});
    for (const ScreenRect& nothing : {ScreenRect{0, 0, 0, 1040}, ScreenRect{0, 0, 1920, 0}}) {
        desktop.monitors[0].info.work = nothing;
        const Place at = restored(1500.0, 750.0, 7500.0, 6000.0);
        EXPECT_EQ(at, (Place{1920.0 * 15.0, 750.0, 7500.0, 6000.0}));
    }
}

TEST_F(PlacementMonitorsTest, NumbersUpToAMillionTwipsAreUsed) {
    desktop.monitors.clear();
    desktop.add({-70000, -70000, 70000, 70000});
    EXPECT_EQ(restored(1000000.0, 0.0, 6000.0, 4500.0).left, 1000000.0);
    EXPECT_EQ(restored(-1000000.0, 0.0, 6000.0, 4500.0).left, -1000000.0);
    EXPECT_NE(restored(1000001.0, 0.0, 6000.0, 4500.0).left, 1000001.0);
}

TEST(WorkAreaTest, AFineScreenHasLessThanATwipAPixel) {
    headless::HeadlessDesktop desktop;
    desktop.dots = 2880;
    EXPECT_EQ(twipsPerPixel(desktop).x, 0.5);
    EXPECT_EQ(twipsPerPixel(desktop).y, 0.5);
}

TEST(WorkAreaTest, AScreenOfATwipIsOne) {
    class SmallDesktop final : public headless::HeadlessDesktop {
      public:
        double screenWidth() override { return width; }
        double screenHeight() override { return height; }
        double width = 0.5;
        double height = 0.5;
    } desktop;
    FakeForm form({0.0, 0.0, 0.25, 0.25});
    setFormCenter(form, desktop);
    EXPECT_EQ(form.at, (Place{0.125, 0.125, 0.25, 0.25}));
    for (const auto& [width, height] : {std::pair{0.0, 5.0}, {5.0, 0.0}}) {
        desktop.width = width;
        desktop.height = height;
        setFormCenter(form, desktop);
        EXPECT_EQ(form.moves, 1) << width << ", " << height;
    }
}

}  // namespace
}  // namespace kv::forms
