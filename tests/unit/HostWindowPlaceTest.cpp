// Where the sample host's window is opened again when monitors have changed, and the layout of a printed page.
#include <gmock/gmock.h>

#include "host/plan/ConsoleUsage.h"
#include "host/plan/PageHeading.h"
#include "host/plan/WindowPlace.h"

namespace kv::test {
namespace {

using host::movedOntoScreen;
using host::ScreenRect;

constexpr int kTitle = 30;
const ScreenRect kLeft{0, 0, 1920, 1040};
const ScreenRect kRight{1920, 100, 3200, 1124};

TEST(HostWindowPlace, AReachableWindowStays) {
    for (const ScreenRect& rect :
         {ScreenRect{100, 100, 900, 700}, ScreenRect{-700, 0, 100, 600}, ScreenRect{1820, 1010, 2600, 1600},
          ScreenRect{1500, 300, 2500, 900}, ScreenRect{0, 0, 5000, 4000}, ScreenRect{1880, 200, 1920, 260}}) {
        EXPECT_EQ(movedOntoScreen(rect, {kLeft, kRight}, kTitle), rect) << rect.left << ", " << rect.top;
    }
}

TEST(HostWindowPlace, AWindowOfAMonitorThatIsGoneMovesIntoTheNearestOne) {
    EXPECT_EQ(movedOntoScreen({3300, 200, 4100, 800}, {kLeft, kRight}, kTitle), (ScreenRect{2400, 200, 3200, 800}));
    EXPECT_EQ(movedOntoScreen({2000, 200, 2800, 800}, {kLeft}, kTitle), (ScreenRect{1120, 200, 1920, 800}));
    EXPECT_EQ(movedOntoScreen({-900, -700, -100, -100}, {kLeft, kRight}, kTitle), (ScreenRect{0, 0, 800, 600}));
}

TEST(HostWindowPlace, AWindowWithoutAReachableTitleBarIsMoved) {
    EXPECT_EQ(movedOntoScreen({100, -10, 900, 590}, {kLeft}, kTitle), (ScreenRect{100, 0, 900, 600}));
    EXPECT_EQ(movedOntoScreen({100, 1020, 900, 1620}, {kLeft}, kTitle), (ScreenRect{100, 440, 900, 1040}));
    EXPECT_EQ(movedOntoScreen({1821, 1000, 2621, 1600}, {kLeft}, kTitle), (ScreenRect{1120, 440, 1920, 1040}));
    // It touches both, more of the right one.
    EXPECT_EQ(movedOntoScreen({1800, 1100, 3000, 1700}, {kLeft, kRight}, kTitle), (ScreenRect{1920, 524, 3120, 1124}));
}

TEST(HostWindowPlace, AWindowThatIsTooLargeIsMadeSmaller) {
    EXPECT_EQ(movedOntoScreen({5000, 50, 9000, 3050}, {kLeft}, kTitle), kLeft);
    EXPECT_EQ(movedOntoScreen({5000, 50, 5500, 3050}, {kLeft}, kTitle), (ScreenRect{1420, 0, 1920, 1040}));
}

TEST(PageHeading, NamesThePlanTheTimeAndTheRange) {
    const host::PageHeading heading = host::headingOf(L"gmrs.csv", {2026, 3, 9, 7, 4}, {462.3, 467.98768});
    EXPECT_EQ(heading.title, L"gmrs.csv");
    EXPECT_EQ(heading.details, L"2026-03-09 07:04, 462.3000 to 467.9877 MHz");
    EXPECT_EQ(host::headingOf(L"", {}, {}).title, L"Spectrum");
    EXPECT_EQ(host::rangeText({1e12, 1e300}).substr(0, 21), L"1000000000000.0000 to");
}

TEST(PageHeading, ThePictureIsBelowTheTexts) {
    for (const auto& [width, height] : {std::pair{4960, 7016}, {7016, 4960}, {600, 800}}) {
        const host::PageLayout page = host::layOutPage(width, height, 60, 40);
        EXPECT_EQ(page.title, (ScreenRect{0, 0, width, 60}));
        EXPECT_GE(page.details.top, page.title.bottom);
        EXPECT_EQ(page.details.height(), 40);
        EXPECT_GT(page.picture.top, page.details.bottom);
        EXPECT_EQ(page.picture.width(), width);
        EXPECT_LE(page.picture.bottom, height);
        EXPECT_LE(page.picture.height(), width * 9 / 16);
    }
    EXPECT_EQ(host::layOutPage(1600, 5000, 60, 40).picture.height(), 900);
    EXPECT_EQ(host::layOutPage(1600, 500, 60, 40).picture.bottom, 500);
    EXPECT_EQ(host::layOutPage(100, 50, 60, 40).picture.height(), 0);
}

TEST(ConsoleUsage, DescriptionsAreAColumn) {
    EXPECT_EQ(host::consoleUsage(L"Host [--a]\n\n--a\tdoes it\n--plan FILE LONG NAME\tb\n"),
              L"Host [--a]\n"
              L"\n"
              L"--a               does it\n"
              L"--plan FILE LONG NAME\n"
              L"                  b\n");
}

TEST(ConsoleUsage, LinesAreBrokenBetweenWords) {
    EXPECT_EQ(host::consoleUsage(L"--a\tone two three\nabcdefghijklmnopqrstuvwxyz01234 x y", 26),
              L"--a               one two\n"
              L"                  three\n"
              L"abcdefghijklmnopqrstuvwxyz01234\n"
              L"x y\n");
}

TEST(ConsoleUsage, TheHostsOptionsFitTheConsole) {
    const std::wstring text = host::consoleUsage(host::kUsage);
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find(L'\n', begin)) != std::wstring::npos; begin = end + 1)
        EXPECT_LE(end - begin, 79U) << testing::PrintToString(text.substr(begin, end - begin));
    EXPECT_THAT(text, testing::HasSubstr(L"\n--help            show"));
}

}  // namespace
}  // namespace kv::test
