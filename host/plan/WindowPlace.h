// Where the window was when it was closed, and where it is opened again.
#pragma once

#include <vector>

namespace kv::host {

/// In pixels; right and bottom are outside.
struct ScreenRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    [[nodiscard]] int width() const noexcept { return right - left; }
    [[nodiscard]] int height() const noexcept { return bottom - top; }
    bool operator==(const ScreenRect&) const = default;
};

struct WindowPlace {
    ScreenRect rect;  ///< when the window is neither minimized nor maximized
    bool maximized = false;

    bool operator==(const WindowPlace&) const = default;
};

/// The rectangle itself if the user can reach the title bar in one of the work areas, of which there is at least one.
/// Otherwise it is moved into the nearest one, and made smaller if it does not fit there. `titleHeight` is that of the
/// title bar.
[[nodiscard]] ScreenRect movedOntoScreen(const ScreenRect& rect, const std::vector<ScreenRect>& workAreas,
                                         int titleHeight);

}  // namespace kv::host
