// The spectrum by keyboard, for everything that the mouse does there. Tab, Enter and Escape are the host's, but for
// Escape during a drag and while a span has been begun.
//
//   Left, Right               one grid division to that side
//   Page Up, Page Down        half a display to the left, to the right
//   Up, Down, plus, minus     zoom in and out by two, around the center
//   Home                      all channels
//   Ctrl+Left, Ctrl+Right     the cursor to the next channel on that side
//   Shift+Left, Shift+Right   the cursor by a tenth of a division
//   Space                     the cursor's frequency becomes the center
//   B                         one end of a span, at the cursor; once more: zooms to the span from there to the cursor
//   C                         the control panel, collapsed and expanded
//   M                         the report of what is under the cursor, on and off
#include <algorithm>
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
constexpr int kB = 66;
constexpr int kC = 67;
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
            return isDragging() || drag_.spanFrom.has_value();
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
        return giveUpDrag() || dropSpan();
    std::int16_t flag = 100;
    reported(L"picSpectrum_KeyDown", L"", flag, [&] {
        if (code == key::kC)
            ToggleControlsSection();
        else if (code == key::kM)
            toggleReport();
        else if (deriveRange())
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
        case key::kB:
            markSpan();
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
    if (drag_.spanFrom && !isDragging())
        marks_.drawBand(insidePicture(*drag_.spanFrom), insidePicture(frequency));
    pointAt(frequency, channels::kInvalid);
}

/// The box of a drag, by keys: its first end at the cursor, then the zoom to what lies between that end and the cursor.
void Bandscope::markSpan() {
    const double cursor = cursorOrCenter();
    if (!drag_.spanFrom) {
        drag_.spanFrom = cursor;
        cursorTo(cursor);
        return;
    }
    const double from = *drag_.spanFrom;
    dropSpan();
    zoomTo(std::min(from, cursor), std::max(from, cursor));
}

bool Bandscope::dropSpan() {
    if (!drag_.spanFrom)
        return false;
    drag_.spanFrom.reset();
    if (!isDragging())
        marks_.takeBandOff();
    return true;
}

void Bandscope::cursorToChannel(double side) {
    const double from = cursorOrCenter();
    std::optional<double> nearest;
    for (const channels::ChannelKind kind : {channels::ChannelKind::TX, channels::ChannelKind::RX}) {
        for (std::int32_t i = 0; const channels::FreqSlotRef channel = store_.at(kind, i); ++i) {
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
    ShowMouseInfo(channels::kInvalid, channels::kInvalid);
    if (hasUsableRange() && ui_.chkShowMouse.value() != 0)
        pointAt(cursorOrCenter(), channels::kInvalid);
}

}  // namespace kv::control
