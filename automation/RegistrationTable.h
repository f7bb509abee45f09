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

struct ClassRegistration {
    std::wstring clsid;                      ///< in braces
    std::vector<RegistryEntry> classKeys;    ///< below CLSID, of this architecture's own; parents before children
    std::vector<RegistryEntry> programKeys;  ///< names that both architectures' modules share
};

/// All classes, for a module file at `modulePath`. Throws std::bad_alloc.
[[nodiscard]] std::vector<ClassRegistration> registrationTable(const std::wstring& modulePath);

/// A GUID in braces, as the registry has it.
[[nodiscard]] std::wstring guidText(REFGUID guid);

}  // namespace kv::automation
