// What the keyboard does in a form, whatever message loop the program around it has.
#pragma once

#include <windows.h>

#include <optional>

#include "formenv/Form.h"

namespace kv::win32 {

/// A keyboard message of a window of the form, before that window sees it. The Tab key moves the focus, Alt and a
/// letter work the button with that access key, Enter presses the button with the focus, Ctrl+A selects all of a text;
/// the form hears every key first. Nothing leaves the message to the window.
[[nodiscard]] std::optional<LRESULT> formKey(formenv::Form& form, HWND window, UINT message, WPARAM wParam);

/// Is it one of the controls that the Tab key leads to?
[[nodiscard]] bool isTabStop(const formenv::Widget& widget) noexcept;

/// Is it one of the messages that `formKey` looks at?
[[nodiscard]] bool isFormKey(UINT message) noexcept;

/// The focus on `window` when it is a control that takes it now, else on the first one that does.
void focusControl(formenv::Form& form, HWND window);

}  // namespace kv::win32
