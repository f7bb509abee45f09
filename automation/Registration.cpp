#include "automation/Registration.h"

#include <oleauto.h>
#include <wrl/client.h>

#include "automation/Firewall.h"
#include "automation/Module.h"
#include "automation/RegistrationTable.h"
#include "automation/RegistryKey.h"
#include "automation/TypeLib.h"
#include "kvBandscope.h"

namespace kv::automation {

namespace {

using Microsoft::WRL::ComPtr;

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr SYSKIND kSystem = kIs64Bit ? SYS_WIN64 : SYS_WIN32;
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

std::wstring serverPathOf(const ClassRegistration& registration) {
    return pathOf(L"CLSID\\" + registration.clsid + L"\\InprocServer32");
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

/// A copy of the module in another place has taken over the class and is still there.
bool belongsToAnotherCopy(RegistrationScope scope, const ClassRegistration& registration, const std::wstring& self) {
    RegistryKey server;
    if (server.open(hive(scope), serverPathOf(registration), KEY_READ) != ERROR_SUCCESS)
        return false;
    const std::wstring path = server.defaultText();
    return lstrcmpiW(path.c_str(), self.c_str()) != 0 && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool otherArchitectureHas(RegistrationScope scope, const ClassRegistration& registration) {
    RegistryKey server;
    return server.open(hive(scope), serverPathOf(registration), KEY_READ | kOtherView) == ERROR_SUCCESS;
}

LSTATUS unregisterClass(RegistrationScope scope, const ClassRegistration& registration) {
    const LSTATUS status = removeEntries(scope, registration.classKeys);
    if (status != ERROR_SUCCESS || otherArchitectureHas(scope, registration))
        return status;
    return removeEntries(scope, registration.programKeys);
}

template <class Function>
Function perUserFunction(const char* name) noexcept {
    // Older import libraries lack the per-user functions; the system has them.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), name)));
}

HRESULT registerTypeLib(RegistrationScope scope, const std::wstring& self) {
    using ForUser = HRESULT(WINAPI*)(ITypeLib*, OLECHAR*, OLECHAR*);
    ComPtr<ITypeLib> library;
    if (const HRESULT hr = loadOwnTypeLib(library.GetAddressOf()); FAILED(hr))
        return hr;
    std::wstring path = self;
    if (scope == RegistrationScope::machine)
        return RegisterTypeLib(library.Get(), path.data(), nullptr);
    const auto forUser = perUserFunction<ForUser>("RegisterTypeLibForUser");
    return forUser ? forUser(library.Get(), path.data(), nullptr) : E_NOTIMPL;
}

bool typeLibIsThere(HKEY root, const std::wstring& prefix) {
    RegistryKey key;
    const std::wstring path =
        prefix + L"TypeLib\\" + guidText(LIBID_kvBandscope) + L"\\1.0\\0\\" + (kIs64Bit ? L"win64" : L"win32");
    return key.open(root, path, KEY_READ) == ERROR_SUCCESS;
}

HRESULT unregisterTypeLib(RegistrationScope scope) {
    using ForUser = HRESULT(WINAPI*)(REFGUID, WORD, WORD, LCID, SYSKIND);
    if (!typeLibIsThere(HKEY_CLASSES_ROOT, {}))
        return S_OK;
    HRESULT hr = E_NOTIMPL;
    if (scope == RegistrationScope::machine)
        hr = UnRegisterTypeLib(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, kSystem);
    else if (const auto forUser = perUserFunction<ForUser>("UnRegisterTypeLibForUser"))
        hr = forUser(LIBID_kvBandscope, 1, 0, LOCALE_NEUTRAL, kSystem);
    // What is left belongs to the other scope.
    if (FAILED(hr) && !typeLibIsThere(hive(scope), std::wstring(kClassesPath) + L"\\"))
        return S_OK;
    return hr;
}

HRESULT writeAll(RegistrationScope scope) {
    const std::wstring self = Module::path();
    for (const ClassRegistration& registration : registrationTable(self)) {
        LSTATUS status = writeEntries(scope, registration.classKeys);
        if (status == ERROR_SUCCESS)
            status = writeEntries(scope, registration.programKeys);
        if (status != ERROR_SUCCESS)
            return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
    }
    return registerTypeLib(scope, self);
}

HRESULT removeAll(RegistrationScope scope) {
    const std::wstring self = Module::path();
    HRESULT result = S_OK;
    bool libraryIsOurs = true;
    for (const ClassRegistration& registration : registrationTable(self)) {
        if (belongsToAnotherCopy(scope, registration, self)) {
            libraryIsOurs = false;
            continue;
        }
        const LSTATUS status = unregisterClass(scope, registration);
        if (status != ERROR_SUCCESS && SUCCEEDED(result))
            result = HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
    }
    const HRESULT library = libraryIsOurs ? unregisterTypeLib(scope) : S_OK;
    return FAILED(result) ? result : library;
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
            RegistryKey server;
            if (server.open(hive(scope), serverPathOf(registration), KEY_READ) == ERROR_SUCCESS &&
                lstrcmpiW(server.defaultText().c_str(), self.c_str()) == 0)
                found = true;
        }
    });
    return SUCCEEDED(hr) && found;
}

HRESULT registerModule(RegistrationScope scope) noexcept {
    const HRESULT hr = firewall(IID_NULL, [&] { return writeAll(scope); });
    if (FAILED(hr)) {
        const HRESULT undone = unregisterModule(scope);
        static_cast<void>(undone);  // the first failure is the one to report
    }
    return hr;
}

HRESULT unregisterModule(RegistrationScope scope) noexcept {
    return firewall(IID_NULL, [&] { return removeAll(scope); });
}

}  // namespace kv::automation
