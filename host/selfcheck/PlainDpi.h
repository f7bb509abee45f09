// The resolution at which a thread works.
#pragma once

#include <windows.h>

namespace kv::host {

/// While it exists, windows and device contexts of this thread have 96 dpi on every screen, where the system can do
/// that (Windows 10 version 1607 and later). The pictures of a control that is created meanwhile do not depend on the
/// screen.
class PlainDpi {
  public:
    PlainDpi();
    PlainDpi(const PlainDpi&) = delete;
    PlainDpi& operator=(const PlainDpi&) = delete;
    ~PlainDpi();

  private:
    HANDLE before_ = nullptr;
};

/// The resolution that the system reports to this thread.
[[nodiscard]] int screenDpi();

/// Makes the thread see each monitor's own resolution, or the one of `context` again, which is a value that an earlier
/// call has returned. Null if the system has one resolution only.
HANDLE useMonitorDpi(HANDLE context = nullptr);

}  // namespace kv::host
