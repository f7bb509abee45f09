// Real windows for the knobs, of the classes "tdKnob" and "tdKnMover", with the knob's caption as their text.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>

#include "formenv/Widget.h"
#include "turndial/Knob.h"
#include "win32/Accessible.h"
#include "win32/WinPlatform.h"

namespace kv::win32 {

/// The window of one knob: it passes on what the user does, and paints what the knob paints. It may be destroyed at any
/// time, by the knob's own events too.
class KnobWindow final : public formenv::Peer {
  public:
    /// Makes the window inside `parent`; null when the system refuses. `owner` is held through every message, because
    /// an event may make the host let go of the control; it may be null.
    [[nodiscard]] static std::unique_ptr<KnobWindow> create(turndial::KnobBase& knob, WinPlatform& platform,
                                                            HWND parent, IUnknown* owner);
    ~KnobWindow() override;
    KnobWindow(const KnobWindow&) = delete;
    KnobWindow& operator=(const KnobWindow&) = delete;

    void changed(formenv::Change what) override;
    /// The platform has another resolution.
    void rescale();
    [[nodiscard]] turndial::KnobBase& knob() noexcept { return knob_; }
    /// nullptr when the system has destroyed it.
    [[nodiscard]] HWND window() const noexcept { return window_; }

    /// Paints a knob without a window, its upper left corner at `origin`, `size` pixels large.
    static void paint(turndial::KnobBase& knob, WinPlatform& platform, HDC dc, POINT origin, raster::PixelSize size);

    /// Takes the window classes back when the module goes.
    static void unregisterClasses() noexcept;

  private:
    KnobWindow(turndial::KnobBase& knob, WinPlatform& platform, IUnknown* owner);
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    /// The mouse, the wheel, keys and focus; false for any other message. This object may be gone afterwards.
    bool handleInput(UINT message, WPARAM wParam, LPARAM lParam);
    bool handleMouse(UINT message, LPARAM lParam);
    static void followHold(HWND window, const turndial::KnobBase& knob);
    [[nodiscard]] LRESULT dialogCode(LPARAM lParam) const;
    void pointerMoved(HWND window);
    void invalidate();
    void paintTo(HDC dc);
    void place();

    turndial::KnobBase& knob_;
    WinPlatform& platform_;
    IUnknown* owner_;
    HWND window_ = nullptr;
    Speech speech_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    std::unique_ptr<formenv::Surface> surface_;
    turndial::KnobPalette paintedWith_;
    bool painted_ = false;
    bool tracking_ = false;  ///< the system will tell when the pointer leaves
};

}  // namespace kv::win32
