// The resolution at which a window is shown.
#pragma once

#include <windows.h>

namespace kv::win32 {

/// The messages with which the system reports another resolution: to a top-level window, and to the windows inside it
/// after the top-level window has changed.
inline constexpr UINT kDpiChanged = 0x02E0;
inline constexpr UINT kDpiChangedAfterParent = 0x02E3;

/// Dots per inch of the window's monitor, if its program supports different monitors. For null, and on systems with one
/// resolution only, `system`, the resolution of the whole screen.
[[nodiscard]] int windowDpi(HWND window, int system) noexcept;

}  // namespace kv::win32
