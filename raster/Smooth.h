// Shapes with smooth edges, blended into pixels: for dials and pointers, where GDI's hard edges would show steps.
#pragma once

#include "raster/PixelBuffer.h"

namespace kv::raster {

/// A point between pixels: the middle of the top left pixel is (0.5, 0.5).
struct SmoothPoint {
    double x = 0.0;
    double y = 0.0;
};

struct SmoothBox {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;

    [[nodiscard]] double width() const noexcept { return right - left; }
    [[nodiscard]] double height() const noexcept { return bottom - top; }
    [[nodiscard]] SmoothPoint middle() const noexcept { return {(left + right) / 2.0, (top + bottom) / 2.0}; }
    /// The box made smaller by `by` on every side.
    [[nodiscard]] SmoothBox inset(double by) const noexcept { return {left + by, top + by, right - by, bottom - by}; }
};

/// `from` with the part `part` (0 to 1) of it replaced by `to`.
[[nodiscard]] Rgb mixed(Rgb from, Rgb to, double part) noexcept;

/// 0 for black to 1 for white, as bright as it looks.
[[nodiscard]] double brightness(Rgb color) noexcept;

/// How a shape is filled.
struct Shade {
    Rgb top = 0;            ///< color at the shape's upper edge
    Rgb bottom = 0;         ///< color at its lower edge
    double opacity = 1.0;   ///< 0 to 1
    double softness = 1.0;  ///< pixels over which the edge fades; more than one is a shadow's

    Shade() = default;
    Shade(Rgb color) : top(color), bottom(color) {}
    Shade(Rgb upper, Rgb lower) : top(upper), bottom(lower) {}
    [[nodiscard]] Shade faded(double part) const noexcept { return softened(part, softness); }
    [[nodiscard]] Shade softened(double part, double pixels) const noexcept {
        Shade changed = *this;
        changed.opacity = opacity * part;
        changed.softness = pixels;
        return changed;
    }
};

/// Everything is clipped to the buffer. A shape without an inside, or with a measure that is not a number, paints
/// nothing. Angles are radians clockwise from twelve o'clock. The same shape paints the same pixels every time.
class SmoothPainter {
  public:
    explicit SmoothPainter(const PixelBuffer& buffer) noexcept : buffer_(buffer) {}

    [[nodiscard]] const PixelBuffer& buffer() const noexcept { return buffer_; }

    /// Fills the whole surface.
    void clear(Rgb color) const noexcept;
    void disc(SmoothPoint center, double radius, const Shade& shade) const noexcept;
    /// A circle drawn with a line of the given width.
    void ring(SmoothPoint center, double radius, double width, const Shade& shade) const noexcept;
    /// A part of a circle with round ends, from one angle clockwise to the other; a whole turn or more is a ring.
    void arc(SmoothPoint center, double radius, double width, double from, double to,
             const Shade& shade) const noexcept;
    /// A line with round ends.
    void line(SmoothPoint from, SmoothPoint to, double width, const Shade& shade) const noexcept;
    void box(const SmoothBox& box, double cornerRadius, const Shade& shade) const noexcept;
    /// A line just inside the box's edge.
    void frame(const SmoothBox& box, double cornerRadius, double width, const Shade& shade) const noexcept;
    void triangle(SmoothPoint a, SmoothPoint b, SmoothPoint c, const Shade& shade) const noexcept;

  private:
    template <class Distance>
    void fill(const SmoothBox& bounds, const Shade& shade, const Distance& distance) const noexcept;

    PixelBuffer buffer_;
};

/// The point at `radius` from `center` in the direction of an angle clockwise from twelve o'clock.
[[nodiscard]] SmoothPoint onCircle(SmoothPoint center, double radius, double angle) noexcept;

}  // namespace kv::raster
