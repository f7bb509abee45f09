// Colors that several tests draw with, each different from the control's own.
#pragma once

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

namespace kv::test {

inline constexpr OLE_COLOR kRed = RGB(255, 0, 0);
inline constexpr OLE_COLOR kBlue = RGB(0, 0, 255);
inline constexpr OLE_COLOR kBox = RGB(200, 30, 40);
inline constexpr OLE_COLOR kBack = RGB(250, 240, 230);
/// Of what the control is drawn on.
inline constexpr COLORREF kPaper = RGB(1, 2, 3);

}  // namespace kv::test
