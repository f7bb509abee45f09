#include "util/Product.h"

namespace kv::util::product {

std::wstring supportContact(const std::wstring& contact, const std::vector<std::wstring>& ways) {
    std::wstring known;
    for (const std::wstring& way : ways) {
        if (!way.empty())
            known += (known.empty() ? L"" : L", ") + way;
    }
    return known.empty() ? contact : contact + L" (" + known + L")";
}

}  // namespace kv::util::product
