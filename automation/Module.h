// The module itself: its handle and path, what keeps it loaded, and the classes it makes.
#pragma once

#include <windows.h>

#include <string>

namespace kv::automation {

/// The loaded module. It may be unloaded when no object lives and no host holds a server lock.
class Module {
  public:
    /// Set once by DllMain.
    static void setInstance(HINSTANCE instance) noexcept;
    [[nodiscard]] static HINSTANCE instance() noexcept;
    /// Full path of the module file, however long. Throws std::bad_alloc.
    [[nodiscard]] static std::wstring path();

    static void addObject() noexcept;
    static void releaseObject() noexcept;
    static void addLock() noexcept;
    static void releaseLock() noexcept;
    /// True when nothing keeps the module loaded.
    [[nodiscard]] static bool isIdle() noexcept;
};

/// A member that every object handed to a host holds: the module stays loaded as long as the object lives.
class ModuleRef {
  public:
    ModuleRef() noexcept { Module::addObject(); }
    ModuleRef(const ModuleRef&) noexcept { Module::addObject(); }
    ModuleRef& operator=(const ModuleRef&) noexcept = default;
    ~ModuleRef() { Module::releaseObject(); }
};

/// Makes an object of a class and hands out the interface asked for; `*object` is NULL after a failure.
using CreateFunction = HRESULT (*)(REFIID iid, void** object);

/// Makes a kvBandscope control.
HRESULT createBandscopeControl(REFIID iid, void** object);
/// Makes a FreqSlot channel record.
HRESULT createFreqSlot(REFIID iid, void** object);

}  // namespace kv::automation
