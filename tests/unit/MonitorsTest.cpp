// Finding the monitors of a desktop, and centering forms on them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "forms/clsMonitors.h"
#include "tests/unit/FakeForm.h"

namespace kv::forms {
namespace {

using formenv::Place;
using formenv::ScreenRect;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class MonitorsTest : public ::testing::Test {
  protected:
    /// Replaces the screen that a desktop has at first.
    void arrange(const std::vector<ScreenRect>& screens, std::int32_t taskBar = 0) {
        desktop.monitors.clear();
        for (const ScreenRect& screen : screens)
            desktop.add(screen, taskBar);
    }
    /// The probed points, as the corners of one-pixel rectangles.
    std::vector<std::pair<int, int>> points() const {
        std::vector<std::pair<int, int>> result;
        for (const AskedDesktop::Probe& probe : desktop.probes) {
            EXPECT_EQ(probe.rect.right, probe.rect.left + 1);
            EXPECT_EQ(probe.rect.bottom, probe.rect.top + 1);
            result.emplace_back(probe.rect.left, probe.rect.top);
        }
        return result;
    }
    static std::vector<ScreenRect> rectsOf(const clsMonitors& monitors) {
        std::vector<ScreenRect> result;
        for (const clsMonitor& one : monitors.Monitors())
            result.push_back({one.Left(), one.Top(), one.Right(), one.Bottom()});
        return result;
    }

    AskedDesktop desktop;
};

TEST(MonitorTest, PropertiesStartAtZeroAndKeepTheirValues) {
    using Number = std::int32_t;
    const std::pair<Number (clsMonitor::*)() const noexcept, void (clsMonitor::*)(Number) noexcept> properties[] = {
        {&clsMonitor::Height, &clsMonitor::setHeight},     {&clsMonitor::Width, &clsMonitor::setWidth},
        {&clsMonitor::Left, &clsMonitor::setLeft},         {&clsMonitor::Right, &clsMonitor::setRight},
        {&clsMonitor::Top, &clsMonitor::setTop},           {&clsMonitor::Bottom, &clsMonitor::setBottom},
        {&clsMonitor::WorkLeft, &clsMonitor::setWorkLeft}, {&clsMonitor::WorkRight, &clsMonitor::setWorkRight},
        {&clsMonitor::WorkTop, &clsMonitor::setWorkTop},   {&clsMonitor::WorkBottom, &clsMonitor::setWorkBottom},
    };
    clsMonitor monitor;
    EXPECT_EQ(monitor.Handle(), 0);
    monitor.setHandle(1);
    Number number = std::numeric_limits<Number>::max();
    for (const auto& [value, set] : properties) {
        EXPECT_EQ((monitor.*value)(), 0);
        (monitor.*set)(number--);
    }
    number = std::numeric_limits<Number>::max();
    for (const auto& [value, set] : properties)
        EXPECT_EQ((monitor.*value)(), number--);
    EXPECT_EQ(monitor.Handle(), 1);
}

TEST_F(MonitorsTest, AMonitorHasItsHandleSizeAndWorkArea) {
    desktop.monitors.front() = {4711, {{0, 0, 1920, 1080}, {60, 30, 1900, 1040}, true}};
    const clsMonitors monitors(desktop);
    ASSERT_THAT(monitors.Monitors(), SizeIs(1));
    const clsMonitor& one = monitors.Monitors().front();
    EXPECT_EQ(one.Handle(), 4711);
    EXPECT_EQ(one.Width(), 1920);
    EXPECT_EQ(one.Height(), 1080);
    EXPECT_EQ(one.WorkLeft(), 60);
    EXPECT_EQ(one.WorkTop(), 30);
    EXPECT_EQ(one.WorkRight(), 1900);
    EXPECT_EQ(one.WorkBottom(), 1040);
    EXPECT_EQ(monitors.Monitor(L"4711"), &one);
    EXPECT_EQ(monitors.Monitor(L"4712"), nullptr);
    EXPECT_EQ(monitors.Monitor(L""), nullptr);
}

TEST_F(MonitorsTest, MonitorsAtTheLeftOfThePrimaryAndAboveItAreFound) {
    struct Case {
        ScreenRect second;
        ScreenRect desktop;  ///< left, top, width and height
        std::pair<int, int> first;
    };
    const Case cases[] = {{{-1280, 0, 0, 1024}, {-1280, 0, 3200, 1080}, {-960, 240}},
                          {{200, -900, 1640, 0}, {0, -900, 1920, 1980}, {320, -660}}};
    for (const auto& [second, all, first] : cases) {
        arrange({{0, 0, 1920, 1080}, second});
        desktop.probes.clear();
        clsMonitors monitors(desktop);
        EXPECT_EQ((ScreenRect{monitors.DesktopLeft(), monitors.DesktopTop(), monitors.DesktopWidth(),
                              monitors.DesktopHeight()}),
                  all);
        EXPECT_THAT(rectsOf(monitors), ElementsAre(second, ScreenRect{0, 0, 1920, 1080}));
        EXPECT_EQ(points().front(), first);
    }
}

TEST_F(MonitorsTest, TheMiddleOfEachCellUpToTheSizeOfTheDesktopIsProbed) {
    struct Case {
        ScreenRect screen;
        std::vector<int> columns;
        std::vector<int> rows;
    };
    const Case cases[] = {
        {{0, 0, 1920, 1080}, {320, 960, 1600, 2240}, {240, 720, 1200}},
        // A cell that begins at the bound is probed and the one after it is not.
        {{0, 0, 1280, 960}, {320, 960, 1600}, {240, 720, 1200}},
        {{0, 0, 1279, 959}, {320, 960}, {240, 720}},
        // From left -1000 to 1000, which is the width and not the right edge 0: cells at -1000, -360, 280 and 920.
        {{-1000, -500, 0, 0}, {-680, -40, 600, 1240}, {-260, 220, 700}},
        // From left 1000 to 1000: one cell, although the screen reaches to 2000.
        {{1000, 400, 2000, 800}, {1320}, {640}},
    };
    for (const auto& [screen, columns, rows] : cases) {
        arrange({screen});
        desktop.probes.clear();
        EXPECT_THAT(rectsOf(clsMonitors(desktop)), ElementsAre(screen));
        std::vector<std::pair<int, int>> cells;
        for (const int y : rows) {
            for (const int x : columns)
                cells.emplace_back(x, y);
        }
        EXPECT_EQ(points(), cells);
        // A probe that hits no monitor must not return the nearest one.
        for (const AskedDesktop::Probe& probe : desktop.probes)
            EXPECT_EQ(probe.flags, monitor_flag::kNone);
    }
}

TEST_F(MonitorsTest, AMonitorSmallerThanACellCanBeMissed) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 2200, 200}});
    EXPECT_THAT(rectsOf(clsMonitors(desktop)), ElementsAre(ScreenRect{0, 0, 1920, 1080}));
    // The same one where the middle of a cell falls on it.
    arrange({{0, 0, 1920, 1080}, {1920, 100, 2250, 300}});
    EXPECT_THAT(rectsOf(clsMonitors(desktop)), SizeIs(2));
}

TEST_F(MonitorsTest, RefreshDropsUnpluggedMonitors) {
    arrange({{0, 0, 1920, 1080}, {1920, 0, 3840, 1080}});
    clsMonitors monitors(desktop);
    EXPECT_THAT(monitors.Monitors(), SizeIs(2));
    desktop.monitors.pop_back();
    EXPECT_THAT(monitors.Monitors(), SizeIs(2));
    monitors.Refresh();
    EXPECT_THAT(rectsOf(monitors), ElementsAre(ScreenRect{0, 0, 1920, 1080}));
    desktop.countsMonitors = false;
    monitors.Refresh();
    EXPECT_THAT(monitors.Monitors(), IsEmpty());
}

TEST_F(MonitorsTest, ASystemThatDoesNotCountMonitorsHasOneScreenAtTheOrigin) {
    arrange({{-800, -600, 0, 0}});
    desktop.countsMonitors = false;
    clsMonitors monitors(desktop);
    EXPECT_THAT(monitors.Monitors(), IsEmpty());
    EXPECT_THAT(desktop.probes, IsEmpty());
    EXPECT_EQ(monitors.DesktopLeft(), 0);
    EXPECT_EQ(monitors.DesktopTop(), 0);
    EXPECT_EQ(monitors.DesktopWidth(), 800);
    EXPECT_EQ(monitors.DesktopHeight(), 600);
    // Only the number of monitors and the size of the screen were read.
    EXPECT_THAT(desktop.metrics, Each(::testing::AnyOf(80, 0, 1)));
}

TEST_F(MonitorsTest, TwipsFollowTheScreensResolution) {
    arrange({{0, 0, 1000, 700}, {-301, -101, 0, 600}});
    clsMonitors monitors(desktop);
    EXPECT_EQ(monitors.DesktopLeftTwps(), -301 * 15);
    EXPECT_EQ(monitors.DesktopTopTwps(), -101 * 15);
    EXPECT_EQ(monitors.DesktopWidthTwps(), 1301 * 15);
    EXPECT_EQ(monitors.DesktopHeightTwps(), 801 * 15);
    desktop.dots = 168;  // 60/7 twips a pixel
    EXPECT_EQ(monitors.DesktopLeftTwps(), -2580);
    EXPECT_EQ(monitors.DesktopTopTwps(), -866);     // -865.71
    EXPECT_EQ(monitors.DesktopWidthTwps(), 11151);  // 11151.43
    EXPECT_EQ(monitors.DesktopHeightTwps(), 6866);  // 6865.71
}

TEST_F(MonitorsTest, APointIsSearchedAsOnePixelWithTheCallersFlags) {
    arrange({{0, 0, 800, 600}, {800, 0, 1600, 600}});
    clsMonitors monitors(desktop);
    desktop.probes.clear();
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(799, 599, monitor_flag::kNone), desktop.monitors[0].handle);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(800, 0, monitor_flag::kNone), desktop.monitors[1].handle);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(1600, 0, monitor_flag::kNone), 0);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(1600, 0, monitor_flag::kPrimary), desktop.monitors[0].handle);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(1600, 0, monitor_flag::kNearest), desktop.monitors[1].handle);
    EXPECT_EQ(desktop.probes.back(), (AskedDesktop::Probe{{1600, 0, 1601, 1}, monitor_flag::kNearest}));
    EXPECT_THAT(points(), SizeIs(5));
}

TEST_F(MonitorsTest, TheFarthestPointsAreOnNoMonitor) {
    clsMonitors monitors(desktop);
    constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
    constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(kMost, kMost, monitor_flag::kNone), 0);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(kLeast, kLeast, monitor_flag::kNone), 0);
    EXPECT_NE(monitors.GetMonitorFromXYPoint(kMost, kLeast, monitor_flag::kNearest), 0);
}

TEST_F(MonitorsTest, AWindowIsOnTheMonitorThatContainsMostOfIt) {
    arrange({{0, 0, 800, 600}, {800, 0, 1600, 600}});
    desktop.windows[5] = {700, 0, 1000, 100};
    clsMonitors monitors(desktop);
    EXPECT_EQ(monitors.GetMonitorFromWindow(5, monitor_flag::kNone), desktop.monitors[1].handle);
    EXPECT_EQ(monitors.GetMonitorFromWindow(6, monitor_flag::kNone), 0);
    EXPECT_EQ(monitors.GetMonitorFromWindow(6, monitor_flag::kPrimary), desktop.monitors[0].handle);
}

TEST_F(MonitorsTest, FailedCallsReturnNoMonitor) {
    clsMonitors monitors(desktop);
    desktop.failing = "*";
    EXPECT_EQ(monitors.GetMonitorFromWindow(1, monitor_flag::kNearest), 0);
    EXPECT_EQ(monitors.GetMonitorFromXYPoint(1, 1, monitor_flag::kNearest), 0);
    EXPECT_EQ(monitors.DesktopLeft(), 0);
    EXPECT_EQ(monitors.DesktopWidth(), 0);
    EXPECT_NO_THROW(monitors.Refresh());
    EXPECT_THAT(monitors.Monitors(), IsEmpty());
    EXPECT_NO_THROW(clsMonitors{desktop});
}

TEST_F(MonitorsTest, AnyHandleButZeroIsAMonitors) {
    for (const auto& [handle, count] : {std::pair{std::intptr_t{1}, 1U}, {-1, 1U}, {0, 0U}}) {
        desktop.monitors.front().handle = handle;
        EXPECT_THAT(clsMonitors(desktop).Monitors(), SizeIs(count)) << handle;
    }
}

TEST_F(MonitorsTest, AFailedProbeIsSkipped) {
    arrange({{0, 0, 640, 480}, {640, 0, 1280, 480}});
    desktop.onCall = [this](std::string_view) {
        if (!desktop.probes.empty() && desktop.probes.back().rect.left == 320)
            throw util::RuntimeError(util::error_number::kInternal);
    };
    EXPECT_THAT(rectsOf(clsMonitors(desktop)), ElementsAre(ScreenRect{640, 0, 1280, 480}));
}

TEST_F(MonitorsTest, AMonitorWhoseRecordCannotBeReadIsSkipped) {
    desktop.failing = "monitorInfo";
    EXPECT_THAT(clsMonitors(desktop).Monitors(), IsEmpty());
    EXPECT_THAT(desktop.probes, SizeIs(12));
}

TEST_F(MonitorsTest, AMonitorUnpluggedBetweenProbeAndRecordIsSkipped) {
    arrange({{0, 0, 640, 480}, {640, 0, 1280, 480}});
    desktop.onCall = [this](std::string_view call) {
        if (call == "monitorInfo" && desktop.probes.size() == 2)
            desktop.monitors.resize(1);
    };
    EXPECT_THAT(rectsOf(clsMonitors(desktop)), ElementsAre(ScreenRect{0, 0, 640, 480}));
}

TEST_F(MonitorsTest, WithoutAResolutionTheScreenHasTheUsualOne) {
    clsMonitors monitors(desktop);
    desktop.failing = "twipsPerPixelX";
    EXPECT_EQ(monitors.DesktopWidthTwps(), 1920 * 15);
    desktop.failing = {};
    desktop.dots = 0;
    EXPECT_EQ(monitors.DesktopHeightTwps(), 1080 * 15);
    desktop.dots = 2880;
    EXPECT_EQ(monitors.DesktopWidthTwps(), 1920 / 2) << "less than a twip for a pixel";
    EXPECT_EQ(monitors.DesktopHeightTwps(), 1080 / 2);
}

class CenteringTest : public MonitorsTest {
  protected:
    FakeForm form{{-88.0, -88.0, 6000.0, 3000.0}};
};

TEST_F(CenteringTest, AFormMovesToTheMiddleOfTheWorkAreaOfItsMonitor) {
    arrange({{0, 0, 1920, 1080}, {1920, 200, 2720, 800}}, 40);
    desktop.windows[7] = {2000, 300, 2100, 400};
    form.window = 7;
    clsMonitors monitors(desktop);
    monitors.CenterFormOnMonitor(&form);
    // 800 by 560 pixels are 12000 by 8400 twips.
    EXPECT_EQ(form.at, (Place{1920 * 15.0 + 3000.0, 200 * 15.0 + 2700.0, 6000.0, 3000.0}));
    EXPECT_EQ(form.moves, 1);
}

TEST_F(CenteringTest, ATaskBarAtTheLeftShiftsTheMiddle) {
    desktop.monitors.front().info.work = {100, 0, 1920, 1080};
    clsMonitors monitors(desktop);
    monitors.CenterFormOnMonitor(&form);
    EXPECT_EQ(form.at.left, 1500.0 + (1820 * 15.0 - 6000.0) / 2);
    EXPECT_EQ(form.at.top, (1080 * 15.0 - 3000.0) / 2);
}

TEST_F(CenteringTest, AFormLargerThanTheWorkAreaBeginsOutsideOfIt) {
    arrange({{0, 0, 800, 600}});
    form.at = {0.0, 0.0, 12003.0, 9001.0};
    clsMonitors monitors(desktop);
    monitors.CenterFormOnMonitor(&form);
    // Half of -3 and of -1, as whole numbers.
    EXPECT_EQ(form.at, (Place{-1.0, 0.0, 12003.0, 9001.0}));
    form.at.width = 14000.0;
    monitors.CenterFormOnMonitor(&form);
    EXPECT_EQ(form.at.left, -1000.0);
}

TEST_F(CenteringTest, HalfOfAnOddRestIsAWholeNumber) {
    arrange({{0, 0, 801, 601}});
    form.at = {0.0, 0.0, 6000.0, 3000.4};
    clsMonitors monitors(desktop);
    monitors.CenterFormOnMonitor(&form);
    EXPECT_EQ(form.at.left, 3007.0);  // 6015 / 2
    EXPECT_EQ(form.at.top, 3007.0);   // 6014.6 is 6015 before it is divided
}

TEST_F(CenteringTest, WithoutAMonitorTheFormStays) {
    clsMonitors monitors(desktop);
    const Place before = form.at;
    desktop.monitors.clear();
    monitors.CenterFormOnMonitor(&form);
    EXPECT_EQ(form.at, before);
    EXPECT_EQ(form.moves, 0);
}

TEST_F(CenteringTest, WithoutAnAnswerTheFormStays) {
    clsMonitors monitors(desktop);
    for (const char* call : {"monitorFromWindow", "monitorInfo"}) {
        desktop.failing = call;
        monitors.CenterFormOnMonitor(&form);
        EXPECT_EQ(form.moves, 0) << call;
    }
}

TEST_F(CenteringTest, WithoutAFormNothingMoves) {
    clsMonitors monitors(desktop);
    desktop.probes.clear();
    monitors.CenterFormOnMonitor();
    EXPECT_THAT(desktop.probes, ElementsAre(AskedDesktop::Probe{{1, 1, 2, 2}, monitor_flag::kPrimary}));
    desktop.failing = "*";
    EXPECT_NO_THROW(monitors.CenterFormOnMonitor());
}

TEST_F(CenteringTest, ScreenCenteringUsesTheWholePrimaryScreen) {
    arrange({{0, 0, 801, 600}, {801, 0, 2000, 600}}, 40);
    setFormCenter(form, desktop);
    EXPECT_EQ(form.at, (Place{3007.5, 3000.0, 6000.0, 3000.0}));
    EXPECT_THAT(desktop.probes, IsEmpty());
    desktop.countsMonitors = false;
    form.at = {1.0, 1.0, 6000.0, 3000.0};
    setFormCenter(form, desktop);
    EXPECT_EQ(form.at.left, 3007.5);
}

TEST_F(CenteringTest, AScreenWithoutASizeLeavesTheFormWhereItIs) {
    desktop.failing = "screenWidth";
    EXPECT_NO_THROW(setFormCenter(form, desktop));
    desktop.failing = {};
    desktop.monitors.clear();
    setFormCenter(form, desktop);
    EXPECT_EQ(form.moves, 0);
}

/// A screen whose size need not be whole pixels.
class SmallDesktop final : public headless::HeadlessDesktop {
  public:
    double screenWidth() override { return width; }
    double screenHeight() override { return height; }
    double width = 0.5;
    double height = 0.5;
};

TEST_F(CenteringTest, AScreenOfLessThanATwipHasASize) {
    SmallDesktop small;
    form.at = {0.0, 0.0, 0.25, 0.25};
    setFormCenter(form, small);
    EXPECT_EQ(form.at, (Place{0.125, 0.125, 0.25, 0.25}));
    for (const auto& [width, height] : {std::pair{0.0, 5.0}, {5.0, 0.0}}) {
        small.width = width;
        small.height = height;
        setFormCenter(form, small);
        EXPECT_EQ(form.moves, 1) << width << ", " << height;
    }
}

}  // namespace
}  // namespace kv::forms
