// With any saved place and any screens the user can reach the title bar of a restored form.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "forms/FormPlacement.h"
#include "tests/unit/FakeForm.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::forms {
namespace {

using formenv::Place;
using formenv::ScreenRect;

constexpr wchar_t kINI[] = L"C:\\places.ini";

/// Some monitors side by side or one above the other, with task bars.
void scatter(headless::HeadlessDesktop& desktop, std::mt19937& random) {
    const auto between = [&random](int least, int most) {
        return std::uniform_int_distribution<std::int32_t>(least, most)(random);
    };
    desktop.monitors.clear();
    ScreenRect all{};
    const int count = between(1, 4);
    for (int i = 0; i < count; ++i) {
        const std::int32_t width = between(640, 3840);
        const std::int32_t height = between(480, 2160);
        ScreenRect at{0, 0, width, height};
        const int side = i == 0 ? -1 : between(0, 3);
        const std::int32_t shift = between(-300, 300);
        if (side == 0)
            at = {all.right, shift, all.right + width, shift + height};
        else if (side == 1)
            at = {all.left - width, shift, all.left, shift + height};
        else if (side == 2)
            at = {shift, all.bottom, shift + width, all.bottom + height};
        else if (side == 3)
            at = {shift, all.top - height, shift + width, all.top};
        desktop.add(at);
        ScreenRect& work = desktop.monitors.back().info.work;
        std::int32_t* const edges[] = {&work.left, &work.top, &work.right, &work.bottom};
        const int edge = between(0, 3);
        *edges[edge] += (edge < 2 ? 1 : -1) * between(0, 100);
        all = {std::min(all.left, at.left), std::min(all.top, at.top), std::max(all.right, at.right),
               std::max(all.bottom, at.bottom)};
    }
}

/// The number of pixels of the title bar's middle line that are in a work area.
int shownColumns(const headless::HeadlessDesktop& desktop, const Place& place) {
    const double pixel = 1440.0 / desktop.dots;
    const double middle = (place.top + 225.0) / pixel;
    int shown = 0;
    for (double x = place.left / pixel + 0.5; x < (place.left + place.width) / pixel; x += 1.0)
        shown += std::ranges::any_of(desktop.monitors, [&](const headless::HeadlessDesktop::Monitor& monitor) {
            const ScreenRect& work = monitor.info.work;
            return x >= work.left && x < work.right && middle >= work.top && middle < work.bottom;
        });
    return shown;
}

std::wstring anyNumber(std::mt19937& random) {
    switch (std::uniform_int_distribution<int>(0, 9)(random)) {
        case 0:
            return L"garbage";
        case 1:
            return std::to_wstring(std::uniform_int_distribution<std::int64_t>(
                std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max())(random));
        case 2:
            return std::to_wstring(std::uniform_int_distribution<int>(-2000000, 2000000)(random));
        default:
            return std::to_wstring(std::uniform_int_distribution<int>(-60000, 60000)(random));
    }
}

TEST(FormPlacementPropertyTest, TheUserCanAlwaysReachARestoredForm) {
    constexpr int kRounds = 3000;
    std::mt19937 random(20260309);
    headless::HeadlessDesktop desktop;
    control::MemoryFiles files;
    const PlacementStore store{files, desktop, kINI, L""};
    int moved = 0;
    for (int i = 0; i < kRounds; ++i) {
        scatter(desktop, random);
        desktop.dots = std::uniform_int_distribution<int>(0, 1)(random) ? 96 : 144;
        for (const wchar_t* name : {L"Left", L"Top", L"Width", L"Height"})
            files.settings.write(name, L"CONFIG", kINI, anyNumber(random));
        const std::wstring left = files.settings.read(L"Left", L"CONFIG", kINI).value_or(L"");
        FakeForm form({-500.0, -500.0, 6000.0, 4500.0});
        RestoreFormPlacement(form, store);
        const Place at = form.at;
        moved += std::to_wstring(std::lround(at.left)) != left;
        const double wanted = std::min(at.width, 3000.0) * desktop.dots / 1440.0;
        ASSERT_GE(shownColumns(desktop, at), std::floor(wanted) - 2) << "round " << i;
        ASSERT_GE(at.width, 2400.0) << "round " << i;
        ASSERT_GE(at.height, 1500.0) << "round " << i;
        // A form within reach stays where it is.
        ASSERT_TRUE(SaveFormPlacement(form, store));
        RestoreFormPlacement(form, store);
        ASSERT_EQ(form.at, at) << "round " << i;
    }
    // Both kinds occurred.
    EXPECT_GT(moved, kRounds / 10);
    EXPECT_LT(moved, kRounds * 9 / 10);
}

}  // namespace
}  // namespace kv::forms
