// Limits for those who go through waiting messages.
#pragma once

#include <windows.h>

namespace kv::win32 {

/// More than any usual burst of messages. A window that never stops posting must not delay a drawing or the container
/// forever.
inline constexpr int kMostMessages = 10000;
/// The end of a range of messages that has no other end.
inline constexpr UINT kLastMessage = 0xFFFFFFFF;

}  // namespace kv::win32
