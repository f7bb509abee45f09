// The nudge wheel: a ribbed wheel seen from its edge between two arrows.
#include <algorithm>
#include <cmath>

#include "turndial/KnobPainting.h"

namespace kv::turndial {
namespace {

using raster::mixed;
using raster::Shade;
using raster::SmoothBox;
using raster::SmoothPoint;

// Pixels at 96 dpi.
constexpr double kMostHeight = 40.0;
constexpr double kMostWidth = 190.0;
constexpr double kLeastWidth = 30.0;
constexpr double kArrowRoom = 15.0;
constexpr double kMarkRoom = 6.0;

constexpr int kRibs = 24;

void paintArrow(const KnobPicture& picture, const SmoothBox& room, double direction, bool lit) {
    const SmoothPoint middle = room.middle();
    const double size = std::min(room.width() * 0.28, room.height() * 0.3);
    if (lit)
        picture.shapes.box(room.inset(picture.unit), 3.0 * picture.unit, Shade(picture.ink.value).faded(0.18));
    picture.shapes.triangle(
        {middle.x + direction * size, middle.y}, {middle.x - direction * size * 0.75, middle.y - size * 1.35},
        {middle.x - direction * size * 0.75, middle.y + size * 1.35}, lit ? picture.ink.value : picture.ink.tick);
}

/// The mark above the wheel's middle.
void paintMark(const KnobPicture& picture, double x, double bottom, double size) {
    picture.shapes.triangle({x, bottom}, {x - size, bottom - size * 1.1}, {x + size, bottom - size * 1.1},
                            picture.look.enabled ? picture.ink.value : picture.ink.tick);
}

/// The ribs on the visible half of the wheel: closer together and darker towards its sides.
void paintRibs(const KnobPicture& picture, const SmoothBox& wheel, double roll) {
    const KnobInk& ink = picture.ink;
    const double radius = wheel.width() / 2.0;
    const double middle = wheel.middle().x;
    constexpr double kAngle = 2.0 * std::numbers::pi / kRibs;
    const double ribs = roll / kWheelDetents;
    const double turned = (ribs - std::floor(ribs)) * kAngle;
    const double width = std::max(1.0, std::min(radius * kAngle * 0.20, 3.0 * picture.unit));
    for (int i = -kRibs / 4; i < kRibs / 4; ++i) {
        const double angle = turned + i * kAngle;
        const double facing = std::cos(angle);
        if (std::abs(angle) > std::numbers::pi / 2.0 - 0.12)
            continue;
        const double x = middle + radius * std::sin(angle);
        const double half = std::max(0.5, width * facing / 2.0);
        const SmoothBox groove{x - half, wheel.top, x + half, wheel.bottom};
        picture.shapes.box(groove, 0.0, Shade(ink.groove).faded(0.45 + 0.35 * facing));
        picture.shapes.box({x + half, wheel.top, x + half + std::max(0.6, width * facing * 0.5), wheel.bottom}, 0.0,
                           Shade(ink.bodyTop).faded(0.8));
    }
}

/// The wheel is darker towards its sides, because the light falls on its middle.
void paintRoundness(const KnobPicture& picture, const SmoothBox& wheel) {
    if (!(picture.ink.shadow > 0.0))
        return;
    const double radius = wheel.width() / 2.0;
    for (double x = std::floor(wheel.left); x < wheel.right; x += 1.0) {
        const double off = std::min(1.0, std::abs(x + 0.5 - wheel.middle().x) / radius);
        const double dark = 0.55 * std::pow(1.0 - std::sqrt(1.0 - off * off), 0.9);
        picture.shapes.box({x, wheel.top, x + 1.0, wheel.bottom}, 0.0, Shade(picture.ink.groove).faded(dark));
    }
}

void paintWheelBody(const KnobPicture& picture, const SmoothBox& wheel, double roll) {
    const KnobInk& ink = picture.ink;
    const double unit = picture.unit;
    const double corner = std::min(4.0 * unit, wheel.height() / 4.0);
    const double line = std::max(1.0, unit);
    if (ink.shadow > 0.0) {
        picture.shapes.box({wheel.left, wheel.top + 2.0 * unit, wheel.right, wheel.bottom + 2.0 * unit}, corner,
                           Shade(0).softened(ink.shadow * 0.8, 5.0 * unit));
    }
    picture.shapes.box(wheel, corner, Shade(ink.bodyTop, ink.bodyBottom));
    const SmoothBox inside = wheel.inset(line);
    if (inside.width() > 4.0 * unit && inside.height() > 2.0 * unit) {
        paintRibs(picture, inside, roll);
        paintRoundness(picture, inside);
    }
    picture.shapes.frame(wheel, corner, line, ink.bodyEdge);
}

bool contains(const SmoothBox& box, SmoothPoint at) {
    return at.x >= box.left && at.x < box.right && at.y >= box.top && at.y < box.bottom;
}

}  // namespace

int WheelPlace::arrowAt(SmoothPoint at) const noexcept {
    return contains(left, at) ? -1 : contains(right, at) ? 1 : 0;
}

WheelPlace paintWheel(const KnobPicture& picture, const SmoothBox& area, double roll, int pointed) {
    const double unit = picture.unit;
    const double margin = std::min(3.0 * unit, area.width() / 6.0);
    const double width = std::min(area.width() - 2.0 * margin, kMostWidth * unit);
    const double mark = area.height() >= 24.0 * unit ? kMarkRoom * unit : 0.0;
    const double height = std::min(area.height() - mark - 2.0 * margin, kMostHeight * unit);
    if (!(width > 2.0) || !(height > 2.0))
        return {};
    const SmoothPoint middle = area.middle();
    const double top = std::round(middle.y + mark / 2.0 - height / 2.0);
    const double left = std::round(middle.x - width / 2.0);
    SmoothBox wheel{left, top, std::round(left + width), std::round(top + height)};
    WheelPlace place;
    if (width >= (kLeastWidth + 2.0 * kArrowRoom) * unit) {
        const double room = std::round(kArrowRoom * unit);
        place.left = {wheel.left, wheel.top, wheel.left + room, wheel.bottom};
        place.right = {wheel.right - room, wheel.top, wheel.right, wheel.bottom};
        const bool lit = picture.look.enabled && picture.look.hover;
        paintArrow(picture, place.left, -1.0, lit && pointed < 0);
        paintArrow(picture, place.right, 1.0, lit && pointed > 0);
        wheel.left += room + 2.0 * unit;
        wheel.right -= room + 2.0 * unit;
    }
    paintWheelBody(picture, wheel, roll);
    if (mark > 0.0)
        paintMark(picture, wheel.middle().x, wheel.top - 2.5 * unit, std::min(4.0 * unit, wheel.width() / 4.0));
    return place;
}

}  // namespace kv::turndial
