// How many of the pending messages a control may handle while it works.
#pragma once

#include <windows.h>

#include <algorithm>

namespace kv::win32 {

enum class PumpScope {
    None,        ///< while the control is created
    OwnWindows,  ///< inside a call of the container, which expects no other part of the program to run meanwhile
    All,         ///< otherwise
};

class EventPump {
  public:
    /// Allows no more than `most` while it exists. An outer limit still holds: the outer caller still waits.
    class Limit {
      public:
        Limit(EventPump& pump, PumpScope most) noexcept : pump_(pump), before_(pump.scope_) {
            pump_.scope_ = std::min(before_, most);
        }
        ~Limit() { pump_.scope_ = before_; }
        Limit(const Limit&) = delete;
        Limit& operator=(const Limit&) = delete;

      private:
        EventPump& pump_;
        PumpScope before_;
    };

    [[nodiscard]] PumpScope scope() const noexcept { return scope_; }

  private:
    PumpScope scope_ = PumpScope::All;
};

/// Handles the pending messages of `window` and of the windows inside it; a null window has none. The user's input and
/// keyboard messages stay queued, because they belong to the host's own loop.
void runWindowEvents(HWND window);

}  // namespace kv::win32
