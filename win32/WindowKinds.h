// The kinds of windows, for the list in WindowKind.cpp.
#pragma once

#include "win32/WindowKind.h"

namespace kv::win32 {

// RootKinds.cpp
[[nodiscard]] const WindowKind& userControlKind() noexcept;
[[nodiscard]] const WindowKind& formKind() noexcept;
// FrameKind.cpp
[[nodiscard]] const WindowKind& frameKind() noexcept;
// PictureKind.cpp
[[nodiscard]] const WindowKind& pictureKind() noexcept;
// LabelKind.cpp
[[nodiscard]] const WindowKind& labelKind() noexcept;
// ButtonKinds.cpp
[[nodiscard]] const WindowKind& buttonKind() noexcept;
[[nodiscard]] const WindowKind& checkBoxKind() noexcept;
// ComboBoxKind.cpp
[[nodiscard]] const WindowKind& comboBoxKind() noexcept;
// TextBoxKind.cpp
[[nodiscard]] const WindowKind& textBoxKind() noexcept;
// KnobKind.cpp
[[nodiscard]] const WindowKind& knobKind() noexcept;

}  // namespace kv::win32
