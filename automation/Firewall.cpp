#include "automation/Firewall.h"

#include <wrl/client.h>

#include <new>

#include "kvBandscope.h"

namespace kv::automation {

namespace {

using Microsoft::WRL::ComPtr;

void setErrorInfo(REFIID iid, const std::wstring& text) {
    ComPtr<ICreateErrorInfo> create;
    if (FAILED(CreateErrorInfo(create.GetAddressOf())))
        return;
    // The system copies the texts; its parameters only lack a const.
    std::wstring description = text;
    std::wstring source = iid == IID__FreqSlot ? L"kvBandscope.FreqSlot" : L"kvBandscope.kvBandscope";
    create->SetGUID(iid);
    create->SetSource(source.data());
    create->SetDescription(description.data());
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(create.As(&info)))
        SetErrorInfo(0, info.Get());
}

}  // namespace

HRESULT reportCurrentException(REFIID iid) noexcept {
    try {
        throw;
    } catch (const util::RuntimeError& error) {
        try {
            setErrorInfo(iid, error.text());
        } catch (...) {
            // The number still travels when there is no memory for the text.
        }
        return hresultOf(error.number());
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace kv::automation
