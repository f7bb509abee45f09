// Processing of pending events while a drawing runs that the host requested by a method call.
#pragma once

namespace kv::win32 {

/// Handles the messages that are pending for the windows of this thread. Keyboard messages stay queued, because only
/// the host's own loop knows its accelerators and dialogs. Messages without a window are kept and posted again at the
/// end, because only the host's loop can take them. WM_QUIT stays queued and ends this loop.
void runPendingEvents();

}  // namespace kv::win32
