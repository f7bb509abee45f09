// Labels that make a channel an intermodulation product.
#include "channels/Intermodulation.h"

#include <gtest/gtest.h>

namespace kv::control {
namespace {

TEST(Intermodulation, ALabelWithBothMarkersIsAProduct) {
    EXPECT_TRUE(channels::isIntermodProduct(L"Intermod Product [third order product] 2A-B"));
    EXPECT_TRUE(channels::isIntermodProduct(L"site 7: Intermod Product [5th order product]"));
}

TEST(Intermodulation, ALabelWithOnlyOneMarkerIsNone) {
    EXPECT_FALSE(channels::isIntermodProduct(L"Intermod Product [third"));
    EXPECT_FALSE(channels::isIntermodProduct(L"third order product]"));
    EXPECT_FALSE(channels::isIntermodProduct(L""));
}

TEST(Intermodulation, MarkersCountInTheirOwnCaseOnly) {
    EXPECT_FALSE(channels::isIntermodProduct(L"INTERMOD PRODUCT [third ORDER PRODUCT]"));
    EXPECT_FALSE(channels::isIntermodProduct(L"Intermod product [third order product]"));
}

}  // namespace
}  // namespace kv::control
