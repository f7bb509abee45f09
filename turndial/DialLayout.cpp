#include "turndial/DialLayout.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "util/NumberFormat.h"

namespace kv::turndial {
namespace {

using raster::PixelRect;
using raster::PixelSize;
using raster::SmoothBox;
using raster::SmoothPoint;

// Pixels at 96 dpi.
constexpr double kLabelGap = 3.0;
constexpr double kBetweenLabels = 3.0;
constexpr double kSmallest = 12.0;
/// A dial never shrinks further than this for the sake of its labels.
constexpr double kLeastPart = 0.6;
/// The height that the body needs below its middle, as a part of the scale's radius.
constexpr double kBodyBelow = 0.86;

constexpr double kTicksWithoutRange = 10.0;

struct Measured {
    std::wstring text;
    double place;
    PixelSize size;
};

/// The distance of a label's middle from the scale at which the label does not touch the scale.
double clearance(const Measured& label, double unit) {
    const double angle = dialAngle(label.place);
    return kLabelGap * unit +
           (std::abs(std::sin(angle)) * label.size.width + std::abs(std::cos(angle)) * label.size.height) / 2.0;
}

SmoothPoint middleOf(const Measured& label, SmoothPoint center, double radius, double unit) {
    return raster::onCircle(center, radius + clearance(label, unit), dialAngle(label.place));
}

/// The size of a dial to each side of its middle.
struct Extent {
    double up;
    double down;
    double sideways;
};

Extent extentOf(double radius, const std::vector<Measured>& labels, double unit) {
    Extent extent{radius, radius * kBodyBelow, radius};
    for (const Measured& label : labels) {
        const SmoothPoint at = middleOf(label, {}, radius, unit);
        extent.up = std::max(extent.up, label.size.height / 2.0 - at.y);
        extent.down = std::max(extent.down, label.size.height / 2.0 + at.y);
        extent.sideways = std::max(extent.sideways, label.size.width / 2.0 + std::abs(at.x));
    }
    return extent;
}

double largestRadius(const SmoothBox& area, const std::vector<Measured>& labels, double unit) {
    double fits = 0.0;
    double high = std::max({area.width(), area.height(), 0.0});
    for (int i = 0; i < 16; ++i) {
        const double radius = (fits + high) / 2.0;
        const Extent extent = extentOf(radius, labels, unit);
        const bool inside = 2.0 * extent.sideways <= area.width() && extent.up + extent.down <= area.height();
        (inside ? fits : high) = radius;
    }
    return fits;
}

/// Whole pixels inside of the area.
PixelRect boxOf(const Measured& label, SmoothPoint middle, const SmoothBox& area) {
    const auto within = [](double from, int size, double low, double high) {
        return std::clamp(static_cast<int>(std::lround(from)), static_cast<int>(std::ceil(low)),
                          std::max(static_cast<int>(std::ceil(low)), static_cast<int>(std::floor(high)) - size));
    };
    const int left = within(middle.x - label.size.width / 2.0, label.size.width, area.left, area.right);
    const int top = within(middle.y - label.size.height / 2.0, label.size.height, area.top, area.bottom);
    return {left, top, left + label.size.width, top + label.size.height};
}

bool apart(const PixelRect& a, const PixelRect& b, double gap) {
    const int across = std::max(a.left, b.left) - std::min(a.right, b.right);
    const int down = std::max(a.top, b.top) - std::min(a.bottom, b.bottom);
    return across >= gap || down >= 0;
}

bool allApart(const std::vector<DialLabel>& labels, double gap) {
    for (std::size_t i = 0; i < labels.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (!apart(labels[i].box, labels[j].box, gap))
                return false;
        }
    }
    return true;
}

DialLayout place(const SmoothBox& area, const std::vector<Measured>& labels, double unit) {
    DialLayout layout;
    layout.radius = largestRadius(area, labels, unit);
    const Extent extent = extentOf(layout.radius, labels, unit);
    const double spare = area.height() - extent.up - extent.down;
    layout.center = {area.middle().x, area.top + spare / 2.0 + extent.up};
    for (const Measured& label : labels) {
        layout.labels.push_back(
            {label.text, label.place, boxOf(label, middleOf(label, layout.center, layout.radius, unit), area)});
    }
    return layout;
}

/// The value of a range's end with as many digits as the width of the range needs.
std::wstring endText(double value, double span) {
    const double decimals = std::clamp(std::ceil(1.3 - std::log10(span)), 0.0, 6.0);
    std::wstring format = L"0";
    if (decimals > 0.0)
        format += L"." + std::wstring(static_cast<std::size_t>(decimals), L'#');
    return util::formatNumber(value, format);
}

std::vector<Measured> labelsOf(const KnobScale& scale, const TextMeasure& measure) {
    std::vector<Measured> labels;
    if (!scale.canTurn())
        return labels;
    const auto add = [&](std::wstring text, double at) {
        const PixelSize size = measure(text);
        labels.push_back({std::move(text), at, size});
    };
    if (scale.stops.empty()) {
        add(endText(scale.min, scale.max - scale.min), 0.0);
        add(endText(scale.max, scale.max - scale.min), 1.0);
        return labels;
    }
    const double last = std::max(1.0, scale.detents());
    for (std::size_t i = 0; i < scale.stops.size(); ++i)
        add(scale.stops[i].sLabel, static_cast<double>(i) / last);
    return labels;
}

}  // namespace

DialLayout layOutDial(const SmoothBox& area, const KnobScale& scale, double unit, const TextMeasure& measure) {
    DialLayout bare = place(area, {}, unit);
    const std::vector<Measured> labels = labelsOf(scale, measure);
    const double least = std::max(kSmallest * unit, bare.radius * kLeastPart);
    // A single label of a range would be of no use.
    const std::size_t most = scale.stops.empty() ? std::min<std::size_t>(labels.size(), 1) : labels.size();
    for (std::size_t every = 1; every <= most; ++every) {
        // From every third on, only distances at which both ends keep their labels.
        if (every > 2 && (labels.size() - 1) % every != 0)
            continue;
        std::vector<Measured> left;
        for (std::size_t i = 0; i < labels.size(); i += every)
            left.push_back(labels[i]);
        DialLayout layout = place(area, left, unit);
        if (layout.radius >= least && allApart(layout.labels, kBetweenLabels * unit))
            return layout;
    }
    return bare;
}

std::vector<double> ticksOf(const KnobScale& scale, double length, double least) {
    const double detents = scale.canTurn() ? scale.detents() : kTicksWithoutRange;
    const double most = std::min(std::floor(length / std::max(least, 1.0)), 360.0);
    if (!(detents > 0.0) || !(most >= 1.0))
        return {0.0, 1.0};
    double every = 1.0;
    for (double power = 1.0; detents / every > most; power *= 10.0) {
        for (const double factor : std::array{2.0, 5.0, 10.0}) {
            every = power * factor;
            if (detents / every <= most)
                break;
        }
    }
    std::vector<double> ticks;
    // The last one can be closer to the end than the others are to each other; closer than `least` it is omitted.
    for (double at = 0.0; at < detents; at += every) {
        if ((detents - at) / detents * length >= least)
            ticks.push_back(at / detents);
    }
    ticks.push_back(1.0);
    return ticks;
}

}  // namespace kv::turndial
