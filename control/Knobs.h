// The knobs, the box of grid units beside them and the button that puts the cursor on the center: what they show of the
// range and what turning them does.
#pragma once

#include <utility>

#include "control/DisplayRange.h"
#include "control/Panel.h"
#include "util/ErrHand.h"
#include "util/Trapped.h"

namespace kv::control {

/// What the knobs ask of the display. Frequencies in MHz.
class KnobActions {
  public:
    virtual ~KnobActions() = default;
    virtual void showCursorAt(double frequency) = 0;
    /// The same after a step of the user's, which may lead to a channel near `to`.
    virtual void moveCursorTo(double from, double to) = 0;
    /// The user begins to change the range, or goes on. It ends with `tellRangeChanged` or is given up.
    virtual void beginRangeAction() = 0;
    virtual void giveUpRangeAction() = 0;
    /// Draws the cursor line; the knobs keep what they show.
    virtual void drawCursorAt(double frequency) = 0;
    virtual void applyNewCenter(double center) = 0;
    /// The same at the end of a turn: the host is told.
    virtual void panTo(double center) = 0;
    virtual void drawUnlessDrawing() = 0;
    /// The same, but a picture that a drawing would not change is kept.
    virtual void drawUnlessCurrent() = 0;
    virtual void tellRangeChanged() = 0;
    virtual void tellGridRangeChanged() = 0;
};

class Knobs {
  public:
    /// All have to live longer.
    Knobs(KnobActions& actions, Panel& panel, DisplayRange& range, util::ErrorReporter& errors) noexcept
        : actions_(actions), panel_(panel), ui_(panel.parts()), range_(range), errors_(errors) {}
    Knobs(const Knobs&) = delete;
    Knobs& operator=(const Knobs&) = delete;

    void connect();
    /// Shows the range as far as there is one; nothing is scaled.
    void showRange();
    /// Shows the grid step, in place of the chosen value while another one is drawn.
    void showGridStep();
    /// The value of the grid knob becomes the step that knobs and nudges use.
    void showStepOfRange(double step);
    /// The rotary knobs turn inside the range.
    void rescaleToRange();
    void putCursorOnCenter();

  private:
    [[nodiscard]] double nudged(double from, double direction);
    void cboGridRange_Click();
    void tdKnGrid_ValueChanged(double dNewVal);
    void tdKnGrid_TurnEnd();
    void tdKnGrid_GivenUp();
    void tdKnCenter_TurnEnd();
    void tdKnMovCenter_ValueChanged(double d);
    void tdKnMovCursor_ValueChanged(double d);
    void cmdCenterCursor_Click();

    template <class Body>
    void reported(const wchar_t* procedure, Body&& body) {
        util::reported(errors_, procedure, std::forward<Body>(body));
    }

    KnobActions& actions_;
    Panel& panel_;
    Children& ui_;
    DisplayRange& range_;
    util::ErrorReporter& errors_;
};

}  // namespace kv::control
