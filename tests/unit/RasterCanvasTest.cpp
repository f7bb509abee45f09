#include "raster/RasterCanvas.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "raster/WideProduct.h"

namespace {

using namespace kv::raster;
using testing::ElementsAre;

constexpr Rgb kRed = 0x0000FF;
constexpr Rgb kGreen = 0x00FF00;
constexpr Rgb kPaper = 0x404040;
constexpr std::uint32_t kGuard = 0xDEADBEEF;

class RecordingTexts : public TextPainter {
  public:
    PixelSize textSize(std::wstring_view text, const Font& font) override {
        return {static_cast<int>(text.size()), static_cast<int>(font.points)};
    }
    void draw(const PixelBuffer& buffer, PixelPoint at, std::wstring_view text, const Font&, Rgb color) override {
        calls.push_back(std::to_string(buffer.width) + ' ' + std::to_string(at.x) + ',' + std::to_string(at.y) + ' ' +
                        std::string(text.begin(), text.end()) + ' ' + std::to_string(color));
    }
    std::vector<std::string> calls;
};

/// A canvas whose rows are longer than the surface, with guards all around, so that a stray store is seen.
class Sheet {
  public:
    Sheet(int width, int height)
        : stride_(width + 3),
          memory_(static_cast<std::size_t>(stride_ * (height + 2)), kGuard),
          buffer_{memory_.data() + stride_ + 1, width, height, stride_},
          canvas(texts, buffer_) {
        canvas.clear(kPaper);
    }

    [[nodiscard]] std::uint32_t at(int x, int y) const { return buffer_.row(y)[x]; }

    /// P is red, B green, a dot paper, ~ inverted paper.
    [[nodiscard]] std::vector<std::string> art() const {
        std::vector<std::string> rows;
        for (int y = 0; y < buffer_.height; ++y) {
            std::string row;
            for (int x = 0; x < buffer_.width; ++x) {
                const std::uint32_t pixel = at(x, y);
                row += pixel == 0xFF0000   ? 'P'
                       : pixel == 0x00FF00 ? 'B'
                       : pixel == 0x404040 ? '.'
                       : pixel == 0xBFBFBF ? '~'
                                           : '?';
            }
            rows.push_back(row);
        }
        return rows;
    }

    [[nodiscard]] bool guardsIntact() const {
        for (std::size_t i = 0; i < memory_.size(); ++i) {
            const int x = static_cast<int>(i) % stride_ - 1;
            const int y = static_cast<int>(i) / stride_ - 1;
            const bool inside = x >= 0 && x < buffer_.width && y >= 0 && y < buffer_.height;
            if (!inside && memory_[i] != kGuard) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] const std::vector<std::uint32_t>& memory() const { return memory_; }

  private:
    int stride_;
    std::vector<std::uint32_t> memory_;
    PixelBuffer buffer_;

  public:
    RecordingTexts texts;
    RasterCanvas canvas;
};

std::vector<std::string> lineArt(PixelPoint from, PixelPoint to, int width = 1, PixelSize size = {9, 5}) {
    Sheet sheet(size.width, size.height);
    sheet.canvas.line(from, to, {kRed, width}, DrawMode::CopyPen);
    return sheet.art();
}

std::vector<std::string> boxArt(PixelRect box, FillStyle style, DrawMode mode = DrawMode::CopyPen, int width = 1,
                                PixelSize size = {8, 6}) {
    Sheet sheet(size.width, size.height);
    sheet.canvas.rectangle(box, {kRed, width}, {style, kGreen}, mode);
    return sheet.art();
}

TEST(RasterCanvas, ClearsTheSurfaceAndNothingElse) {
    Sheet sheet(5, 4);
    sheet.canvas.clear(0x00332211);
    EXPECT_EQ(sheet.at(0, 0), 0x00112233U);
    EXPECT_EQ(sheet.at(4, 3), 0x00112233U);
    EXPECT_TRUE(sheet.guardsIntact());
    EXPECT_EQ(sheet.canvas.size(), (PixelSize{5, 4}));
}

TEST(RasterCanvas, IgnoresTheTopByteOfColors) {
    Sheet sheet(3, 1);
    sheet.canvas.line({0, 0}, {3, 0}, {0xFF0000FFU, 1}, DrawMode::CopyPen);
    EXPECT_EQ(sheet.at(0, 0), 0x00FF0000U);
}

TEST(RasterCanvas, StraightLinesLeaveOutTheirEnd) {
    EXPECT_THAT(lineArt({1, 1}, {6, 1}, 1, {8, 2}), ElementsAre("........", ".PPPPP.."));
    EXPECT_THAT(lineArt({6, 1}, {1, 1}, 1, {8, 2}), ElementsAre("........", "..PPPPP."));
    EXPECT_THAT(lineArt({1, 0}, {1, 3}, 1, {3, 4}), ElementsAre(".P.", ".P.", ".P.", "..."));
    EXPECT_THAT(lineArt({1, 3}, {1, 0}, 1, {3, 4}), ElementsAre("...", ".P.", ".P.", ".P."));
    EXPECT_THAT(lineArt({1, 0}, {1, 0}, 1, {3, 1}), ElementsAre("..."));
}

TEST(RasterCanvas, SlantedLinesGiveTiesToTheUpperOrLeftPixel) {
    EXPECT_THAT(lineArt({0, 0}, {8, 4}), ElementsAre("PP.......", "..PP.....", "....PP...", "......PP.", "........."));
    EXPECT_THAT(lineArt({8, 4}, {0, 0}), ElementsAre(".P.......", "..PP.....", "....PP...", "......PP.", "........P"));
    EXPECT_THAT(lineArt({0, 4}, {8, 0}), ElementsAre(".......P.", ".....PP..", "...PP....", ".PP......", "P........"));
    EXPECT_THAT(lineArt({8, 0}, {0, 4}), ElementsAre(".......PP", ".....PP..", "...PP....", ".PP......", "........."));
    EXPECT_THAT(lineArt({0, 0}, {2, 4}, 1, {3, 5}), ElementsAre("P..", "P..", ".P.", ".P.", "..."));
    EXPECT_THAT(lineArt({2, 4}, {0, 0}, 1, {3, 5}), ElementsAre("...", "P..", ".P.", ".P.", "..P"));
    EXPECT_THAT(lineArt({0, 0}, {3, 3}, 1, {4, 4}), ElementsAre("P...", ".P..", "..P.", "...."));
}

// A small surface shows the same pixels as that part of a large one.
TEST(RasterCanvas, ClippingDoesNotChangeThePixels) {
    std::mt19937 dice(5);
    const auto coordinate = [&dice] { return static_cast<int>(dice() % 120U) - 10; };
    for (int i = 0; i < 4000; ++i) {
        const PixelPoint from{coordinate(), coordinate()};
        const PixelPoint to{coordinate(), coordinate()};
        const Pen pen{kRed, 1 + i % 5};
        const PixelPoint corner{coordinate() % 80 + 10, coordinate() % 80 + 10};
        Sheet large(110, 110);
        Sheet small(9, 7);
        large.canvas.line(from, to, pen, DrawMode::CopyPen);
        small.canvas.line({from.x - corner.x, from.y - corner.y}, {to.x - corner.x, to.y - corner.y}, pen,
                          DrawMode::CopyPen);
        for (int y = 0; y < 7; ++y) {
            for (int x = 0; x < 9; ++x) {
                ASSERT_EQ(small.at(x, y), large.at(x + corner.x, y + corner.y)) << "line " << i;
            }
        }
    }
}

TEST(RasterCanvas, LinesBetweenTheLimitsOfIntPassThroughTheirPixels) {
    EXPECT_THAT(lineArt({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, 1, {3, 3}), ElementsAre("P..", ".P.", "..P"));
    EXPECT_THAT(lineArt({INT_MIN, 1}, {INT_MAX, 1}, 1, {3, 3}), ElementsAre("...", "PPP", "..."));
    EXPECT_THAT(lineArt({1, INT_MAX}, {1, INT_MIN}, 1, {3, 3}), ElementsAre(".P.", ".P.", ".P."));
    // y = x / 2 exactly, from far outside on both sides.
    EXPECT_THAT(lineArt({-2000000000, -1000000000}, {2000000000, 1000000000}, 1, {5, 3}),
                ElementsAre("PP...", "..PP.", "....P"));
    EXPECT_THAT(lineArt({INT_MAX, INT_MAX}, {INT_MAX - 9, INT_MIN}, 1, {2, 2}), ElementsAre("..", ".."));
    EXPECT_THAT(lineArt({INT_MIN, 2}, {INT_MAX, 2}, 3, {4, 5}), ElementsAre("....", "PPPP", "PPPP", "PPPP", "...."));
}

TEST(RasterCanvas, WideLinesHaveRoundEnds) {
    EXPECT_THAT(lineArt({3, 2}, {3, 2}, 2, {8, 5}),
                ElementsAre("........", "..PP....", "..PP....", "........", "........"));
    EXPECT_THAT(lineArt({3, 2}, {5, 2}, 3, {8, 5}),
                ElementsAre("........", "...PPP..", "..PPPPP.", "...PPP..", "........"));
    EXPECT_THAT(lineArt({5, 2}, {3, 2}, 5, {9, 5}),
                ElementsAre("..PPPPP..", ".PPPPPPP.", ".PPPPPPP.", ".PPPPPPP.", "..PPPPP.."));
    EXPECT_THAT(lineArt({2, 4}, {2, 2}, 3, {5, 7}),
                ElementsAre(".....", "..P..", ".PPP.", ".PPP.", ".PPP.", "..P..", "....."));
    EXPECT_THAT(lineArt({1, 1}, {11, 6}, 3, {14, 8}),
                ElementsAre(".PPP..........", "PPPPPP........", "PPPPPPPP......", "..PPPPPPPP....", "....PPPPPPPP..",
                            "......PPPPPP..", "........PPPPP.", "...........P.."));
}

TEST(RasterCanvas, BoxesAreFilledInEightStyles) {
    const PixelRect box{0, 0, 10, 9};
    const PixelSize size{9, 8};
    const auto art = [&](int style) { return boxArt(box, static_cast<FillStyle>(style), DrawMode::CopyPen, 1, size); };
    EXPECT_THAT(art(0), ElementsAre("PPPPPPPPP", "PBBBBBBBB", "PBBBBBBBB", "PBBBBBBBB", "PBBBBBBBB", "PBBBBBBBB",
                                    "PBBBBBBBB", "PBBBBBBBB"));
    EXPECT_THAT(art(1), ElementsAre("PPPPPPPPP", "P........", "P........", "P........", "P........", "P........",
                                    "P........", "P........"));
    EXPECT_THAT(art(2), ElementsAre("PPPPPPPPP", "P........", "P........", "PBBBBBBBB", "P........", "P........",
                                    "P........", "P........"));
    EXPECT_THAT(art(3), ElementsAre("PPPPPPPPP", "P...B....", "P...B....", "P...B....", "P...B....", "P...B....",
                                    "P...B....", "P...B...."));
    EXPECT_THAT(art(4), ElementsAre("PPPPPPPPP", "P.....B..", "P....B...", "P...B....", "P..B.....", "P.B......",
                                    "PB.......", "P.......B"));
    EXPECT_THAT(art(5), ElementsAre("PPPPPPPPP", "PB.......", "P.B......", "P..B.....", "P...B....", "P....B...",
                                    "P.....B..", "P......B."));
    EXPECT_THAT(art(6), ElementsAre("PPPPPPPPP", "P...B....", "P...B....", "PBBBBBBBB", "P...B....", "P...B....",
                                    "P...B....", "P...B...."));
    EXPECT_THAT(art(7), ElementsAre("PPPPPPPPP", "PB....B..", "P.B..B...", "P..BB....", "P..BB....", "P.B..B...",
                                    "PB....B..", "P......BB"));
    EXPECT_EQ(art(8), art(1));
    EXPECT_EQ(art(-1), art(1));
    EXPECT_EQ(art(INT_MAX), art(1));
}

TEST(RasterCanvas, HatchesAreAlignedToTheSurfaceAndNotToTheBox) {
    for (int style = 2; style <= 7; ++style) {
        const Brush brush{static_cast<FillStyle>(style), kGreen};
        Sheet whole(40, 30);
        whole.canvas.rectangle({-1, -1, 41, 31}, {}, brush, DrawMode::CopyPen);
        for (int i = 0; i < 200; ++i) {
            const int left = i % 20;
            const int top = i / 10;
            Sheet part(40, 30);
            part.canvas.rectangle({left - 1, top - 1, left + i % 19 + 1, top + 4}, {}, brush, DrawMode::CopyPen);
            for (int x = left; x < left + i % 19; ++x) {
                for (int y = top; y < top + 3; ++y) {
                    ASSERT_EQ(part.at(x, y), whole.at(x, y)) << "style " << style << " at " << x << ',' << y;
                }
            }
        }
    }
}

TEST(RasterCanvas, TilesMayBeReplaced) {
    RecordingTexts texts;
    std::vector<std::uint32_t> pixels(24);
    HatchTiles tiles;
    tiles.cross = {0x03, 0xFF, 0x00, 0x80, 0, 0, 0, 0};
    RasterCanvas canvas(texts, {pixels.data(), 8, 3, 8}, tiles);
    canvas.rectangle({-1, -1, 9, 4}, {}, {FillStyle::Cross, 0xFFFFFF}, DrawMode::CopyPen);
    const std::uint32_t o = 0xFFFFFF;
    EXPECT_THAT(pixels, ElementsAre(o, o, 0, 0, 0, 0, 0, 0, o, o, o, o, o, o, o, o, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(RasterCanvas, SmallBoxes) {
    EXPECT_THAT(boxArt({1, 1, 3, 5}, FillStyle::Solid),
                ElementsAre("........", ".PP.....", ".PP.....", ".PP.....", ".PP.....", "........"));
    EXPECT_THAT(boxArt({1, 1, 7, 2}, FillStyle::Solid),
                ElementsAre("........", ".PPPPPP.", "........", "........", "........", "........"));
    EXPECT_THAT(boxArt({1, 1, 2, 5}, FillStyle::Solid),
                ElementsAre("........", ".P......", ".P......", ".P......", ".P......", "........"));
    EXPECT_THAT(boxArt({5, 4, 2, 1}, FillStyle::Solid),
                ElementsAre("........", "..PPP...", "..PBP...", "..PPP...", "........", "........"));
    const auto nothing = ElementsAre("........", "........", "........", "........", "........", "........");
    EXPECT_THAT(boxArt({3, 1, 3, 5}, FillStyle::Solid), nothing);
    EXPECT_THAT(boxArt({1, 3, 5, 3}, FillStyle::Solid), nothing);
    EXPECT_THAT(boxArt({3, 3, 4, 4}, FillStyle::Solid), nothing);
    EXPECT_THAT(boxArt({3, 3, 3, 4}, FillStyle::Solid, DrawMode::CopyPen, 3), nothing);
}

// A flat box is a line there and back, each without its end.
TEST(RasterCanvas, OfAFlatBoxOnlyTheEndsRemainWhenInverting) {
    EXPECT_THAT(boxArt({1, 1, 2, 5}, FillStyle::Solid, DrawMode::Invert),
                ElementsAre("........", ".~......", "........", "........", ".~......", "........"));
    EXPECT_THAT(boxArt({1, 1, 7, 2}, FillStyle::Solid, DrawMode::Invert),
                ElementsAre("........", ".~....~.", "........", "........", "........", "........"));
    EXPECT_THAT(boxArt({-4, 1, 3, 2}, FillStyle::Solid, DrawMode::Invert),
                ElementsAre("........", "..~.....", "........", "........", "........", "........"));
    EXPECT_THAT(boxArt({1, 1, 4, 4}, FillStyle::Solid, DrawMode::Invert),
                ElementsAre("........", ".~~~....", ".~~~....", ".~~~....", "........", "........"));
}

TEST(RasterCanvas, WideOutlinesAreRoundOutsideAndSquareInside) {
    EXPECT_THAT(boxArt({2, 1, 7, 5}, FillStyle::Solid, DrawMode::CopyPen, 2),
                ElementsAre(".PPPPPP.", ".PPPPPP.", ".PPBBPP.", ".PPPPPP.", ".PPPPPP.", "........"));
    EXPECT_THAT(boxArt({1, 1, 7, 6}, FillStyle::Solid, DrawMode::CopyPen, 3, {9, 7}),
                ElementsAre(".PPPPPP..", "PPPPPPPP.", "PPPPPPPP.", "PPPBBPPP.", "PPPPPPPP.", "PPPPPPPP.", ".PPPPPP.."));
    EXPECT_THAT(boxArt({1, 1, 2, 2}, FillStyle::Solid, DrawMode::Invert, 3, {4, 3}),
                ElementsAre(".~..", "~~~.", ".~.."));
}

TEST(RasterCanvas, NotXorIsTheComplementOfTheExclusiveOr) {
    Sheet sheet(4, 4);
    sheet.canvas.clear(0x332211);
    sheet.canvas.rectangle({0, 0, 4, 4}, {0x0000F0, 1}, {FillStyle::Solid, 0x0F0000}, DrawMode::NotXorPen);
    EXPECT_EQ(sheet.at(0, 0) & 0xFFFFFFU, ~(0x112233U ^ 0xF00000U) & 0xFFFFFFU);
    EXPECT_EQ(sheet.at(1, 2) & 0xFFFFFFU, ~(0x112233U ^ 0x00000FU) & 0xFFFFFFU);
}

TEST(RasterCanvas, DrawingTwiceRestoresInBothInvertingModes) {
    std::mt19937 dice(8);
    const auto any = [&dice](int reach) { return static_cast<int>(dice() % static_cast<unsigned>(reach)) - reach / 3; };
    for (const DrawMode mode : {DrawMode::NotXorPen, DrawMode::Invert}) {
        int changes = 0;
        for (int i = 0; i < 3000; ++i) {
            Sheet sheet(31, 23);
            sheet.canvas.rectangle({3, 3, 25, 20}, {kRed, 3}, {FillStyle::Cross, kGreen}, DrawMode::CopyPen);
            const std::vector<std::uint32_t> before = sheet.memory();
            const PixelRect at{any(90), any(70), any(90), any(70)};
            const Pen pen{static_cast<Rgb>(dice() & 0xFFFFFFU), 1 + i % 6};
            const Brush brush{static_cast<FillStyle>(i % 8), static_cast<Rgb>(dice() & 0xFFFFFFU)};
            for (int time = 0; time < 2; ++time) {
                sheet.canvas.rectangle(at, pen, brush, mode);
                sheet.canvas.line({at.left, at.top}, {at.right, at.bottom}, pen, mode);
                changes += sheet.memory() != before ? 1 : 0;
            }
            ASSERT_EQ(sheet.memory(), before);
        }
        EXPECT_GT(changes, 1000);
    }
}

// A loop over invisible pixels would make this test run for hours.
TEST(RasterCanvas, TakesAnyCoordinates) {
    constexpr int kEnds[] = {INT_MIN, INT_MIN + 1, -70000, -1, 0, 4, 5, 70000, INT_MAX - 1, INT_MAX};
    constexpr int kWidths[] = {INT_MIN, 1, 2, 5, 300};
    Sheet sheet(7, 5);
    const std::vector<std::uint32_t> before = sheet.memory();
    for (const int width : kWidths) {
        for (int i = 0; i < 10000; ++i) {
            const PixelPoint from{kEnds[i % 10], kEnds[i / 10 % 10]};
            const PixelPoint to{kEnds[i / 100 % 10], kEnds[i / 1000]};
            const Brush brush{static_cast<FillStyle>(i % 9), kGreen};
            for (int time = 0; time < 2; ++time) {
                sheet.canvas.line(from, to, {kRed, width}, DrawMode::Invert);
                sheet.canvas.rectangle({from.x, from.y, to.x, to.y}, {kRed, width}, brush, DrawMode::NotXorPen);
            }
        }
        ASSERT_EQ(sheet.memory(), before) << "width " << width;
    }
    EXPECT_TRUE(sheet.guardsIntact());
}

TEST(RasterCanvas, AHugeBoxOrPenCoversTheSurface) {
    EXPECT_THAT(boxArt({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, FillStyle::Solid, DrawMode::CopyPen, 1, {3, 2}),
                ElementsAre("BBB", "BBB"));
    EXPECT_THAT(boxArt({INT_MAX, INT_MAX, INT_MIN, INT_MIN}, FillStyle::Solid, DrawMode::CopyPen, 9, {3, 2}),
                ElementsAre("BBB", "BBB"));
    EXPECT_THAT(boxArt({INT_MIN, 0, INT_MAX, 2}, FillStyle::Solid, DrawMode::CopyPen, 1, {3, 3}),
                ElementsAre("PPP", "PPP", "..."));
    EXPECT_THAT(lineArt({1, 1}, {2, 9}, INT_MAX, {3, 2}), ElementsAre("PPP", "PPP"));
}

TEST(RasterCanvas, LeavesTextToItsPainter) {
    Sheet sheet(5, 4);
    EXPECT_EQ(sheet.canvas.textSize(L"abc", {L"Tahoma", 8.0, false}), (PixelSize{3, 8}));
    sheet.canvas.text({-3, 2}, L"abc", {}, 77);
    EXPECT_THAT(sheet.texts.calls, ElementsAre("5 -3,2 abc 77"));
}

TEST(RasterCanvas, DrawsNowhereWithoutPixels) {
    RecordingTexts texts;
    RasterCanvas canvas(texts, {nullptr, 10, 10, 10});
    canvas.clear(kRed);
    canvas.line({0, 0}, {9, 5}, {kRed, 1}, DrawMode::CopyPen);
    canvas.rectangle({0, 0, 9, 5}, {kRed, 3}, {FillStyle::Solid, kRed}, DrawMode::Invert);
    canvas.text({0, 0}, L"abc", {}, 0);
    EXPECT_EQ(canvas.size(), PixelSize{});
    EXPECT_TRUE(texts.calls.empty());

    std::vector<std::uint32_t> pixels(6);
    canvas.attach({pixels.data(), 3, 2, 3});
    canvas.clear(kRed);
    EXPECT_EQ(canvas.size(), (PixelSize{3, 2}));
    EXPECT_THAT(pixels, testing::Each(0xFF0000U));
    canvas.attach({pixels.data(), 0, 2, 3});
    EXPECT_EQ(canvas.size(), PixelSize{});
}

TEST(WideProduct, IsExactBeyond64Bits) {
    constexpr std::int64_t kBig = std::int64_t{1} << 34;
    // (2^34 - 1)^2 + 5 = (2^34 - 2) * 2^34 + 6
    EXPECT_EQ(wideProduct(kBig - 1, kBig - 1, 5, kBig).quotient, kBig - 2);
    EXPECT_EQ(wideProduct(kBig - 1, kBig - 1, 5, kBig).rest, 6);
    EXPECT_EQ(wideProduct(kBig - 1, 3, 0, 3).quotient, kBig - 1);
    std::mt19937 dice(3);
    for (int i = 0; i < 1000; ++i) {
        const auto a = static_cast<std::int64_t>(dice() % 1000000U);
        const auto b = static_cast<std::int64_t>(dice() % 1000000000U);
        const auto c = static_cast<std::int64_t>(dice() % 1000000000U);
        const auto d = static_cast<std::int64_t>(dice() % 1000000000U) + 1;
        ASSERT_EQ(wideProduct(a, b, c, d).quotient, (a * b + c) / d);
        ASSERT_EQ(wideProduct(a, b, c, d).rest, (a * b + c) % d);
    }
}

}  // namespace
