// The channels at a frequency, as the mouse report lists them.
#include "channels/ChannelIndex.h"

#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "tests/unit/QuietSlot.h"
#include "tests/unit/ScopeFixture.h"
#include "util/ConvertFreq.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ChannelIndexTest : public ::testing::Test {
  protected:
    SlotRef add(channels::ChannelKind kind, double low, double high, const std::wstring& units = L"MHz") {
        const SlotRef slot = makeSlot((low + high) / 2.0, 0.0, 0.0, std::to_wstring(++lastKey_));
        slot->fields().dFreqLo = low;
        slot->fields().dFreqHi = high;
        slot->fields().sFreqUnits = units;
        std::int32_t index = 0;
        store.add(kind, asChannel(slot), index);
        return slot;
    }
    std::vector<std::int32_t> at(channels::ChannelKind kind, double x, double tolerance) const {
        std::vector<std::int32_t> indices;
        channels::forEachChannelAt(store, kind, x, tolerance, [&](std::int32_t index) {
            indices.push_back(index);
            return true;
        });
        return indices;
    }

    channels::ChannelStore store;

  private:
    int lastKey_ = 0;
};

TEST_F(ChannelIndexTest, BandsThatMeetTheWidenedFrequencyAreFoundInIndexOrder) {
    add(channels::ChannelKind::TX, 400.0, 410.0);
    add(channels::ChannelKind::TX, 300.0, 500.0);
    add(channels::ChannelKind::TX, 411.0, 412.0);
    add(channels::ChannelKind::TX, 398.0, 399.0);
    EXPECT_THAT(at(channels::ChannelKind::TX, 405.0, 0.5), ElementsAre(0, 1));
    // Both ends of the widened range count.
    EXPECT_THAT(at(channels::ChannelKind::TX, 410.5, 0.5), ElementsAre(0, 1, 2));
    EXPECT_THAT(at(channels::ChannelKind::TX, 410.5, 0.25), ElementsAre(1));
    EXPECT_THAT(at(channels::ChannelKind::TX, 600.0, 1.0), IsEmpty());
}

TEST_F(ChannelIndexTest, KindsAreSeparate) {
    add(channels::ChannelKind::TX, 400.0, 410.0);
    add(channels::ChannelKind::RX, 500.0, 510.0);
    EXPECT_THAT(at(channels::ChannelKind::RX, 405.0, 1.0), IsEmpty());
    EXPECT_THAT(at(channels::ChannelKind::RX, 505.0, 1.0), ElementsAre(0));
}

TEST_F(ChannelIndexTest, EdgesAreConvertedToMegahertz) {
    add(channels::ChannelKind::RX, 0.4, 0.41, L"GHz");
    add(channels::ChannelKind::RX, 400'000.0, 410'000.0, L"KHz");
    add(channels::ChannelKind::RX, 400.0, 410.0, L"KHz");
    add(channels::ChannelKind::RX, 400.0, 410.0, L"furlongs");
    EXPECT_THAT(at(channels::ChannelKind::RX, 405.0, 1.0), ElementsAre(0, 1));
}

TEST_F(ChannelIndexTest, AResultOfFalseEndsTheSearch) {
    for (int i = 0; i < 4; ++i)
        add(channels::ChannelKind::TX, 400.0, 410.0);
    int calls = 0;
    channels::forEachChannelAt(store, channels::ChannelKind::TX, 405.0, 1.0, [&](std::int32_t) { return ++calls < 2; });
    EXPECT_EQ(calls, 2);
}

TEST_F(ChannelIndexTest, HostCodeMayClearTheStoreWhileItIsSearched) {
    add(channels::ChannelKind::TX, 400.0, 410.0);
    add(channels::ChannelKind::TX, 400.0, 410.0)->onRead = [&](std::string_view member) {
        if (member == "dFreqHi")
            store.clear(channels::ChannelKind::TX);
    };
    add(channels::ChannelKind::TX, 400.0, 410.0);
    EXPECT_THAT(at(channels::ChannelKind::TX, 405.0, 1.0), ElementsAre(0)) << "the others are gone";
}

TEST(NextFrequency, IsThatOfTheNearestChannelOfEitherKindAndClass) {
    channels::ChannelStore store;
    std::int32_t index = 0;
    const auto add = [&](channels::ChannelKind kind, util::Ref<channels::FreqSlotBase> slot, double frequency,
                         const wchar_t* units = L"MHz") {
        slot->fields().dFreq = frequency;
        slot->fields().sFreqUnits = units;
        slot->fields().sKey = std::to_wstring(frequency);
        store.add(kind, channels::FreqSlotRef(slot.get()), index);
    };
    const auto own = [] { return util::Ref<channels::FreqSlotBase>(new QuietSlot); };
    const auto foreign = [] { return util::Ref<channels::FreqSlotBase>(new CountedSlot); };
    add(channels::ChannelKind::TX, own(), 100.0);
    add(channels::ChannelKind::TX, own(), 460'000.0, L"KHz");
    add(channels::ChannelKind::RX, own(), 455.0);
    add(channels::ChannelKind::RX, foreign(), 0.452, L"GHz");
    add(channels::ChannelKind::RX, own(), 451.0, L"furlongs");
    EXPECT_EQ(channels::nextFrequency(store, 450.0, 1.0), 452.0);
    EXPECT_EQ(channels::nextFrequency(store, 452.0, 1.0), 455.0);
    EXPECT_EQ(channels::nextFrequency(store, 455.0, 1.0), 460.0);
    EXPECT_EQ(channels::nextFrequency(store, 460.0, 1.0), std::nullopt);
    EXPECT_EQ(channels::nextFrequency(store, 460.0, -1.0), 455.0);
    EXPECT_EQ(channels::nextFrequency(store, 452.0, -1.0), 100.0);
    EXPECT_EQ(channels::nextFrequency(store, 100.0, -1.0), std::nullopt);
    ASSERT_FALSE(store.closeGap(channels::ChannelKind::TX, 0));
    EXPECT_EQ(channels::nextFrequency(store, 452.0, -1.0), std::nullopt) << "one that has left does not count";
}

/// Records of the control's own class: from 256 on, they are found by an index.
class ChannelIndexPropertyTest : public ::testing::Test {
  protected:
    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
    bool oneIn(unsigned n) { return random_() % n == 0; }

    void fill(channels::FreqSlotFields& f) {
        static const wchar_t* const units[] = {L"Hz", L"KHz", L"GHz", L"furlongs", L""};
        f.sFreqUnits = oneIn(10) ? units[random_() % 5] : L"MHz";
        f.dFreqLo = std::floor(between(0.0, 400.0)) / 2.0;
        f.dFreqHi = f.dFreqLo + (oneIn(10) ? between(0.0, 200.0) : std::floor(between(0.0, 6.0)) / 2.0);
        if (oneIn(20))
            std::swap(f.dFreqLo, f.dFreqHi);
        if (oneIn(20))
            (oneIn(2) ? f.dFreqLo : f.dFreqHi) =
                oneIn(2) ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
    }
    void add() {
        const util::Ref<QuietSlot> slot(new QuietSlot);
        fill(slot->fields());
        slot->fields().sKey = L"TX" + std::to_wstring(++lastKey_);
        std::int32_t index = 0;
        store_.add(channels::ChannelKind::TX, channels::FreqSlotRef(slot.get()), index);
    }
    channels::FreqSlotBase& at(std::int32_t index) {
        return static_cast<channels::FreqSlotBase&>(*store_.at(channels::ChannelKind::TX, index));
    }
    void change() {
        const auto any =
            static_cast<std::int32_t>(random_() % static_cast<unsigned>(store_.count(channels::ChannelKind::TX)));
        if (oneIn(3)) {
            add();
        } else if (oneIn(2)) {
            const std::wstring key = at(any).sKey();
            EXPECT_FALSE(store_.closeGap(channels::ChannelKind::TX, any));
            store_.forgetKey(key);
        } else {
            fill(at(any).fields());
        }
    }
    /// The first `most` of those that reading each record finds.
    std::vector<std::int32_t> expected(double x, double tolerance, std::size_t most) {
        std::vector<std::int32_t> indices;
        for (std::int32_t i = 0; i < store_.count(channels::ChannelKind::TX) && indices.size() < most; ++i) {
            bool unknown = false;
            const channels::FreqSlotFields& f = std::as_const(at(i)).fields();
            if (util::ConvertFreq(f.sFreqUnits, L"MHz", f.dFreqLo, unknown) <= x + tolerance &&
                util::ConvertFreq(f.sFreqUnits, L"MHz", f.dFreqHi, unknown) >= x - tolerance)
                indices.push_back(i);
        }
        return indices;
    }
    std::vector<std::int32_t> found(double x, double tolerance, std::size_t most) {
        std::vector<std::int32_t> indices;
        channels::forEachChannelAt(store_, channels::ChannelKind::TX, x, tolerance, [&](std::int32_t index) {
            indices.push_back(index);
            return indices.size() < most;
        });
        return indices;
    }

    std::mt19937 random_{19610412};
    channels::ChannelStore store_;
    int lastKey_ = 0;
};

TEST_F(ChannelIndexPropertyTest, TheIndexFindsWhatReadingEachRecordFinds) {
    for (const int count : {250, 300, 5000}) {
        store_.clear(channels::ChannelKind::TX);
        for (int i = 0; i < count; ++i)
            add();
        for (int round = 0; round < 100; ++round) {
            for (unsigned changes = random_() % 4; changes > 0; --changes)
                change();
            for (int query = 0; query < 6; ++query) {
                const double x = oneIn(20) ? std::numeric_limits<double>::quiet_NaN() : between(-5.0, 210.0);
                const double tolerance = oneIn(3) ? 0.0 : between(0.0, 3.0);
                const double place = oneIn(2) ? x : std::floor(x * 2.0) / 2.0;
                const std::size_t most = oneIn(2) ? 1 + random_() % 20 : 100'000;
                ASSERT_EQ(found(place, tolerance, most), expected(place, tolerance, most)) << "round " << round;
            }
        }
    }
}

TEST_F(ChannelIndexPropertyTest, AnEdgeTooLargeInMegahertzFailsWhenTheSearchReachesIt) {
    for (int i = 0; i < 300; ++i)
        add();
    at(200).fields().dFreqLo = 1e308;
    at(200).fields().sFreqUnits = L"GHz";
    for (int query = 0; query < 3; ++query) {
        std::int32_t last = -1;
        const auto search = [&] {
            channels::forEachChannelAt(store_, channels::ChannelKind::TX, 100.0, 1e6, [&](std::int32_t index) {
                last = index;
                return true;
            });
        };
        EXPECT_THROW(search(), util::RuntimeError);
        EXPECT_GT(last, 150);
        EXPECT_LT(last, 200);
    }
}

}  // namespace
}  // namespace kv::control
