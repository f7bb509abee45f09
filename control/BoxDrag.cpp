// The drag of a box on the spectrum, which zooms to the frequencies it spans.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "control/Bandscope.h"

namespace kv::control {

namespace {

constexpr wchar_t kBox[] = L"BOX";
constexpr int kLeastDrag = 3;  // pixels; what is shorter is a click with an unsteady hand

}  // namespace

bool Bandscope::isDragging() const noexcept {
    return drag_.mode == kBox;
}

void Bandscope::picSpectrum_MouseDown(int button) {
    std::int16_t flag = 100;
    reported(L"picSpectrum_MouseDown", L"", flag, [&] {
        const bool running = isDragging();
        endDrag();
        // With the left button still down, the next move would start the drag anew.
        drag_.givenUp = running && button != formenv::mouse_button::kLeft;
    });
}

void Bandscope::picSpectrum_MouseUp(int button, double x) {
    if (button != formenv::mouse_button::kLeft)
        return;
    drag_.givenUp = false;
    if (!isDragging())
        return;
    std::int16_t flag = 100;
    reported(L"picSpectrum_MouseUp", L"", flag, [&] {
        const double start = drag_.start;
        endDrag();
        flag = 200;
        const formenv::PictureBox& picture = ui_.picSpectrum;
        const double end = insidePicture(x);
        if (std::abs(picture.pixelX(end) - picture.pixelX(start)) < kLeastDrag)
            return;
        flag = 300;
        zoomTo(std::min(start, end), std::max(start, end));
    });
}

bool Bandscope::giveUpDrag() {
    if (!isDragging())
        return false;
    std::int16_t flag = 100;
    reported(L"picSpectrum_MouseLost", L"", flag, [&] { endDrag(); });
    drag_.givenUp = true;
    return true;
}

/// A move of the mouse: starts the drag when the left button is down, and draws its box anew.
void Bandscope::dragTo(int button, double x) {
    if (!hasUsableRange())
        return;
    const bool pressed = (button & formenv::mouse_button::kLeft) != 0;
    if (!pressed)
        drag_.givenUp = false;
    if (pressed && !isDragging() && !drag_.givenUp) {
        drag_.mode = kBox;
        drag_.start = insidePicture(x);
    }
    if (!isDragging())
        return;
    marks_.drawBand(drag_.start, insidePicture(x));
}

void Bandscope::endDrag() {
    drag_.mode.clear();
    marks_.takeBandOff();
}

/// The mouse is held during the drag and may be far outside, where the picture has nothing to zoom to.
double Bandscope::insidePicture(double x) const noexcept {
    return std::clamp(x, std::min(range_.minFreq, range_.maxFreq), std::max(range_.minFreq, range_.maxFreq));
}

}  // namespace kv::control
