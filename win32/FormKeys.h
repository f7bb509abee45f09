// The keyboard in a form, independent of the message loop of the program.
#pragma once

#include <windows.h>

#include <optional>

#include "formenv/Form.h"

namespace kv::win32 {

/// Handles a keyboard message of a window of the form before that window gets it. The form gets every key first. Tab
/// moves the focus, Alt and an access key press the button with that key, Enter presses the button with the focus, and
/// Ctrl+A selects all of a text. Nothing leaves the message to the window.
[[nodiscard]] std::optional<LRESULT> formKey(formenv::Form& form, HWND window, UINT message, WPARAM wParam);

/// True if Tab can move the focus to the widget.
[[nodiscard]] bool isTabStop(const formenv::Widget& widget) noexcept;

/// True if `formKey` handles messages of this kind.
[[nodiscard]] bool isFormKey(UINT message) noexcept;

/// Sets the focus to `window` if it is a control that can take it now, otherwise to the first one that can.
void focusControl(formenv::Form& form, HWND window);

}  // namespace kv::win32
