// The lines of the hatches, against the pixels of the hatches.
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

#include "headless/BlockTextPainter.h"
#include "raster/HatchLines.h"
#include "raster/RasterCanvas.h"

namespace kv::raster {
namespace {

using Pixels = std::set<std::pair<int, int>>;

constexpr FillStyle kHatches[] = {FillStyle::HorizontalLine,   FillStyle::VerticalLine, FillStyle::UpwardDiagonal,
                                  FillStyle::DownwardDiagonal, FillStyle::Cross,        FillStyle::DiagonalCross};

/// What a box with these edges leaves hatched between them.
Pixels hatchedPixels(FillStyle style, const PixelRect& inside) {
    headless::BlockTextPainter letters;
    std::vector<std::uint32_t> store(64 * 64);
    RasterCanvas canvas(letters, {store.data(), 64, 64, 64});
    canvas.rectangle({inside.left - 1, inside.top - 1, inside.right + 1, inside.bottom + 1}, {0, 1}, {style, 0xFFFFFF},
                     DrawMode::CopyPen);
    Pixels pixels;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            if (store[static_cast<std::size_t>(y * 64 + x)] != 0)
                pixels.emplace(x, y);
    return pixels;
}

/// The pixels of the lines, which are level, upright or diagonal, with both ends.
Pixels linePixels(const std::vector<HatchLine>& lines) {
    Pixels pixels;
    for (const auto& [from, to] : lines) {
        const int length = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
        const auto step = [](int a, int b) { return a == b ? 0 : a < b ? 1 : -1; };
        for (int i = 0; i <= length; ++i)
            pixels.emplace(from.x + i * step(from.x, to.x), from.y + i * step(from.y, to.y));
    }
    return pixels;
}

TEST(HatchLines, AtTheScaleOfTheScreenHaveThePixelsOfTheHatch) {
    for (const FillStyle style : kHatches)
        for (const PixelRect inside :
             {PixelRect{1, 1, 63, 63}, {5, 9, 38, 20}, {11, 2, 13, 60}, {2, 17, 60, 18}, {8, 8, 9, 9}})
            EXPECT_EQ(linePixels(hatchLines(style, inside, 1.0)), hatchedPixels(style, inside))
                << static_cast<int>(style) << " " << inside.left << "," << inside.top;
}

TEST(HatchLines, AreAsFarApartOnAnyScaleAsOnTheScreen) {
    const std::vector<HatchLine> lines = hatchLines(FillStyle::VerticalLine, {0, 0, 600, 100}, 6.25);
    ASSERT_EQ(lines.size(), 12U);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NEAR(lines[i].from.x, (8.0 * static_cast<double>(i) + 4.0) * 6.25, 0.5);
        EXPECT_EQ(lines[i].from.y, 0);
        EXPECT_EQ(lines[i].to.y, 99);
    }
}

TEST(HatchLines, ThereAreNoneWithoutAHatchOrWithoutRoom) {
    EXPECT_TRUE(hatchLines(FillStyle::Solid, {0, 0, 100, 100}, 1.0).empty());
    EXPECT_TRUE(hatchLines(FillStyle::Transparent, {0, 0, 100, 100}, 1.0).empty());
    EXPECT_TRUE(hatchLines(FillStyle::Cross, {10, 0, 10, 100}, 1.0).empty());
    EXPECT_TRUE(hatchLines(FillStyle::Cross, {0, 10, 100, 5}, 1.0).empty());
}

}  // namespace
}  // namespace kv::raster
