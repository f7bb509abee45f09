#include "channels/Intermodulation.h"

namespace kv::channels {

bool isIntermodProduct(std::wstring_view sLabel) noexcept {
    return sLabel.find(L"order product]") != std::wstring_view::npos &&
           sLabel.find(L"Intermod Product [") != std::wstring_view::npos;
}

}  // namespace kv::channels
