// Labels that make a channel an intermodulation product.
#include "channels/Intermodulation.h"

#include <gtest/gtest.h>

namespace kv::channels {
namespace {

TEST(Intermodulation, ALabelWithBothMarkersInTheirCaseIsAProduct) {
    for (const wchar_t* label :
         {L"Intermod Product [third order product] 2A-B", L"site 7: Intermod Product [5th order product]"})
        EXPECT_TRUE(isIntermodProduct(label));
    for (const wchar_t* label : {L"", L"Intermod Product [third", L"third order product]",
                                 L"INTERMOD PRODUCT [third ORDER PRODUCT]", L"Intermod product [third order product]"})
        EXPECT_FALSE(isIntermodProduct(label)) << testing::PrintToString(label);
}

}  // namespace
}  // namespace kv::channels
