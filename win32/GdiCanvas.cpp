#include "win32/GdiCanvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "raster/HatchLines.h"
#include "util/RuntimeError.h"
#include "win32/Demand.h"

namespace kv::win32 {

using raster::FillStyle;
using raster::PixelPoint;
using raster::PixelRect;
using raster::PixelSize;

namespace {

// A process has few handles for GDI objects, and a picture may have any number of colors.
constexpr std::size_t kMostObjects = 64;

/// Coordinates beyond this are not used, so that metafiles can keep them in 16 bits and no sum overflows.
constexpr int kMargin = 8;

GdiObject<HPEN> makePen(raster::Rgb color, int width, int units) {
    // A pen of more than one pixel has round ends, as on the screen.
    if (width > 1 || units <= 1)
        return GdiObject<HPEN>(CreatePen(PS_SOLID, units, color));
    const LOGBRUSH ink{BS_SOLID, color, 0};
    return GdiObject<HPEN>(ExtCreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_FLAT | PS_JOIN_MITER,
                                        static_cast<DWORD>(units), &ink, 0, nullptr));
}

/// Saves the state of a device context for the duration of a block.
class SavedDc {
  public:
    explicit SavedDc(HDC dc) noexcept : dc_(dc), saved_(SaveDC(dc)) {}
    ~SavedDc() { RestoreDC(dc_, saved_); }
    SavedDc(const SavedDc&) = delete;
    SavedDc& operator=(const SavedDc&) = delete;

  private:
    HDC dc_;
    int saved_;
};

}  // namespace

void drawVectors(HDC dc, const GdiPlace& place, const formenv::VectorPicture& picture) {
    const SavedDc saved(dc);
    // The finer units are a transform before the mapping of the device context, which stays as it is.
    SetGraphicsMode(dc, GM_ADVANCED);
    const XFORM toPlace{static_cast<FLOAT>(place.width / picture.size.width),
                        0.0F,
                        0.0F,
                        static_cast<FLOAT>(place.height / picture.size.height),
                        static_cast<FLOAT>(place.left),
                        static_cast<FLOAT>(place.top)};
    if (!ModifyWorldTransform(dc, &toPlace, MWT_LEFTMULTIPLY))
        throw util::RuntimeError(util::error_number::kOutOfMemory);
    GdiSheet sheet(dc, picture.scale, picture.dpi);
    GdiCanvas strip(sheet, {0, 0, picture.size.width, picture.size.height});
    GdiCanvas inner(sheet, picture.inner);
    picture.draw(strip, inner);
}

GdiSheet::GdiSheet(HDC dc, double scale, int dpi) : dc_(dc), scale_(scale), dpi_(dpi), saved_(SaveDC(dc)) {
    SetBkMode(dc_, TRANSPARENT);
    SetTextAlign(dc_, TA_LEFT | TA_TOP | TA_NOUPDATECP);
}

GdiSheet::~GdiSheet() {
    // The objects cannot be deleted while they are selected.
    RestoreDC(dc_, saved_);
}

int GdiSheet::penUnits(int width) const noexcept {
    const double pixels = width == kDiagonal ? std::numbers::sqrt2 / 2.0 : width;
    return std::max(1, static_cast<int>(std::lround(pixels * scale_)));
}

void GdiSheet::forgetSelected() noexcept {
    mode_ = 0;
    pen_ = brush_ = font_ = nullptr;
}

// A clip region can only shrink, so that another one begins with the state of the start.
void GdiSheet::clipTo(const PixelRect& area) {
    if (clipped_ && area == clip_)
        return;
    if (clipped_)
        RestoreDC(dc_, -1);
    forgetSelected();
    SaveDC(dc_);
    IntersectClipRect(dc_, area.left, area.top, area.right, area.bottom);
    clip_ = area;
    clipped_ = true;
}

void GdiSheet::select(HGDIOBJ& selected, HGDIOBJ wanted) {
    if (selected != wanted)
        SelectObject(dc_, wanted);
    selected = wanted;
}

void GdiSheet::selectPen(const raster::Pen& pen, raster::DrawMode mode) {
    if (mode_ != static_cast<int>(mode))
        SetROP2(dc_, mode_ = static_cast<int>(mode));
    const std::pair key{pen.color, pen.width};
    auto found = pens_.find(key);
    if (found == pens_.end()) {
        if (pens_.size() >= kMostObjects) {
            select(pen_, GetStockObject(BLACK_PEN));
            pens_.clear();
        }
        found = pens_.emplace(key, demand(makePen(key.first, key.second, penUnits(key.second)))).first;
    }
    select(pen_, found->second.get());
}

void GdiSheet::selectBrush(raster::Rgb color) {
    auto found = brushes_.find(color);
    if (found == brushes_.end()) {
        if (brushes_.size() >= kMostObjects) {
            selectNoBrush();
            brushes_.clear();
        }
        found = brushes_.emplace(color, demand(GdiObject<HBRUSH>(CreateSolidBrush(color)))).first;
    }
    select(brush_, found->second.get());
}

void GdiSheet::selectNoBrush() {
    select(brush_, GetStockObject(NULL_BRUSH));
}

HFONT GdiSheet::fontOf(const raster::Font& font) {
    const FontKey key{font.face, font.points, font.bold};
    auto found = fonts_.find(key);
    if (found == fonts_.end())
        found = fonts_.emplace(key, demand(makeFont(font, dpi_))).first;
    return found->second.get();
}

void GdiSheet::selectFont(const raster::Font& font) {
    select(font_, fontOf(font));
}

// In a device context of its own, because that of a metafile measures with the resolution of another device.
PixelSize GdiSheet::textSize(std::wstring_view text, const raster::Font& font) {
    if (!measuring_)
        measuring_ = demand(MemoryDc(CreateCompatibleDC(nullptr)));
    return measureText(measuring_.get(), text, fontOf(font));
}

void GdiCanvas::clear(raster::Rgb color) {
    sheet_.clipTo(place_);
    const RECT all{place_.left, place_.top, place_.right, place_.bottom};
    const GdiObject<HBRUSH> brush = demand(GdiObject<HBRUSH>(CreateSolidBrush(color)));
    FillRect(sheet_.dc(), &all, brush.get());
}

PixelRect GdiCanvas::reachable(const PixelRect& box, int margin) const noexcept {
    const PixelSize all = size();
    return {std::clamp(box.left, -margin, all.width + margin), std::clamp(box.top, -margin, all.height + margin),
            std::clamp(box.right, -margin, all.width + margin), std::clamp(box.bottom, -margin, all.height + margin)};
}

void GdiCanvas::line(PixelPoint from, PixelPoint to, const raster::Pen& pen, raster::DrawMode mode) {
    sheet_.clipTo(place_);
    sheet_.selectPen(pen, mode);
    if (from.x == to.x || from.y == to.y) {
        const PixelRect ends = reachable({from.x, from.y, to.x, to.y}, sheet_.penUnits(pen.width) + kMargin);
        from = {ends.left, ends.top};
        to = {ends.right, ends.bottom};
    }
    const POINT start = at(from);
    const POINT end = at(to);
    MoveToEx(sheet_.dc(), static_cast<int>(start.x), static_cast<int>(start.y), nullptr);
    LineTo(sheet_.dc(), static_cast<int>(end.x), static_cast<int>(end.y));
}

void GdiCanvas::rectangle(PixelRect box, const raster::Pen& pen, const raster::Brush& brush, raster::DrawMode mode) {
    if (box.left > box.right)
        std::swap(box.left, box.right);
    if (box.top > box.bottom)
        std::swap(box.top, box.bottom);
    if (box.left == box.right || box.top == box.bottom)
        return;
    const PixelRect corners =
        reachable({box.left, box.top, box.right - 1, box.bottom - 1}, sheet_.penUnits(pen.width) + kMargin);
    sheet_.clipTo(place_);
    if (brush.style == FillStyle::Solid) {
        sheet_.selectBrush(brush.color);
    } else {
        hatch(corners, pen, brush, mode);
        sheet_.selectNoBrush();
    }
    sheet_.selectPen(pen, mode);
    outline(corners);
}

/// Between the edges, if there is room for a line between them.
void GdiCanvas::hatch(const PixelRect& corners, const raster::Pen& pen, const raster::Brush& brush,
                      raster::DrawMode mode) {
    const int edges = 2 * sheet_.penUnits(pen.width);
    if (corners.right - corners.left < edges || corners.bottom - corners.top < edges)
        return;
    const PixelSize all = size();
    const PixelRect visible{std::max(corners.left, 0), std::max(corners.top, 0), std::min(corners.right + 1, all.width),
                            std::min(corners.bottom + 1, all.height)};
    const std::vector<raster::HatchLine> lines = raster::hatchLines(brush.style, visible, sheet_.scale());
    if (lines.empty())
        return;
    std::vector<POINT> points;
    for (const raster::HatchLine& line : lines) {
        points.push_back(at(line.from));
        points.push_back(at(line.to));
    }
    const std::vector<DWORD> counts(lines.size(), 2);
    const bool isStraight = brush.style == FillStyle::HorizontalLine || brush.style == FillStyle::VerticalLine ||
                            brush.style == FillStyle::Cross;
    sheet_.selectPen({brush.color, isStraight ? 1 : GdiSheet::kDiagonal}, mode);
    PolyPolyline(sheet_.dc(), points.data(), counts.data(), static_cast<DWORD>(counts.size()));
}

/// The edges go through the corners. A box without width or height is one line, there and back, so that a pen of one
/// pixel reaches both ends.
void GdiCanvas::outline(const PixelRect& corners) const {
    const POINT first = at({corners.left, corners.top});
    const POINT last = at({corners.right, corners.bottom});
    if (first.x == last.x || first.y == last.y) {
        if (first.x == last.x && first.y == last.y)
            return;
        const POINT thereAndBack[] = {last, first, last};
        Polyline(sheet_.dc(), thereAndBack, 3);
        return;
    }
    const POINT box[] = {first, {last.x, first.y}, last, {first.x, last.y}};
    Polygon(sheet_.dc(), box, 4);
}

PixelSize GdiCanvas::textSize(std::wstring_view text, const raster::Font& font) {
    return sheet_.textSize(text, font);
}

void GdiCanvas::text(PixelPoint at, std::wstring_view text, const raster::Font& font, raster::Rgb color) {
    sheet_.clipTo(place_);
    sheet_.selectFont(font);
    SetTextColor(sheet_.dc(), color);
    ExtTextOutW(sheet_.dc(), at.x + place_.left, at.y + place_.top, 0, nullptr, text.data(),
                static_cast<UINT>(text.size()), nullptr);
}

}  // namespace kv::win32
