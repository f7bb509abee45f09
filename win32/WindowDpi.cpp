#include "win32/WindowDpi.h"

namespace kv::win32 {

int windowDpi(HWND window, int system) noexcept {
    using GetDpi = UINT(WINAPI*)(HWND);
    // Windows before version 10 does not have this function.
    const HMODULE user = window ? GetModuleHandleW(L"user32.dll") : nullptr;
    const FARPROC found = user ? GetProcAddress(user, "GetDpiForWindow") : nullptr;
    const auto getDpi = reinterpret_cast<GetDpi>(reinterpret_cast<void*>(found));
    const UINT dpi = getDpi ? getDpi(window) : 0;
    return dpi > 0 ? static_cast<int>(dpi) : system;
}

}  // namespace kv::win32
