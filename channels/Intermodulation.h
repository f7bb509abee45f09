// Which channels are intermodulation products: hosts pass them as TX channels with marked labels.
#pragma once

#include <string_view>

namespace kv::channels {

class FreqSlot;
struct FreqSlotFields;

/// A label that holds both "Intermod Product [" and "order product]", in that case; hosts write the order between the
/// two.
[[nodiscard]] bool isIntermodProduct(std::wstring_view sLabel) noexcept;

/// The order of a TX channel, which is the sum of the magnitudes of its components' coefficients.
inline constexpr int kNoProduct = 0;
/// The order of a product without components. It sorts behind all others.
inline constexpr int kUnknownOrder = 0x7FFFFFFF;
[[nodiscard]] int productOrder(const FreqSlotFields& channel) noexcept;
/// The same for any class. Throws what reading the channel throws.
[[nodiscard]] int productOrder(FreqSlot& channel);

}  // namespace kv::channels
