#include "turndial/KnobPalette.h"

#include <cmath>

#include "raster/Smooth.h"

namespace kv::turndial {
namespace {

using raster::mixed;
using raster::Rgb;

constexpr Rgb kWhite = 0xFFFFFF;
constexpr Rgb kBlack = 0x000000;

KnobInk flatInk(const KnobPalette& palette, const KnobLook& look) {
    const Rgb line = look.enabled ? palette.text : palette.grayText;
    KnobInk ink{};
    ink.face = palette.face;
    ink.text = ink.label = line;
    ink.bodyTop = ink.bodyBottom = ink.field = palette.face;
    ink.bodyEdge = look.enabled && (look.hover || look.held) ? palette.accent : line;
    ink.groove = ink.track = ink.tick = ink.fieldEdge = line;
    ink.value = ink.focus = look.enabled ? palette.accent : line;
    ink.pointer = line;
    ink.shadow = 0.0;
    return ink;
}

}  // namespace

KnobPalette systemPalette(const formenv::Platform& platform, const formenv::Widget& widget) noexcept {
    KnobPalette palette;
    palette.face = platform.resolve(widget.backColor());
    palette.text = platform.resolve(widget.foreColor());
    palette.shadow = platform.resolve(raster::system_color::kButtonShadow);
    palette.highlight = platform.resolve(raster::system_color::kButtonHighlight);
    palette.accent = platform.resolve(raster::system_color::kHighlight);
    palette.grayText = platform.resolve(raster::system_color::kGrayText);
    palette.highContrast = std::abs(raster::brightness(palette.face) - raster::brightness(palette.text)) > 0.99;
    return palette;
}

KnobInk inkFor(const KnobPalette& palette, const KnobLook& look) noexcept {
    if (palette.highContrast)
        return flatInk(palette, look);
    const Rgb face = palette.face;
    const bool dark = raster::brightness(face) < 0.45;
    const bool lit = look.enabled && (look.hover || look.held);
    KnobInk ink{};
    ink.face = face;
    ink.text = look.enabled ? palette.text : palette.grayText;
    ink.label = look.enabled ? mixed(palette.text, face, 0.22) : palette.grayText;
    // On a dark face the system's highlight is no light any more: surfaces rise towards white by themselves.
    const Rgb light = dark ? mixed(face, kWhite, 0.26) : mixed(face, palette.highlight, 0.95);
    ink.bodyTop = lit ? mixed(light, kWhite, dark ? 0.10 : 0.9) : light;
    ink.bodyBottom = dark ? mixed(face, kWhite, lit ? 0.20 : 0.12) : mixed(face, palette.shadow, lit ? 0.10 : 0.24);
    ink.bodyEdge = dark ? mixed(face, kBlack, 0.55) : mixed(palette.shadow, palette.text, 0.15);
    if (lit)
        ink.bodyEdge = mixed(ink.bodyEdge, palette.accent, 0.75);
    ink.groove = dark ? mixed(face, kBlack, 0.45) : mixed(face, palette.text, 0.38);
    ink.track = dark ? mixed(face, kWhite, 0.17) : mixed(face, palette.shadow, 0.62);
    ink.tick = look.enabled ? mixed(face, palette.text, 0.55) : mixed(face, palette.text, 0.28);
    ink.value = look.enabled ? palette.accent : mixed(face, palette.text, 0.30);
    ink.pointer = look.enabled ? mixed(palette.text, palette.accent, 0.12) : mixed(face, palette.text, 0.35);
    ink.field = dark ? mixed(face, kBlack, 0.30) : mixed(face, palette.highlight, 0.75);
    ink.fieldEdge = dark ? mixed(face, kWhite, 0.14) : mixed(face, palette.shadow, 0.65);
    ink.focus = palette.accent;
    ink.shadow = look.enabled ? (dark ? 0.5 : 0.30) : 0.0;
    if (!look.enabled) {
        ink.bodyTop = ink.bodyBottom = mixed(face, palette.shadow, 0.10);
        ink.bodyEdge = mixed(face, palette.shadow, 0.6);
        ink.groove = mixed(face, palette.shadow, 0.5);
        ink.field = face;
    }
    return ink;
}

}  // namespace kv::turndial
