#include "tests/automation/FakeDpi.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/automation/Module.h"
#include "tests/automation/ModuleImports.h"

namespace kv::test {

namespace {

UINT dpiOfWindows = 0;

UINT WINAPI dpiForWindow(HWND window) {
    return IsWindow(window) ? dpiOfWindows : 0;
}

FARPROC WINAPI lookUp(HMODULE module, LPCSTR name) {
    // Small numbers are ordinals.
    if (reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, "GetDpiForWindow") == 0)
        return dpiOfWindows ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&dpiForWindow)) : nullptr;
    return GetProcAddress(module, name);
}

}  // namespace

FakeDpi::FakeDpi(UINT dpi) : slot_(importOf("GetProcAddress")) {
    EXPECT_TRUE(slot_);
    if (!slot_)
        return;
    before_ = *slot_;
    set(dpi);
    setImport(slot_, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&lookUp)));
}

FakeDpi::~FakeDpi() {
    if (slot_)
        setImport(slot_, before_);
}

void FakeDpi::set(UINT dpi) noexcept {
    dpiOfWindows = dpi;
}

}  // namespace kv::test
