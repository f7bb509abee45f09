#include "control/BoxDrag.h"

#include <algorithm>
#include <cstdlib>

namespace kv::control {

namespace {

constexpr int kLeastDrag = 3;  // pixels

}  // namespace

void BoxDrag::pressed(int button) {
    const bool running = dragging_;
    end();
    pressed_ = button == formenv::mouse_button::kLeft;
    // With the left button still down, the next move would start the drag anew.
    givenUp_ = running && button != formenv::mouse_button::kLeft;
}

void BoxDrag::movedTo(int buttons, double x) {
    if (!range_.isUsable())
        return;
    const bool down = (buttons & formenv::mouse_button::kLeft) != 0;
    if (!down)
        givenUp_ = false;
    if (down && !dragging_ && !givenUp_) {
        dragging_ = true;
        start_ = insidePicture(x);
    }
    if (dragging_)
        marks_.drawBand(start_, insidePicture(x));
}

std::optional<BoxDrag::Span> BoxDrag::released(double x) {
    givenUp_ = pressed_ = false;
    if (!dragging_)
        return std::nullopt;
    end();
    const double finish = insidePicture(x);
    if (std::abs(picture_.pixelX(finish) - picture_.pixelX(start_)) < kLeastDrag)
        return std::nullopt;
    return std::minmax({start_, finish});
}

void BoxDrag::giveUp() {
    givenUp_ = true;
    pressed_ = false;
    end();
}

void BoxDrag::showSpanTo(double frequency) {
    if (spanFrom_ && !dragging_)
        marks_.drawBand(insidePicture(*spanFrom_), insidePicture(frequency));
}

bool BoxDrag::dropSpan() {
    if (!spanFrom_)
        return false;
    spanFrom_.reset();
    if (!dragging_)
        marks_.takeBandOff();
    return true;
}

void BoxDrag::end() {
    dragging_ = false;
    marks_.takeBandOff();
}

double BoxDrag::insidePicture(double x) const noexcept {
    const auto [first, last] = range_.span();
    return std::clamp(x, std::min(first, last), std::max(first, last));
}

}  // namespace kv::control
