// Places and indexes of the channels of a list, and their references.
#include "channels/ChannelList.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

/// Tells how many are alive.
class LivingSlot final : public control::CountedSlot {
  public:
    LivingSlot() { ++alive; }
    static inline int alive = 0;

  private:
    ~LivingSlot() override { --alive; }
};

TEST(ChannelList, AgreesWithAPlainListAfterAnyChanges) {
    std::mt19937 random(20261122);
    ChannelList list;
    std::vector<FreqSlot*> model;
    for (int step = 0; step < 5000; ++step) {
        if (model.empty() || random() % 2 == 0) {
            list.append(FreqSlotRef(new LivingSlot));
            model.push_back(list.at(list.places() - 1));
        } else if (list.hasManyHoles()) {
            std::vector<std::pair<std::size_t, std::size_t>> moves;
            list.closeHoles([&](std::size_t from, std::size_t to) { moves.emplace_back(from, to); });
            ASSERT_EQ(list.places(), model.size());
            ASSERT_FALSE(moves.empty());
            for (const auto& [from, to] : moves)
                ASSERT_LT(to, from);
        } else {
            const std::size_t index = random() % model.size();
            const FreqSlotRef gone = list.remove(list.placeOf(index));
            ASSERT_EQ(gone.get(), model[index]);
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
        }
        ASSERT_EQ(list.size(), model.size());
        ASSERT_EQ(LivingSlot::alive, static_cast<int>(model.size()));
        if (model.empty())
            continue;
        const std::size_t index = random() % model.size();
        ASSERT_EQ(list[index], model[index]);
        const std::size_t place = list.placeOf(index);
        ASSERT_EQ(list.at(place), model[index]);
        ASSERT_EQ(list.indexOf(place), static_cast<std::int32_t>(index));
    }
}

TEST(ChannelList, ManyHolesAreMoreThan256AndAnEighthOfThePlaces) {
    ChannelList list;
    for (int i = 0; i < 400; ++i)
        list.append(FreqSlotRef(new LivingSlot));
    for (std::size_t i = 0; i < 256 + 400 / 8; ++i) {
        static_cast<void>(list.remove(i));
        EXPECT_FALSE(list.hasManyHoles());
    }
    static_cast<void>(list.remove(350));
    EXPECT_TRUE(list.hasManyHoles());
}

TEST(ChannelList, EveryChannelIsReleased) {
    {
        ChannelList list;
        for (int i = 0; i < 10; ++i)
            list.append(FreqSlotRef(new LivingSlot));
        static_cast<void>(list.remove(3));
        static_cast<void>(list.takeBack());
        EXPECT_EQ(LivingSlot::alive, 8);
        int left = 0;
        ChannelList dropped;
        dropped.swap(list);
        dropped.clear([&](FreqSlot&) {
            ++left;
            EXPECT_EQ(LivingSlot::alive, 8) << "none is released before all have left";
        });
        EXPECT_EQ(left, 8);
        EXPECT_EQ(LivingSlot::alive, 0);
        list.append(FreqSlotRef(new LivingSlot));
    }
    EXPECT_EQ(LivingSlot::alive, 0);
}

}  // namespace
}  // namespace kv::channels
