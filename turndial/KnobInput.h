// A knob as its window uses it: input by the user, and painting.
#pragma once

#include "raster/PixelBuffer.h"
#include "raster/TextPainter.h"
#include "turndial/KnobPalette.h"

namespace kv::turndial {

/// The keys that a knob uses, and those that it must leave to its form.
enum class Key { Left, Right, Up, Down, PageUp, PageDown, Home, End, Escape, Tab, Enter, Other };

/// The keys held beside a mouse button, a wheel notch or a key.
struct Modifiers {
    bool control = false;  ///< fine turning
};

/// How the user turns a knob:
/// - By the mouse. Dragged by its rim, a dial turns with the mouse around its middle; dragged anywhere else, up or
///   right turns it up. The first two pixels (at 96 dots an inch) turn nothing, so that a click never turns it.
///   Dragged past an end it stays there and turns back at once. A nudge knob's arrows give one detent a click.
/// - By the wheel, one detent a notch; the parts of a notch that fine wheels report add up.
/// - By keys: right and up turn up by one detent, left and down turn down, the page keys by several, Home and End go
///   to the ends of the scale. Tab and Enter belong to the form, and so does Escape while nothing is being turned.
/// - Control makes each of these finer, ten times where the scale allows it.
///
/// The events: ValueChanged each time that the user changes the value, TurnEnd once when the user releases the knob,
/// if the turn has raised ValueChanged. A wheel movement is a whole turn of its own; a key's turn lasts from
/// the first press to the release, repeats included. Losing the capture or the focus ends a turn. Escape and the right
/// button cancel a running turn: the value returns to what it was, which raises ValueChanged, and no TurnEnd
/// follows. When a handler throws, the turn is over and the exception is passed to the caller.
///
/// While the mouse button is held, the scale stays as it was at the press, even if the program changes it.
///
/// Places are pixels from the widget's upper left corner, as in the last picture painted.
class KnobControl {
  public:
    virtual ~KnobControl() = default;

    virtual void mouseDown(int x, int y, Modifiers modifiers) = 0;
    virtual void mouseMove(int x, int y, Modifiers modifiers) = 0;
    virtual void mouseUp(int x, int y, Modifiers modifiers) = 0;
    /// `delta` is 120 for a notch away from the user.
    virtual void wheel(int delta, Modifiers modifiers) = 0;
    /// True when the knob used the key.
    virtual bool keyDown(Key key, Modifiers modifiers) = 0;
    virtual void keyUp(Key key) = 0;
    [[nodiscard]] virtual bool wantsKey(Key key) const = 0;
    virtual void focus(bool has) = 0;
    virtual void hover(bool over) = 0;
    /// Another window has the mouse capture now.
    virtual void captureLost() = 0;
    /// Cancels a running turn.
    virtual void cancel() = 0;
    /// While true the window keeps the mouse.
    [[nodiscard]] virtual bool holdsMouse() const = 0;

    /// Paints the whole buffer. `text` must measure and paint for the same dots an inch.
    virtual void paint(const raster::PixelBuffer& buffer, raster::TextPainter& text, int dpi,
                       const KnobPalette& palette) = 0;
};

}  // namespace kv::turndial
