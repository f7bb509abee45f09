// Indexes of the items that are left of a list, and back to their positions.
#include "channels/RankedBits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace kv::channels {
namespace {

TEST(RankedBits, WithoutSetBitsPositionsAreRanks) {
    const RankedBits bits;
    EXPECT_EQ(bits.count(), 0U);
    EXPECT_FALSE(bits.test(0));
    for (const std::size_t position : {0U, 7U, 500'000U}) {
        EXPECT_EQ(bits.clearBefore(position), position);
        EXPECT_EQ(bits.positionOfClear(position), position);
    }
}

/// Compares the set with the sorted positions of its clear bits, up to `end`.
void expectClear(const RankedBits& bits, const std::vector<std::size_t>& clear, std::size_t end) {
    ASSERT_EQ(bits.count(), end - clear.size());
    for (std::size_t rank = 0; rank < clear.size(); ++rank) {
        ASSERT_FALSE(bits.test(clear[rank]));
        ASSERT_EQ(bits.clearBefore(clear[rank]), rank);
        ASSERT_EQ(bits.positionOfClear(rank), clear[rank]);
    }
    ASSERT_EQ(bits.clearBefore(end + 5000), clear.size() + 5000);
    ASSERT_EQ(bits.positionOfClear(clear.size() + 5000), end + 5000);
}

TEST(RankedBits, AgreeWithAListFromWhichItemsAreRemovedAtRandom) {
    std::mt19937 random(20261121);
    for (const std::size_t size : {1U, 63U, 64U, 65U, 1023U, 1024U, 1025U, 5000U}) {
        RankedBits bits;
        std::vector<std::size_t> list(size);
        std::generate(list.begin(), list.end(), [next = std::size_t{0}]() mutable { return next++; });
        while (!list.empty()) {
            // Long runs of set bits come from removing next to each other.
            const std::size_t run = std::min<std::size_t>(1 + random() % (1 + size / 8), list.size());
            const std::size_t first = random() % (list.size() - run + 1);
            for (std::size_t i = first; i < first + run; ++i) {
                bits.set(list[i]);
                ASSERT_TRUE(bits.test(list[i]));
            }
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(first),
                       list.begin() + static_cast<std::ptrdiff_t>(first + run));
            ASSERT_NO_FATAL_FAILURE(expectClear(bits, list, size));
        }
    }
}

}  // namespace
}  // namespace kv::channels
