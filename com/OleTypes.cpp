#include "com/OleTypes.h"

#include <limits>
#include <new>

namespace kv::com {

BSTR newBstr(std::wstring_view text) {
    if (text.size() > std::numeric_limits<UINT>::max() / sizeof(wchar_t))
        throw std::bad_alloc();
    BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!result)
        throw std::bad_alloc();
    return result;
}

Variant::Variant(const Variant& other) : Variant() {
    // The system only reads the source, but some versions of the header declare it without const.
    if (FAILED(VariantCopy(this, const_cast<Variant*>(&other))))
        throw std::bad_alloc();
}

HRESULT coerce(VARIANT& destination, const VARIANT& source, VARTYPE type, LCID locale) noexcept {
    // The system only reads the source, but some versions of the header declare it without const.
    auto* const readable = const_cast<VARIANT*>(&source);
    Variant converted;
    HRESULT hr = VariantChangeTypeEx(&converted, readable, locale, 0, type);
    if (hr == DISP_E_OVERFLOW && type == VT_UI4) {
        hr = VariantChangeTypeEx(&converted, readable, locale, 0, VT_I4);
        if (SUCCEEDED(hr))
            converted.vt = VT_UI4;
    }
    if (FAILED(hr))
        return hr;
    VariantClear(&destination);
    converted.moveTo(&destination);
    return S_OK;
}

}  // namespace kv::com
