#include "tests/automation/FakeDpi.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/automation/Module.h"

namespace kv::test {

namespace {

UINT present = 0;

UINT WINAPI dpiForWindow(HWND window) {
    return IsWindow(window) ? present : 0;
}

FARPROC WINAPI lookUp(HMODULE module, LPCSTR name) {
    // Small numbers are ordinals.
    if (reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && std::strcmp(name, "GetDpiForWindow") == 0)
        return present ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&dpiForWindow)) : nullptr;
    return GetProcAddress(module, name);
}

/// Where the module under test keeps the address of an imported function.
FARPROC* importOf(HMODULE module, const char* name) {
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
         library->Name; ++library) {
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* addresses = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; names->u1.AddressOfData; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal))
                continue;
            const auto* found = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(found->Name), name) == 0)
                return reinterpret_cast<FARPROC*>(&addresses->u1.Function);
        }
    }
    return nullptr;
}

void store(FARPROC* slot, FARPROC value) {
    DWORD protection = 0;
    EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection));
    *slot = value;
    EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, protection, &protection));
}

}  // namespace

FakeDpi::FakeDpi(UINT dpi) : slot_(importOf(module(), "GetProcAddress")) {
    EXPECT_TRUE(slot_);
    if (!slot_)
        return;
    before_ = *slot_;
    set(dpi);
    store(slot_, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&lookUp)));
}

FakeDpi::~FakeDpi() {
    if (slot_)
        store(slot_, before_);
}

void FakeDpi::set(UINT dpi) noexcept {
    present = dpi;
}

}  // namespace kv::test
