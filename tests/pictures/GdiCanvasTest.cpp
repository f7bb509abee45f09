// Strokes in vectors, played at the resolution of the screen, against the pixels of the same strokes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "formenv/PictureOutput.h"
#include "headless/BlockTextPainter.h"
#include "raster/RasterCanvas.h"
#include "win32/GdiCanvas.h"
#include "win32/WinPictures.h"

namespace kv::win32 {
namespace {

using formenv::BitmapImage;
using raster::DrawMode;
using raster::FillStyle;

constexpr int kWidth = 300;
constexpr int kHeight = 200;
constexpr raster::Rgb kInk = 0x00FF8040;

/// Draws with `scale` units for each pixel.
using Strokes = std::function<void(raster::Canvas& canvas, int scale)>;

formenv::VectorPicture pictureOf(const Strokes& strokes, int scale, const raster::PixelRect& inner) {
    return {{kWidth * scale, kHeight * scale},
            {inner.left * scale, inner.top * scale, inner.right * scale, inner.bottom * scale},
            96 * scale,
            static_cast<double>(scale),
            [&strokes, scale](raster::Canvas& strip, raster::Canvas& picture) {
                strip.clear(0xFFFFFF);
                picture.clear(0xFFFFFF);
                strokes(picture, scale);
            }};
}

/// A metafile, played on a bitmap of `factor` times the pixels.
std::vector<std::uint32_t> played(const Strokes& strokes, int scale, double factor,
                                  const raster::PixelRect& inner = {0, 0, kWidth, kHeight}) {
    WinPictures output;
    const std::string bytes = output.metafile(pictureOf(strokes, scale, inner));
    const HENHMETAFILE file =
        SetEnhMetaFileBits(static_cast<UINT>(bytes.size()), reinterpret_cast<const BYTE*>(bytes.data()));
    EXPECT_TRUE(file);
    const int width = static_cast<int>(std::lround(kWidth * factor));
    const int height = static_cast<int>(std::lround(kHeight * factor));
    const BitmapImage image = output.pixels(
        {{width, height}, {0, 0, width, height}, 96, 1.0, [&](raster::Canvas& /*strip*/, raster::Canvas& /*inner*/) {
         }});
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    const GdiObject<HBITMAP> bitmap(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const Selected selected(dc.get(), bitmap.get());
    const RECT all{0, 0, width, height};
    EXPECT_TRUE(PlayEnhMetaFile(dc.get(), file, &all));
    GdiFlush();
    DeleteEnhMetaFile(file);
    const auto* const pixels = static_cast<const std::uint32_t*>(bits);
    std::vector<std::uint32_t> result(pixels, pixels + image.pixels.size());
    for (std::uint32_t& pixel : result)
        pixel &= 0xFFFFFFU;
    return result;
}

/// The pixels on the screen.
std::vector<std::uint32_t> shown(const Strokes& strokes) {
    headless::BlockTextPainter letters;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth) * kHeight);
    raster::RasterCanvas canvas(letters, {pixels.data(), kWidth, kHeight, kWidth});
    canvas.clear(0xFFFFFF);
    strokes(canvas, 1);
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xFFFFFFU;
    return pixels;
}

int differences(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    EXPECT_EQ(a.size(), b.size());
    int count = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        count += a[i] != b[i] ? 1 : 0;
    return count;
}

/// Corner pixels of boxes at any fraction of a pixel; the fine units give the same fractions.
struct Corners {
    double left, top, right, bottom;
    [[nodiscard]] raster::PixelRect at(int scale) const {
        const auto unit = [scale](double v) { return static_cast<int>(std::floor(v * scale + 0.5)); };
        return {unit(left), unit(top), unit(right) + 1, unit(bottom) + 1};
    }
};

std::vector<Corners> someBoxes(int count, double widest) {
    std::mt19937 random(42);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    std::vector<Corners> boxes;
    for (int i = 0; i < count; ++i) {
        const double left = between(-20.0, kWidth + 10.0);
        const double top = between(-10.0, kHeight - 5.0);
        boxes.push_back({left, top, left + between(0.0, widest), kHeight - 4.0});
    }
    return boxes;
}

TEST(GdiCanvas, BoxesHaveThePixelsOfTheScreen) {
    for (const FillStyle style : {FillStyle::Solid, FillStyle::Transparent}) {
        const std::vector<Corners> boxes = someBoxes(60, 40.0);
        const Strokes strokes = [&](raster::Canvas& canvas, int scale) {
            for (std::size_t i = 0; i < boxes.size(); ++i) {
                const raster::Rgb color = 0x102030U * static_cast<unsigned>(i % 7);
                canvas.rectangle(boxes[i].at(scale), {color, 1}, {style, color}, DrawMode::CopyPen);
            }
        };
        EXPECT_EQ(differences(played(strokes, formenv::kRecordedFineness, 1.0), shown(strokes)), 0) << int(style);
    }
}

TEST(GdiCanvas, ABoxOnWholePixelsHasExactlyThePixelsOfTheScreen) {
    const Strokes strokes = [](raster::Canvas& canvas, int scale) {
        canvas.rectangle(Corners{20, 30, 90, 150}.at(scale), {kInk, 1}, {FillStyle::Transparent, 0}, DrawMode::CopyPen);
        canvas.rectangle(Corners{100, 40, 160, 150}.at(scale), {kInk, 1}, {FillStyle::Solid, kInk}, DrawMode::CopyPen);
        canvas.rectangle(Corners{170, 50, 170, 150}.at(scale), {kInk, 1}, {FillStyle::Solid, kInk}, DrawMode::CopyPen);
        canvas.rectangle(Corners{175, 60, 176, 150}.at(scale), {kInk, 1}, {FillStyle::Solid, kInk}, DrawMode::CopyPen);
        canvas.line({200 * scale, 150 * scale}, {200 * scale, 20 * scale}, {kInk, 1}, DrawMode::CopyPen);
        canvas.line({10 * scale, 170 * scale}, {250 * scale, 170 * scale}, {kInk, 1}, DrawMode::NotXorPen);
    };
    EXPECT_EQ(differences(played(strokes, 13, 1.0), shown(strokes)), 0);
    EXPECT_EQ(differences(played(strokes, 1, 1.0), shown(strokes)), 0);
}

TEST(GdiCanvas, HatchesHaveThePixelsOfTheScreen) {
    for (int style = 2; style <= 7; ++style) {
        const Strokes strokes = [style](raster::Canvas& canvas, int scale) {
            canvas.rectangle(Corners{21, 33, 250, 170}.at(scale), {kInk, 1}, {static_cast<FillStyle>(style), kInk},
                             DrawMode::CopyPen);
        };
        const int inked = static_cast<int>(std::ranges::count(shown(strokes), raster::toPixel(kInk)));
        EXPECT_LE(differences(played(strokes, 13, 1.0), shown(strokes)), inked / 20) << style;
    }
}

TEST(GdiCanvas, OnAPrinterHatchesCoverTheSameShareOfABox) {
    constexpr double kFactor = 600.0 / 96.0;
    for (int style = 2; style <= 7; ++style) {
        const Strokes strokes = [style](raster::Canvas& canvas, int scale) {
            canvas.rectangle(Corners{21, 33, 250, 170}.at(scale), {0, 1}, {static_cast<FillStyle>(style), kInk},
                             DrawMode::CopyPen);
        };
        const auto share = [](const std::vector<std::uint32_t>& pixels) {
            return static_cast<double>(std::ranges::count(pixels, raster::toPixel(kInk))) /
                   static_cast<double>(pixels.size());
        };
        const double onScreen = share(shown(strokes));
        EXPECT_NEAR(share(played(strokes, 13, kFactor)), onScreen, onScreen * 0.1) << style;
    }
}

TEST(GdiCanvas, OnAPrinterEdgesAreWhereTheUnitsSay) {
    constexpr double kFactor = 600.0 / 96.0;
    const Corners box{40.4, 50.3, 120.7, 160.0};
    const Strokes strokes = [&](raster::Canvas& canvas, int scale) {
        canvas.rectangle(box.at(scale), {kInk, 1}, {FillStyle::Transparent, 0}, DrawMode::CopyPen);
    };
    const std::vector<std::uint32_t> pixels = played(strokes, 13, kFactor);
    const auto width = static_cast<std::size_t>(std::lround(kWidth * kFactor));
    const auto isInk = [&](std::size_t x, std::size_t y) { return pixels[y * width + x] == raster::toPixel(kInk); };
    const auto middleOfRun = [&](std::size_t from, std::size_t to, const std::function<bool(std::size_t)>& inked) {
        std::size_t first = from;
        while (first < to && !inked(first))
            ++first;
        std::size_t last = first;
        while (last < to && inked(last))
            ++last;
        EXPECT_NEAR(static_cast<double>(last - first), kFactor, 1.0) << "as wide as a pixel of the screen";
        return (static_cast<double>(first) + static_cast<double>(last) - 1.0) / 2.0;
    };
    const auto row = [&](std::size_t x) { return isInk(x, 600); };
    const auto column = [&](std::size_t y) { return isInk(500, y); };
    EXPECT_NEAR(middleOfRun(0, 500, row), box.left * kFactor, 1.0);
    EXPECT_NEAR(middleOfRun(500, width, row), box.right * kFactor, 1.0);
    EXPECT_NEAR(middleOfRun(0, 600, column), box.top * kFactor, 1.0);
}

TEST(GdiCanvas, NothingIsDrawnOutsideOfTheInnerPicture) {
    const raster::PixelRect inner{50, 40, 250, 160};
    const Strokes strokes = [](raster::Canvas& canvas, int scale) {
        canvas.rectangle({-100 * scale, -100 * scale, 1000 * scale, 1000 * scale}, {kInk, 1}, {FillStyle::Solid, kInk},
                         DrawMode::CopyPen);
        canvas.line({-(1 << 24), 5 * scale}, {1 << 24, 5 * scale}, {0, 3}, DrawMode::CopyPen);
    };
    const std::vector<std::uint32_t> pixels = played(strokes, 13, 1.0, inner);
    int outside = 0;
    int inside = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool isInner = x >= inner.left && x < inner.right && y >= inner.top && y < inner.bottom;
            const bool isWhite = pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] == 0xFFFFFF;
            outside += !isInner && !isWhite ? 1 : 0;
            inside += isInner && isWhite ? 1 : 0;
        }
    }
    EXPECT_EQ(outside, 0);
    EXPECT_EQ(inside, 0);
}

TEST(GdiCanvas, TextsHaveTheirSizeAtTheResolution) {
    const HDC dc = CreateCompatibleDC(nullptr);
    GdiSheet fine(dc, 13.0, 1248);
    GdiSheet screen(dc, 1.0, 96);
    const raster::Font font{L"Tahoma", 8.0, false};
    const raster::PixelSize small = screen.textSize(L"450.000", font);
    const raster::PixelSize large = fine.textSize(L"450.000", font);
    EXPECT_NEAR(large.width / 13.0, small.width, small.width * 0.15);
    EXPECT_NEAR(large.height / 13.0, small.height, small.height * 0.15);
}

TEST(GdiCanvas, ManyColorsNeedFewObjects) {
    const Strokes strokes = [](raster::Canvas& canvas, int scale) {
        for (int i = 0; i < 20000; ++i) {
            const auto color = static_cast<raster::Rgb>(i);
            const int x = i % kWidth;
            canvas.rectangle(Corners{x + 0.0, 0.0 + i % 100, x + 3.0, 150.0}.at(scale), {color, 1},
                             {FillStyle::Solid, color}, DrawMode::CopyPen);
        }
    };
    EXPECT_EQ(differences(played(strokes, 13, 1.0), shown(strokes)), 0);
}

}  // namespace
}  // namespace kv::win32
