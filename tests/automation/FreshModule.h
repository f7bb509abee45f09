// A copy of the module under another name, for state that a module keeps as long as it is loaded.
#pragma once

#include "tests/automation/Module.h"
#include "tests/win32/TempFolder.h"

namespace kv::test {

/// The controls that it creates must be released before it is destroyed.
class FreshModule {
  public:
    FreshModule() : path_(folder_.file(L"kvBandscope.ocx")) {
        EXPECT_TRUE(CopyFileW(modulePath().c_str(), path_.c_str(), TRUE));
        module_ = LoadLibraryW(path_.c_str());
        EXPECT_TRUE(module_);
    }
    ~FreshModule() {
        if (!module_)
            return;
        EXPECT_EQ(function<ExportedFunction>("DllCanUnloadNow")(), S_OK);
        FreeLibrary(module_);
    }
    FreshModule(const FreshModule&) = delete;
    FreshModule& operator=(const FreshModule&) = delete;

    template <class Interface>
    [[nodiscard]] ComPtr<Interface> create(REFCLSID clsid) const {
        using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
        ComPtr<IClassFactory> factory;
        ComPtr<Interface> object;
        if (SUCCEEDED(function<GetClassObject>("DllGetClassObject")(clsid, IID_PPV_ARGS(factory.GetAddressOf()))))
            factory->CreateInstance(nullptr, IID_PPV_ARGS(object.GetAddressOf()));
        return object;
    }

  private:
    template <class Function>
    [[nodiscard]] Function function(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    TempFolder folder_{L"kvFresh"};
    std::wstring path_;
    HMODULE module_ = nullptr;
};

}  // namespace kv::test
