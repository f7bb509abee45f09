// The resolution that a window is shown at.
#pragma once

#include <windows.h>

namespace kv::win32 {

/// The messages by which the system tells of another resolution: a top-level window, and the windows inside it once the
/// top-level window has followed.
inline constexpr UINT kDpiChanged = 0x02E0;
inline constexpr UINT kDpiChangedAfterParent = 0x02E3;

/// Dots per inch of the window's monitor, as far as its program follows monitors; `system`, the resolution of the whole
/// screen, for null and where the system has only that one.
[[nodiscard]] int windowDpi(HWND window, int system) noexcept;

}  // namespace kv::win32
