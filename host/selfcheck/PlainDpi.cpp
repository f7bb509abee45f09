#include "host/selfcheck/PlainDpi.h"

namespace kv::host {

namespace {

// The values of DPI_AWARENESS_CONTEXT, which headers for older systems do not have.
const HANDLE kUnaware = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));
const HANDLE kEachMonitor = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-4));

HANDLE setContext(HANDLE context) {
    using SetContext = HANDLE(WINAPI*)(HANDLE);
    const auto set = reinterpret_cast<SetContext>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetThreadDpiAwarenessContext")));
    return set != nullptr ? set(context) : nullptr;
}

}  // namespace

PlainDpi::PlainDpi() : before_(setContext(kUnaware)) {}

PlainDpi::~PlainDpi() {
    if (before_ != nullptr) {
        setContext(before_);
    }
}

int screenDpi() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
}

HANDLE useMonitorDpi(HANDLE context) {
    return setContext(context != nullptr ? context : kEachMonitor);
}

}  // namespace kv::host
