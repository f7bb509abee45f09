// The module under test, loaded from beside the test program without any registration, and calls by name.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <utility>
#include <vector>

#include "kvBandscope.h"

namespace kv::test {

using Microsoft::WRL::ComPtr;

/// A VARIANT that clears itself; it has a VARIANT's layout.
struct Var : VARIANT {
    Var() noexcept { VariantInit(this); }
    Var(double value) noexcept : Var() {
        vt = VT_R8;
        dblVal = value;
    }
    Var(int value) noexcept : Var() {
        vt = VT_I4;
        lVal = value;
    }
    Var(bool value) noexcept : Var() {
        vt = VT_BOOL;
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Var(const wchar_t* value) : Var() {
        vt = VT_BSTR;
        bstrVal = SysAllocString(value);
    }
    Var(IDispatch* value) noexcept : Var() {
        vt = VT_DISPATCH;
        pdispVal = value;
        if (value)
            value->AddRef();
    }
    Var(const Var& other) noexcept : Var() { VariantCopy(this, const_cast<Var*>(&other)); }
    Var(Var&& other) noexcept : VARIANT(other) { other.vt = VT_EMPTY; }
    Var& operator=(Var other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Var() { VariantClear(this); }

    /// A value of another type with its bits in `source`.
    static Var typed(VARTYPE type, void* reference) noexcept {
        Var result;
        result.vt = type;
        result.byref = reference;
        return result;
    }
    /// What a script passes for a variable.
    static Var variable(VARIANT& inner) noexcept { return typed(VT_BYREF | VT_VARIANT, &inner); }
    static Var missing() noexcept {
        Var result;
        result.vt = VT_ERROR;
        result.scode = DISP_E_PARAMNOTFOUND;
        return result;
    }
    static Var null() noexcept {
        Var result;
        result.vt = VT_NULL;
        return result;
    }
    [[nodiscard]] std::wstring text() const {
        return vt == VT_BSTR && bstrVal ? std::wstring(bstrVal, SysStringLen(bstrVal)) : std::wstring();
    }
};
static_assert(sizeof(Var) == sizeof(VARIANT));

/// A BSTR that frees itself.
class Text {
  public:
    Text() noexcept = default;
    explicit Text(const std::wstring& text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }
    [[nodiscard]] BSTR get() const noexcept { return text_; }
    [[nodiscard]] BSTR* put() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    [[nodiscard]] std::wstring str() const { return text_ ? std::wstring(text_, SysStringLen(text_)) : std::wstring(); }

  private:
    BSTR text_ = nullptr;
};

/// Takes over the one reference of a new object. (ComPtr::Attach of some header sets adds another.)
template <class T>
[[nodiscard]] ComPtr<T> adopt(T* object) noexcept {
    ComPtr<T> result;
    *result.GetAddressOf() = object;
    return result;
}

/// The outcome of a call by name.
struct Outcome {
    HRESULT hr = E_FAIL;
    Var result;
    HRESULT errorCode = S_OK;  ///< of the exception, S_OK without one
    WORD errorNumber = 0;      ///< of the exception
    std::wstring source;
    std::wstring description;
    UINT argError = 0xFFFF;  ///< 0xFFFF if the call did not set it
};

/// The module kvBandscope.ocx; loaded at the first call. The test program ends if the module is missing.
[[nodiscard]] HMODULE module();
[[nodiscard]] std::wstring modulePath();
/// An exported function.
template <class Function>
[[nodiscard]] Function exported(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module(), name)));
}
using ExportedFunction = HRESULT(WINAPI*)();

HRESULT getClassObject(REFCLSID clsid, REFIID iid, void** object);
HRESULT createInstance(REFCLSID clsid, REFIID iid, void** object);
/// A new object; null after a failure.
template <class Interface>
[[nodiscard]] ComPtr<Interface> createInstance(REFCLSID clsid) {
    ComPtr<Interface> object;
    createInstance(clsid, __uuidof(Interface), reinterpret_cast<void**>(object.GetAddressOf()));
    return object;
}
/// DllCanUnloadNow.
[[nodiscard]] HRESULT canUnloadNow();

/// A member's number; DISPID_UNKNOWN for an unknown name.
[[nodiscard]] DISPID idOf(IDispatch* object, const wchar_t* name);
/// `args` in the order of the declaration. The last of them are named arguments, with these numbers in their order.
Outcome invoke(IDispatch* object, DISPID id, WORD flags, std::vector<Var> args, std::vector<DISPID> named = {});
/// The same by the member's name.
Outcome call(IDispatch* object, const wchar_t* name, std::vector<Var> args = {});
Outcome get(IDispatch* object, const wchar_t* name, std::vector<Var> args = {});
/// The value last.
Outcome put(IDispatch* object, const wchar_t* name, std::vector<Var> args);

/// Two interface pointers of one object.
[[nodiscard]] bool sameObject(IUnknown* a, IUnknown* b);
/// The description of the error information of the last call; the information is removed.
[[nodiscard]] std::wstring takeErrorText(GUID* iid = nullptr);

}  // namespace kv::test
