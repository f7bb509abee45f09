// The tooltips of a control's windows: one system tooltip for all of them.
#pragma once

#include <windows.h>

#include <set>
#include <string>

namespace kv::win32 {

class ToolTips {
  public:
    ToolTips() = default;
    ~ToolTips() { close(); }
    ToolTips(const ToolTips&) = delete;
    ToolTips& operator=(const ToolTips&) = delete;

    /// The tip of a window from now on; an empty text takes it away. `root` owns the tips and is given at the first
    /// call that has a text. Without tooltips in the system there are none.
    void set(HWND root, HWND window, const std::wstring& text);

    /// Ends all tips; safe more than once.
    void close() noexcept;

  private:
    bool open(HWND root);

    HWND tips_ = nullptr;
    std::set<HWND> tools_;
};

}  // namespace kv::win32
