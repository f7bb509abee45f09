#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

#include "raster/RasterLines.h"
#include "raster/WideProduct.h"

namespace kv::raster {
namespace {

/// The pieces of one row, joined where they overlap before they are drawn, so that each pixel is drawn once.
class Row {
  public:
    void add(std::int64_t left, std::int64_t right) {
        if (left >= right) {
            return;
        }
        auto* place = pieces_.begin() + count_;
        for (; place != pieces_.begin() && (place - 1)->first > left; --place) {
            *place = *(place - 1);
        }
        *place = {left, right};
        ++count_;
    }

    void draw(const PixelWriter& ink, int y) const {
        const std::int64_t width = ink.buffer().width;
        std::int64_t done = 0;
        for (int i = 0; i < count_; ++i) {
            const auto [left, right] = pieces_[static_cast<std::size_t>(i)];
            const std::int64_t begin = std::max(left, done);
            const std::int64_t end = std::min(right, width);
            if (begin < end) {
                ink.span(y, static_cast<int>(begin), static_cast<int>(end));
                done = end;
            }
        }
    }

  private:
    static constexpr std::size_t kMost = 8;  ///< an outline's four tips and four sides
    std::array<std::pair<std::int64_t, std::int64_t>, kMost> pieces_;
    int count_ = 0;
};

struct Point {
    std::int64_t x;
    std::int64_t y;
};

void addTip(Row& row, std::int64_t y, PixelPoint at, const RoundTip& tip) {
    const std::int64_t top = std::int64_t{at.y} - tip.before();
    if (y < top || y >= top + tip.width()) {
        return;
    }
    const int inset = tip.inset(static_cast<int>(y - top));
    row.add(std::int64_t{at.x} - tip.before() + inset, std::int64_t{at.x} + tip.after() - inset);
}

/// The bar of a level line between two points, tips apart; nothing for a line without length.
void addLevelBar(Row& row, std::int64_t y, std::int64_t left, std::int64_t right, std::int64_t at,
                 const RoundTip& tip) {
    if (y >= at - tip.before() && y < at + tip.after()) {
        row.add(left, right);
    }
}

/// The rows between the ends of an upright line: a bar, of which the tips are a part.
void drawUprightBar(const PixelWriter& ink, int x, int top, int bottom, const RoundTip& tip) {
    ink.box({x - tip.before(), top, x + tip.after(), bottom});
}

void addUprightBar(Row& row, std::int64_t y, std::int64_t at, std::int64_t top, std::int64_t bottom,
                   const RoundTip& tip) {
    if (y >= top && y < bottom) {
        row.add(at - tip.before(), at + tip.after());
    }
}

/// The parallelogram of a slanted line.
class Body {
  public:
    Body(PixelPoint from, PixelPoint to, int width) {
        const auto dx = static_cast<double>(to.x) - from.x;
        const auto dy = static_cast<double>(to.y) - from.y;
        const double length = std::hypot(dx, dy);
        const double across = width * std::abs(dy) / length;
        const double down = width * std::abs(dx) / length;
        const Point near{half(across), half(down)};
        const Point far{half(across + 1), half(down + 1)};
        const int slope = (dx < 0) != (dy < 0) ? -1 : 1;
        const Point one{from.x, from.y};
        const Point other{to.x, to.y};
        corners_[0] = {one.x - near.x, one.y + slope * near.y};
        corners_[1] = {one.x + far.x, one.y - slope * far.y};
        corners_[2] = {other.x + far.x, other.y - slope * far.y};
        corners_[3] = {other.x - near.x, other.y + slope * near.y};
    }

    void addTo(Row& row, std::int64_t y) const {
        std::int64_t left = INT64_MAX;
        std::int64_t right = INT64_MIN;
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            Point top = corners_[i];
            Point bottom = corners_[(i + 1) % corners_.size()];
            if (top.y > bottom.y) {
                std::swap(top, bottom);
            }
            if (y >= top.y && y < bottom.y) {
                const std::int64_t x = crossing(top, bottom, y);
                left = std::min(left, x);
                right = std::max(right, x);
            }
        }
        row.add(left, right);
    }

  private:
    [[nodiscard]] static std::int64_t half(double extent) {
        return static_cast<std::int64_t>(std::floor(extent / 2 + 0.5));
    }

    /// The first pixel on or right of the side at row `y`.
    [[nodiscard]] static std::int64_t crossing(Point top, Point bottom, std::int64_t y) {
        const std::int64_t height = bottom.y - top.y;
        if (bottom.x < top.x) {
            return top.x - wideProduct(y - top.y, top.x - bottom.x, 0, height).quotient;
        }
        return top.x + wideProduct(y - top.y, bottom.x - top.x, height - 1, height).quotient;
    }

    std::array<Point, 4> corners_;
};

/// The surface's rows among those that a tip covers on its way from `top` to `bottom`, and one more: a slanted line's
/// body may end that much lower.
std::pair<int, int> visibleRows(const PixelWriter& ink, int top, int bottom, const RoundTip& tip) {
    const std::int64_t first = std::max<std::int64_t>(std::int64_t{top} - tip.before(), 0);
    const std::int64_t end = std::min<std::int64_t>(std::int64_t{bottom} + tip.after() + 1, ink.buffer().height);
    return first < end ? std::pair{static_cast<int>(first), static_cast<int>(end)} : std::pair{0, 0};
}

/// Whether any of the columns that a tip covers on its way from `left` to `right` is on the surface.
bool columnsVisible(const PixelWriter& ink, int left, int right, const RoundTip& tip) {
    return std::int64_t{left} - tip.before() < ink.buffer().width && std::int64_t{right} + tip.after() >= 0;
}

}  // namespace

void RoundTip::setWidth(int width) {
    width = std::clamp(width, 1, kMaxPenWidth);
    if (width == this->width()) {
        return;
    }
    // A walk down the left half of the circle from its leftmost pixel, in doubled coordinates from the center. Each
    // step tests the pixel diagonally ahead: outside the circle it goes inward, inside it goes down, near it both.
    insets_.assign(static_cast<std::size_t>(width), 0);
    const std::int64_t diameter = width - 1;
    std::int64_t u = diameter;
    std::int64_t v = diameter % 2;
    std::size_t lower = insets_.size() / 2;
    std::size_t upper = (insets_.size() - 1) / 2;
    while (u >= 0 && lower < insets_.size()) {
        const std::int64_t error = (u - 2) * (u - 2) + (v + 2) * (v + 2) - diameter * diameter;
        const bool inward = 2 * error >= 4 - 4 * u;
        const bool down = 2 * error <= 4 + 4 * v;
        u -= inward ? 2 : 0;
        if (down) {
            v += 2;
            ++lower;
            if (lower < insets_.size()) {
                --upper;
                insets_[lower] = insets_[upper] = static_cast<int>((diameter - u) / 2);
            }
        }
    }
}

void drawWideLine(const PixelWriter& ink, PixelPoint from, PixelPoint to, const RoundTip& tip) {
    const auto [left, right] = std::minmax(from.x, to.x);
    const auto [top, bottom] = std::minmax(from.y, to.y);
    if (!columnsVisible(ink, left, right, tip)) {
        return;
    }
    const auto [first, end] = visibleRows(ink, top, bottom, tip);
    std::optional<Body> body;
    if (left != right && top != bottom) {
        body.emplace(from, to, tip.width());
    }
    const bool isUpright = left == right && top != bottom;
    if (isUpright)
        drawUprightBar(ink, left, top, bottom, tip);
    for (int y = first; y < end; ++y) {
        if (isUpright && y >= top && y < bottom) {
            y = std::min(bottom, end) - 1;
            continue;
        }
        Row row;
        addTip(row, y, from, tip);
        addTip(row, y, to, tip);
        if (body) {
            body->addTo(row, y);
        } else {
            addLevelBar(row, y, left, right, top, tip);
        }
        row.draw(ink, y);
    }
}

void drawWideOutline(const PixelWriter& ink, PixelPoint topLeft, PixelPoint bottomRight, const RoundTip& tip) {
    if (!columnsVisible(ink, topLeft.x, bottomRight.x, tip)) {
        return;
    }
    const auto [first, end] = visibleRows(ink, topLeft.y, bottomRight.y, tip);
    for (int y = first; y < end; ++y) {
        Row row;
        addTip(row, y, topLeft, tip);
        addTip(row, y, {bottomRight.x, topLeft.y}, tip);
        addTip(row, y, {topLeft.x, bottomRight.y}, tip);
        addTip(row, y, bottomRight, tip);
        addLevelBar(row, y, topLeft.x, bottomRight.x, topLeft.y, tip);
        addLevelBar(row, y, topLeft.x, bottomRight.x, bottomRight.y, tip);
        addUprightBar(row, y, topLeft.x, topLeft.y, bottomRight.y, tip);
        addUprightBar(row, y, bottomRight.x, topLeft.y, bottomRight.y, tip);
        row.draw(ink, y);
    }
}

}  // namespace kv::raster
