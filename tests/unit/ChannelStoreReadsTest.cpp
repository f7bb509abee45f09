// How often the store reads its records. A removal from many channels may not read all of them.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "channels/ChannelStore.h"
#include "tests/unit/QuietSlot.h"
#include "util/RuntimeError.h"

namespace kv::channels {
namespace {

class AskedSlot final : public control::QuietSlot {
  public:
    double dFreqHi() override { return (++edges, QuietSlot::dFreqHi()); }
    std::wstring sKey() override { return (++keys, QuietSlot::sKey()); }
    [[nodiscard]] const FreqSlotFields* peek() const noexcept override { return (++peeks, QuietSlot::peek()); }

    static inline int edges = 0;
    static inline int keys = 0;
    static inline int peeks = 0;
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

TEST_F(ChannelStoreReadsTest, RemovingAChannelAtAnEndReadsNoRecord) {
    store.RecalcTXFreqRange();
    EXPECT_EQ(readsOfRemoval(0), (Reads{0, 0}));
    EXPECT_EQ(readsOfRemoval(kCount - 2), (Reads{0, 0}));
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

/// How often records of our own class are looked at, of a thousand: what takes part is counted, not the list.
class ChannelStoreLooksTest : public ChannelStoreReadsTest {
  protected:
    static constexpr int kMany = 1000;
    static constexpr int kFew = 12;

    ChannelStoreLooksTest() {
        for (int i = kCount; i < kMany; ++i)
            add(400.0 + i);
        store.RecalcTXFreqRange();
    }
    template <class Body>
    int looks(Body&& body) {
        AskedSlot::peeks = 0;
        body();
        return AskedSlot::peeks;
    }
    int looksOfRemoval(std::int32_t index) {
        return looks([&] { failed = store.closeGap(ChannelKind::TX, index) != nullptr; });
    }
    AskedSlot& at(std::int32_t index) { return static_cast<AskedSlot&>(*store.at(ChannelKind::TX, index)); }
    /// False when the key was taken.
    bool addKeyed(ChannelKind kind, const std::wstring& key, FreqSlotBase* made = new AskedSlot) {
        const util::Ref<FreqSlotBase> slot(made);
        slot->fields().dFreq = 5.0;
        slot->fields().sKey = key;
        std::int32_t index = 0;
        try {
            store.add(kind, FreqSlotRef(made), index);
        } catch (const util::RuntimeError&) {
            return false;
        }
        return true;
    }
    bool failed = false;
};

TEST_F(ChannelStoreLooksTest, AddingATakenKeyLooksAtTheNewRecordAlone) {
    EXPECT_LE(looks([&] { EXPECT_FALSE(addKeyed(ChannelKind::RX, L"TX5")); }), kFew);
    EXPECT_LE(looks([&] { EXPECT_TRUE(addKeyed(ChannelKind::RX, L"")); }), kFew);
    EXPECT_LE(looks([&] { EXPECT_FALSE(addKeyed(ChannelKind::RX, L"")); }), kFew);
    EXPECT_LE(looks([&] { EXPECT_TRUE(addKeyed(ChannelKind::RX, L"RX1", new control::CountedSlot)); }), kFew);
    EXPECT_LE(looksOfRemoval(10), kFew);
    EXPECT_FALSE(failed);
}

TEST_F(ChannelStoreLooksTest, ADuplicateIsLookedAtAndNotTheOthers) {
    EXPECT_FALSE(addKeyed(ChannelKind::TX, L"TX500"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_LE(looksOfRemoval(10), kFew);
        EXPECT_FALSE(failed);
    }
    EXPECT_EQ(store.indexOfKey(L"TX500"), kMany - 3) << "the later channel has taken the key";
}

TEST_F(ChannelStoreLooksTest, AChangedKeyIsLookedUpAndNotTheOthers) {
    at(500).set<&FreqSlotFields::sKey>(std::wstring(L"TX renamed"));
    for (int i = 0; i < 3; ++i) {
        EXPECT_LE(looksOfRemoval(10), kFew);
        EXPECT_TRUE(failed);
    }
    at(497).set<&FreqSlotFields::sKey>(std::wstring(L"TX500"));
    EXPECT_LE(looksOfRemoval(10), kFew);
    EXPECT_FALSE(failed) << "the old key is known";
    EXPECT_EQ(store.indexOfKey(L"TX500"), 496);
}

TEST_F(ChannelStoreLooksTest, AForeignRecordIsAskedAndNotTheOthersLookedAt) {
    EXPECT_TRUE(addKeyed(ChannelKind::TX, L"TX foreign", new control::CountedSlot));
    EXPECT_LE(looksOfRemoval(10), kFew);
    EXPECT_EQ(store.indexOfKey(L"TX foreign"), kMany - 1);
    EXPECT_LE(looksOfRemoval(kMany - 1), kFew) << "it leaves";
    EXPECT_LE(looksOfRemoval(10), kFew);
}

TEST_F(ChannelStoreLooksTest, ForgettingAKeyLooksAtNoRecord) {
    EXPECT_EQ(looks([&] { store.forgetKey(L"TX700"); }), 0);
    EXPECT_LE(looksOfRemoval(10), kFew);
    EXPECT_TRUE(failed) << "a key is missing";
}

TEST_F(ChannelStoreLooksTest, AfterAClearTheSameKeysLookAtTheNewRecordsAlone) {
    EXPECT_TRUE(addKeyed(ChannelKind::RX, L"RX1"));
    for (int round = 0; round < 5; ++round) {
        EXPECT_EQ(looks([&] { store.clear(ChannelKind::RX); }), 0);
        EXPECT_LE(looks([&] { EXPECT_FALSE(addKeyed(ChannelKind::RX, L"RX1")); }), kFew);
        EXPECT_LE(looks([&] { EXPECT_TRUE(addKeyed(ChannelKind::RX, L"RX fresh" + std::to_wstring(round))); }), kFew);
        EXPECT_LE(looksOfRemoval(10), kFew);
    }
}

TEST_F(ChannelStoreLooksTest, ExtremesLookAtWhatHasChanged) {
    at(700).setDFreqHi(5000.0);
    EXPECT_EQ(looks([&] { store.RecalcTXFreqRange(); }), 1);
    EXPECT_EQ(store.extremes().dTXFreqMax, 5000.0);
    EXPECT_LE(looksOfRemoval(700), kFew);
    EXPECT_EQ(looks([&] { store.RecalcTXFreqRange(); }), 0);
    EXPECT_EQ(store.extremes().dTXFreqMax, 400.0 + kMany - 1);
    EXPECT_EQ(looks([&] { store.rederiveExtremes(); }), 0);
}

TEST_F(ChannelStoreLooksTest, AMatchAfterAChangeLooksAtWhatHasChanged) {
    for (int i = 0; i < kMany; ++i)
        ASSERT_TRUE(addKeyed(ChannelKind::RX, L"RX" + std::to_wstring(i)));
    const util::Ref<AskedSlot> wanted(new AskedSlot);
    wanted->fields().dFreq = 7.0;
    wanted->fields().dFreqLo = wanted->fields().dFreqHi = 7.0;
    wanted->fields().sFreqUnits = L"MHz";
    wanted->fields().sBWUnits = L"KHz";
    EXPECT_EQ(store.findMatchRX(*wanted), kInvalid);
    auto& changed = static_cast<AskedSlot&>(*store.at(ChannelKind::RX, 300));
    changed.set<&FreqSlotFields::dPwrDBM>(3.0);
    at(5).setDFreq(9.0);
    EXPECT_LE(looks([&] { EXPECT_EQ(store.findMatchRX(*wanted), kInvalid); }), 2);
    changed.fields().dFreq = changed.fields().dFreqLo = changed.fields().dFreqHi = 7.0;
    EXPECT_LE(looks([&] { EXPECT_EQ(store.findMatchRX(*wanted), 300); }), kFew);
    EXPECT_FALSE(store.closeGap(ChannelKind::RX, 10));
    EXPECT_LE(looks([&] { EXPECT_EQ(store.findMatchRX(*wanted), 299); }), kFew);
    EXPECT_TRUE(addKeyed(ChannelKind::RX, L"RX foreign", new control::CountedSlot));
    EXPECT_LE(looks([&] { EXPECT_EQ(store.findMatchRX(*wanted), 299); }), kFew);
}

}  // namespace
}  // namespace kv::channels
