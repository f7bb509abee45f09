// What screen readers are told about windows that are not system controls.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "formenv/Widget.h"

namespace kv::win32 {

/// The accessible object of a widget. Screen readers may keep it longer than the widget exists; its methods then report
/// that it is disconnected.
class Speech {
  public:
    explicit Speech(formenv::Widget& widget);
    ~Speech();
    Speech(const Speech&) = delete;
    Speech& operator=(const Speech&) = delete;

    /// Answers WM_GETOBJECT. Nothing leaves the answer to the system.
    [[nodiscard]] std::optional<LRESULT> answer(HWND window, WPARAM wParam, LPARAM lParam) const;
    /// Notifies screen readers that the value of a window has changed.
    static void tellValue(HWND window) noexcept;

  private:
    std::shared_ptr<formenv::Widget*> widget_;
};

/// The number of objects that screen readers hold. The module must stay loaded while there are any.
[[nodiscard]] long accessibleObjects() noexcept;

}  // namespace kv::win32
