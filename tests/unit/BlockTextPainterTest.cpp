#include "headless/BlockTextPainter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using namespace kv::headless;
using namespace kv::raster;
using testing::ElementsAre;

constexpr std::uint32_t kGuard = 0xDEADBEEF;

/// The painted pixels as #, on a surface with one guard pixel on each side of every row.
std::vector<std::string> paint(PixelSize size, PixelPoint at, const std::wstring& text, const Font& font) {
    const int stride = size.width + 2;
    std::vector<std::uint32_t> memory(static_cast<std::size_t>(stride * size.height), kGuard);
    const PixelBuffer buffer{memory.data() + 1, size.width, size.height, stride};
    for (int y = 0; y < size.height; ++y) {
        std::fill_n(buffer.row(y), size.width, 0U);
    }
    BlockTextPainter().draw(buffer, at, text, font, 0x00332211);
    std::vector<std::string> rows;
    for (int y = 0; y < size.height; ++y) {
        EXPECT_EQ(buffer.row(y)[-1], kGuard);
        EXPECT_EQ(buffer.row(y)[size.width], kGuard);
        std::string row;
        for (int x = 0; x < size.width; ++x) {
            const std::uint32_t pixel = buffer.row(y)[x];
            row += pixel == 0x00112233 ? '#' : pixel == 0 ? '.' : '?';
        }
        rows.push_back(row);
    }
    return rows;
}

TEST(BlockTextPainter, CellsFollowThePoints) {
    BlockTextPainter painter;
    // 8 points are 10.67 pixels: half of it wide, six fifths of it high.
    EXPECT_EQ(painter.textSize(L"abc", {L"Tahoma", 8.0, false}), (PixelSize{15, 13}));
    EXPECT_EQ(painter.textSize(L"abc", {L"Tahoma", 8.0, true}), (PixelSize{18, 13}));
    EXPECT_EQ(painter.textSize(L"a", {L"Tahoma", 72.0, false}), (PixelSize{48, 115}));
    EXPECT_EQ(painter.textSize(L"", {}), (PixelSize{0, 13}));
}

TEST(BlockTextPainter, TakesAnyFontSize) {
    BlockTextPainter painter;
    for (const double points : {0.0, -5.0, std::nan(""), -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(painter.textSize(L"ab", {L"", points, false}), (PixelSize{2, 1}));
    }
    const PixelSize huge = painter.textSize(std::wstring(1000000, L'x'), {L"", 1e300, false});
    EXPECT_EQ(huge.width, INT_MAX);
    EXPECT_THAT(paint({2, 1}, {-1, -1}, L"ab", {L"", 1e300, false}), ElementsAre(".."));
    EXPECT_THAT(paint({2, 1}, {-1, -600}, L"ab", {L"", 1e300, false}), ElementsAre("##"));
}

TEST(BlockTextPainter, CountsCharactersAndNotUnits) {
    BlockTextPainter painter;
    EXPECT_EQ(painter.textSize(L"\U0001F4E1!", {}).width, 10);
}

TEST(BlockTextPainter, PaintsABlockForEachVisibleCharacter) {
    const Font small{L"", 4.0, false};  // cells of 3 by 6
    EXPECT_THAT(paint({14, 8}, {1, 1}, L"a b\tc", {L"", 4.0, false}),
                ElementsAre("..............", ".##....##....#", ".##....##....#", ".##....##....#", ".##....##....#",
                            ".##....##....#", ".##....##....#", ".............."));
    EXPECT_THAT(paint({6, 2}, {-2, -5}, L"abc", small), ElementsAre(".##.##", "......"));
    EXPECT_THAT(paint({3, 10}, {0, 0}, L"x", {L"", 7.0, false})[0], "...");
}

TEST(BlockTextPainter, IsClippedAtAnyPosition) {
    for (const int x : {INT_MIN, -100, 50, INT_MAX}) {
        for (const int y : {INT_MIN, -100, 50, INT_MAX}) {
            EXPECT_THAT(paint({3, 1}, {x, y}, L"abcdef", {}), ElementsAre("..."));
        }
    }
}

}  // namespace
