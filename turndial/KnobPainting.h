// Painting of knobs: the panel around them with caption and read-out, the dial and the nudge wheel.
#pragma once

#include <numbers>
#include <string>

#include "raster/Smooth.h"
#include "raster/TextPainter.h"
#include "turndial/DialLayout.h"
#include "turndial/KnobPalette.h"
#include "turndial/KnobScale.h"

namespace kv::turndial {

/// The resolution that sizes in pixels are given for.
inline constexpr int kUsualDpi = 96;

/// The number of pixels that replace one at the usual resolution.
[[nodiscard]] inline double pixelUnit(int dpi) noexcept {
    return static_cast<double>(dpi) / kUsualDpi;
}

/// The tools that the parts of a knob are painted with.
struct KnobPicture {
    KnobPicture(const raster::PixelBuffer& buffer, raster::TextPainter& textPainter, int dpi, const KnobInk& colors,
                const KnobLook& present, const raster::Font& captionFont)
        : shapes(buffer), text(textPainter), unit(pixelUnit(dpi)), ink(colors), look(present), font(captionFont) {
        labelFont = captionFont;
        labelFont.points *= 0.9;
    }

    raster::SmoothPainter shapes;
    raster::TextPainter& text;
    double unit;  ///< see pixelUnit
    KnobInk ink;
    KnobLook look;
    raster::Font font;
    raster::Font labelFont;
};

/// Clears the picture and paints caption and read-out, each omitted when it is empty or when there is no room for it
/// beside a body of a useful size. A `borrowed` read-out, which is not the knob's own value, is quieter. Returns the
/// room for the body.
[[nodiscard]] raster::SmoothBox paintPanel(const KnobPicture& picture, const std::wstring& caption,
                                           const std::wstring& readOut, bool borrowed);

/// Marks the knob that has the focus.
void paintFocus(const KnobPicture& picture);

/// The rim by which the mouse can drag a dial.
struct DialPlace {
    raster::SmoothPoint center;
    double rimInside = 0.0;
    double rimOutside = 0.0;

    [[nodiscard]] bool onRim(raster::SmoothPoint at) const noexcept;
};

/// A dial that shows `value` on `scale`; `style` is a knob's iKnobStyle.
DialPlace paintDial(const KnobPicture& picture, const raster::SmoothBox& area, const KnobScale& scale, double value,
                    int style);

/// After so many detents, from rib to rib, a nudge wheel looks the same again. With less than three a single one would
/// not show its direction.
inline constexpr int kWheelDetents = 3;

/// The arrows at the sides of a nudge wheel.
struct WheelPlace {
    raster::SmoothBox left;
    raster::SmoothBox right;

    /// -1 on the left arrow, 1 on the right one, 0 elsewhere.
    [[nodiscard]] int arrowAt(raster::SmoothPoint at) const noexcept;
};

/// A ribbed wheel seen from its edge, turned by `roll` detents; `pointed` is the arrow under the pointer.
WheelPlace paintWheel(const KnobPicture& picture, const raster::SmoothBox& area, double roll, int pointed);

}  // namespace kv::turndial
