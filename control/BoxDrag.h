// A span of frequencies that is being chosen: by the drag of a box over the spectrum, or by key. Its rubber band is
// among the marks.
#pragma once

#include <optional>
#include <utility>

#include "control/DisplayRange.h"
#include "control/Marks.h"
#include "formenv/PictureBox.h"

namespace kv::control {

/// Frequencies in MHz; positions outside of the display range count as its nearest end, because the mouse is held
/// during a drag and may be far outside of the picture.
class BoxDrag {
  public:
    using Span = std::pair<double, double>;

    /// All have to live longer.
    BoxDrag(const formenv::PictureBox& picture, const DisplayRange& range, Marks& marks) noexcept
        : picture_(picture), range_(range), marks_(marks) {}
    BoxDrag(const BoxDrag&) = delete;
    BoxDrag& operator=(const BoxDrag&) = delete;

    [[nodiscard]] bool isDragging() const noexcept { return dragging_; }
    /// The left button went down over the picture and has not been released or given up.
    [[nodiscard]] bool isPressed() const noexcept { return pressed_; }

    /// A button went down over the picture: ends a running drag. A drag that another button ended does not start again
    /// before the left button is released.
    void pressed(int button);
    /// The mouse moved with these buttons down: starts the drag or draws its box anew.
    void movedTo(int buttons, double x);
    /// The left button was released: ends the drag. Returns the span, in ascending order, unless there was no drag or
    /// it was shorter than three pixels, which is a click of an unsteady hand.
    std::optional<Span> released(double x);
    /// Ends the drag; another one starts only after the left button was released.
    void giveUp();

    /// The frequency at which a span was begun by key.
    [[nodiscard]] const std::optional<double>& spanFrom() const noexcept { return spanFrom_; }
    void beginSpan(double frequency) noexcept { spanFrom_ = frequency; }
    /// Shows the begun span, if there is one, up to `frequency`.
    void showSpanTo(double frequency);
    /// Ends a span that was begun by key; false when there is none.
    bool dropSpan();

  private:
    void end();
    [[nodiscard]] double insidePicture(double x) const noexcept;

    const formenv::PictureBox& picture_;
    const DisplayRange& range_;
    Marks& marks_;
    bool dragging_ = false;
    bool pressed_ = false;
    double start_ = 0.0;
    bool givenUp_ = false;
    std::optional<double> spanFrom_;
};

}  // namespace kv::control
