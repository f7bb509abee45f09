// Documents that keep a control's values as text only, in a country with a decimal comma.
#include <gmock/gmock.h>
#include <ocidl.h>

#include <map>

#include "tests/automation/Container.h"

namespace kv::test {
namespace {

constexpr LCID kGerman = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);

class TextBag final : public Counted<IPropertyBag> {
  public:
    std::map<std::wstring, std::wstring> values;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IPropertyBag ? this : nullptr;
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        const auto found = values.find(name);
        if (found == values.end())
            return E_INVALIDARG;
        VariantClear(value);
        value->vt = VT_BSTR;
        value->bstrVal = SysAllocString(found->second.c_str());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
        Var text;
        const HRESULT hr = VariantChangeTypeEx(&text, value, kGerman, 0, VT_BSTR);
        if (FAILED(hr))
            return hr;
        values[name] = text.text();
        return S_OK;
    }
};

/// The thread's language for the time of a test.
class German {
  public:
    German() : before_(GetThreadLocale()) { EXPECT_TRUE(SetThreadLocale(kGerman)); }
    ~German() { SetThreadLocale(before_); }
    German(const German&) = delete;
    German& operator=(const German&) = delete;

  private:
    LCID before_;
};

TEST(TextBags, WhatWasSavedIsLoaded) {
    const German german;
    const ComPtr<TextBag> bag(new TextBag);
    const auto saved = createInstance<IPersistPropertyBag>(CLSID_kvBandscope);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->InitNew(), S_OK);
    EXPECT_EQ(saved->Save(bag.Get(), TRUE, TRUE), S_OK);
    ASSERT_FALSE(bag->values.empty());
    for (const auto& [name, value] : bag->values)
        EXPECT_EQ(value.find_first_of(L",."), std::wstring::npos) << "a number that depends on the language";
    const auto loaded = createInstance<IPersistPropertyBag>(CLSID_kvBandscope);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->Load(bag.Get(), nullptr), S_OK);
}

}  // namespace
}  // namespace kv::test
