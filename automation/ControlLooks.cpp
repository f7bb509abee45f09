// What the control's pictures depend on besides the host's calls: the system's colors, and the resolution of the
// monitor.
#include "automation/BandscopeControl.h"
#include "win32/WindowDpi.h"

namespace kv::automation {

BandscopeControl::SystemColors BandscopeControl::presentColors() noexcept {
    SystemColors colors{};
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = GetSysColor(static_cast<int>(i));
    return colors;
}

/// Not every container passes on what the system tells of its colors and of monitors, but every window is painted anew
/// then. A drawing lets events run, which must not happen inside a paint or a container's message: it is posted.
void BandscopeControl::noteLooks() noexcept {
    const HWND root = rootWindow();
    if (!root || redrawPosted_ == root)
        return;
    const int dpi = platform_.dpi();
    if (presentColors() == colors_ && dpi == pictureDpi_ && win32::windowDpi(root, platform_.hostDpi()) == dpi)
        return;
    if (PostMessageW(root, kRedraw, 0, 0))
        redrawPosted_ = root;
}

/// The windows follow at once, so that the container finds them at their new resolution when it sets the new size.
void BandscopeControl::followDpi() noexcept {
    const int dpi = win32::windowDpi(rootWindow(), platform_.hostDpi());
    if (dpi == platform_.dpi())
        return;
    static_cast<void>(com::firewall(controlErrors(IID_IOleObject), [&] { windows_->followDpi(dpi); }));
    noteLooks();
}

void BandscopeControl::redrawPictures() noexcept {
    redrawPosted_ = nullptr;
    followDpi();
    layOut();
    const SystemColors now = presentColors();
    if (now != colors_)
        RedrawWindow(rootWindow(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
    colors_ = now;
    pictureDpi_ = platform_.dpi();
    static_cast<void>(member([&] {
        control::Children& parts = scope_->children();
        // A display that the host has cleared stays clear.
        if (parts.picSpectrum.isBlank() && parts.picUnits.isBlank()) {
            parts.picSpectrum.cls();
            parts.picUnits.cls();
        } else {
            scope_->JustDrawIt();
        }
    }));
}

}  // namespace kv::automation
