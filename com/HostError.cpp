#include "com/HostError.h"

#include <ocidl.h>
#include <wrl/client.h>

#include "com/OleTypes.h"
#include "util/RuntimeError.h"

namespace kv::com {

namespace {

using Microsoft::WRL::ComPtr;
using util::RuntimeError;

constexpr unsigned long kRuntimeErrorMask = 0xFFFF0000UL;
constexpr unsigned long kRuntimeErrorBase = 0x800A0000UL;

int errorNumberOf(HRESULT hr) noexcept {
    const auto bits = static_cast<unsigned long>(hr);
    if ((bits & kRuntimeErrorMask) == kRuntimeErrorBase && (bits & 0xFFFFUL) != 0)
        return static_cast<int>(bits & 0xFFFFUL);
    switch (hr) {
        case DISP_E_MEMBERNOTFOUND:
        case DISP_E_UNKNOWNNAME:
            return util::error_number::kObjectLacksMember;
        case DISP_E_TYPEMISMATCH:
            return util::error_number::kTypeMismatch;
        case DISP_E_OVERFLOW:
            return util::error_number::kOverflow;
        case DISP_E_BADINDEX:
            return util::error_number::kSubscriptOutOfRange;
        case E_OUTOFMEMORY:
            return util::error_number::kOutOfMemory;
        default:
            return util::error_number::kAutomation;
    }
}

[[noreturn]] void throwNumber(int number, const std::wstring& description) {
    if (description.empty())
        throw RuntimeError(number);
    throw RuntimeError(number, description);
}

}  // namespace

void throwHostError(HRESULT hr, const std::wstring& description) {
    throwNumber(errorNumberOf(hr), description);
}

void throwHostException(HRESULT hr, EXCEPINFO& exception) {
    if (hr == DISP_E_EXCEPTION && exception.pfnDeferredFillIn)
        exception.pfnDeferredFillIn(&exception);
    Bstr source;
    Bstr description;
    Bstr helpFile;
    *source.put() = exception.bstrSource;
    *description.put() = exception.bstrDescription;
    *helpFile.put() = exception.bstrHelpFile;
    if (hr != DISP_E_EXCEPTION)
        throwHostError(hr);
    if (exception.wCode != 0)
        throwNumber(exception.wCode, description.str());
    throwHostError(exception.scode, description.str());
}

void throwHostErrorInfo(HRESULT hr, IUnknown* object, REFIID iid) {
    ComPtr<ISupportErrorInfo> support;
    ComPtr<IErrorInfo> info;
    Bstr description;
    if (SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(support.GetAddressOf()))) &&
        support->InterfaceSupportsErrorInfo(iid) == S_OK && GetErrorInfo(0, info.GetAddressOf()) == S_OK)
        info->GetDescription(description.put());
    throwHostError(hr, description.str());
}

}  // namespace kv::com
