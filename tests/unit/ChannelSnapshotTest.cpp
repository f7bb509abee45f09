// The snapshot compared with the records themselves after any sequence of changes.
#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "channels/ChannelStore.h"
#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"

namespace kv::channels {
namespace {

using control::PlainSlot;
using control::QuietSlot;

class ChannelSnapshotTest : public ::testing::Test {
  protected:
    bool oneIn(unsigned n) { return random_() % n == 0; }
    std::size_t upTo(std::size_t n) { return random_() % n; }
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }

    void fill(FreqSlotFields& f) {
        f.dFreq = oneIn(20) ? -1.0 : between(100.0, 200.0);
        f.dFreqLo = f.dFreq - between(0.0, 2.0);
        f.dFreqHi = f.dFreq + between(0.0, 2.0);
        if (oneIn(20))
            std::swap(f.dFreqLo, f.dFreqHi);
        if (oneIn(30))
            f.dFreqHi = oneIn(2) ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
        if (oneIn(50))
            f.dFreqLo = -1e9;
        f.dPwrDBM = between(-140.0, 20.0);
        f.lColor = static_cast<std::uint32_t>(random_());
        f.lColorLine = static_cast<std::uint32_t>(random_());
        f.bVisible = !oneIn(8);
        f.bDrawn = oneIn(2);
    }

    util::Ref<FreqSlotBase> add(ChannelKind kind, FreqSlotBase* made) {
        const util::Ref<FreqSlotBase> slot(made);
        fill(slot->fields());
        slot->fields().sKey = (kind == ChannelKind::TX ? L"TX" : L"RX") + std::to_wstring(++lastKey_);
        std::int32_t index = 0;
        store_.add(kind, FreqSlotRef(made), index);
        return slot;
    }
    void addQuiet(ChannelKind kind) { add(kind, new QuietSlot); }

    void remove(ChannelKind kind, std::int32_t index) {
        const FreqSlotRef channel = store_.at(kind, index);
        if (!channel)
            return;
        // Not through the member, because reading it runs the host's code.
        const std::wstring key = std::as_const(static_cast<FreqSlotBase&>(*channel)).fields().sKey;
        try {
            static_cast<void>(store_.closeGap(kind, index));
            store_.forgetKey(key);
        } catch (const util::RuntimeError&) {
            // The host's code has changed the keys meanwhile; the store continues with what is left.
        }
    }

    void changeAny(ChannelKind kind) {
        const auto count = static_cast<std::size_t>(store_.count(kind));
        if (count == 0)
            return;
        auto& slot = static_cast<FreqSlotBase&>(*store_.at(kind, static_cast<std::int32_t>(upTo(count))));
        switch (upTo(6)) {
            case 0:
                slot.setDFreq(between(100.0, 300.0));
                break;
            case 1:
                slot.setDFreqHi(between(100.0, 300.0));
                break;
            case 2:
                slot.setIFillStyle(static_cast<std::int16_t>(upTo(9)));
                break;
            case 3:
                slot.setBDrawn(oneIn(2));
                break;
            case 4:
                slot.setDFreqLo(between(0.0, 200.0));
                break;
            default: {
                const std::wstring key = slot.sKey();
                fill(slot.fields());
                slot.fields().sKey = key;
            }
        }
    }

    void act(ChannelKind kind, bool mayClear) {
        const auto count = static_cast<std::size_t>(store_.count(kind));
        switch (upTo(12)) {
            case 0:
            case 1:
            case 2:
                changeAny(kind);
                break;
            case 3:
            case 4:
                if (count != 0)
                    remove(kind, static_cast<std::int32_t>(upTo(count)));
                break;
            case 5:
                if (mayClear && oneIn(4))
                    store_.clear(kind);
                break;
            case 6:
                // A drawing marks what it has drawn.
                if (count != 0 && store_.snapshot(kind).update()) {
                    ChannelSnapshot& snapshot = store_.snapshot(kind);
                    const std::size_t position = snapshot.positionOf(static_cast<std::int32_t>(upTo(count)));
                    if (snapshot.records()[position].bVisible)
                        snapshot.markDrawn(position);
                }
                break;
            case 7:
                for (int i = 0; i < 40; ++i)
                    addQuiet(kind);
                break;
            default:
                addQuiet(kind);
        }
    }

    bool isForeign(ChannelKind kind, std::size_t place) const { return !store_.list(kind).at(place)->peek(); }

    void compare(ChannelKind kind) {
        ChannelSnapshot& snapshot = store_.snapshot(kind);
        ASSERT_TRUE(snapshot.update());
        ASSERT_LE(snapshot.size() - static_cast<std::size_t>(store_.count(kind)), 256 + snapshot.size() / 8);
        const std::uint64_t derived = snapshot.derivedRecords();
        ASSERT_TRUE(snapshot.update());
        ASSERT_EQ(snapshot.derivedRecords(), derived) << "derived again without a change";
        ChannelSnapshot::PowerMap map;
        map.pixels.scale = {0.0, 20.0, 1.0, -150.0};
        map.pixels.size = {100, static_cast<int>(90 + upTo(2))};
        map.floor = -130.0;
        map.markHeight = oneIn(2) ? 10.0 : 5.0;
        const std::vector<std::int16_t>& rows = snapshot.rows(map);
        std::int32_t index = 0;
        ASSERT_EQ(rows.size(), snapshot.size());
        for (std::size_t position = 0; position < snapshot.size(); ++position) {
            if (!snapshot.isLive(position)) {
                ASSERT_FALSE(snapshot.records()[position].bVisible);
                ASSERT_EQ(rows[position], ChannelSnapshot::kNotShown);
                continue;
            }
            ASSERT_EQ(snapshot.indexOf(position), index);
            ASSERT_EQ(snapshot.positionOf(index), position);
            ASSERT_LT(index, store_.count(kind));
            ASSERT_EQ(snapshot.foreign().contains(position), isForeign(kind, position));
            if (isForeign(kind, position)) {
                ++index;
                continue;
            }
            const DrawRecord fresh = store_.at(kind, index)->drawRecord();
            ASSERT_NO_FATAL_FAILURE(compare(snapshot, position, fresh, rows[position], map)) << position;
            ++index;
        }
        ASSERT_EQ(index, store_.count(kind));
    }

    static void compare(const ChannelSnapshot& snapshot, std::size_t position, const DrawRecord& fresh,
                        std::int16_t row, const ChannelSnapshot::PowerMap& map) {
        const DrawRecord& known = snapshot.records()[position];
        const auto same = [](double a, double b) {
            return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
        };
        ASSERT_TRUE(same(known.dFreq, fresh.dFreq) && same(known.dFreqLo, fresh.dFreqLo) &&
                    same(known.dFreqHi, fresh.dFreqHi) && same(known.dPwrDBM, fresh.dPwrDBM));
        ASSERT_EQ(known.lColor, fresh.lColor);
        ASSERT_EQ(known.lColorLine, fresh.lColorLine);
        ASSERT_EQ(known.iFillStyle, fresh.iFillStyle);
        ASSERT_EQ(known.bVisible, fresh.bVisible);
        // The copy may lack the drawn mark of a visible record, but it must not keep one that was taken off.
        ASSERT_TRUE(known.bDrawn == fresh.bDrawn || (fresh.bVisible && fresh.bDrawn));
        const ChannelSnapshot::Block& block = snapshot.blocks()[position / ChannelSnapshot::kBlock];
        ASSERT_TRUE(block.hasUnknownStyle || (fresh.iFillStyle >= 0 && fresh.iFillStyle <= 7));
        if (!isShown(fresh)) {
            ASSERT_EQ(row, ChannelSnapshot::kNotShown);
            return;
        }
        ASSERT_TRUE(fresh.bVisible || block.hasHiddenButDrawn);
        ASSERT_TRUE(known.bDrawn || block.undrawn);
        if (!isRegular(fresh)) {
            ASSERT_EQ(row, ChannelSnapshot::kIrregular);
            ASSERT_TRUE(block.hasIrregular);
            return;
        }
        const double top = fresh.dPwrDBM > map.floor ? fresh.dPwrDBM : map.markHeight;
        const double exact = std::floor((top - 20.0) / -150.0 * map.pixels.size.height + 0.5);
        ASSERT_EQ(row, static_cast<int>(std::max(exact, 0.0)));
        ASSERT_LE(block.lowest, fresh.dFreqLo);
        ASSERT_GE(block.highest, fresh.dFreqHi);
        ASSERT_GE(block.widest, fresh.dFreqHi - fresh.dFreqLo);
        const ChannelSnapshot::Grid& grid = snapshot.grid(position / ChannelSnapshot::kBlock);
        const double low = grid.origin + grid.unit * snapshot.lowOnGrid()[position];
        ASSERT_NEAR(low, fresh.dFreqLo, grid.unit * 1.01);
        ASSERT_LE(low, fresh.dFreqLo + grid.unit * 0.01);
    }

    std::mt19937 random_{19570104};
    ChannelStore store_;
    int lastKey_ = 0;
};

TEST_F(ChannelSnapshotTest, AgreesWithAFreshScanAfterAnySequenceOfChanges) {
    for (int round = 0; round < 4000; ++round) {
        const ChannelKind kind = oneIn(2) ? ChannelKind::TX : ChannelKind::RX;
        for (std::size_t steps = upTo(6); steps > 0; --steps)
            act(kind, true);
        if (store_.count(kind) > 700)
            store_.clear(kind);
        ASSERT_NO_FATAL_FAILURE(compare(kind)) << "round " << round;
    }
}

TEST_F(ChannelSnapshotTest, AgreesWithAFreshScanWhenTheHostsCodeRunsDuringARemoval) {
    for (int round = 0; round < 1500; ++round) {
        store_.clear(ChannelKind::TX);
        store_.forgetAllKeys();
        for (std::size_t count = 2 + upTo(6); count > 0; --count)
            addQuiet(ChannelKind::TX);
        auto* const foreign = new PlainSlot;
        add(ChannelKind::TX, foreign);
        const util::Ref<PlainSlot> held(foreign);
        for (std::size_t count = upTo(4); count > 0; --count)
            addQuiet(ChannelKind::TX);
        int left = 2;
        foreign->onRead = [&](std::string_view member) {
            if (member != "sKey" || left-- <= 0)
                return;
            act(ChannelKind::TX, true);
            EXPECT_TRUE(store_.snapshot(ChannelKind::TX).update());
            act(ChannelKind::TX, true);
        };
        for (std::size_t steps = 1 + upTo(3); steps > 0; --steps) {
            const auto count = static_cast<std::size_t>(store_.count(ChannelKind::TX));
            if (count != 0)
                remove(ChannelKind::TX, static_cast<std::int32_t>(upTo(count)));
            ASSERT_NO_FATAL_FAILURE(compare(ChannelKind::TX)) << "round " << round;
        }
        foreign->onRead = nullptr;
    }
}

TEST_F(ChannelSnapshotTest, AForeignRecordIsWhatADrawingHasPut) {
    addQuiet(ChannelKind::TX);
    add(ChannelKind::TX, new PlainSlot);
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    EXPECT_FALSE(snapshot.records()[1].bVisible);
    DrawRecord record;
    record.dFreq = record.dFreqLo = 10.0;
    record.dFreqHi = 1000.0;
    snapshot.putForeign(1, record);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.records()[1].dFreq, 10.0);
    EXPECT_EQ(snapshot.blocks()[0].lowest, 10.0);
    EXPECT_EQ(snapshot.blocks()[0].highest, 1000.0);
    EXPECT_NE(snapshot.range().low, 10.0) << "its extremes are asked for, not remembered";
}

TEST_F(ChannelSnapshotTest, AChangeDerivesTheBlockAroundItAgain) {
    std::vector<util::Ref<FreqSlotBase>> slots;
    for (int i = 0; i < 1000; ++i)
        slots.push_back(add(ChannelKind::TX, new QuietSlot));
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    const std::uint64_t before = snapshot.derivedRecords();
    slots[300]->setDFreq(5.0);
    slots[310]->set<&FreqSlotFields::dPwrDBM>(5.0);
    slots[999]->set<&FreqSlotFields::sLabel>(std::wstring(L"another"));
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.derivedRecords() - before, ChannelSnapshot::kBlock);
    remove(ChannelKind::TX, 600);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.derivedRecords() - before, ChannelSnapshot::kBlock) << "a hole hides, and needs nothing else";
}

TEST_F(ChannelSnapshotTest, AllBandsAtAFrequencyAreFoundAfterAnySequenceOfChanges) {
    for (int round = 0; round < 3000; ++round) {
        for (std::size_t steps = upTo(6); steps > 0; --steps)
            act(ChannelKind::RX, oneIn(50));
        ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::RX);
        const double lowest = between(90.0, 210.0);
        std::vector<std::int32_t> expected;
        const ChannelList& list = store_.list(ChannelKind::RX);
        for (std::size_t place = 0; place < list.places(); ++place) {
            const FreqSlotFields* const own = list.at(place) ? list.at(place)->peek() : nullptr;
            if (own && own->dFreqLo <= lowest + 1.0 && own->dFreqHi >= lowest)
                expected.push_back(static_cast<std::int32_t>(place));
        }
        std::vector<std::int32_t> found = snapshot.placesAt(lowest, lowest + 1.0);
        std::ranges::sort(found);
        ASSERT_EQ(found, expected) << "round " << round;
    }
}

TEST_F(ChannelSnapshotTest, TheSecondSearchOfManyRecordsTakesFewSteps) {
    for (int i = 0; i < 3000; ++i) {
        FreqSlotFields& fields = add(ChannelKind::TX, new QuietSlot)->fields();
        fields.dFreqLo = i;
        fields.dFreqHi = i + 0.5;
    }
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    EXPECT_EQ(snapshot.placesAt(1500.1, 1500.2), std::vector<std::int32_t>({1500}));
    EXPECT_EQ(snapshot.searchSteps(), 3000U) << "an index for a single search is not worth it";
    EXPECT_EQ(snapshot.placesAt(1500.1, 1500.2), std::vector<std::int32_t>({1500}));
    EXPECT_LT(snapshot.searchSteps(), 100U);
    addQuiet(ChannelKind::TX);
    remove(ChannelKind::TX, 7);
    static_cast<FreqSlotBase&>(*store_.at(ChannelKind::TX, 9)).setDFreqHi(2000.0);
    EXPECT_EQ(snapshot.placesAt(1500.1, 1500.2).size(), 2U);
    EXPECT_LT(snapshot.searchSteps(), 100U) << "the index is kept";
}

TEST_F(ChannelSnapshotTest, ARemovedRecordLeavesAHoleAndTheOthersTheirPositions) {
    for (int i = 0; i < 10; ++i)
        addQuiet(ChannelKind::TX);
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    remove(ChannelKind::TX, 3);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.size(), 10U);
    EXPECT_FALSE(snapshot.isLive(3));
    EXPECT_EQ(snapshot.positionOf(3), 4U);
}

TEST_F(ChannelSnapshotTest, ManyHolesAreClosed) {
    for (int i = 0; i < 500; ++i)
        addQuiet(ChannelKind::TX);
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    for (int i = 0; i < 400; ++i)
        remove(ChannelKind::TX, 0);
    ASSERT_TRUE(snapshot.update());
    EXPECT_LT(snapshot.size(), 500U);
    EXPECT_EQ(snapshot.size(), store_.list(ChannelKind::TX).places());
    static_cast<FreqSlotBase&>(*store_.at(ChannelKind::TX, 50)).setDFreq(7.0);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.records()[snapshot.positionOf(50)].dFreq, 7.0) << "the record knows its new place";
}

TEST_F(ChannelSnapshotTest, AClearedStoreLeavesNothing) {
    for (int i = 0; i < 300; ++i)
        addQuiet(ChannelKind::TX);
    ChannelSnapshot& snapshot = store_.snapshot(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.rows({}).size(), 300U);
    store_.clear(ChannelKind::TX);
    ASSERT_TRUE(snapshot.update());
    EXPECT_EQ(snapshot.size(), 0U);
    EXPECT_TRUE(snapshot.blocks().empty());
    EXPECT_TRUE(snapshot.lowOnGrid().empty());
    EXPECT_TRUE(snapshot.rows({}).empty());
}

}  // namespace
}  // namespace kv::channels
