// Placing data on the clipboard.
#pragma once

#include <windows.h>

namespace kv::win32 {

/// The clipboard, opened for the duration of a block by a hidden window, because the system rejects data without an
/// owner. Waits a moment if another program has opened it, then throws RuntimeError 521.
class OpenedClipboard {
  public:
    OpenedClipboard();
    ~OpenedClipboard();
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

  private:
    HWND owner_;
};

}  // namespace kv::win32
