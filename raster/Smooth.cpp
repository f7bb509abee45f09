#include "raster/Smooth.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kv::raster {
namespace {

constexpr std::uint32_t kOpaque = 256;

std::uint32_t part256(double part) {
    // Written so that a part that is not a number counts as 0.
    return part > 0.0 ? static_cast<std::uint32_t>(std::lround(std::min(part, 1.0) * kOpaque)) : 0;
}

/// Red and blue are blended in one multiplication: each has eight free bits above it.
std::uint32_t blended(std::uint32_t below, std::uint32_t above, std::uint32_t part) {
    const std::uint32_t rest = kOpaque - part;
    const std::uint32_t outer =
        (((below & 0xFF00FFU) * rest + (above & 0xFF00FFU) * part + 0x800080U) >> 8) & 0xFF00FFU;
    const std::uint32_t green =
        (((below & 0x00FF00U) * rest + (above & 0x00FF00U) * part + 0x008000U) >> 8) & 0x00FF00U;
    return outer | green;
}

/// The first pixel that a measure touches and the one after the last, limited to a surface of `size`.
int firstPixel(double at, int size) {
    return at > 0.0 ? static_cast<int>(std::min(std::floor(at), static_cast<double>(size))) : 0;
}
int endPixel(double at, int size) {
    return at > 0.0 ? static_cast<int>(std::min(std::ceil(at), static_cast<double>(size))) : 0;
}

double distanceToLine(SmoothPoint at, SmoothPoint from, SmoothPoint along, double squaredLength) {
    const double x = at.x - from.x;
    const double y = at.y - from.y;
    const double part = squaredLength > 0.0 ? std::clamp((x * along.x + y * along.y) / squaredLength, 0.0, 1.0) : 0.0;
    const double dx = x - along.x * part;
    const double dy = y - along.y * part;
    return std::sqrt(dx * dx + dy * dy);
}

/// Below 0 inside of a box with round corners, half its size given.
double distanceToBox(double dx, double dy, double halfWidth, double halfHeight, double radius) {
    const double x = std::abs(dx) - halfWidth + radius;
    const double y = std::abs(dy) - halfHeight + radius;
    const double outX = std::max(x, 0.0);
    const double outY = std::max(y, 0.0);
    return std::sqrt(outX * outX + outY * outY) + std::min(std::max(x, y), 0.0) - radius;
}

SmoothBox around(SmoothPoint center, double radius) {
    return {center.x - radius, center.y - radius, center.x + radius, center.y + radius};
}

double fittingRadius(const SmoothBox& box, double radius) {
    return std::clamp(radius, 0.0, std::max(0.0, std::min(box.width(), box.height()) / 2.0));
}

}  // namespace

Rgb mixed(Rgb from, Rgb to, double part) noexcept {
    // The order of red and blue is the same on both sides, so it does not matter here.
    return blended(from & 0xFFFFFFU, to & 0xFFFFFFU, part256(part));
}

double brightness(Rgb color) noexcept {
    const double red = color & 0xFFU;
    const double green = (color >> 8) & 0xFFU;
    const double blue = (color >> 16) & 0xFFU;
    return (0.299 * red + 0.587 * green + 0.114 * blue) / 255.0;
}

SmoothPoint onCircle(SmoothPoint center, double radius, double angle) noexcept {
    return {center.x + radius * std::sin(angle), center.y - radius * std::cos(angle)};
}

/// `distance` gives how far outside of the shape the middle of a pixel lies, pixels, below 0 inside.
template <class Distance>
void SmoothPainter::fill(const SmoothBox& bounds, const Shade& shade, const Distance& distance) const noexcept {
    const double soft = std::max(shade.softness, 1.0);
    const double reach = soft / 2.0;
    if (buffer_.empty() || !(bounds.width() > 0.0) || !(bounds.height() > 0.0)) {
        return;
    }
    const int left = firstPixel(bounds.left - reach, buffer_.width);
    const int right = endPixel(bounds.right + reach, buffer_.width);
    const int bottom = endPixel(bounds.bottom + reach, buffer_.height);
    for (int y = firstPixel(bounds.top - reach, buffer_.height); y < bottom; ++y) {
        const double down = y + 0.5;
        const std::uint32_t color =
            toPixel(shade.top == shade.bottom ? shade.top
                                              : mixed(shade.top, shade.bottom, (down - bounds.top) / bounds.height()));
        std::uint32_t* const row = buffer_.row(y);
        for (int x = left; x < right; ++x) {
            const double cover = 0.5 - distance(SmoothPoint{x + 0.5, down}) / soft;
            // Written so that a cover that is not a number paints nothing.
            if (cover > 0.0) {
                row[x] = blended(row[x], color, part256(std::min(cover, 1.0) * shade.opacity));
            }
        }
    }
}

void SmoothPainter::clear(Rgb color) const noexcept {
    if (buffer_.empty()) {
        return;
    }
    for (int y = 0; y < buffer_.height; ++y) {
        std::fill_n(buffer_.row(y), buffer_.width, toPixel(color & 0xFFFFFFU));
    }
}

void SmoothPainter::disc(SmoothPoint center, double radius, const Shade& shade) const noexcept {
    fill(around(center, radius), shade, [=](SmoothPoint at) {
        const double x = at.x - center.x;
        const double y = at.y - center.y;
        return std::sqrt(x * x + y * y) - radius;
    });
}

void SmoothPainter::ring(SmoothPoint center, double radius, double width, const Shade& shade) const noexcept {
    if (!(radius > 0.0) || !(width > 0.0)) {
        return;
    }
    fill(around(center, radius + width / 2.0), shade, [=](SmoothPoint at) {
        const double x = at.x - center.x;
        const double y = at.y - center.y;
        return std::abs(std::sqrt(x * x + y * y) - radius) - width / 2.0;
    });
}

void SmoothPainter::arc(SmoothPoint center, double radius, double width, double from, double to,
                        const Shade& shade) const noexcept {
    const double half = (to - from) / 2.0;
    if (half >= std::numbers::pi) {
        ring(center, radius, width, shade);
        return;
    }
    if (!(half >= 0.0) || !(radius > 0.0) || !(width > 0.0)) {
        return;
    }
    // Turned so that the arc's middle points upwards; both halves are then the same.
    const double middle = from + half;
    const double sinMiddle = std::sin(middle);
    const double cosMiddle = std::cos(middle);
    const double sinHalf = std::sin(half);
    const double cosHalf = std::cos(half);
    fill(around(center, radius + width / 2.0), shade, [=](SmoothPoint at) {
        const double x = at.x - center.x;
        const double y = center.y - at.y;
        const double sideways = std::abs(x * cosMiddle - y * sinMiddle);
        const double upwards = x * sinMiddle + y * cosMiddle;
        if (cosHalf * sideways <= sinHalf * upwards) {
            return std::abs(std::sqrt(x * x + y * y) - radius) - width / 2.0;
        }
        const double dx = sideways - radius * sinHalf;
        const double dy = upwards - radius * cosHalf;
        return std::sqrt(dx * dx + dy * dy) - width / 2.0;
    });
}

void SmoothPainter::line(SmoothPoint from, SmoothPoint to, double width, const Shade& shade) const noexcept {
    if (!(width > 0.0)) {
        return;
    }
    const double half = width / 2.0;
    const SmoothPoint along{to.x - from.x, to.y - from.y};
    const double squaredLength = along.x * along.x + along.y * along.y;
    const SmoothBox bounds{std::min(from.x, to.x) - half, std::min(from.y, to.y) - half, std::max(from.x, to.x) + half,
                           std::max(from.y, to.y) + half};
    fill(bounds, shade, [=](SmoothPoint at) { return distanceToLine(at, from, along, squaredLength) - half; });
}

void SmoothPainter::box(const SmoothBox& box, double cornerRadius, const Shade& shade) const noexcept {
    const SmoothPoint middle = box.middle();
    const double radius = fittingRadius(box, cornerRadius);
    fill(box, shade, [=](SmoothPoint at) {
        return distanceToBox(at.x - middle.x, at.y - middle.y, box.width() / 2.0, box.height() / 2.0, radius);
    });
}

void SmoothPainter::frame(const SmoothBox& box, double cornerRadius, double width, const Shade& shade) const noexcept {
    if (!(width > 0.0)) {
        return;
    }
    const SmoothPoint middle = box.middle();
    const double half = width / 2.0;
    const double radius = fittingRadius(box, cornerRadius);
    fill(box, shade, [=](SmoothPoint at) {
        const double outside =
            distanceToBox(at.x - middle.x, at.y - middle.y, box.width() / 2.0, box.height() / 2.0, radius);
        return std::abs(outside + half) - half;
    });
}

void SmoothPainter::triangle(SmoothPoint a, SmoothPoint b, SmoothPoint c, const Shade& shade) const noexcept {
    const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (!(std::abs(area) > 0.0)) {
        return;
    }
    if (area < 0.0) {
        std::swap(b, c);
    }
    const SmoothBox bounds{std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y}), std::max({a.x, b.x, c.x}),
                           std::max({a.y, b.y, c.y})};
    const auto outside = [](SmoothPoint at, SmoothPoint from, SmoothPoint to) {
        const double x = to.x - from.x;
        const double y = to.y - from.y;
        return ((at.x - from.x) * y - (at.y - from.y) * x) / std::sqrt(x * x + y * y);
    };
    fill(bounds, shade, [=](SmoothPoint at) {
        return std::max({outside(at, a, b), outside(at, b, c), outside(at, c, a)});
    });
}

}  // namespace kv::raster
