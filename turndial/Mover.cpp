// The nudge knob: detents without a scale.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "turndial/Knob.h"

namespace kv::turndial {

using raster::SmoothPoint;

namespace {

// Pixels at 96 dpi to push for a detent.
constexpr double kDetentTravel = 12.0;
// A bound for one movement, so that an extreme one does not keep the program busy.
constexpr int kMostDetents = 100;

}  // namespace

void tdKnMover::turnBegins() {
    net_ = 0;
    rest_ = 0.0;
    byArrow_ = false;
}

void tdKnMover::press(SmoothPoint at) {
    const int arrow = wheel_.arrowAt(at);
    byArrow_ = arrow != 0;
    if (byArrow_)
        turnBy(arrow, false);
}

void tdKnMover::point(SmoothPoint at) {
    const int arrow = wheel_.arrowAt(at);
    if (pointed_ == arrow)
        return;
    pointed_ = arrow;
    Refresh();
}

void tdKnMover::drag(SmoothPoint /*from*/, SmoothPoint /*to*/, double pixelsUp, bool fine) {
    if (byArrow_)
        return;
    rest_ += pixelsUp / kDetentTravel * (fine ? kFine : 1.0);
    const double whole = std::clamp(std::trunc(rest_), double{-kMostDetents}, double{kMostDetents});
    rest_ -= std::trunc(rest_);
    Refresh();
    turnBy(static_cast<int>(whole), fine);
}

void tdKnMover::turnBy(int detents, bool /*fine*/) {
    roll(std::clamp(detents, -kMostDetents, kMostDetents));
}

void tdKnMover::roll(int detents) {
    const int direction = std::clamp(detents, -1, 1);
    for (int left = std::abs(detents); left > 0; --left) {
        net_ += direction;
        roll_ = (roll_ + direction) % kWheelDetents;
        Refresh();
        if (!tell(direction))
            return;
    }
}

void tdKnMover::takeBack() {
    rest_ = 0.0;
    roll(-net_);
}

void tdKnMover::paintBody(const KnobPicture& picture, const raster::SmoothBox& area) {
    wheel_ = paintWheel(picture, area, roll_ + rest_, pointed_);
}

}  // namespace kv::turndial
