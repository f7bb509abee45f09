// Which channels are intermodulation products: hosts pass them as TX channels with marked labels.
#pragma once

#include <string_view>

namespace kv::channels {

/// A label that holds both "Intermod Product [" and "order product]", in that case; hosts write the order between the
/// two.
[[nodiscard]] bool isIntermodProduct(std::wstring_view sLabel) noexcept;

}  // namespace kv::channels
