// The colors that a knob is painted with.
#pragma once

#include "formenv/Platform.h"
#include "formenv/Widget.h"

namespace kv::turndial {

struct KnobPalette {
    raster::Rgb face = 0xF0F0F0;       ///< the background
    raster::Rgb text = 0x000000;       ///< caption, read-out, labels
    raster::Rgb shadow = 0xA0A0A0;     ///< edges and grooves
    raster::Rgb highlight = 0xFFFFFF;  ///< lit surfaces
    raster::Rgb accent = 0xD77800;     ///< the value and the focus
    raster::Rgb grayText = 0x6D6D6D;   ///< disabled text
    bool highContrast = false;         ///< lines instead of shading, these colors and no mixture of them

    friend bool operator==(const KnobPalette&, const KnobPalette&) = default;
};

/// The system's present colors with the widget's own background and text. High contrast is detected by what only such
/// schemes have: text and background as far apart as black and white.
[[nodiscard]] KnobPalette systemPalette(const formenv::Platform& platform, const formenv::Widget& widget) noexcept;

/// The present state of a knob.
struct KnobLook {
    bool enabled = true;
    bool hover = false;
    bool focus = false;
    bool held = false;

    friend bool operator==(const KnobLook&, const KnobLook&) = default;
};

/// The colors of the parts of a knob, computed from a palette for one look.
struct KnobInk {
    raster::Rgb face, text, label;
    raster::Rgb bodyTop, bodyBottom, bodyEdge;  ///< the part that turns
    raster::Rgb groove;                         ///< lines cut into it
    raster::Rgb track, tick;                    ///< the scale
    raster::Rgb value, pointer;
    raster::Rgb field, fieldEdge;  ///< behind the read-out
    raster::Rgb focus;
    double shadow;  ///< opacity of the body's shadow
};

[[nodiscard]] KnobInk inkFor(const KnobPalette& palette, const KnobLook& look) noexcept;

}  // namespace kv::turndial
