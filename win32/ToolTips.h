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

    /// Sets the tooltip of a window; an empty text removes it. `root` owns the tooltip window and is used at the first
    /// call with a text. If the system has no tooltips, there are none.
    void set(HWND root, HWND window, const std::wstring& text);

    /// Removes all tooltips. May be called more than once.
    void close() noexcept;

  private:
    bool open(HWND root);

    HWND tips_ = nullptr;
    std::set<HWND> tools_;
};

}  // namespace kv::win32
