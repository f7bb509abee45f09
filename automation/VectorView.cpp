#include "automation/VectorView.h"

#include <algorithm>
#include <cmath>

#include "win32/GdiCanvas.h"

namespace kv::automation {

namespace {

constexpr double kMostUnits = 32000.0;  // metafiles keep coordinates up to this in 16 bits

/// From pixels of the snapshot to logical units.
class ToBounds {
  public:
    ToBounds(const RECTL& bounds, SIZE size)
        : left_(bounds.left),
          top_(bounds.top),
          perColumn_(static_cast<double>(bounds.right - bounds.left) / size.cx),
          perRow_(static_cast<double>(bounds.bottom - bounds.top) / size.cy) {}

    [[nodiscard]] double x(LONG column) const noexcept { return left_ + column * perColumn_; }
    [[nodiscard]] double y(LONG row) const noexcept { return top_ + row * perRow_; }
    [[nodiscard]] RECTL of(const RECT& part) const noexcept {
        return {std::lround(x(part.left)), std::lround(y(part.top)), std::lround(x(part.right)),
                std::lround(y(part.bottom))};
    }
    [[nodiscard]] win32::GdiPlace place(const RECT& part) const noexcept {
        return {x(part.left), y(part.top), (part.right - part.left) * perColumn_, (part.bottom - part.top) * perRow_};
    }

  private:
    double left_;
    double top_;
    double perColumn_;
    double perRow_;
};

/// Units for each pixel of the snapshot: the pixels of a device, or enough for any device.
double scaleFor(HDC dc, const RECT& part, const ToBounds& to) {
    const double width = std::max<double>(part.right - part.left, 1.0);
    const double height = std::max<double>(part.bottom - part.top, 1.0);
    if (GetObjectType(dc) == OBJ_ENHMETADC)
        return formenv::oddFineness(
            std::min(static_cast<int>(kMostUnits / std::max(width, height)), formenv::kRecordedFineness));
    const RECTL logical = to.of(part);
    POINT corners[] = {{logical.left, logical.top}, {logical.right, logical.bottom}};
    LPtoDP(dc, corners, 2);
    return std::max({std::abs(static_cast<double>(corners[1].x - corners[0].x)) / width,
                     std::abs(static_cast<double>(corners[1].y - corners[0].y)) / height, 1.0});
}

bool drawAround(HDC dc, const Snapshot& whole, const RECT& hole, const ToBounds& to) {
    const SIZE size = whole.size();
    const RECT bands[] = {{0, 0, size.cx, hole.top},
                          {0, hole.bottom, size.cx, size.cy},
                          {0, hole.top, hole.left, hole.bottom},
                          {hole.right, hole.top, size.cx, hole.bottom}};
    return std::ranges::all_of(
        bands, [&](const RECT& band) { return IsRectEmpty(&band) || whole.cut(band).drawTo(dc, to.of(band)); });
}

}  // namespace

bool takesVectors(HDC dc) {
    const DWORD type = GetObjectType(dc);
    return type == OBJ_ENHMETADC || (type == OBJ_DC && GetDeviceCaps(dc, TECHNOLOGY) != DT_RASDISPLAY);
}

bool drawWithVectors(HDC dc, const RECTL& bounds, const Snapshot& whole, const VectorPart& part) {
    if (bounds.left == bounds.right || bounds.top == bounds.bottom)
        return true;
    const SIZE size = whole.size();
    const RECT all{0, 0, size.cx, size.cy};
    RECT visible{};
    if (!IntersectRect(&visible, &part.place, &all))
        return whole.drawTo(dc, bounds);
    const ToBounds to(bounds, size);
    const int saved = SaveDC(dc);
    // The layout of the control may be larger than what is visible of it.
    IntersectClipRect(dc, bounds.left, bounds.top, bounds.right, bounds.bottom);
    bool drawn = false;
    try {
        drawn = drawAround(dc, whole, visible, to);
        win32::drawVectors(dc, to.place(part.place), part.picture(scaleFor(dc, part.place, to)));
    } catch (...) {
        RestoreDC(dc, saved);
        throw;
    }
    RestoreDC(dc, saved);
    return drawn;
}

}  // namespace kv::automation
