// The spectrum by keyboard, for everything that the mouse does there. Tab, Enter and Escape are the host's, but for
// Escape during a drag.
//
//   Left, Right               one grid division to that side
//   Page Up, Page Down        half a display to the left, to the right
//   Up, Down, plus, minus     zoom in and out by two, around the center
//   Home                      all channels
//   Ctrl+Left, Ctrl+Right     the cursor to the next channel on that side
//   Shift+Left, Shift+Right   the cursor by a tenth of a division
//   Space                     the cursor's frequency becomes the center
//   M                         the report of what is under the cursor, on and off
#include <cmath>
#include <optional>

#include "control/Bandscope.h"
#include "util/ConvertFreq.h"

namespace kv::control {

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
constexpr int kM = 77;
constexpr int kPadPlus = 107;
constexpr int kPadMinus = 109;
constexpr int kPlus = 187;
constexpr int kMinus = 189;
}  // namespace key

constexpr int kShift = 1;
constexpr int kCtrl = 2;
constexpr double kNudge = 10.0;  // nudges to a grid division
constexpr double kZoom = 2.0;
constexpr double kWidest = 1e8;  // MHz; ten times what the coarsest grid step spans

}  // namespace

bool Bandscope::wantsKey(int code) const noexcept {
    switch (code) {
        case key::kEscape:
            return isDragging();
        case key::kSpace:
        case key::kPageUp:
        case key::kPageDown:
        case key::kHome:
        case key::kLeft:
        case key::kUp:
        case key::kRight:
        case key::kDown:
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

bool Bandscope::picSpectrum_KeyDown(int code, int shift) {
    if (!wantsKey(code) || (shift & ~(kShift | kCtrl)) != 0)
        return false;
    if (code == key::kEscape)
        return giveUpDrag();
    std::int16_t flag = 100;
    reported(L"picSpectrum_KeyDown", L"", flag, [&] {
        if (code == key::kM)
            toggleReport();
        else if (hasUsableRange())
            steer(code, shift);
    });
    return true;
}

void Bandscope::steer(int code, int shift) {
    const double span = range_.maxFreq - range_.minFreq;
    const double side = code == key::kLeft || code == key::kPageUp ? -1.0 : 1.0;
    switch (code) {
        case key::kLeft:
        case key::kRight:
            if (shift & kCtrl)
                cursorToChannel(side);
            else if (shift & kShift)
                cursorTo(cursorOrCenter() + side * GridStepX() / kNudge);
            else
                panTo(DisplayCenterFreq() + side * span / nGridX());
            break;
        case key::kPageUp:
        case key::kPageDown:
            panTo(DisplayCenterFreq() + side * span / 2.0);
            break;
        case key::kHome:
            DrawByRange(0.0, 0.0);
            tellRangeChanged();
            break;
        case key::kSpace:
            panTo(cursorOrCenter());
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

double Bandscope::cursorOrCenter() {
    return CursorVal() > 0.0 ? CursorVal() : DisplayCenterFreq();
}

void Bandscope::panTo(double center) {
    // At 0 MHz and below there is no center.
    if (!(center > 0.0))
        return;
    applyNewCenter(center);
    tellRangeChanged();
}

void Bandscope::zoomAround(double span) {
    const double center = DisplayCenterFreq();
    if (span <= kWidest)
        zoomTo(center - span / 2.0, center + span / 2.0);
}

/// The picture follows a cursor that leaves it.
void Bandscope::cursorTo(double frequency) {
    if (!(frequency > 0.0))
        return;
    if (frequency < range_.minFreq || frequency > range_.maxFreq)
        panTo(frequency);
    setShownCursor(frequency);
    pointAt(frequency, kInvalid);
}

void Bandscope::cursorToChannel(double side) {
    const double from = cursorOrCenter();
    std::optional<double> nearest;
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        for (std::int32_t i = 0; const FreqSlotRef channel = store_.at(kind, i); ++i) {
            bool unknown = false;
            const double frequency = util::ConvertFreq(channel->sFreqUnits(), L"MHz", channel->dFreq(), unknown);
            const double distance = (frequency - from) * side;
            if (!unknown && distance > 0.0 && (!nearest || distance < (*nearest - from) * side))
                nearest = frequency;
        }
    }
    if (nearest)
        cursorTo(*nearest);
}

void Bandscope::toggleReport() {
    ui_.chkShowMouse.setValue(ui_.chkShowMouse.value() == 0 ? 1 : 0);
    ShowMouseInfo(kInvalid, kInvalid);
    if (hasUsableRange() && ui_.chkShowMouse.value() != 0)
        pointAt(cursorOrCenter(), kInvalid);
}

}  // namespace kv::control
