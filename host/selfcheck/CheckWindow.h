// A window of the self-check with a control in it.
#pragma once

#include <memory>

#include "host/Spectrum.h"
#include "host/selfcheck/Sample.h"

namespace kv::host {

/// A top-level window; the control in it fills its client area, and shows the sample plan.
class CheckWindow final : public ControlEvents {
  public:
    explicit CheckWindow(Context& context);
    CheckWindow(const CheckWindow&) = delete;
    CheckWindow& operator=(const CheckWindow&) = delete;
    ~CheckWindow();

    [[nodiscard]] HWND window() const noexcept { return window_; }
    [[nodiscard]] Spectrum& spectrum() const noexcept { return *spectrum_; }
    [[nodiscard]] _kvBandscope& control() const noexcept { return spectrum_->control(); }
    [[nodiscard]] HWND controlWindow() const;
    /// The window of the control that contains the channels.
    [[nodiscard]] HWND picture() const;
    void resize(int width, int height);
    [[nodiscard]] Pixels saved() const { return savedPicture(context_, control()); }
    /// How often the control has reported another range.
    [[nodiscard]] int rangeChanges() const noexcept { return rangeChanges_; }

    void gridRangeChosen() override {}
    void heightChanged(int) override {}
    void rangeChanged(double, double) override { ++rangeChanges_; }

  private:
    Context& context_;
    HWND window_;
    std::unique_ptr<Spectrum> spectrum_;
    int rangeChanges_ = 0;
};

/// A top-level window of this program, not shown yet. The caller destroys it.
[[nodiscard]] HWND newTopWindow();

/// Handles messages for a time, with `spectrum` first if it is given.
void runMessages(DWORD milliseconds, Spectrum* spectrum = nullptr);

/// The pixels of a window's client area as they are on the screen.
[[nodiscard]] Pixels shownPixels(HWND window);

/// The part of a picture at a place.
[[nodiscard]] Pixels cut(const Pixels& picture, POINT at, int width, int height);

/// The window's place in its parent's client area.
[[nodiscard]] RECT placeInParent(HWND window);

/// Pixels of the first picture that differ, as a text: "0 of 1200 pixels differ".
[[nodiscard]] std::wstring differenceText(std::size_t different, const Pixels& picture);

}  // namespace kv::host
