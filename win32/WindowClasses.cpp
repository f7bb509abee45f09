#include "win32/WindowClasses.h"

namespace kv::win32 {

HINSTANCE ownModule() noexcept {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&kTreeClasses), &module);
    return module;
}

bool registerWindowClasses(std::span<const wchar_t* const> names, WNDPROC procedure, UINT style) noexcept {
    WNDCLASSEXW info{};
    info.cbSize = sizeof info;
    info.style = style;
    info.lpfnWndProc = procedure;
    info.hInstance = ownModule();
    info.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    for (const wchar_t* name : names) {
        info.lpszClassName = name;
        if (!RegisterClassExW(&info) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS)
            return false;
    }
    return true;
}

void unregisterWindowClasses() noexcept {
    for (const wchar_t* name : kTreeClasses)
        UnregisterClassW(name, ownModule());
    for (const wchar_t* name : kKnobClasses)
        UnregisterClassW(name, ownModule());
}

}  // namespace kv::win32
