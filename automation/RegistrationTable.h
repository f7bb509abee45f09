// The keys and values that registration writes.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kv::automation {

/// One key below Software\Classes, and the default value it gets.
struct RegistryEntry {
    std::wstring key;
    bool hasValue = false;  ///< false: the key itself says it all
    std::wstring value;
    const wchar_t* valueName = nullptr;  ///< null: the default value
};

/// A name that programs know the class by.
struct ProgramName {
    std::wstring name;
    std::wstring current;             ///< the versioned name that this one leads to; empty for that itself
    std::vector<RegistryEntry> keys;  ///< parents before children
};

struct ClassRegistration {
    std::wstring clsid;                     ///< in braces
    std::vector<RegistryEntry> classKeys;   ///< below CLSID, of this architecture's own; parents before children
    std::vector<ProgramName> programNames;  ///< both architectures' modules share them
};

/// One interface that the type library describes.
struct InterfaceRegistration {
    std::wstring key;
    std::vector<RegistryEntry> keys;  ///< of this architecture's own
};

struct TypeLibRegistration {
    std::wstring id;                        ///< in braces
    std::vector<RegistryEntry> sharedKeys;  ///< of this version of the library, for both architectures
    RegistryEntry fileKey;                  ///< where this architecture's file is
    std::wstring otherFileKey;              ///< and the key that says where the other one's is
    std::vector<InterfaceRegistration> interfaces;
};

/// The version of the type library and of the classes.
inline constexpr wchar_t kLibraryVersion[] = L"1.0";

/// All classes, for a module file at `modulePath`. Throws std::bad_alloc.
[[nodiscard]] std::vector<ClassRegistration> registrationTable(const std::wstring& modulePath);

/// The type library in the module file. Throws std::bad_alloc.
[[nodiscard]] TypeLibRegistration typeLibTable(const std::wstring& modulePath);

/// A GUID in braces, as the registry has it.
[[nodiscard]] std::wstring guidText(REFGUID guid);

}  // namespace kv::automation
