#include "control/Navigation.h"

#include <cmath>

#include "formenv/ShiftKeys.h"
#include "raster/Twips.h"
#include "util/Trapped.h"

namespace kv::control {

namespace shift_key = formenv::shift_key;

namespace {

constexpr int kNotch = 120;
constexpr double kZoom = 1.25;
constexpr double kFineZoom = 1.05;
constexpr int kLeastPan = 3;  // pixels

}  // namespace

bool Navigation::wheel(int delta, int shift, double x) {
    if (!wheelZoom_ || (shift & shift_key::kAlt) != 0 || !range_.derive()) {
        turned_ = 0;
        return false;
    }
    // What is left of a notch counts for its own direction only.
    if ((delta < 0) != (turned_ < 0))
        turned_ = 0;
    turned_ += delta;
    const int notches = turned_ / kNotch;
    turned_ %= kNotch;
    if (notches == 0)
        return true;
    util::reported(errors_, L"picSpectrum_MouseWheel", [&](util::Step&) {
        if (shift & shift_key::kShift) {
            const double center = range_.DisplayCenterFreq() - notches * range_.drawnStep();
            // At 0 MHz and below there is no center.
            if (center > 0.0)
                actions_.panTo(center);
        } else {
            zoomAround(x, std::pow((shift & shift_key::kCtrl) ? kFineZoom : kZoom, notches));
        }
    });
    return true;
}

void Navigation::zoomAround(double x, double factor) {
    const auto [minimum, maximum] = range_.span();
    if ((maximum - minimum) / factor <= kWidestZoom)
        actions_.zoomTo(x - (x - minimum) / factor, x + (maximum - x) / factor);
}

void Navigation::scalePressed(int button, double x) {
    if (giveUpPan() || button != formenv::mouse_button::kLeft || !range_.derive())
        return;
    history_.begin(range_.span());
    pan_ = Pan{x, range_.DisplayCenterFreq(), false};
}

void Navigation::scaleMoved(int buttons, double x) {
    if (!pan_)
        return;
    if (!(buttons & formenv::mouse_button::kLeft)) {
        endPan();
        return;
    }
    const double twips = x - pan_->from;
    if (!pan_->moved && std::abs(twips) < raster::pixelsToTwips(kLeastPan, picture_.platform().dpi()))
        return;
    const double center = pan_->center - twips * picture_.scaleWidth() / picture_.width();
    if (!(center > 0.0))
        return;
    pan_->moved = true;
    actions_.applyNewCenter(center);
}

void Navigation::scaleReleased(int button) {
    if (button == formenv::mouse_button::kLeft)
        endPan();
}

void Navigation::scaleLost() {
    endPan();
}

void Navigation::endPan() {
    const std::optional<Pan> ended = std::exchange(pan_, std::nullopt);
    if (ended && ended->moved)
        actions_.tellRangeChanged();
    if (ended)
        history_.giveUp();
}

bool Navigation::giveUpPan() {
    const std::optional<Pan> ended = std::exchange(pan_, std::nullopt);
    if (!ended)
        return false;
    history_.giveUp();
    if (ended->moved)
        actions_.applyNewCenter(ended->center);
    return true;
}

bool Navigation::goBack() {
    return go(&RangeHistory::goBack);
}

bool Navigation::goForward() {
    return go(&RangeHistory::goForward);
}

bool Navigation::go(std::optional<RangeHistory::Range> (RangeHistory::*step)(const RangeHistory::Range&)) {
    const std::optional<RangeHistory::Range> range = (history_.*step)(range_.span());
    return range && actions_.showExactly(range->first, range->second);
}

}  // namespace kv::control
