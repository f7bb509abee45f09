// The pixel-level surface that a picture box draws on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kv::raster {

/// A color as Windows writes it, 0x00BBGGRR, never a system color.
using Rgb = std::uint32_t;

struct PixelPoint {
    int x = 0;
    int y = 0;
    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct PixelSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// `right` and `bottom` lie outside, as in every rectangle of GDI's.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// How a drawn pixel meets the one that is there; the values are those of `DrawMode` and of GDI's ROP2 codes.
enum class DrawMode { Invert = 6, NotXorPen = 10, CopyPen = 13 };

/// How a box is filled; the values are those of `FillStyle`. The hatches leave the pixels between their lines alone.
enum class FillStyle {
    Solid = 0,
    Transparent = 1,
    HorizontalLine = 2,
    VerticalLine = 3,
    UpwardDiagonal = 4,    ///< rises from left to right
    DownwardDiagonal = 5,  ///< falls from left to right
    Cross = 6,
    DiagonalCross = 7
};

struct Pen {
    Rgb color = 0;
    int width = 1;  ///< pixels; below 1 counts as 1
    friend bool operator==(const Pen&, const Pen&) = default;
};

struct Brush {
    FillStyle style = FillStyle::Transparent;
    Rgb color = 0;
    friend bool operator==(const Brush&, const Brush&) = default;
};

struct Font {
    std::wstring face = L"Tahoma";
    double points = 8.0;  ///< typographic points, 1/72 inch
    bool bold = false;
    friend bool operator==(const Font&, const Font&) = default;
};

/// Draws in whole pixels, origin at the top left. Everything is clipped to the surface; any coordinate is allowed.
/// The shapes are GDI's own, pixel for pixel, so that all ways to draw a picture give the same pixels.
class Canvas {
  public:
    virtual ~Canvas() = default;

    [[nodiscard]] virtual PixelSize size() const = 0;

    /// Fills the whole surface.
    virtual void clear(Rgb color) = 0;

    /// GDI's MoveToEx and LineTo with a solid pen: with a one-pixel pen the pixel at `to` is not drawn; a wider pen
    /// has GDI's round ends.
    virtual void line(PixelPoint from, PixelPoint to, const Pen& pen, DrawMode mode) = 0;

    /// GDI's Rectangle: the outline just inside `box`, the inside filled by `brush` (hatches with a transparent
    /// background, their pattern aligned to the surface's origin). An empty `box` draws nothing.
    virtual void rectangle(PixelRect box, const Pen& pen, const Brush& brush, DrawMode mode) = 0;

    /// Width and height of one line of text, pixels.
    [[nodiscard]] virtual PixelSize textSize(std::wstring_view text, const Font& font) = 0;

    /// One line of text, its cell's top left corner at `at`, on a transparent background.
    virtual void text(PixelPoint at, std::wstring_view text, const Font& font, Rgb color) = 0;
};

}  // namespace kv::raster
