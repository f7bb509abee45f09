#include "win32/Clipboard.h"

#include "util/RuntimeError.h"

namespace kv::win32 {

namespace {

constexpr DWORD kPatience = 500;  // milliseconds, while another program has the clipboard open
constexpr DWORD kPause = 20;

/// Waits while this thread's windows still handle messages that other threads send: the program that has opened the
/// clipboard may be waiting for their answers. Input and posted messages stay in the queue.
void waitForClipboard() {
    const ULONGLONG end = GetTickCount64() + kPause;
    for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

}  // namespace

OpenedClipboard::OpenedClipboard()
    : owner_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
    const ULONGLONG end = GetTickCount64() + kPatience;
    while (!OpenClipboard(owner_)) {
        if (GetTickCount64() >= end) {
            DestroyWindow(owner_);
            throw util::RuntimeError(util::error_number::kCannotOpenClipboard);
        }
        waitForClipboard();
    }
}

OpenedClipboard::~OpenedClipboard() {
    CloseClipboard();
    DestroyWindow(owner_);
}

}  // namespace kv::win32
