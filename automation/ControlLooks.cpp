// Changes that the pictures follow besides the host's calls: system colors and the resolution of the monitor.
#include "automation/BandscopeControl.h"
#include "win32/WindowDpi.h"

namespace kv::automation {

BandscopeControl::SystemColors BandscopeControl::presentColors() noexcept {
    SystemColors colors{};
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = GetSysColor(static_cast<int>(i));
    return colors;
}

/// Some containers do not pass on the system's notifications about colors and monitors, but all windows are repainted
/// then. A drawing processes pending events, which must not happen inside a paint or a container's message, so it is
/// posted.
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

/// The windows follow at once, so that they have their new resolution when the container sets the new size.
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
        // A display that the host has cleared stays empty.
        if (parts.picSpectrum.isBlank() && parts.picUnits.isBlank()) {
            parts.picSpectrum.cls();
            parts.picUnits.cls();
        } else {
            scope_->JustDrawIt();
        }
    }));
}

}  // namespace kv::automation
