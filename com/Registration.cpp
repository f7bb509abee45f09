#include "com/Registration.h"

#include <objbase.h>

#include "com/Firewall.h"
#include "com/Module.h"
#include "com/RegistryKey.h"

namespace kv::com {

namespace {

constexpr bool kIs64Bit = sizeof(void*) == 8;
/// The registry as the other architecture's module sees it.
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const wchar_t* const kClassesPath = L"Software\\Classes";

HKEY hive(RegistrationScope scope) noexcept {
    return scope == RegistrationScope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

/// The path of an entry's key below the hive.
std::wstring pathOf(const std::wstring& key) {
    return std::wstring(kClassesPath) + L"\\" + key;
}

/// A value of an entry's key; empty if it does not exist. A null `name` is the default value.
std::wstring textAt(RegistrationScope scope, const std::wstring& key, const wchar_t* name = nullptr, REGSAM view = 0) {
    RegistryKey opened;
    return opened.open(hive(scope), pathOf(key), KEY_READ | view) == ERROR_SUCCESS ? opened.text(name) : std::wstring();
}

bool isSame(const std::wstring& a, const std::wstring& b) noexcept {
    return lstrcmpiW(a.c_str(), b.c_str()) == 0;
}

std::wstring serverKeyOf(const ClassRegistration& registration) {
    return L"CLSID\\" + registration.clsid + L"\\InprocServer32";
}

LSTATUS writeEntries(RegistrationScope scope, const std::vector<RegistryEntry>& entries) {
    for (const RegistryEntry& entry : entries) {
        RegistryKey key;
        LSTATUS status = key.create(hive(scope), pathOf(entry.key));
        if (status == ERROR_SUCCESS && entry.hasValue)
            status = key.setText(entry.valueName, entry.value);
        if (status != ERROR_SUCCESS)
            return status;
    }
    return ERROR_SUCCESS;
}

/// Removes one entry. The key is removed with its value unless another program has added something to it.
LSTATUS removeEntry(RegistrationScope scope, const RegistryEntry& entry) {
    const std::wstring path = pathOf(entry.key);
    RegistryKey key;
    LSTATUS status = key.open(hive(scope), path, KEY_READ | KEY_WRITE);
    if (status == ERROR_FILE_NOT_FOUND)
        return ERROR_SUCCESS;
    if (status == ERROR_SUCCESS && entry.hasValue)
        status = key.deleteValue(entry.valueName);
    if (status == ERROR_SUCCESS && key.isEmpty())
        status = RegDeleteKeyW(hive(scope), path.c_str());
    return status;
}

/// Removes the entries from the last to the first, because children follow their parents in the table. Continues after
/// a failure and returns the first one.
LSTATUS removeEntries(RegistrationScope scope, const std::vector<RegistryEntry>& entries) {
    LSTATUS result = ERROR_SUCCESS;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const LSTATUS status = removeEntry(scope, *entry);
        if (result == ERROR_SUCCESS)
            result = status;
    }
    return result;
}

/// True if a key that names a file names another copy of the module, and that file still exists.
bool belongsToAnotherCopy(RegistrationScope scope, const std::wstring& fileKey, const std::wstring& self) {
    const std::wstring path = textAt(scope, fileKey);
    return !path.empty() && !isSame(path, self) && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// True if the name now refers to another class, or to another version of this one.
bool belongsToAnotherClass(RegistrationScope scope, const ProgramName& program, const std::wstring& clsid) {
    const std::wstring owner = textAt(scope, program.name + L"\\CLSID");
    const std::wstring current = textAt(scope, program.name + L"\\CurVer");
    return (!owner.empty() && !isSame(owner, clsid)) || (!current.empty() && !isSame(current, program.current));
}

/// True if another library, or another version of this one, now describes the interface.
bool belongsToAnotherLibrary(RegistrationScope scope, const InterfaceRegistration& described,
                             const TypeLibRegistration& library) {
    const std::wstring owner = textAt(scope, described.key + L"\\TypeLib");
    const std::wstring version = textAt(scope, described.key + L"\\TypeLib", L"Version");
    return (!owner.empty() && !isSame(owner, library.id)) || (!version.empty() && !isSame(version, library.version));
}

LSTATUS firstFailure(LSTATUS earlier, LSTATUS later) noexcept {
    return earlier == ERROR_SUCCESS ? later : earlier;
}

LSTATUS unregisterClass(RegistrationScope scope, const ClassRegistration& registration) {
    LSTATUS status = removeEntries(scope, registration.classKeys);
    if (!textAt(scope, serverKeyOf(registration), nullptr, kOtherView).empty())
        return status;  // the other architecture's module uses the same names
    for (const ProgramName& program : registration.programNames) {
        if (!belongsToAnotherClass(scope, program, registration.clsid))
            status = firstFailure(status, removeEntries(scope, program.keys));
    }
    return status;
}

/// The system's own functions are not used: some systems lack those for one user, and unregistering the library of one
/// architecture also removes entries that the other architecture's library needs.
LSTATUS writeTypeLib(RegistrationScope scope, const TypeLibRegistration& library) {
    LSTATUS status = writeEntries(scope, library.sharedKeys);
    if (status == ERROR_SUCCESS)
        status = writeEntries(scope, {library.fileKey});
    for (const InterfaceRegistration& described : library.interfaces) {
        if (status == ERROR_SUCCESS)
            status = writeEntries(scope, described.keys);
    }
    return status;
}

LSTATUS removeTypeLib(RegistrationScope scope, const TypeLibRegistration& library) {
    LSTATUS status = removeEntry(scope, library.fileKey);
    for (const InterfaceRegistration& described : library.interfaces) {
        if (!belongsToAnotherLibrary(scope, described, library))
            status = firstFailure(status, removeEntries(scope, described.keys));
    }
    if (textAt(scope, library.otherFileKey).empty())
        status = firstFailure(status, removeEntries(scope, library.sharedKeys));
    return status;
}

/// Without any registered class, a user's part of the registry does not have these keys. The machine's always has them.
void removeEmptyContainers() {
    for (const wchar_t* const container : {L"CLSID", L"Interface", L"TypeLib"}) {
        const LSTATUS status = removeEntry(RegistrationScope::user, {container, false, {}, nullptr});
        static_cast<void>(status);  // an empty key that remains has no effect
    }
}

LSTATUS writeAll(RegistrationScope scope, RegistrationTable table) {
    const ModuleRegistration all = table(Module::path());
    LSTATUS status = ERROR_SUCCESS;
    for (const ClassRegistration& registration : all.classes) {
        if (status == ERROR_SUCCESS)
            status = writeEntries(scope, registration.classKeys);
        for (const ProgramName& program : registration.programNames) {
            if (status == ERROR_SUCCESS)
                status = writeEntries(scope, program.keys);
        }
    }
    return status == ERROR_SUCCESS ? writeTypeLib(scope, all.library) : status;
}

LSTATUS removeAll(RegistrationScope scope, RegistrationTable table) {
    const std::wstring self = Module::path();
    const ModuleRegistration all = table(self);
    bool libraryIsOurs = !belongsToAnotherCopy(scope, all.library.fileKey.key, self);
    LSTATUS status = ERROR_SUCCESS;
    for (const ClassRegistration& registration : all.classes) {
        if (belongsToAnotherCopy(scope, serverKeyOf(registration), self))
            libraryIsOurs = false;  // that copy's classes need it
        else
            status = firstFailure(status, unregisterClass(scope, registration));
    }
    if (libraryIsOurs)
        status = firstFailure(status, removeTypeLib(scope, all.library));
    if (scope == RegistrationScope::user)
        removeEmptyContainers();
    return status;
}

HRESULT hresultOfStatus(LSTATUS status) noexcept {
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

}  // namespace

std::wstring guidText(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return text;
}

RegistrationScope allowedScope() noexcept {
    RegistryKey key;
    const LSTATUS status = key.open(HKEY_LOCAL_MACHINE, kClassesPath, KEY_READ | KEY_WRITE);
    return status == ERROR_SUCCESS ? RegistrationScope::machine : RegistrationScope::user;
}

bool isRegistered(RegistrationScope scope, RegistrationTable table) noexcept {
    bool found = false;
    const HRESULT hr = firewall({IID_NULL}, [&] {
        const std::wstring self = Module::path();
        const ModuleRegistration all = table(self);
        for (const ClassRegistration& registration : all.classes) {
            if (isSame(textAt(scope, serverKeyOf(registration)), self))
                found = true;
        }
    });
    return SUCCEEDED(hr) && found;
}

HRESULT registerModule(RegistrationScope scope, RegistrationTable table) noexcept {
    const HRESULT hr = firewall({IID_NULL}, [&] { return hresultOfStatus(writeAll(scope, table)); });
    if (FAILED(hr)) {
        const HRESULT undone = unregisterModule(scope, table);
        static_cast<void>(undone);  // the first failure is the one to report
    }
    return hr;
}

HRESULT unregisterModule(RegistrationScope scope, RegistrationTable table) noexcept {
    return firewall({IID_NULL}, [&] { return hresultOfStatus(removeAll(scope, table)); });
}

}  // namespace kv::com
