// What screen readers learn of the windows that are no system controls.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "formenv/Widget.h"

namespace kv::win32 {

/// A widget as its window's messages let screen readers see it. They may hold what they were given for longer than the
/// widget lives: it says then that it is disconnected.
class Speech {
  public:
    explicit Speech(formenv::Widget& widget);
    ~Speech();
    Speech(const Speech&) = delete;
    Speech& operator=(const Speech&) = delete;

    /// For WM_GETOBJECT; nothing leaves the answer to the system.
    [[nodiscard]] std::optional<LRESULT> answer(HWND window, WPARAM wParam, LPARAM lParam) const;
    /// Tells screen readers that the value of a window is another now.
    static void tellValue(HWND window) noexcept;

  private:
    std::shared_ptr<formenv::Widget*> widget_;
};

/// How many objects screen readers hold; their code must stay.
[[nodiscard]] long accessibleObjects() noexcept;

}  // namespace kv::win32
