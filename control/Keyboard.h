// The spectrum by keyboard, for everything that the mouse does there. Tab, Enter and Escape are the host's, except for
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
//   D                         the marker at the cursor; once more: no marker
//   Alt+Left, Alt+Right       the range before the last action; forward again
#pragma once

#include "channels/ChannelStore.h"
#include "control/DisplayRange.h"
#include "control/Navigation.h"
#include "control/Pointer.h"
#include "formenv/Widget.h"
#include "util/ErrHand.h"

namespace kv::control {

/// What the keys ask of the display. Frequencies in MHz.
class KeyActions {
  public:
    virtual ~KeyActions() = default;
    [[nodiscard]] virtual double CursorVal() const noexcept = 0;
    virtual void showCursorAt(double frequency) = 0;
    virtual void panTo(double center) = 0;
    virtual void zoomTo(double minimum, double maximum) = 0;
    virtual void showAllChannels() = 0;
    virtual void ToggleControlsSection() = 0;
    virtual void toggleMarker() = 0;
    virtual bool goBack() = 0;
    virtual bool goForward() = 0;
    /// Where a step of the cursor leads when channels near `to` attract it.
    [[nodiscard]] virtual double snappedAhead(double from, double to) = 0;
    virtual bool giveUpDrag() = 0;
};

class Keyboard {
  public:
    /// All have to live longer.
    Keyboard(KeyActions& actions, Pointer& pointer, Navigation& navigation, DisplayRange& range,
             const channels::ChannelStore& store, formenv::CheckBox& chkShowMouse, util::ErrorReporter& errors) noexcept
        : actions_(actions),
          pointer_(pointer),
          navigation_(navigation),
          range_(range),
          store_(store),
          chkShowMouse_(chkShowMouse),
          errors_(errors) {}
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// The spectrum uses this key, so that the host's form must not have it first.
    [[nodiscard]] bool wantsKey(int code) const noexcept;
    /// The same together with Alt.
    [[nodiscard]] static bool wantsAltKey(int code) noexcept;
    /// A key by its virtual code, with 1 for Shift, 2 for Ctrl and 4 for Alt; true when it has been dealt with.
    bool picSpectrum_KeyDown(int code, int shift);

  private:
    void steer(int code, int shift);
    double cursorOrCenter();
    void panTo(double center);
    void zoomAround(double span);
    void cursorTo(double frequency);
    void cursorToChannel(double side);
    void toggleReport();
    void markSpan();

    KeyActions& actions_;
    Pointer& pointer_;
    Navigation& navigation_;
    DisplayRange& range_;
    const channels::ChannelStore& store_;
    formenv::CheckBox& chkShowMouse_;
    util::ErrorReporter& errors_;
};

}  // namespace kv::control
