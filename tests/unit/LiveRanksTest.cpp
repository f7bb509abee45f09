// Ranks of what is left of a list.
#include "channels/LiveRanks.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kv::control {
namespace {

TEST(LiveRanks, NumbersAreRanksAsLongAsNobodyLeaves) {
    const channels::LiveRanks ranks;
    EXPECT_EQ(ranks.next(0), 0);
    EXPECT_EQ(ranks.next(7), 7);
    EXPECT_EQ(ranks.rank(0), 0);
    EXPECT_EQ(ranks.rank(500000), 500000);
}

TEST(LiveRanks, WhoeverStandsBehindMovesUp) {
    channels::LiveRanks ranks;
    ranks.leave(3);
    EXPECT_EQ(ranks.rank(2), 2);
    EXPECT_EQ(ranks.rank(4), 3);
    EXPECT_EQ(ranks.rank(5000), 4999);
    EXPECT_EQ(ranks.next(9), 10);
    ranks.clear();
    EXPECT_EQ(ranks.rank(4), 4);
    EXPECT_EQ(ranks.next(0), 0);
}

TEST(LiveRanks, AgreesWithAListOverRandomComingsAndGoings) {
    std::mt19937 random(20261121);
    for (int round = 0; round < 20; ++round) {
        channels::LiveRanks ranks;
        std::vector<std::int32_t> list;
        for (int step = 0; step < 400; ++step) {
            for (auto coming = random() % 40; coming > 0; --coming)
                list.push_back(ranks.next(static_cast<std::int32_t>(list.size())));
            for (auto going = random() % 20; going > 0 && !list.empty(); --going) {
                const auto place = random() % list.size();
                ranks.leave(list[place]);
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(place));
            }
            for (int look = 0; look < 8 && !list.empty(); ++look) {
                const auto place = random() % list.size();
                ASSERT_EQ(ranks.rank(list[place]), static_cast<std::int32_t>(place));
            }
        }
        for (std::size_t place = 0; place < list.size(); ++place)
            ASSERT_EQ(ranks.rank(list[place]), static_cast<std::int32_t>(place));
    }
}

}  // namespace
}  // namespace kv::control
