// Closes the message boxes of its thread with OK, and keeps their texts.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace kv::test {

struct SeenBox {
    std::wstring title;
    std::wstring text;
    std::vector<std::wstring> buttons;
    HWND owner = nullptr;
};

/// During its lifetime every message box of the thread is closed with OK as soon as it is shown. One at a time in a
/// thread.
class MessageBoxes {
  public:
    MessageBoxes();
    ~MessageBoxes();
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;

    [[nodiscard]] const std::vector<SeenBox>& seen() const noexcept { return seen_; }
    /// Called while a box is open.
    std::function<void()> onBox;

  private:
    static LRESULT CALLBACK hook(int code, WPARAM window, LPARAM details);
    void answer(HWND box);

    HHOOK hook_;
    HWND last_ = nullptr;
    std::vector<SeenBox> seen_;
};

/// The text of a window of this process.
[[nodiscard]] std::wstring windowText(HWND window);
[[nodiscard]] std::wstring windowClass(HWND window);
/// The visible text window of a control of this thread; null when there is none.
[[nodiscard]] HWND textWindow();

}  // namespace kv::test
