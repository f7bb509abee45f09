// What the system calls in the module by name.
#include <windows.h>

#include <olectl.h>

#include "automation/ClassFactory.h"
#include "automation/Module.h"
#include "automation/Registration.h"
#include "automation/TypeLib.h"
#include "win32/WindowTree.h"

using kv::automation::Module;
using kv::automation::RegistrationScope;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH)
        Module::setInstance(instance);
    // A window class outlives the module that registered it, window procedure and all, unless it is taken back.
    else if (reason == DLL_PROCESS_DETACH && !processEnds)
        kv::win32::unregisterWindowClasses();
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return kv::automation::getClassObject(clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    if (!Module::isIdle() || kv::win32::accessibleObjects() != 0)
        return S_FALSE;
    kv::automation::forgetTypeInfo();
    return S_OK;
}

STDAPI DllRegisterServer() {
    return kv::automation::registerModule(kv::automation::allowedScope());
}

STDAPI DllUnregisterServer() {
    const RegistrationScope scope = kv::automation::allowedScope();
    const HRESULT hr = kv::automation::unregisterModule(scope);
    if (FAILED(hr))
        return hr;
    // Success must not be reported while the machine's entries are still there for want of rights.
    if (scope == RegistrationScope::user)
        return kv::automation::isRegistered(RegistrationScope::machine) ? E_ACCESSDENIED : S_OK;
    // S_FALSE: other entries of these classes still exist.
    return kv::automation::isRegistered(RegistrationScope::user) ? S_FALSE : S_OK;
}

/// regsvr32 /n /i:user: for the present user only. Without a text it is the ordinary registration.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    if (!commandLine || !*commandLine)
        return install ? DllRegisterServer() : DllUnregisterServer();
    if (lstrcmpiW(commandLine, L"user") != 0)
        return E_INVALIDARG;
    constexpr RegistrationScope kScope = RegistrationScope::user;
    return install ? kv::automation::registerModule(kScope) : kv::automation::unregisterModule(kScope);
}
