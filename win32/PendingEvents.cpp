#include "win32/PendingEvents.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "win32/MessageLimits.h"

namespace kv::win32 {

namespace {

/// PeekMessage's filter for messages without a window.
const HWND kThreadOnly = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));

bool isKey(UINT message) {
    return message >= WM_KEYFIRST && message <= WM_KEYLAST;
}

std::optional<MSG> peek(UINT first, UINT last) {
    MSG message{};
    return PeekMessageW(&message, nullptr, first, last, PM_NOREMOVE) ? std::optional(message) : std::nullopt;
}

/// The system generates WM_PAINT and WM_TIMER when nothing else is queued.
bool isMadeOnDemand(const MSG& message) {
    return message.message == WM_PAINT || message.message == WM_TIMER;
}

bool comesBefore(const MSG& a, const MSG& b) {
    if (isMadeOnDemand(a) != isMadeOnDemand(b))
        return isMadeOnDemand(b);
    return static_cast<LONG>(a.time - b.time) < 0;
}

/// True if a message may be waiting. Looking for a message that is not there would give the processor to other programs
/// first, and a drawing looks several times.
bool isAnyPending() {
    return HIWORD(GetQueueStatus(QS_ALLINPUT)) != 0;
}

/// The next message that is not a keyboard message. The ranges below and above the keyboard messages are used only
/// while a keyboard message is next, because a filter changes the order in which the system returns messages.
std::optional<MSG> nextMessage() {
    const std::optional<MSG> next = peek(0, 0);
    if (!next || !isKey(next->message))
        return next;
    const std::optional<MSG> below = peek(0, WM_KEYFIRST - 1);
    const std::optional<MSG> above = peek(WM_KEYLAST + 1, kLastMessage);
    if (!below || !above)
        return below ? below : above;
    // Message times are coarse. What ends a window (WM_CLOSE) is in the lower range and must follow what was posted at
    // the same time.
    return comesBefore(*below, *above) ? below : above;
}

/// Keeps messages without a window until the loop ends.
class ThreadMessages {
  public:
    ThreadMessages() = default;
    ~ThreadMessages() {
        // If the queue is full, the message is lost, as it would be for its sender.
        for (const MSG& message : kept_)
            PostThreadMessageW(GetCurrentThreadId(), message.message, message.wParam, message.lParam);
    }
    ThreadMessages(const ThreadMessages&) = delete;
    ThreadMessages& operator=(const ThreadMessages&) = delete;

    void keep(const MSG& message) {
        // A timer keeps running while the loop runs. As in the queue, one message represents all of its ticks.
        const bool isKnownTimer = message.message == WM_TIMER && std::any_of(kept_.begin(), kept_.end(), [&](auto& m) {
                                      return m.message == WM_TIMER && m.wParam == message.wParam;
                                  });
        if (!isKnownTimer)
            kept_.push_back(message);
    }

  private:
    std::vector<MSG> kept_;
};

}  // namespace

void runPendingEvents() {
    ThreadMessages forTheHost;
    for (int i = 0; i < kMostMessages; ++i) {
        const std::optional<MSG> next = isAnyPending() ? nextMessage() : std::nullopt;
        if (!next || next->message == WM_QUIT)
            return;
        MSG message{};
        const HWND window = next->hwnd ? next->hwnd : kThreadOnly;
        if (!PeekMessageW(&message, window, next->message, next->message, PM_REMOVE))
            continue;
        if (message.message == WM_QUIT) {
            // Filters do not hold this message back. It ends the host's own loop.
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        // A timer without a window may have a procedure, which any message loop calls.
        if (message.hwnd || (message.message == WM_TIMER && message.lParam))
            DispatchMessageW(&message);
        else
            forTheHost.keep(message);
    }
}

}  // namespace kv::win32
