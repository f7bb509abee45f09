#include "automation/Registration.h"

#include "automation/Firewall.h"
#include "automation/Module.h"
#include "automation/RegistrationTable.h"
#include "automation/RegistryKey.h"

namespace kv::automation {

namespace {

constexpr bool kIs64Bit = sizeof(void*) == 8;
/// The registry as the other architecture's module sees it.
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
const wchar_t* const kClassesPath = L"Software\\Classes";

HKEY hive(RegistrationScope scope) noexcept {
    return scope == RegistrationScope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

/// An entry's key, from the hive.
std::wstring pathOf(const std::wstring& key) {
    return std::wstring(kClassesPath) + L"\\" + key;
}

/// A value of an entry's key; empty when there is none. A null `name` is the default value.
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

/// Takes one entry back. A key goes with its last value, unless somebody else has put something into it.
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

/// Children stand behind their parents in the table, so it is undone from its end. The first failure is reported, and
/// the rest is removed all the same.
LSTATUS removeEntries(RegistrationScope scope, const std::vector<RegistryEntry>& entries) {
    LSTATUS result = ERROR_SUCCESS;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        const LSTATUS status = removeEntry(scope, *entry);
        if (result == ERROR_SUCCESS)
            result = status;
    }
    return result;
}

/// A copy of the module in another place has taken over a key that names a file, and is still there.
bool belongsToAnotherCopy(RegistrationScope scope, const std::wstring& fileKey, const std::wstring& self) {
    const std::wstring path = textAt(scope, fileKey);
    return !path.empty() && !isSame(path, self) && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// Another class, or another version of ours, goes by the name now.
bool belongsToAnotherClass(RegistrationScope scope, const ProgramName& program, const std::wstring& clsid) {
    const std::wstring owner = textAt(scope, program.name + L"\\CLSID");
    const std::wstring current = textAt(scope, program.name + L"\\CurVer");
    return (!owner.empty() && !isSame(owner, clsid)) || (!current.empty() && !isSame(current, program.current));
}

/// Another library, or another version of ours, describes the interface now.
bool belongsToAnotherLibrary(RegistrationScope scope, const InterfaceRegistration& described, const std::wstring& id) {
    const std::wstring owner = textAt(scope, described.key + L"\\TypeLib");
    const std::wstring version = textAt(scope, described.key + L"\\TypeLib", L"Version");
    return (!owner.empty() && !isSame(owner, id)) || (!version.empty() && !isSame(version, kLibraryVersion));
}

LSTATUS firstFailure(LSTATUS earlier, LSTATUS later) noexcept {
    return earlier == ERROR_SUCCESS ? later : earlier;
}

LSTATUS unregisterClass(RegistrationScope scope, const ClassRegistration& registration) {
    LSTATUS status = removeEntries(scope, registration.classKeys);
    if (!textAt(scope, serverKeyOf(registration), nullptr, kOtherView).empty())
        return status;  // the other architecture's module goes by the same names
    for (const ProgramName& program : registration.programNames) {
        if (!belongsToAnotherClass(scope, program, registration.clsid))
            status = firstFailure(status, removeEntries(scope, program.keys));
    }
    return status;
}

/// The system's own functions are of no use for this: for one user they are missing in places, and taking the library
/// of one architecture back they take away what the other one's needs.
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
        if (!belongsToAnotherLibrary(scope, described, library.id))
            status = firstFailure(status, removeEntries(scope, described.keys));
    }
    if (textAt(scope, library.otherFileKey).empty())
        status = firstFailure(status, removeEntries(scope, library.sharedKeys));
    return status;
}

/// A user who has no classes of his own has not got these keys either. The machine always has them.
void removeEmptyContainers() {
    for (const wchar_t* const container : {L"CLSID", L"Interface", L"TypeLib"}) {
        const LSTATUS status = removeEntry(RegistrationScope::user, {container, false, {}, nullptr});
        static_cast<void>(status);  // an empty key that stays harms nobody
    }
}

LSTATUS writeAll(RegistrationScope scope) {
    const std::wstring self = Module::path();
    LSTATUS status = ERROR_SUCCESS;
    for (const ClassRegistration& registration : registrationTable(self)) {
        if (status == ERROR_SUCCESS)
            status = writeEntries(scope, registration.classKeys);
        for (const ProgramName& program : registration.programNames) {
            if (status == ERROR_SUCCESS)
                status = writeEntries(scope, program.keys);
        }
    }
    return status == ERROR_SUCCESS ? writeTypeLib(scope, typeLibTable(self)) : status;
}

LSTATUS removeAll(RegistrationScope scope) {
    const std::wstring self = Module::path();
    const TypeLibRegistration library = typeLibTable(self);
    bool libraryIsOurs = !belongsToAnotherCopy(scope, library.fileKey.key, self);
    LSTATUS status = ERROR_SUCCESS;
    for (const ClassRegistration& registration : registrationTable(self)) {
        if (belongsToAnotherCopy(scope, serverKeyOf(registration), self))
            libraryIsOurs = false;  // that copy's classes need it
        else
            status = firstFailure(status, unregisterClass(scope, registration));
    }
    if (libraryIsOurs)
        status = firstFailure(status, removeTypeLib(scope, library));
    if (scope == RegistrationScope::user)
        removeEmptyContainers();
    return status;
}

HRESULT hresultOfStatus(LSTATUS status) noexcept {
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

}  // namespace

RegistrationScope allowedScope() noexcept {
    RegistryKey key;
    const LSTATUS status = key.open(HKEY_LOCAL_MACHINE, kClassesPath, KEY_READ | KEY_WRITE);
    return status == ERROR_SUCCESS ? RegistrationScope::machine : RegistrationScope::user;
}

bool isRegistered(RegistrationScope scope) noexcept {
    bool found = false;
    const HRESULT hr = firewall(IID_NULL, [&] {
        const std::wstring self = Module::path();
        for (const ClassRegistration& registration : registrationTable(self)) {
            if (isSame(textAt(scope, serverKeyOf(registration)), self))
                found = true;
        }
    });
    return SUCCEEDED(hr) && found;
}

HRESULT registerModule(RegistrationScope scope) noexcept {
    const HRESULT hr = firewall(IID_NULL, [&] { return hresultOfStatus(writeAll(scope)); });
    if (FAILED(hr)) {
        const HRESULT undone = unregisterModule(scope);
        static_cast<void>(undone);  // the first failure is the one to report
    }
    return hr;
}

HRESULT unregisterModule(RegistrationScope scope) noexcept {
    return firewall(IID_NULL, [&] { return hresultOfStatus(removeAll(scope)); });
}

}  // namespace kv::automation
