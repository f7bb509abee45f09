#include "channels/Intermodulation.h"

#include <cstdint>
#include <cstdlib>

#include "channels/FreqSlot.h"

namespace kv::channels {

namespace {

/// At most 32,767 components of at most 32,768: the sum fits.
int magnitude(const ImComponent& component) noexcept {
    return std::abs(static_cast<int>(component.coefficient));
}

}  // namespace

bool isIntermodProduct(std::wstring_view sLabel) noexcept {
    return sLabel.find(L"order product]") != std::wstring_view::npos &&
           sLabel.find(L"Intermod Product [") != std::wstring_view::npos;
}

int productOrder(const FreqSlotFields& channel) noexcept {
    if (!isIntermodProduct(channel.sLabel))
        return kNoProduct;
    int order = 0;
    for (const ImComponent& component : channel.components)
        order += magnitude(component);
    return order > 0 ? order : kUnknownOrder;
}

int productOrder(FreqSlot& channel) {
    if (const FreqSlotFields* const own = channel.peek())
        return productOrder(*own);
    if (!isIntermodProduct(channel.sLabel()))
        return kNoProduct;
    int order = 0;
    const std::int16_t count = channel.nIMComps();
    for (std::int16_t i = 0; i < count; ++i)
        order += magnitude(channel.imComponent(i));
    return order > 0 ? order : kUnknownOrder;
}

}  // namespace kv::channels
