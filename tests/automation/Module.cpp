#include "tests/automation/Module.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace kv::test {

HMODULE module() {
    static const HMODULE loaded = [] {
        const HMODULE handle = LoadLibraryW(modulePath().c_str());
        if (!handle) {
            std::fputs("kvBandscope.ocx is not beside the test program, or cannot be loaded\n", stderr);
            std::exit(3);
        }
        return handle;
    }();
    return loaded;
}

std::wstring modulePath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\') + 1) + L"kvBandscope.ocx";
}

HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** object) {
    using Function = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    return exported<Function>("DllGetClassObject")(clsid, iid, object);
}

HRESULT createInstance(REFCLSID clsid, REFIID iid, void** object) {
    ComPtr<IClassFactory> factory;
    const HRESULT hr = getClassObject(clsid, IID_PPV_ARGS(factory.GetAddressOf()));
    return FAILED(hr) ? hr : factory->CreateInstance(nullptr, iid, object);
}

HRESULT canUnloadNow() {
    return exported<ExportedFunction>("DllCanUnloadNow")();
}

DISPID idOf(IDispatch* object, const wchar_t* name) {
    std::wstring text = name;
    LPOLESTR names = text.data();
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

Outcome invoke(IDispatch* object, DISPID id, WORD flags, std::vector<Var> args, std::vector<DISPID> named) {
    std::reverse(args.begin(), args.end());
    std::reverse(named.begin(), named.end());
    DISPPARAMS params{args.data(), named.empty() ? nullptr : named.data(), static_cast<UINT>(args.size()),
                      static_cast<UINT>(named.size())};
    EXCEPINFO exception{};
    Outcome outcome;
    outcome.hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, &outcome.result, &exception,
                                &outcome.argError);
    Text source;
    Text description;
    Text help;
    *source.put() = exception.bstrSource;
    *description.put() = exception.bstrDescription;
    *help.put() = exception.bstrHelpFile;
    outcome.errorCode = exception.scode;
    outcome.errorNumber = exception.wCode;
    outcome.source = source.str();
    outcome.description = description.str();
    return outcome;
}

Outcome call(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return invoke(object, idOf(object, name), DISPATCH_METHOD, std::move(args));
}

Outcome get(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return invoke(object, idOf(object, name), DISPATCH_PROPERTYGET, std::move(args));
}

Outcome put(IDispatch* object, const wchar_t* name, std::vector<Var> args) {
    return invoke(object, idOf(object, name), DISPATCH_PROPERTYPUT, std::move(args), {DISPID_PROPERTYPUT});
}

bool sameObject(IUnknown* a, IUnknown* b) {
    ComPtr<IUnknown> identityA;
    ComPtr<IUnknown> identityB;
    return a && b && SUCCEEDED(a->QueryInterface(IID_PPV_ARGS(identityA.GetAddressOf()))) &&
           SUCCEEDED(b->QueryInterface(IID_PPV_ARGS(identityB.GetAddressOf()))) && identityA.Get() == identityB.Get();
}

std::wstring takeErrorText(GUID* iid) {
    ComPtr<IErrorInfo> info;
    Text text;
    if (GetErrorInfo(0, info.GetAddressOf()) != S_OK)
        return {};
    info->GetDescription(text.put());
    if (iid)
        info->GetGUID(iid);
    return text.str();
}

}  // namespace kv::test
