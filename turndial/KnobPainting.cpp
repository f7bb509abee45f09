// The panel around a knob's body: background, caption above, read-out below.
#include "turndial/KnobPainting.h"

#include <algorithm>
#include <cmath>

namespace kv::turndial {
namespace {

using raster::PixelSize;
using raster::SmoothBox;

// Pixels at 96 dpi.
constexpr double kMargin = 3.0;
constexpr double kGap = 3.0;
constexpr double kFieldPadding = 6.0;
constexpr double kFieldWidth = 72.0;
constexpr double kFieldCorner = 3.0;
constexpr double kLeastBody = 24.0;

/// The text, or as much of its start as fits with an ellipsis after it.
std::wstring fitted(const KnobPicture& picture, const std::wstring& text, double width) {
    const auto fits = [&](const std::wstring& part) {
        return picture.text.textSize(part, picture.font).width <= width;
    };
    if (fits(text))
        return text;
    for (std::size_t length = std::min<std::size_t>(text.size(), 200); length > 0; --length) {
        std::wstring shortened = text.substr(0, length - 1) + L'\u2026';
        if (fits(shortened))
            return shortened;
    }
    return {};
}

void centeredText(const KnobPicture& picture, const std::wstring& text, const SmoothBox& box, raster::Rgb color) {
    const std::wstring shown = fitted(picture, text, box.width());
    const PixelSize size = picture.text.textSize(shown, picture.font);
    const raster::PixelPoint at{static_cast<int>(std::lround(box.middle().x - size.width / 2.0)),
                                static_cast<int>(std::lround(box.middle().y - size.height / 2.0))};
    if (!shown.empty())
        picture.text.draw(picture.shapes.buffer(), at, shown, picture.font, color);
}

void paintField(const KnobPicture& picture, const std::wstring& readOut, const SmoothBox& row, bool borrowed) {
    const double unit = picture.unit;
    const double textWidth = picture.text.textSize(readOut, picture.font).width;
    // Wide enough for most values, so that it keeps its size while the digits change.
    const double width =
        std::round(std::min(row.width(), std::max(kFieldWidth * unit, textWidth + 2 * kFieldPadding * unit)));
    const double left = std::round(row.middle().x - width / 2.0);
    const SmoothBox field{left, row.top, left + width, row.bottom};
    if (!borrowed)
        picture.shapes.box(field, kFieldCorner * unit, picture.ink.field);
    picture.shapes.frame(field, kFieldCorner * unit, std::max(1.0, std::floor(unit)), picture.ink.fieldEdge);
    centeredText(picture, readOut, field.inset(2.0 * unit), borrowed ? picture.ink.label : picture.ink.text);
}

}  // namespace

SmoothBox paintPanel(const KnobPicture& picture, const std::wstring& caption, const std::wstring& readOut,
                     bool borrowed) {
    const raster::PixelBuffer& buffer = picture.shapes.buffer();
    picture.shapes.clear(picture.ink.face);
    const double unit = picture.unit;
    const double margin = std::round(kMargin * unit);
    const SmoothBox all = SmoothBox{0.0, 0.0, double(buffer.width), double(buffer.height)}.inset(margin);
    const double line = picture.text.textSize(L"X", picture.font).height;
    const double gap = std::round(kGap * unit);
    SmoothBox body = all;
    const double fieldHeight = line + std::round(3.0 * unit);
    const bool hasField = !readOut.empty() && all.height() - fieldHeight - gap >= kLeastBody * unit;
    if (hasField) {
        paintField(picture, readOut, {all.left, all.bottom - fieldHeight, all.right, all.bottom}, borrowed);
        body.bottom -= fieldHeight + gap;
    }
    // The value is more important than its name.
    if (!caption.empty() && (hasField || readOut.empty()) && body.height() - line - gap >= kLeastBody * unit) {
        centeredText(picture, caption, {all.left, all.top, all.right, all.top + line}, picture.ink.text);
        body.top += line + gap;
    }
    return body;
}

void paintFocus(const KnobPicture& picture) {
    const raster::PixelBuffer& buffer = picture.shapes.buffer();
    picture.shapes.frame({0.0, 0.0, double(buffer.width), double(buffer.height)}, 4.0 * picture.unit,
                         std::max(1.0, std::round(1.5 * picture.unit)), picture.ink.focus);
}

}  // namespace kv::turndial
