// The functions that the module exports to the system.
#include <windows.h>

#include <olectl.h>

#include "automation/BandscopeControl.h"
#include "automation/FreqSlotObject.h"
#include "automation/RegistrationTable.h"
#include "automation/ViewObject.h"
#include "com/ClassFactory.h"
#include "com/Module.h"
#include "com/Registration.h"
#include "com/TypeLib.h"
#include "kvBandscope.h"
#include "win32/Accessible.h"
#include "win32/WindowClasses.h"

namespace com = kv::com;
using com::RegistrationScope;
using kv::automation::registrationTable;

namespace {

const com::ClassEntry kClasses[] = {
    {&CLSID_kvBandscope, kv::automation::createBandscopeControl},
    {&CLSID_FreqSlot, kv::automation::createFreqSlot},
    {&CLSID_View, kv::automation::createView},
};

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH)
        com::Module::setInstance(instance);
    // Window classes stay registered after the module is unloaded, and their window procedures would then be called.
    else if (reason == DLL_PROCESS_DETACH && !processEnds)
        kv::win32::unregisterWindowClasses();
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object) {
    return com::getClassObject(kClasses, clsid, iid, object);
}

STDAPI DllCanUnloadNow() {
    if (!com::Module::isIdle() || kv::win32::accessibleObjects() != 0)
        return S_FALSE;
    com::forgetTypeInfo();
    return S_OK;
}

STDAPI DllRegisterServer() {
    return com::registerModule(com::allowedScope(), registrationTable);
}

STDAPI DllUnregisterServer() {
    const RegistrationScope scope = com::allowedScope();
    const HRESULT hr = com::unregisterModule(scope, registrationTable);
    if (FAILED(hr))
        return hr;
    // Without the right to remove the machine's entries, the module is still registered.
    if (scope == RegistrationScope::user)
        return com::isRegistered(RegistrationScope::machine, registrationTable) ? E_ACCESSDENIED : S_OK;
    // S_FALSE: other entries of these classes still exist.
    return com::isRegistered(RegistrationScope::user, registrationTable) ? S_FALSE : S_OK;
}

/// "user" registers for the current user only (regsvr32 /n /i:user). Without a text it is the usual registration.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    if (!commandLine || !*commandLine)
        return install ? DllRegisterServer() : DllUnregisterServer();
    if (lstrcmpiW(commandLine, L"user") != 0)
        return E_INVALIDARG;
    constexpr RegistrationScope kScope = RegistrationScope::user;
    return install ? com::registerModule(kScope, registrationTable) : com::unregisterModule(kScope, registrationTable);
}
