// The dial: ticks and labels outside, the value's arc inside of them, and the body with its pointer in the middle.
#include <algorithm>
#include <cmath>

#include "turndial/KnobPainting.h"

namespace kv::turndial {
namespace {

using raster::mixed;
using raster::onCircle;
using raster::Rgb;
using raster::Shade;
using raster::SmoothPoint;

/// The rings of a dial, pixels from its middle.
struct Rings {
    double unit;
    double scale;  ///< outer end of the ticks
    double tick;   ///< length of a long tick
    double track;  ///< middle of the arc
    double trackWidth;
    double body;
};

Rings ringsOf(double radius, double unit, bool hasTrack) {
    const double tick = std::clamp(radius * 0.12, 2.5 * unit, 7.0 * unit);
    const double trackWidth = std::clamp(radius * 0.08, 2.0 * unit, 5.0 * unit);
    const double gap = std::clamp(radius * 0.06, 1.0 * unit, 3.0 * unit);
    const double inside = radius - tick - gap;
    const double body = std::max(hasTrack ? inside - trackWidth - gap * 1.4 : inside - gap, 0.4 * radius);
    return {unit, radius, tick, inside - trackWidth / 2.0, trackWidth, body};
}

bool near(double a, double b) {
    return std::abs(a - b) < 1e-6;
}

/// Ticks are long at labels, or every fifth one of many, and at both ends.
bool isLong(std::size_t index, const std::vector<double>& ticks, const DialLayout& layout, bool stops) {
    if (index == 0 || index + 1 == ticks.size())
        return true;
    if (!stops)
        return ticks.size() <= 13 || index % 5 == 0;
    return layout.labels.empty() ||
           std::any_of(layout.labels.begin(), layout.labels.end(),
                       [&](const DialLabel& label) { return near(label.place, ticks[index]); });
}

void paintTicks(const KnobPicture& picture, const Rings& rings, const DialLayout& layout, const KnobScale& scale,
                double place) {
    const SmoothPoint center = layout.center;
    const bool stops = !scale.stops.empty();
    const std::vector<double> ticks = ticksOf(scale, rings.scale * kDialSweep, stops ? 1.0 : 5.0 * rings.unit);
    const double width = std::max(1.0, 1.25 * rings.unit);
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        const double angle = dialAngle(ticks[i]);
        const bool here = stops && near(ticks[i], place);
        const double inner = rings.scale - (here || isLong(i, ticks, layout, stops) ? rings.tick : rings.tick * 0.6);
        picture.shapes.line(onCircle(center, inner, angle), onCircle(center, rings.scale - width / 2.0, angle),
                            here ? width * 2.0 : width, here ? picture.ink.value : picture.ink.tick);
    }
}

void paintLabels(const KnobPicture& picture, const DialLayout& layout, const KnobScale& scale, double place) {
    for (const DialLabel& label : layout.labels) {
        const bool here = !scale.stops.empty() && near(label.place, place);
        picture.text.draw(picture.shapes.buffer(), {label.box.left, label.box.top}, label.text, picture.labelFont,
                          here ? picture.ink.text : picture.ink.label);
    }
}

void paintTrack(const KnobPicture& picture, const Rings& rings, SmoothPoint center, double place, int style) {
    const double low = dialAngle(0.0);
    const double high = dialAngle(1.0);
    picture.shapes.arc(center, rings.track, rings.trackWidth, low, high, picture.ink.track);
    if (style == 2 || place < 0.0 || place > 1.0)
        return;
    const double from = style == 1 ? dialAngle(0.5) : low;
    const double to = dialAngle(place);
    if (!near(from, to)) {
        picture.shapes.arc(center, rings.track, rings.trackWidth, std::min(from, to), std::max(from, to),
                           picture.ink.value);
    }
}

void paintBody(const KnobPicture& picture, const Rings& rings, SmoothPoint center, double angle) {
    const raster::SmoothPainter& shapes = picture.shapes;
    const KnobInk& ink = picture.ink;
    const double radius = rings.body;
    const double unit = rings.unit;
    if (ink.shadow > 0.0) {
        shapes.disc({center.x, center.y + radius * 0.10}, radius * 0.99,
                    Shade(0).softened(ink.shadow, std::max(2.0, radius * 0.28)));
    }
    const double line = std::max(1.0, unit);
    const double cap = radius * 0.74;
    // The skirt of the knob, with grooves that turn with it.
    const Rgb skirt = mixed(ink.bodyBottom, ink.groove, 0.10);
    shapes.disc(center, radius, ink.bodyEdge);
    shapes.disc(center, radius - line, Shade(mixed(ink.bodyTop, skirt, 0.55), skirt));
    constexpr int kGrooves = 24;
    if (radius > 14.0 * unit) {
        for (int i = 0; i < kGrooves; ++i) {
            const double at = angle + 2.0 * std::numbers::pi * (i + 0.5) / kGrooves;
            shapes.line(onCircle(center, radius * 0.85, at), onCircle(center, radius * 0.93, at),
                        std::max(1.0, radius * 0.035), Shade(ink.groove).faded(0.5));
        }
    }
    shapes.disc(center, cap, mixed(ink.bodyBottom, ink.groove, 0.35));
    shapes.disc(center, cap - line * 0.8, Shade(ink.bodyTop, ink.bodyBottom));
    const double width = std::max(1.6, radius * 0.13);
    shapes.line(onCircle(center, cap * 0.34, angle), onCircle(center, radius - line - width * 0.75, angle), width,
                ink.pointer);
}

}  // namespace

bool DialPlace::onRim(SmoothPoint at) const noexcept {
    const double distance = std::hypot(at.x - center.x, at.y - center.y);
    return distance >= rimInside && distance < rimOutside;
}

DialPlace paintDial(const KnobPicture& picture, const raster::SmoothBox& area, const KnobScale& scale, double value,
                    int style) {
    const DialLayout layout = layOutDial(area, scale, picture.unit, [&picture](std::wstring_view text) {
        return picture.text.textSize(text, picture.labelFont);
    });
    if (!(layout.radius > 0.0))
        return {};
    const bool hasTrack = scale.stops.empty();
    const Rings rings = ringsOf(layout.radius, picture.unit, hasTrack);
    const double place = scale.placeOf(value);
    paintTicks(picture, rings, layout, scale, place);
    if (hasTrack)
        paintTrack(picture, rings, layout.center, place, style);
    paintLabels(picture, layout, scale, place);
    paintBody(picture, rings, layout.center, dialAngle(std::clamp(place, 0.0, 1.0)));
    return {layout.center, rings.body * 0.6, layout.radius + 2.0 * picture.unit};
}

}  // namespace kv::turndial
