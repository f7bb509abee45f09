#include "com/Firewall.h"

#include <wrl/client.h>

#include <new>

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;

void setErrorInfo(const ErrorOrigin& origin, std::wstring_view text) {
    ComPtr<ICreateErrorInfo> create;
    if (FAILED(CreateErrorInfo(create.GetAddressOf())))
        return;
    // The system copies the texts, but its parameters lack a const.
    std::wstring description(text);
    create->SetGUID(origin.iid);
    if (origin.source) {
        std::wstring source = origin.source;
        create->SetSource(source.data());
    }
    create->SetDescription(description.data());
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(create.As(&info)))
        SetErrorInfo(0, info.Get());
}

HRESULT reportError(const ErrorOrigin& origin, const util::RuntimeError& error) noexcept {
    try {
        setErrorInfo(origin, error.text());
    } catch (...) {
        // Without memory for the text, the caller still gets the number.
    }
    return hresultOf(error.number());
}

}  // namespace

HRESULT reportCurrentException(const ErrorOrigin& origin) noexcept {
    try {
        throw;
    } catch (const util::RuntimeError& error) {
        return reportError(origin, error);
    } catch (const std::bad_alloc&) {
        return origin.source ? reportError(origin, util::RuntimeError(util::error_number::kOutOfMemory))
                             : E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace kv::com
