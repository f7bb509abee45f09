// The keys that change the meaning of others.
#pragma once

#include <windows.h>

namespace kv::win32 {

[[nodiscard]] inline bool isDown(int key) noexcept {
    return GetKeyState(key) < 0;
}

/// The shift state of key events: 1 Shift, 2 Ctrl, 4 Alt, added up.
[[nodiscard]] inline int shiftState() noexcept {
    return (isDown(VK_SHIFT) ? 1 : 0) | (isDown(VK_CONTROL) ? 2 : 0) | (isDown(VK_MENU) ? 4 : 0);
}

}  // namespace kv::win32
