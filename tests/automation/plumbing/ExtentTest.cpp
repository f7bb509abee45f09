// Conversion between pixels and the units of containers, at the usual screen resolutions.
#include "automation/Extent.h"

#include <gtest/gtest.h>

namespace kv::automation {
namespace {

/// As the ActiveX host of WinForms converts: integer arithmetic, rounded by adding half of the divisor.
LONG asContainersDo(LONG pixels, int dpi) {
    return (2540 * pixels + (dpi >> 1)) / dpi;
}
LONG backAsContainersDo(LONG himetric, int dpi) {
    return (dpi * himetric + (2540 >> 1)) / 2540;
}

class ExtentAtDpi : public testing::TestWithParam<int> {};

TEST_P(ExtentAtDpi, ConvertsLikeContainersAndBackToTheSamePixels) {
    const int dpi = GetParam();
    for (LONG pixels = 0; pixels <= 2000; ++pixels) {
        const LONG himetric = pixelsToHimetric(pixels, dpi);
        ASSERT_EQ(himetric, asContainersDo(pixels, dpi));
        ASSERT_EQ(himetricToPixels(himetric, dpi), pixels);
        ASSERT_EQ(backAsContainersDo(himetric, dpi), pixels);
    }
}

TEST_P(ExtentAtDpi, AnExtentIsKeptWhileItRoundsToTheSizeOfTheWindow) {
    const int dpi = GetParam();
    for (LONG pixels = 1; pixels <= 2000; ++pixels) {
        // A container that truncates computes another number for the same window.
        for (const LONG set : {asContainersDo(pixels, dpi), 2540 * pixels / dpi}) {
            const SIZEL kept = extentOf({pixels, pixels}, dpi, {set, 0});
            ASSERT_EQ(kept.cx, set) << pixels;
            ASSERT_EQ(kept.cy, asContainersDo(pixels, dpi)) << "the extent of another window is not kept";
        }
        ASSERT_EQ(extentOf({pixels, 1}, dpi, {asContainersDo(pixels + 1, dpi), 0}).cx, asContainersDo(pixels, dpi));
        ASSERT_EQ(extentOf({pixels, 1}, dpi, {asContainersDo(pixels - 1, dpi), 0}).cx, asContainersDo(pixels, dpi));
    }
}

TEST_P(ExtentAtDpi, LargeNumbersDoNotOverflow) {
    const int dpi = GetParam();
    EXPECT_EQ(pixelsToHimetric(50'000'000, dpi), static_cast<LONG>((50'000'000LL * 2540 + dpi / 2) / dpi));
    EXPECT_EQ(himetricToPixels(2'000'000'000, dpi), static_cast<LONG>((2'000'000'000LL * dpi + 1270) / 2540));
}

INSTANTIATE_TEST_SUITE_P(Screens, ExtentAtDpi, testing::Values(96, 120, 144, 192));

}  // namespace
}  // namespace kv::automation
