// How often the store reads its records. A removal from many channels may not read all of them.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "channels/ChannelStore.h"
#include "tests/unit/QuietSlot.h"

namespace kv::channels {
namespace {

class AskedSlot final : public control::QuietSlot {
  public:
    double dFreqHi() override { return (++edges, QuietSlot::dFreqHi()); }
    std::wstring sKey() override { return (++keys, QuietSlot::sKey()); }

    static inline int edges = 0;
    static inline int keys = 0;
};

class ChannelStoreReadsTest : public ::testing::Test {
  protected:
    static constexpr int kCount = 20;

    ChannelStoreReadsTest() {
        for (int i = 0; i < kCount; ++i)
            add(400.0 + i);
    }
    AskedSlot& add(double frequency) {
        const util::Ref<AskedSlot> slot(new AskedSlot);
        slot->fields().dFreq = frequency;
        slot->fields().sKey = L"TX" + std::to_wstring(store.count(ChannelKind::TX));
        std::int32_t index = 0;
        store.add(ChannelKind::TX, FreqSlotRef(slot.get()), index);
        return *slot;
    }
    struct Reads {
        int edges;
        int keys;
        friend bool operator==(const Reads&, const Reads&) = default;
    };
    /// What the removal of a channel and the ranges afterwards read.
    Reads readsOfRemoval(std::int32_t index) {
        const std::wstring key = store.at(ChannelKind::TX, index)->sKey();
        AskedSlot::edges = AskedSlot::keys = 0;
        EXPECT_FALSE(store.closeGap(ChannelKind::TX, index));
        store.forgetKey(key);
        store.RecalcTXFreqRange();
        return {AskedSlot::edges, AskedSlot::keys};
    }

    ChannelStore store;
};

TEST_F(ChannelStoreReadsTest, RemovingAChannelInsideTheRangeReadsNoRecord) {
    store.RecalcTXFreqRange();
    EXPECT_EQ(readsOfRemoval(10), (Reads{0, 0}));
    EXPECT_EQ(store.extremes().dTXFreqMax, 419.0);
}

TEST_F(ChannelStoreReadsTest, RemovingAChannelWithoutAFrequencyReadsNoRecord) {
    add(0.0);
    store.RecalcTXFreqRange();
    EXPECT_EQ(readsOfRemoval(kCount), (Reads{0, 0}));
}

TEST_F(ChannelStoreReadsTest, RemovingAChannelAtAnEndReadsTheOthersOnce) {
    store.RecalcTXFreqRange();
    EXPECT_EQ(readsOfRemoval(0), (Reads{kCount - 1, 0}));
    EXPECT_EQ(readsOfRemoval(kCount - 2), (Reads{kCount - 2, 0}));
    EXPECT_EQ(store.extremes().dTXFreqMin, 401.0);
    EXPECT_EQ(store.extremes().dTXFreqMax, 418.0);
}

TEST_F(ChannelStoreReadsTest, AKeyThatChangedInAnotherStoreCostsNoReads) {
    const util::Ref<AskedSlot> elsewhere(new AskedSlot);
    ChannelStore other;
    std::int32_t index = 0;
    other.add(ChannelKind::RX, FreqSlotRef(elsewhere.get()), index);
    elsewhere->fields().sKey = L"RX renamed";
    store.RecalcTXFreqRange();
    EXPECT_EQ(readsOfRemoval(10), (Reads{0, 0}));
}

TEST_F(ChannelStoreReadsTest, AKeyThatChangedInThisStoreIsNoticed) {
    static_cast<AskedSlot&>(*store.at(ChannelKind::TX, 15)).fields().sKey = L"TX renamed";
    EXPECT_TRUE(store.closeGap(ChannelKind::TX, 10)) << "the old key is known, the new one is not";
}

}  // namespace
}  // namespace kv::channels
