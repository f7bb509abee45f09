// A host that shares the compiler's run-time library with other modules of its process, as programs of this compiler
// often do. It makes the module end a call with a trapped error. Exit code 42: every error arrived as it should.
//   SharedRuntimeHost MODULE
#include <windows.h>

#include <oleauto.h>

#include <stdexcept>

namespace {

using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);

constexpr CLSID kFreqSlot = {0x5399D6D5, 0x00E6, 0x4ED8, {0xB0, 0x89, 0x74, 0xB4, 0xD5, 0x76, 0x04, 0x92}};
constexpr CLSID kControl = {0x3C676CE2, 0x05C1, 0x42D9, {0x9D, 0x9B, 0xE8, 0x65, 0x19, 0x09, 0x0C, 0xF2}};
constexpr IID kFactory = {1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr IID kDispatch = {0x20400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr IID kNoIid = {};

/// The host's own errors need the shared library.
bool ownErrorsWork() {
    try {
        if (GetCurrentProcessId() != 0)
            throw std::runtime_error("the host's own");
    } catch (const std::exception&) {
        return true;
    }
    return false;
}

IDispatch* create(HMODULE module, const CLSID& clsid) {
    const auto getClassObject =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    IClassFactory* factory = nullptr;
    if (!getClassObject || FAILED(getClassObject(clsid, kFactory, reinterpret_cast<void**>(&factory))))
        return nullptr;
    IDispatch* object = nullptr;
    factory->CreateInstance(nullptr, kDispatch, reinterpret_cast<void**>(&object));
    factory->Release();
    return object;
}

/// Component 7 of a channel that has none: error 9.
bool channelReportsItsError(HMODULE module) {
    IDispatch* const slot = create(module, kFreqSlot);
    if (!slot)
        return false;
    VARIANT index{};
    index.vt = VT_I4;
    index.lVal = 7;
    DISPPARAMS arguments{&index, nullptr, 1, 0};
    EXCEPINFO error{};
    const HRESULT hr = slot->Invoke(13, kNoIid, 0, DISPATCH_PROPERTYGET, &arguments, nullptr, &error, nullptr);
    SysFreeString(error.bstrSource);
    SysFreeString(error.bstrDescription);
    slot->Release();
    return hr == DISP_E_EXCEPTION && (error.scode & 0xFFFF) == 9;
}

/// A text is no channel; the control traps the error of its own code as well.
bool controlTrapsItsErrors(HMODULE module) {
    IDispatch* const control = create(module, kControl);
    if (!control)
        return false;
    DISPPARAMS none{};
    VARIANT drawn{};
    const HRESULT hr = control->Invoke(17, kNoIid, 0, DISPATCH_METHOD, &none, &drawn, nullptr, nullptr);
    VARIANT key{};
    key.vt = VT_BSTR;
    key.bstrVal = SysAllocString(L"TX no such channel");
    DISPPARAMS one{&key, nullptr, 1, 0};
    const HRESULT removed = control->Invoke(57, kNoIid, 0, DISPATCH_METHOD, &one, nullptr, nullptr, nullptr);
    SysFreeString(key.bstrVal);
    control->Release();
    return hr == S_OK && drawn.vt == VT_BOOL && removed == S_OK;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 2 || !ownErrorsWork() || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 1;
    const HMODULE module = LoadLibraryW(argv[1]);
    if (!module)
        return 2;
    if (!channelReportsItsError(module))
        return 3;
    if (!controlTrapsItsErrors(module))
        return 4;
    // The module must also be unloaded correctly, and the host's own errors must work afterwards.
    using CanUnload = HRESULT(WINAPI*)();
    const auto canUnload =
        reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
    if (canUnload() != S_OK || !FreeLibrary(module))
        return 5;
    if (!ownErrorsWork())
        return 6;
    CoUninitialize();
    return 42;
}
