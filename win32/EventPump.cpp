#include "win32/EventPump.h"

#include "win32/MessageLimits.h"

namespace kv::win32 {

namespace {

/// The next message that is neither user input nor a posted keyboard message.
bool takeNext(MSG& message, HWND window) {
    constexpr UINT kNoInput = PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_PAINT | PM_QS_SENDMESSAGE;
    // The upper range is first, because WM_PAINT, in the lower one, must be handled after posted messages.
    return PeekMessageW(&message, window, WM_KEYLAST + 1, kLastMessage, kNoInput) ||
           PeekMessageW(&message, window, 0, WM_KEYFIRST - 1, kNoInput);
}

}  // namespace

void runWindowEvents(HWND window) {
    // A null window would mean all windows of the thread.
    if (!window)
        return;
    MSG message{};
    for (int i = 0; i < kMostMessages && IsWindow(window) && takeNext(message, window); ++i) {
        if (message.message == WM_QUIT) {
            // Filters do not hold this message back. It ends the host's own loop.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        DispatchMessageW(&message);
    }
}

}  // namespace kv::win32
