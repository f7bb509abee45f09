#include "host/ControlClasses.h"

#include <array>

#include "kvBandscope.h"

namespace kv::host {

namespace {

ComPtr<IClassFactory> registered(const wchar_t* progId) {
    CLSID clsid{};
    ComPtr<IClassFactory> factory;
    if (SUCCEEDED(CLSIDFromProgID(progId, &clsid))) {
        // If the module of a registered class is missing, the pointer stays empty, as for a class that is not
        // registered.
        CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(factory.ReleaseAndGetAddressOf()));
    }
    return factory;
}

std::wstring moduleBesideProgram() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    const std::wstring program(path.data(), length);
    return program.substr(0, program.find_last_of(L"\\/") + 1) + L"kvBandscope.ocx";
}

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

ComPtr<IClassFactory> fromModule(HMODULE module, REFCLSID clsid) {
    ComPtr<IClassFactory> factory;
    if (module != nullptr) {
        const auto entry =
            reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
        if (entry != nullptr) {
            entry(clsid, IID_PPV_ARGS(factory.ReleaseAndGetAddressOf()));
        }
    }
    return factory;
}

}  // namespace

ControlClasses registeredClasses() {
    return {registered(L"kvBandscope.kvBandscope"), registered(L"kvBandscope.FreqSlot")};
}

ControlClasses classesOfModule(const std::wstring& file) {
    const HMODULE module = LoadLibraryW(file.c_str());  // it stays loaded until the program ends
    return {fromModule(module, CLSID_kvBandscope), fromModule(module, CLSID_FreqSlot)};
}

ControlClasses findControlClasses() {
    ControlClasses classes = registeredClasses();
    if (!classes.complete()) {
        classes = classesOfModule(moduleBesideProgram());
    }
    if (!classes.complete()) {
        throw Failure{kExitControlMissing,
                      L"The control kvBandscope was not found. Register it with \"regsvr32 kvBandscope.ocx\", or copy "
                      L"kvBandscope.ocx into the folder of this program."};
    }
    return classes;
}

}  // namespace kv::host
