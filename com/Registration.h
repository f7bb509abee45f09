// Registration of a module from a table of its keys and values, and its complete removal.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kv::com {

/// One key below Software\Classes, and a value in it.
struct RegistryEntry {
    std::wstring key;
    bool hasValue = false;  ///< false: only the key is written
    std::wstring value;
    const wchar_t* valueName = nullptr;  ///< null: the default value
};

/// A ProgID of a class.
struct ProgramName {
    std::wstring name;
    std::wstring current;  ///< the versioned name that this one refers to; empty for the versioned name itself
    std::vector<RegistryEntry> keys;  ///< parents before children
};

struct ClassRegistration {
    std::wstring clsid;                     ///< in braces
    std::vector<RegistryEntry> classKeys;   ///< below CLSID, separate for each architecture; parents before children
    std::vector<ProgramName> programNames;  ///< shared by the modules of both architectures
};

/// One interface that the type library describes.
struct InterfaceRegistration {
    std::wstring key;
    std::vector<RegistryEntry> keys;  ///< separate for each architecture
};

struct TypeLibRegistration {
    std::wstring id;                        ///< in braces
    std::wstring version;                   ///< of the library, such as "1.0"
    std::vector<RegistryEntry> sharedKeys;  ///< of this version of the library, for both architectures
    RegistryEntry fileKey;                  ///< with the path of this architecture's file
    std::wstring otherFileKey;              ///< the key with the path of the other architecture's file
    std::vector<InterfaceRegistration> interfaces;
};

/// Everything that a module registers.
struct ModuleRegistration {
    std::vector<ClassRegistration> classes;
    TypeLibRegistration library;
};

/// Returns what a module with its file at `modulePath` registers. May throw std::bad_alloc.
using RegistrationTable = ModuleRegistration (*)(const std::wstring& modulePath);

enum class RegistrationScope {
    machine,  ///< HKEY_LOCAL_MACHINE\Software\Classes
    user,     ///< HKEY_CURRENT_USER\Software\Classes
};

/// The machine's scope when this process may write there, the user's otherwise.
[[nodiscard]] RegistrationScope allowedScope() noexcept;

/// True if a class in the table is registered in the scope with this copy of the module.
[[nodiscard]] bool isRegistered(RegistrationScope scope, RegistrationTable table) noexcept;

/// Writes all entries of the table. After a failure, none of them remain.
[[nodiscard]] HRESULT registerModule(RegistrationScope scope, RegistrationTable table) noexcept;
/// Removes the entries that registerModule() wrote and no others. Succeeds if there are none. Does not change the
/// entries of another copy of the module.
[[nodiscard]] HRESULT unregisterModule(RegistrationScope scope, RegistrationTable table) noexcept;

/// A GUID in braces, as it is written in the registry.
[[nodiscard]] std::wstring guidText(REFGUID guid);

}  // namespace kv::com
