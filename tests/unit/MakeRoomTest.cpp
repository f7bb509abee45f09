// Memory is reserved exactly for large growth only.
#include "channels/MakeRoom.h"

#include <gtest/gtest.h>

namespace kv::channels {
namespace {

TEST(MakeRoom, GrowthByMoreThanHalfIsReservedExactly) {
    std::vector<int> list(100);
    list.shrink_to_fit();
    makeRoom(list, 150);
    EXPECT_EQ(list.capacity(), 100U);
    makeRoom(list, 151);
    EXPECT_EQ(list.capacity(), 151U);
    EXPECT_EQ(list.size(), 100U);
}

}  // namespace
}  // namespace kv::channels
