#include "control/Keyboard.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "channels/ChannelIndex.h"
#include "control/Formats.h"
#include "formenv/ShiftKeys.h"
#include "util/Trapped.h"

namespace kv::control {

namespace shift_key = formenv::shift_key;

namespace {

namespace key {
constexpr int kEscape = 27;
constexpr int kSpace = 32;
constexpr int kPageUp = 33;
constexpr int kPageDown = 34;
constexpr int kHome = 36;
constexpr int kLeft = 37;
constexpr int kUp = 38;
constexpr int kRight = 39;
constexpr int kDown = 40;
constexpr int kB = 66;
constexpr int kC = 67;
constexpr int kD = 68;
constexpr int kM = 77;
constexpr int kPadPlus = 107;
constexpr int kPadMinus = 109;
constexpr int kPlus = 187;
constexpr int kMinus = 189;
}  // namespace key

constexpr double kZoom = 2.0;

}  // namespace

bool Keyboard::wantsKey(int code) const noexcept {
    switch (code) {
        case key::kEscape:
            return pointer_.drag().isDragging() || pointer_.drag().spanFrom().has_value() || navigation_.isPanning();
        case key::kSpace:
        case key::kPageUp:
        case key::kPageDown:
        case key::kHome:
        case key::kLeft:
        case key::kUp:
        case key::kRight:
        case key::kDown:
        case key::kB:
        case key::kC:
        case key::kD:
        case key::kM:
        case key::kPadPlus:
        case key::kPadMinus:
        case key::kPlus:
        case key::kMinus:
            return true;
        default:
            return false;
    }
}

bool Keyboard::wantsAltKey(int code) noexcept {
    return code == key::kLeft || code == key::kRight;
}

bool Keyboard::picSpectrum_KeyDown(int code, int shift) {
    if (shift == shift_key::kAlt && wantsAltKey(code)) {
        // Also without a range to go to the key is not the form's.
        util::reported(errors_, L"picSpectrum_KeyDown",
                       [&](util::Step&) { code == key::kLeft ? actions_.goBack() : actions_.goForward(); });
        return true;
    }
    if (!wantsKey(code) || (shift & ~(shift_key::kShift | shift_key::kCtrl)) != 0)
        return false;
    if (code == key::kEscape)
        return actions_.giveUpDrag() || pointer_.drag().dropSpan();
    util::reported(errors_, L"picSpectrum_KeyDown", [&](util::Step&) {
        if (code == key::kC) {
            actions_.ToggleControlsSection();
        } else if (code == key::kM) {
            toggleReport();
        } else if (range_.derive()) {
            const RangeAction action(navigation_.history(), range_.span());
            steer(code, shift);
        }
    });
    return true;
}

void Keyboard::steer(int code, int shift) {
    const double span = range_.maxFreq() - range_.minFreq();
    const double side = code == key::kLeft || code == key::kPageUp ? -1.0 : 1.0;
    switch (code) {
        case key::kLeft:
        case key::kRight:
            if (shift & shift_key::kCtrl) {
                cursorToChannel(side);
            } else if (shift & shift_key::kShift) {
                const double from = cursorOrCenter();
                cursorTo(actions_.snappedAhead(from, from + side * range_.GridStepX() / kNudges));
            } else {
                panTo(range_.DisplayCenterFreq() + side * span / range_.nGridX());
            }
            break;
        case key::kPageUp:
        case key::kPageDown:
            panTo(range_.DisplayCenterFreq() + side * span / 2.0);
            break;
        case key::kHome:
            actions_.showAllChannels();
            break;
        case key::kSpace:
            panTo(cursorOrCenter());
            break;
        case key::kB:
            markSpan();
            break;
        case key::kD:
            actions_.toggleMarker();
            break;
        case key::kUp:
        case key::kPlus:
        case key::kPadPlus:
            zoomAround(span / kZoom);
            break;
        default:
            zoomAround(span * kZoom);
            break;
    }
}

double Keyboard::cursorOrCenter() {
    return actions_.CursorVal() > 0.0 ? actions_.CursorVal() : range_.DisplayCenterFreq();
}

void Keyboard::panTo(double center) {
    // At 0 MHz and below there is no center.
    if (center > 0.0)
        actions_.panTo(center);
}

void Keyboard::zoomAround(double span) {
    const double center = range_.DisplayCenterFreq();
    if (span <= kWidestZoom)
        actions_.zoomTo(center - span / 2.0, center + span / 2.0);
}

// The picture follows a cursor that leaves it.
void Keyboard::cursorTo(double frequency) {
    if (!(frequency > 0.0))
        return;
    if (!range_.contains(frequency))
        panTo(frequency);
    actions_.showCursorAt(frequency);
    pointer_.drag().showSpanTo(frequency);
    pointer_.pointAt(frequency);
}

// The box of a drag, by keys: its first end at the cursor, then the zoom to what lies between that end and the cursor.
void Keyboard::markSpan() {
    BoxDrag& drag = pointer_.drag();
    const double cursor = cursorOrCenter();
    if (!drag.spanFrom()) {
        drag.beginSpan(cursor);
        cursorTo(cursor);
        return;
    }
    const double from = *drag.spanFrom();
    drag.dropSpan();
    actions_.zoomTo(std::min(from, cursor), std::max(from, cursor));
}

void Keyboard::cursorToChannel(double side) {
    if (const std::optional<double> nearest = channels::nextFrequency(store_, cursorOrCenter(), side))
        cursorTo(*nearest);
}

void Keyboard::toggleReport() {
    chkShowMouse_.setValue(chkShowMouse_.value() == 0 ? 1 : 0);
    pointer_.showReport();
    if (range_.isUsable() && chkShowMouse_.value() != 0)
        pointer_.pointAt(cursorOrCenter());
}

}  // namespace kv::control
