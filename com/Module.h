// The module itself: its handle, its path, and what keeps it loaded.
#pragma once

#include <windows.h>

#include <string>

namespace kv::com {

/// The loaded module. It may be unloaded when no object exists and no host holds a server lock. There is one module in
/// each copy of this code, so the state is static.
class Module {
  public:
    /// Set once by DllMain.
    static void setInstance(HINSTANCE instance) noexcept;
    [[nodiscard]] static HINSTANCE instance() noexcept;
    /// Full path of the module file, of any length. Throws std::bad_alloc.
    [[nodiscard]] static std::wstring path();

    static void addObject() noexcept;
    static void releaseObject() noexcept;
    static void addLock() noexcept;
    static void releaseLock() noexcept;
    /// True when nothing keeps the module loaded.
    [[nodiscard]] static bool isIdle() noexcept;
};

/// A member of every object that hosts can hold: it keeps the module loaded as long as the object exists.
class ModuleRef {
  public:
    ModuleRef() noexcept { Module::addObject(); }
    ModuleRef(const ModuleRef&) noexcept { Module::addObject(); }
    ModuleRef& operator=(const ModuleRef&) noexcept = default;
    ~ModuleRef() { Module::releaseObject(); }
};

}  // namespace kv::com
