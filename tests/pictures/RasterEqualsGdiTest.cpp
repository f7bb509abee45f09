// RasterCanvas and GDI draw the same shapes into pixels of the same format; every pixel must be equal.
// This proves equality with the GDI it runs on; so far that was Wine 8's and Wine 10's, in 64 and in 32 bits.
#include "raster/RasterCanvas.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "headless/BlockTextPainter.h"
#include "headless/RecordingCanvas.h"

namespace {

using namespace kv::headless;
using namespace kv::raster;

constexpr std::uint32_t kColorBits = 0x00FFFFFF;
constexpr std::uint32_t kStartPixel = 0x00345678;

struct ObjectDeleter {
    using pointer = HGDIOBJ;
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using GdiObject = std::unique_ptr<std::remove_pointer_t<HGDIOBJ>, ObjectDeleter>;

struct ContextDeleter {
    using pointer = HDC;
    void operator()(HDC dc) const { DeleteDC(dc); }
};
using Context = std::unique_ptr<std::remove_pointer_t<HDC>, ContextDeleter>;

/// An object selected into a context as long as this lives.
class Selected {
  public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, before_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

  private:
    HDC dc_;
    HGDIOBJ before_;
};

/// A brush of GDI's for one of ours.
HGDIOBJ makeBrush(const Brush& brush) {
    switch (brush.style) {
        case FillStyle::Solid:
            return CreateSolidBrush(brush.color);
        case FillStyle::HorizontalLine:
            return CreateHatchBrush(HS_HORIZONTAL, brush.color);
        case FillStyle::VerticalLine:
            return CreateHatchBrush(HS_VERTICAL, brush.color);
        case FillStyle::UpwardDiagonal:
            return CreateHatchBrush(HS_BDIAGONAL, brush.color);
        case FillStyle::DownwardDiagonal:
            return CreateHatchBrush(HS_FDIAGONAL, brush.color);
        case FillStyle::Cross:
            return CreateHatchBrush(HS_CROSS, brush.color);
        case FillStyle::DiagonalCross:
            return CreateHatchBrush(HS_DIAGCROSS, brush.color);
        case FillStyle::Transparent:
            break;
    }
    return GetStockObject(NULL_BRUSH);  // deleting it is harmless
}

/// GDI behind our interface, into a top-down DIB section.
class GdiCanvas {
  public:
    explicit GdiCanvas(PixelSize size) : size_(size), dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = size.width;
        info.bmiHeader.biHeight = -size.height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        bitmap_.reset(CreateDIBSection(dc_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        pixels_ = static_cast<std::uint32_t*>(bits);
        before_ = SelectObject(dc_.get(), bitmap_.get());
        SetBkMode(dc_.get(), TRANSPARENT);
        SetBrushOrgEx(dc_.get(), 0, 0, nullptr);
    }
    ~GdiCanvas() { SelectObject(dc_.get(), before_); }
    GdiCanvas(const GdiCanvas&) = delete;
    GdiCanvas& operator=(const GdiCanvas&) = delete;

    void line(PixelPoint from, PixelPoint to, const Pen& pen, DrawMode mode) {
        const GdiObject gdiPen(CreatePen(PS_SOLID, pen.width, pen.color));
        const Selected selected(dc_.get(), gdiPen.get());
        SetROP2(dc_.get(), static_cast<int>(mode));
        MoveToEx(dc_.get(), from.x, from.y, nullptr);
        LineTo(dc_.get(), to.x, to.y);
    }

    void rectangle(const PixelRect& box, const Pen& pen, const Brush& brush, DrawMode mode) {
        const GdiObject gdiPen(CreatePen(PS_SOLID, pen.width, pen.color));
        const GdiObject gdiBrush(makeBrush(brush));
        const Selected selectedPen(dc_.get(), gdiPen.get());
        const Selected selectedBrush(dc_.get(), gdiBrush.get());
        SetROP2(dc_.get(), static_cast<int>(mode));
        Rectangle(dc_.get(), box.left, box.top, box.right, box.bottom);
    }

    [[nodiscard]] std::uint32_t* pixels() {
        GdiFlush();
        return pixels_;
    }
    [[nodiscard]] std::size_t count() const {
        return static_cast<std::size_t>(size_.width) * static_cast<std::size_t>(size_.height);
    }

  private:
    PixelSize size_;
    Context dc_;
    GdiObject bitmap_;
    HGDIOBJ before_ = nullptr;
    std::uint32_t* pixels_ = nullptr;
};

struct Primitive {
    bool isLine = false;
    PixelRect at;  ///< of a line: from left, top to right, bottom
    Pen pen;
    Brush brush;
    DrawMode mode = DrawMode::CopyPen;

    template <class Target>
    void drawOn(Target& target) const {
        if (isLine) {
            target.line({at.left, at.top}, {at.right, at.bottom}, pen, mode);
        } else {
            target.rectangle(at, pen, brush, mode);
        }
    }

    [[nodiscard]] std::string text() const {
        RecordingCanvas canvas({});
        drawOn(canvas);
        return canvas.lines().front();
    }
};

/// Both drawings of the same primitives, one over the other.
class Comparison {
  public:
    explicit Comparison(PixelSize size)
        : size_(size),
          gdi_(size),
          ours_(gdi_.count(), kStartPixel),
          canvas_(letters_, {ours_.data(), size.width, size.height, size.width}) {
        std::fill_n(gdi_.pixels(), gdi_.count(), kStartPixel);
    }

    /// Whether the pixels are still equal after this primitive.
    [[nodiscard]] testing::AssertionResult draw(const Primitive& primitive) {
        ++drawn_;
        primitive.drawOn(gdi_);
        primitive.drawOn(canvas_);
        const std::uint32_t* const theirs = gdi_.pixels();
        for (std::size_t i = 0; i < ours_.size(); ++i) {
            if (((theirs[i] ^ ours_[i]) & kColorBits) != 0) {
                return difference(primitive, i, theirs[i]);
            }
        }
        return testing::AssertionSuccess();
    }

    [[nodiscard]] int drawn() const { return drawn_; }
    /// The number of pixels changed so far, because a comparison of blank pictures would prove nothing.
    [[nodiscard]] std::ptrdiff_t changed() const {
        return std::count_if(ours_.begin(), ours_.end(), [](std::uint32_t p) { return p != kStartPixel; });
    }

  private:
    [[nodiscard]] testing::AssertionResult difference(const Primitive& primitive, std::size_t at,
                                                      std::uint32_t theirs) const {
        const auto width = static_cast<std::size_t>(size_.width);
        std::ostringstream text;
        text << "primitive " << drawn_ << " on " << size_.width << 'x' << size_.height << ": " << primitive.text()
             << "\nfirst differing pixel " << at % width << ',' << at / width << std::hex << ": GDI "
             << (theirs & kColorBits) << ", RasterCanvas " << (ours_[at] & kColorBits);
        return testing::AssertionFailure() << text.str();
    }

    PixelSize size_;
    GdiCanvas gdi_;
    std::vector<std::uint32_t> ours_;
    BlockTextPainter letters_;
    RasterCanvas canvas_;
    int drawn_ = 0;
};

constexpr std::array kModes{DrawMode::CopyPen, DrawMode::NotXorPen, DrawMode::Invert};
constexpr std::array kSizes{PixelSize{64, 48}, PixelSize{101, 7}, PixelSize{1, 1}, PixelSize{13, 90}};

class Dice {
  public:
    explicit Dice(unsigned seed) : engine_(seed) {}

    /// From `low` to `high`, both included.
    int between(int low, int high) {
        const auto count = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
        return static_cast<int>(low + static_cast<std::int64_t>(engine_() % count));
    }
    Rgb color() { return static_cast<Rgb>(engine_() & kColorBits); }
    DrawMode mode() { return kModes[static_cast<std::size_t>(between(0, 2))]; }
    Brush brush() { return {static_cast<FillStyle>(between(0, 7)), color()}; }

    /// A coordinate of an axis of `extent` pixels: inside, at the edges, or up to `reach` outside.
    int coordinate(int extent, int reach) {
        switch (between(0, 7)) {
            case 0:
                return between(-3, 3);
            case 1:
                return extent + between(-3, 3);
            case 2:
                return between(-20, extent + 20);
            case 3:
                return between(-reach, reach);
            case 4:
                return between(-reach / 50, reach / 50);
            default:
                return between(0, extent - 1);
        }
    }
    PixelRect area(PixelSize size, int reach) {
        return {coordinate(size.width, reach), coordinate(size.height, reach), coordinate(size.width, reach),
                coordinate(size.height, reach)};
    }

  private:
    std::mt19937 engine_;
};

/// Draws `count` primitives of `make` on every size of surface.
void compareRandom(unsigned seed, int count, const std::function<Primitive(Dice&, PixelSize)>& make) {
    Dice dice(seed);
    for (const PixelSize size : kSizes) {
        Comparison comparison(size);
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(comparison.draw(make(dice, size))) << "seed " << seed;
        }
        ASSERT_GT(comparison.changed(), 0);
    }
}

TEST(RasterEqualsGdi, HatchTilesEqualTheSystemsHatches) {
    const HatchTiles tiles;
    for (int style = 2; style <= 7; ++style) {
        GdiCanvas gdi({18, 18});
        std::fill_n(gdi.pixels(), gdi.count(), 0U);
        gdi.rectangle({-5, -5, 40, 40}, {}, {static_cast<FillStyle>(style), 0xFFFFFF}, DrawMode::CopyPen);
        const std::uint32_t* const pixels = gdi.pixels();
        const HatchTile& tile = *tiles.of(static_cast<FillStyle>(style));
        for (unsigned y = 0; y < 18; ++y) {
            for (unsigned x = 0; x < 18; ++x) {
                const bool set = (pixels[y * 18 + x] & kColorBits) != 0;
                ASSERT_EQ(set, ((tile[y % 8] >> (x % 8)) & 1) != 0) << "style " << style << " at " << x << ',' << y;
            }
        }
    }
}

TEST(RasterEqualsGdi, LinesToAllNeighbors) {
    for (const int width : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}) {
        Comparison comparison({40, 40});
        for (int x = -14; x <= 14; ++x) {
            for (int y = -14; y <= 14; ++y) {
                const auto mode = kModes[static_cast<std::size_t>((x + y + 28) % 3)];
                const Rgb color = mode == DrawMode::CopyPen ? static_cast<Rgb>((x + 15) * 4096 + y + 15) : 0x5A3C99;
                ASSERT_TRUE(comparison.draw({true, {20, 20, 20 + x, 20 + y}, {color, width}, {}, mode}));
                ASSERT_TRUE(comparison.draw({true, {20 - x, 20 - y, 20, 20}, {color, width}, {}, mode}));
            }
        }
        ASSERT_GT(comparison.changed(), 500);
    }
}

TEST(RasterEqualsGdi, SmallBoxesOfEveryKind) {
    for (const DrawMode mode : kModes) {
        for (int style = 0; style <= 7; ++style) {
            Comparison comparison({24, 24});
            for (int i = 0; i < 8 * 11 * 11; ++i) {
                const int width = i % 11 - 5;
                const int height = i / 11 % 11 - 5;
                const int pen = i / 121 + 1;
                const int x = 8 + i % 8;
                const int y = 8 + i % 7;
                const PixelRect box{x, y, x + width, y + height};
                ASSERT_TRUE(
                    comparison.draw({false, box, {0x123456, pen}, {static_cast<FillStyle>(style), 0xABCDEF}, mode}));
            }
        }
    }
}

TEST(RasterEqualsGdi, TipsOfWidePens) {
    Comparison comparison({140, 140});
    for (int width = 2; width <= 130; ++width) {
        ASSERT_TRUE(comparison.draw({true, {70, 70, 70, 70}, {0x0000FF, width}, {}, DrawMode::NotXorPen}));
    }
}

TEST(RasterEqualsGdi, RandomThinLines) {
    compareRandom(11, 20000, [](Dice& dice, PixelSize size) {
        return Primitive{true, dice.area(size, 100000), {dice.color(), 1}, {}, dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomThinLinesFromFarOutside) {
    compareRandom(12, 5000, [](Dice& dice, PixelSize size) {
        return Primitive{true, dice.area(size, 100000000), {dice.color(), 1}, {}, dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomThinBoxes) {
    compareRandom(13, 20000, [](Dice& dice, PixelSize size) {
        return Primitive{false, dice.area(size, 100000), {dice.color(), 1}, dice.brush(), dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomNarrowBoxes) {
    compareRandom(14, 10000, [](Dice& dice, PixelSize size) {
        const int left = dice.coordinate(size.width, 50);
        const int top = dice.coordinate(size.height, 50);
        const PixelRect box{left, top, left + dice.between(0, 4), dice.coordinate(size.height, 100000)};
        return Primitive{false, box, {dice.color(), 1}, dice.brush(), dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomThinBoxesFromFarOutside) {
    compareRandom(15, 5000, [](Dice& dice, PixelSize size) {
        return Primitive{false, dice.area(size, 100000000), {dice.color(), 1}, dice.brush(), dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomWideLines) {
    compareRandom(16, 6000, [](Dice& dice, PixelSize size) {
        return Primitive{true, dice.area(size, 300), {dice.color(), dice.between(2, 9)}, {}, dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomLevelAndUprightWideLines) {
    compareRandom(17, 4000, [](Dice& dice, PixelSize size) {
        PixelRect at = dice.area(size, 100000);
        (dice.between(0, 1) == 0 ? at.right : at.bottom) = 0;
        if (at.right == 0) {
            at.right = at.left;
            at.bottom = dice.coordinate(size.height, 2000);
        } else {
            at.bottom = at.top;
        }
        return Primitive{true, at, {dice.color(), dice.between(2, 9)}, {}, dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomWideLinesFromFarOutside) {
    compareRandom(18, 300, [](Dice& dice, PixelSize size) {
        return Primitive{true, dice.area(size, 100000), {dice.color(), dice.between(2, 9)}, {}, dice.mode()};
    });
}

TEST(RasterEqualsGdi, RandomWideBoxes) {
    compareRandom(19, 4000, [](Dice& dice, PixelSize size) {
        return Primitive{false, dice.area(size, 1000), {dice.color(), dice.between(2, 9)}, dice.brush(), dice.mode()};
    });
}

}  // namespace
