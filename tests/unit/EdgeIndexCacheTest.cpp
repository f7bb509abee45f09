// When an index of the band edges is built, and what it holds.
#include "channels/EdgeIndexCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kv::channels {
namespace {

FreqSlotFields band(double low, double high, const wchar_t* units = L"MHz") {
    FreqSlotFields fields;
    fields.dFreqLo = low;
    fields.dFreqHi = high;
    fields.sFreqUnits = units;
    return fields;
}

std::vector<std::int32_t> meeting(const EdgeIndex& index, double lowest, double highest) {
    std::vector<std::int32_t> positions;
    index.meet(lowest, highest, positions);
    return positions;
}

TEST(EdgeIndexCache, IsBuiltByTheSecondCallOfAVersionAndKept) {
    FreqSlotFields first = band(100.0, 110.0);
    FreqSlotFields third = band(0.2, 0.3, L"GHz");
    const std::vector<FreqSlotFields*> fields{&first, nullptr, &third};
    EdgeIndexCache cache;
    EXPECT_EQ(cache.find(1, fields), nullptr);
    const EdgeIndex* const index = cache.find(1, fields);
    ASSERT_NE(index, nullptr);
    EXPECT_THAT(meeting(*index, 105.0, 250.0), ::testing::UnorderedElementsAre(0, 2));
    EXPECT_THAT(meeting(*index, 110.0, 110.0), ::testing::ElementsAre(0));
    first.dFreqHi = 105.0;
    EXPECT_THAT(meeting(*cache.find(1, fields), 110.0, 110.0), ::testing::ElementsAre(0)) << "built again";
    EXPECT_EQ(cache.find(2, fields), nullptr);
    EXPECT_THAT(meeting(*cache.find(2, fields), 110.0, 110.0), ::testing::IsEmpty());
}

TEST(EdgeIndexCache, IsNotBuiltForAnEdgeThatOverflows) {
    FreqSlotFields good = band(100.0, 110.0);
    FreqSlotFields bad = band(1e308, 1e308, L"GHz");
    std::vector<FreqSlotFields*> fields{&good, &bad};
    EdgeIndexCache cache;
    for (int call = 0; call < 3; ++call)
        EXPECT_EQ(cache.find(1, fields), nullptr);
    fields.pop_back();
    EXPECT_EQ(cache.find(1, fields), nullptr) << "tried again without a change";
    EXPECT_EQ(cache.find(2, fields), nullptr);
    EXPECT_NE(cache.find(2, fields), nullptr);
}

}  // namespace
}  // namespace kv::channels
