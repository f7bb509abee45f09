// 32 bit: the module finds its own exception handlers whatever else is loaded.
//
// The compiler's start code announces the tables of a module's exception handlers to libgcc_s_dw2-1.dll when a host has
// that library loaded, and otherwise to the copy that is linked into the module. The module's own code always throws
// through its own copy. In such a host it would find no handler, and the first error would end the process. The linker
// therefore gives the start code this look-up instead of GetModuleHandleA (see CMakeLists.txt). It finds no libgcc, and
// nothing of another module has to be called or released when this one is unloaded.
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
