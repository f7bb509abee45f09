// A value as automation passes it.
#pragma once

#include "host/Com.h"

namespace kv::host {

/// Clears itself; has the layout of a VARIANT.
struct Value : VARIANT {
    Value() noexcept { VariantInit(this); }
    Value(const Value& other) noexcept : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
    Value& operator=(const Value& other) noexcept {
        VariantCopy(this, const_cast<Value*>(&other));
        return *this;
    }
    ~Value() { VariantClear(this); }

    [[nodiscard]] static Value of(LONG number) noexcept {
        Value value;
        value.vt = VT_I4;
        value.lVal = number;
        return value;
    }
    [[nodiscard]] static Value of(double number) noexcept {
        Value value;
        value.vt = VT_R8;
        value.dblVal = number;
        return value;
    }
    [[nodiscard]] static Value of(bool state) noexcept {
        Value value;
        value.vt = VT_BOOL;
        value.boolVal = state ? VARIANT_TRUE : VARIANT_FALSE;
        return value;
    }
    [[nodiscard]] static Value of(const std::wstring& text) {
        Value value;
        value.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        value.vt = VT_BSTR;
        return value;
    }
    [[nodiscard]] static Value of(IDispatch* object) noexcept {
        Value value;
        value.pdispVal = object;
        value.vt = VT_DISPATCH;
        if (object != nullptr) {
            object->AddRef();
        }
        return value;
    }
};

}  // namespace kv::host
