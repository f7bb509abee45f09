// Monitors of any resolution, for a module that asks the system for them.
#pragma once

#include <windows.h>

namespace kv::test {

/// During its lifetime the module under test gets the resolution of a window from here. One at a time.
class FakeDpi {
  public:
    explicit FakeDpi(UINT dpi);
    ~FakeDpi();
    FakeDpi(const FakeDpi&) = delete;
    FakeDpi& operator=(const FakeDpi&) = delete;

    /// The resolution of every window from now on; 0: the system does not have the function.
    static void set(UINT dpi) noexcept;

  private:
    FARPROC* slot_;
    FARPROC before_ = nullptr;
};

}  // namespace kv::test
