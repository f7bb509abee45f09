#include <algorithm>
#include <cstdint>

#include "raster/RasterLines.h"
#include "raster/WideProduct.h"

namespace kv::raster {
namespace {

/// One coordinate's way from the line's start; the number of steps it makes and where it is visible.
struct Axis {
    std::int64_t start;
    std::int64_t steps;  ///< of one pixel, the distance to the line's end
    int sign;
    int extent;             ///< of the surface
    std::ptrdiff_t stride;  ///< in the buffer

    Axis(int from, int to, int size, std::ptrdiff_t pitch)
        : start(from),
          steps(to < from ? std::int64_t{from} - to : std::int64_t{to} - from),
          sign(to < from ? -1 : 1),
          extent(size),
          stride(pitch) {}

    /// The first step at which the axis is on the surface, or past it when it never is; at least 0.
    [[nodiscard]] std::int64_t firstVisible() const {
        return std::max<std::int64_t>(0, sign > 0 ? -start : start - (extent - 1));
    }
    /// The first step after those; may be negative.
    [[nodiscard]] std::int64_t endVisible() const { return sign > 0 ? extent - start : start + 1; }
    [[nodiscard]] std::ptrdiff_t offset(std::int64_t step) const {
        return static_cast<std::ptrdiff_t>(start + sign * step) * stride;
    }
};

/// A slanted line: one step along the longer axis a pixel; the shorter one follows the exact line, and where that is
/// in the middle between two pixels it takes the upper or the left one, whichever way the line was drawn.
class Slant {
  public:
    Slant(const Axis& longer, const Axis& shorter)
        : longer_(longer), shorter_(shorter), tieBias_(shorter.sign > 0 ? 1 : 0) {}

    void draw(const PixelWriter& ink) const {
        const std::int64_t firstRow = shorter_.firstVisible();
        const std::int64_t endRow = shorter_.endVisible();
        if (firstRow >= endRow) {
            return;
        }
        const std::int64_t begin = std::max(longer_.firstVisible(), arrival(firstRow));
        const std::int64_t end = std::min({longer_.endVisible(), arrival(endRow), longer_.steps});
        if (begin >= end) {
            return;
        }
        // The shorter axis is at floor((2 * step * shorter + longer - bias) / (2 * longer)).
        const std::int64_t whole = 2 * longer_.steps;
        auto [step, rest] = wideProduct(begin, 2 * shorter_.steps, longer_.steps - tieBias_, whole);
        std::ptrdiff_t at = longer_.offset(begin) + shorter_.offset(step);
        const std::ptrdiff_t along = longer_.sign * longer_.stride;
        const std::ptrdiff_t aside = shorter_.sign * shorter_.stride;
        for (std::int64_t left = end - begin; left > 0; --left) {
            ink.put(at);
            at += along;
            rest += 2 * shorter_.steps;
            if (rest >= whole) {
                rest -= whole;
                at += aside;
            }
        }
    }

  private:
    /// The step of the longer axis at which the shorter one has made `steps`.
    [[nodiscard]] std::int64_t arrival(std::int64_t steps) const {
        if (steps <= 0) {
            return 0;
        }
        if (steps > shorter_.steps) {
            return longer_.steps;
        }
        const std::int64_t whole = 2 * shorter_.steps;
        return wideProduct(2 * steps - 1, longer_.steps, tieBias_ + whole - 1, whole).quotient;
    }

    Axis longer_;
    Axis shorter_;
    int tieBias_;
};

}  // namespace

void drawThinLine(const PixelWriter& ink, PixelPoint from, PixelPoint to) {
    // The end pixel is left out: a line that runs back or up begins one pixel after it.
    if (from.y == to.y) {
        if (from.x < to.x) {
            ink.span(from.y, from.x, to.x);
        } else if (to.x < ink.buffer().width) {
            ink.span(from.y, to.x + 1, std::min(from.x, ink.buffer().width) + 1);
        }
        return;
    }
    if (from.x == to.x) {
        if (from.y < to.y) {
            ink.column(from.x, from.y, to.y);
        } else if (to.y < ink.buffer().height) {
            ink.column(from.x, to.y + 1, std::min(from.y, ink.buffer().height) + 1);
        }
        return;
    }
    const Axis x(from.x, to.x, ink.buffer().width, 1);
    const Axis y(from.y, to.y, ink.buffer().height, ink.buffer().stride);
    if (x.steps < y.steps) {
        Slant(y, x).draw(ink);
    } else {
        Slant(x, y).draw(ink);
    }
}

}  // namespace kv::raster
