// A set of places compared with the standard library's.
#include "channels/PlaceSet.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace kv::channels {
namespace {

std::size_t nextOf(const std::set<std::size_t>& members, std::size_t from) {
    const auto found = members.lower_bound(from);
    return found == members.end() ? PlaceSet::kNone : *found;
}

TEST(PlaceSet, AgreesWithASetAfterAnyChanges) {
    std::mt19937 random(20261122);
    for (const std::size_t size : {1U, 64U, 65U, 4096U, 4097U, 20'000U}) {
        PlaceSet set;
        set.grow(size);
        std::set<std::size_t> model;
        for (int step = 0; step < 2000; ++step) {
            const std::size_t place = random() % size;
            if (random() % 3 == 0) {
                set.erase(place);
                model.erase(place);
            } else if (random() % 500 == 0) {
                set.clear();
                model.clear();
            } else {
                set.insert(place);
                model.insert(place);
            }
            const std::size_t from = random() % (size + 2);
            ASSERT_EQ(set.next(from), nextOf(model, from)) << size;
            ASSERT_EQ(set.count(), model.size());
            ASSERT_EQ(set.contains(from), model.contains(from));
        }
    }
}

TEST(PlaceSet, WhatCannotBeAMemberIsIgnored) {
    PlaceSet set;
    set.insert(0);
    EXPECT_TRUE(set.empty());
    set.grow(10);
    set.insert(1'000'000);
    set.erase(1'000'000);
    EXPECT_TRUE(set.empty());
    EXPECT_FALSE(set.contains(1'000'000));
    EXPECT_EQ(set.next(1'000'000), PlaceSet::kNone);
}

TEST(PlaceSet, GrowingKeepsTheMembers) {
    PlaceSet set;
    set.grow(10);
    set.insert(3);
    set.grow(100'000);
    set.insert(99'999);
    set.grow(5);
    EXPECT_EQ(set.next(0), 3U);
    EXPECT_EQ(set.next(4), 99'999U);
    EXPECT_EQ(set.count(), 2U);
}

}  // namespace
}  // namespace kv::channels
