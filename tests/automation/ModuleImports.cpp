#include "tests/automation/ModuleImports.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/automation/Module.h"

namespace kv::test {

FARPROC* importOf(const char* name) {
    auto* const base = reinterpret_cast<BYTE*>(module());
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

void setImport(FARPROC* slot, FARPROC value) {
    DWORD protection = 0;
    EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection));
    *slot = value;
    EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, protection, &protection));
}

}  // namespace kv::test
