// Code that runs when a window of the control handles a message, like the hooks and subclasses of programs.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace kv::test {

/// The window must not be hooked twice. It may be destroyed before the hook and inside its action.
class WindowHook {
  public:
    static constexpr UINT kMessage = WM_APP + 0x222;

    /// `action` runs at each `message`, which the window does not get then.
    WindowHook(HWND window, std::function<void()> action, UINT message = kMessage)
        : window_(window), action_(std::move(action)), message_(message) {
        SetPropW(window_, kName, this);
        before_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowHook::procedure)));
    }
    ~WindowHook() {
        if (!IsWindow(window_))
            return;
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
        RemovePropW(window_, kName);
    }
    WindowHook(const WindowHook&) = delete;
    WindowHook& operator=(const WindowHook&) = delete;

    void post() const { PostMessageW(window_, kMessage, 0, 0); }

  private:
    static constexpr const wchar_t* kName = L"kvTestHook";

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        const auto* hook = static_cast<const WindowHook*>(GetPropW(window, kName));
        const WNDPROC before = hook->before_;
        if (message == hook->message_) {
            hook->action_();
            return 0;
        }
        if (message == WM_NCDESTROY)
            RemovePropW(window, kName);
        return CallWindowProcW(before, window, message, wParam, lParam);
    }

    HWND window_;
    std::function<void()> action_;
    UINT message_;
    WNDPROC before_ = nullptr;
};

}  // namespace kv::test
