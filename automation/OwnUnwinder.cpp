// 32 bit: the module finds its own exception handlers, independent of other loaded modules.
//
// The compiler's start code registers the tables of a module's exception handlers with libgcc_s_dw2-1.dll if a host has
// loaded that library, and otherwise with the copy that is linked into the module. The module's own code always throws
// through its own copy. In such a host, it would find no handler, and the first error would end the process. The linker
// therefore gives the start code this look-up instead of GetModuleHandleA (see CMakeLists.txt). It does not find
// libgcc, so that no other module is called or released when this one is unloaded.
#if defined(__i386__)

#include <windows.h>

#include <string_view>

namespace {

HMODULE WINAPI handleOfOthers(LPCSTR name) {
    if (name && std::string_view(name).starts_with("libgcc_s"))
        return nullptr;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, name, &module);
    return module;
}

}  // namespace

extern "C" {
// The name that the linker's option --wrap gives to the import.
extern HMODULE(WINAPI* const kvWrappedModuleLookup)(LPCSTR) __asm__("___wrap__imp__GetModuleHandleA@4");
HMODULE(WINAPI* const kvWrappedModuleLookup)(LPCSTR) = &handleOfOthers;
}

#endif
