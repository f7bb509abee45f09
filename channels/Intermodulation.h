// Which channels are intermodulation products: hosts hand them over as TX channels with marked labels.
#pragma once

#include <string_view>

namespace kv::channels {

/// A label that holds both "Intermod Product [" and "order product]", in that case; the host writes the order between.
[[nodiscard]] bool isIntermodProduct(std::wstring_view sLabel) noexcept;

}  // namespace kv::channels
