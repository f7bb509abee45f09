// The channels at a frequency, as the mouse report lists them.
#include "control/ChannelIndex.h"

#include <vector>

#include "tests/unit/ScopeFixture.h"

namespace kv::control {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ChannelIndexTest : public ::testing::Test {
  protected:
    SlotRef add(ChannelKind kind, double low, double high, const std::wstring& units = L"MHz") {
        const SlotRef slot = makeSlot((low + high) / 2.0, 0.0, 0.0, std::to_wstring(++lastKey_));
        slot->fields().dFreqLo = low;
        slot->fields().dFreqHi = high;
        slot->fields().sFreqUnits = units;
        std::int32_t index = 0;
        store.add(kind, asChannel(slot), index);
        return slot;
    }
    std::vector<std::int32_t> at(ChannelKind kind, double x, double tolerance) const {
        std::vector<std::int32_t> indices;
        forEachChannelAt(store, kind, x, tolerance, [&](std::int32_t index) {
            indices.push_back(index);
            return true;
        });
        return indices;
    }

    ChannelStore store;

  private:
    int lastKey_ = 0;
};

TEST_F(ChannelIndexTest, BandsThatMeetTheWidenedPlaceAreFoundInIndexOrder) {
    add(ChannelKind::TX, 400.0, 410.0);
    add(ChannelKind::TX, 300.0, 500.0);
    add(ChannelKind::TX, 411.0, 412.0);
    add(ChannelKind::TX, 398.0, 399.0);
    EXPECT_THAT(at(ChannelKind::TX, 405.0, 0.5), ElementsAre(0, 1));
    // Both ends of the widened place count.
    EXPECT_THAT(at(ChannelKind::TX, 410.5, 0.5), ElementsAre(0, 1, 2));
    EXPECT_THAT(at(ChannelKind::TX, 410.5, 0.25), ElementsAre(1));
    EXPECT_THAT(at(ChannelKind::TX, 600.0, 1.0), IsEmpty());
}

TEST_F(ChannelIndexTest, KindsAreApart) {
    add(ChannelKind::TX, 400.0, 410.0);
    add(ChannelKind::RX, 500.0, 510.0);
    EXPECT_THAT(at(ChannelKind::RX, 405.0, 1.0), IsEmpty());
    EXPECT_THAT(at(ChannelKind::RX, 505.0, 1.0), ElementsAre(0));
}

TEST_F(ChannelIndexTest, EdgesCountInMegahertzWhateverTheirUnits) {
    add(ChannelKind::RX, 0.4, 0.41, L"GHz");
    add(ChannelKind::RX, 400'000.0, 410'000.0, L"KHz");
    add(ChannelKind::RX, 400.0, 410.0, L"KHz");
    add(ChannelKind::RX, 400.0, 410.0, L"furlongs");
    EXPECT_THAT(at(ChannelKind::RX, 405.0, 1.0), ElementsAre(0, 1));
}

TEST_F(ChannelIndexTest, AnAnswerOfFalseEndsTheSearch) {
    for (int i = 0; i < 4; ++i)
        add(ChannelKind::TX, 400.0, 410.0);
    int calls = 0;
    forEachChannelAt(store, ChannelKind::TX, 405.0, 1.0, [&](std::int32_t) { return ++calls < 2; });
    EXPECT_EQ(calls, 2);
}

TEST_F(ChannelIndexTest, HostCodeMayClearTheStoreWhileItIsSearched) {
    add(ChannelKind::TX, 400.0, 410.0);
    add(ChannelKind::TX, 400.0, 410.0)->onRead = [&](std::string_view member) {
        if (member == "dFreqHi")
            store.clear(ChannelKind::TX);
    };
    add(ChannelKind::TX, 400.0, 410.0);
    EXPECT_THAT(at(ChannelKind::TX, 405.0, 1.0), ElementsAre(0, 1));
}

}  // namespace
}  // namespace kv::control
