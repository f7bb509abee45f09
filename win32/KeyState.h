// Keys that are down when a message is handled.
#pragma once

#include <windows.h>

namespace kv::win32 {

[[nodiscard]] inline bool isDown(int key) noexcept {
    return GetKeyState(key) < 0;
}

/// The shift state of key events, with the numbers of KEYMODIFIERS added up: 1 Shift, 2 Ctrl, 4 Alt.
[[nodiscard]] inline int shiftState() noexcept {
    return (isDown(VK_SHIFT) ? 1 : 0) | (isDown(VK_CONTROL) ? 2 : 0) | (isDown(VK_MENU) ? 4 : 0);
}

}  // namespace kv::win32
