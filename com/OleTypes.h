// Automation strings and variants with an owner.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

namespace kv::com {

/// The text of a BSTR, including null characters inside it; a null BSTR is the empty text. Throws std::bad_alloc.
[[nodiscard]] inline std::wstring toWide(BSTR text) {
    return text ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

/// A new BSTR that the caller frees; never null. Throws std::bad_alloc.
[[nodiscard]] BSTR newBstr(std::wstring_view text);

/// Owner of a BSTR.
class Bstr {
  public:
    Bstr() noexcept = default;
    explicit Bstr(std::wstring_view text) : text_(newBstr(text)) {}
    Bstr(Bstr&& other) noexcept : text_(other.detach()) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    [[nodiscard]] BSTR get() const noexcept { return text_; }
    [[nodiscard]] std::wstring str() const { return toWide(text_); }
    /// For out parameters. Frees the text that it owns.
    [[nodiscard]] BSTR* put() noexcept {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    /// For in-out parameters.
    [[nodiscard]] BSTR* address() noexcept { return &text_; }
    /// Transfers the BSTR to the caller.
    [[nodiscard]] BSTR detach() noexcept { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

/// A VARIANT that clears itself. It has the layout of a VARIANT, so that an array of them can be passed as arguments.
class Variant : public VARIANT {
  public:
    Variant() noexcept { VariantInit(this); }
    explicit Variant(bool value) noexcept : Variant() {
        vt = VT_BOOL;
        boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    explicit Variant(short value) noexcept : Variant() {
        vt = VT_I2;
        iVal = value;
    }
    explicit Variant(int value) noexcept : Variant() {
        vt = VT_I4;
        lVal = value;
    }
    explicit Variant(long value) noexcept : Variant(static_cast<int>(value)) {}
    explicit Variant(double value) noexcept : Variant() {
        vt = VT_R8;
        dblVal = value;
    }
    explicit Variant(std::wstring_view value) : Variant() {
        bstrVal = newBstr(value);
        vt = VT_BSTR;
    }
    explicit Variant(const wchar_t* value) : Variant(std::wstring_view(value)) {}
    explicit Variant(const std::wstring& value) : Variant(std::wstring_view(value)) {}
    /// Shares the object; NULL is "Nothing".
    explicit Variant(IDispatch* value) noexcept : Variant() {
        vt = VT_DISPATCH;
        pdispVal = value;
        if (value)
            value->AddRef();
    }
    /// The value that callers pass for an argument that they leave out.
    [[nodiscard]] static Variant missing() noexcept {
        Variant result;
        result.vt = VT_ERROR;
        result.scode = DISP_E_PARAMNOTFOUND;
        return result;
    }
    Variant(const Variant& other);  ///< throws std::bad_alloc
    Variant(Variant&& other) noexcept : VARIANT(static_cast<const VARIANT&>(other)) { other.vt = VT_EMPTY; }
    Variant& operator=(Variant other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Variant() { VariantClear(this); }

    /// Moves the value into an out parameter, whose former content is ignored.
    void moveTo(VARIANT* out) noexcept {
        *out = *this;
        vt = VT_EMPTY;
    }
};
static_assert(sizeof(Variant) == sizeof(VARIANT));

/// Converts `source` to `type` and stores it in `destination`, which may be `source`. VT_UI4 is the type of colors:
/// system colors are negative as the signed numbers of most hosts, so negative numbers are taken bit for bit. Errors:
/// DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, E_OUTOFMEMORY; they leave the destination unchanged.
[[nodiscard]] HRESULT coerce(VARIANT& destination, const VARIANT& source, VARTYPE type, LCID locale) noexcept;

}  // namespace kv::com
