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

/// The window of one knob. It passes on the user's input and shows what the knob paints. It may be destroyed at any
/// time, also by the knob's own events.
class KnobWindow final : public formenv::Peer {
  public:
    /// Creates the window inside `parent`; null if the system cannot create it. `owner` is kept alive during every
    /// message, because an event may make the host release the control. It may be null.
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

    /// Paints a knob without a window, with its upper left corner at `origin` and `size` pixels large.
    static void paint(turndial::KnobBase& knob, WinPlatform& platform, HDC dc, POINT origin, raster::PixelSize size);

  private:
    KnobWindow(turndial::KnobBase& knob, WinPlatform& platform, IUnknown* owner);
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
    /// Handles the mouse, the wheel, keys and the focus; false for all other messages. This object may not exist
    /// afterwards.
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
    bool tracking_ = false;  ///< the system will report when the pointer leaves
};

}  // namespace kv::win32
