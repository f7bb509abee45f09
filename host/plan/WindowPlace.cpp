#include "host/plan/WindowPlace.h"

#include <algorithm>
#include <cstdint>

namespace kv::host {

namespace {

constexpr int kLeastGrip = 100;  // pixels of the title bar

int overlap(int from, int to, int otherFrom, int otherTo) {
    return std::max(std::min(to, otherTo) - std::max(from, otherFrom), 0);
}

bool canReachTitle(const ScreenRect& rect, const ScreenRect& area, int titleHeight) {
    const int grip = std::min(rect.width(), kLeastGrip);
    return overlap(rect.left, rect.right, area.left, area.right) >= grip && rect.top >= area.top &&
           rect.top + titleHeight <= area.bottom;
}

std::int64_t distance(int from, int to, int otherFrom, int otherTo) {
    return std::max({otherFrom - to, from - otherTo, 0});
}

std::int64_t distance(const ScreenRect& a, const ScreenRect& b) {
    const std::int64_t across = distance(a.left, a.right, b.left, b.right);
    const std::int64_t down = distance(a.top, a.bottom, b.top, b.bottom);
    return across * across + down * down;
}

std::int64_t shared(const ScreenRect& a, const ScreenRect& b) {
    return static_cast<std::int64_t>(overlap(a.left, a.right, b.left, b.right)) *
           overlap(a.top, a.bottom, b.top, b.bottom);
}

}  // namespace

ScreenRect movedOntoScreen(const ScreenRect& rect, const std::vector<ScreenRect>& workAreas, int titleHeight) {
    if (std::ranges::any_of(workAreas,
                            [&](const ScreenRect& area) { return canReachTitle(rect, area, titleHeight); })) {
        return rect;
    }
    // Of two areas that it touches, the one with the larger part of it is the nearer one.
    const ScreenRect& area = *std::ranges::min_element(workAreas, [&](const ScreenRect& a, const ScreenRect& b) {
        const std::int64_t toA = distance(rect, a);
        const std::int64_t toB = distance(rect, b);
        return toA != toB ? toA < toB : shared(rect, a) > shared(rect, b);
    });
    const int width = std::min(rect.width(), area.width());
    const int height = std::min(rect.height(), area.height());
    const int left = std::clamp(rect.left, area.left, area.right - width);
    const int top = std::clamp(rect.top, area.top, area.bottom - height);
    return {left, top, left + width, top + height};
}

}  // namespace kv::host
