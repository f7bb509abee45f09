#include "host/Com.h"

#include <array>
#include <cwchar>

namespace kv::host {

void check(HRESULT hr, const wchar_t* tried) {
    if (SUCCEEDED(hr)) {
        return;
    }
    std::array<wchar_t, 16> number{};
    std::swprintf(number.data(), number.size(), L"0x%08lX", static_cast<unsigned long>(hr));
    Bstr description;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.GetAddressOf()) == S_OK) {
        info->GetDescription(description.put());
    }
    throw Failure{kExitOther, std::wstring(tried) + L" failed (" + number.data() + L"). " + description.text()};
}

}  // namespace kv::host
