// Whether a step touches more records the more channels there are. Touches are counted instead of time, because a count
// is the same on every machine.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "channels/ChannelStore.h"
#include "tests/unit/TouchedSlot.h"
#include "util/RuntimeError.h"

namespace kv::control {
namespace {

using channels::ChannelKind;
using channels::ChannelStore;

using Slot = util::Ref<channels::FreqSlotBase>;

Slot named(Slot slot, const std::wstring& key, double frequency) {
    channels::FreqSlotFields& fields = slot->fields();
    fields.sKey = key;
    fields.dFreq = frequency;
    fields.dBW = 10.0;
    fields.dPwrDBM = 20.0;
    return slot;
}

/// A store of one kind with so many channels of the control's own class, in the order of their frequencies.
struct Filled {
    Filled(ChannelKind ofKind, int channels) : kind(ofKind), count(channels) {
        for (int i = 0; i < count; ++i)
            records.push_back(add(Slot(new TouchedOwnSlot), keyOf(i), 400.0 + i * 0.01));
        recalculate();
        removeAt(1);
    }
    [[nodiscard]] std::wstring keyOf(int i) const {
        return (kind == ChannelKind::TX ? L"TX" : L"RX") + std::to_wstring(i);
    }
    Slot add(const Slot& slot, const std::wstring& key, double frequency = 401.005) {
        return add(kind, named(slot, key, frequency));
    }
    Slot add(ChannelKind to, const Slot& slot) {
        std::int32_t index = 0;
        try {
            store.add(to, channels::FreqSlotRef(slot.get()), index);
        } catch (const util::RuntimeError&) {
            // The channel is in the store all the same.
        }
        return slot;
    }
    void recalculate() {
        store.RecalcTXFreqRange();
        store.RecalcRXFreqRange();
        store.RecalcFreqRange();
    }
    void remove(const std::wstring& key) {
        static_cast<void>(store.closeGap(kind, store.indexOfKey(key).value_or(0)));
        store.forgetKey(key);
        recalculate();
    }
    void removeAt(int i) { remove(keyOf(i)); }
    [[nodiscard]] channels::FreqSlotBase& record(int i) { return *records[static_cast<std::size_t>(i)]; }
    void match() { EXPECT_EQ(store.findMatchRX(record(count - 1)), store.count(kind) - 1); }

    ChannelKind kind;
    int count;
    ChannelStore store;
    std::vector<Slot> records;
};

struct GrowthRow {
    const char* name;
    ChannelKind kind;
    std::function<void(Filled&)> before;     ///< once
    std::function<void(Filled&, int)> step;  ///< with a number from 5 on
};

void PrintTo(const GrowthRow& row, std::ostream* out) {
    *out << row.name;
}

class StoreGrowthTest : public ::testing::TestWithParam<GrowthRow> {
  protected:
    /// The touches of four steps together, so that what one of them puts off to the next one counts.
    static int touches(const GrowthRow& row, int count) {
        Filled filled(row.kind, count);
        if (row.before)
            row.before(filled);
        row.step(filled, 5);
        TouchedSlot::touches = 0;
        for (int i = 6; i < 10; ++i)
            row.step(filled, i);
        return TouchedSlot::touches;
    }
};

TEST_P(StoreGrowthTest, MoreChannelsAreNotTouchedMore) {
    constexpr int kFew = 300;
    constexpr int kMany = 3000;
    constexpr int kLogarithm = 100;  // what trees and blocks may add
    const int few = touches(GetParam(), kFew);
    EXPECT_LE(touches(GetParam(), kMany), few + kLogarithm);
    EXPECT_GT(few, 0);
}

// Some way from the ends of the range, and from the last channels.
constexpr auto removal = [](Filled& filled, int i) { filled.removeAt(i * 7); };
constexpr auto match = [](Filled& filled, int) { filled.match(); };

const GrowthRow kGrowthRows[] = {
    {"Removal", ChannelKind::TX, nullptr, removal},
    {"MatchRX", ChannelKind::RX, nullptr, match},
    {"AddWithoutKey", ChannelKind::TX, nullptr,
     [](Filled& filled, int) { filled.add(ChannelKind::RX, named(Slot(new TouchedOwnSlot), L"", 450.0)); }},
    {"AddWithTakenKey", ChannelKind::TX, nullptr,
     [](Filled& filled, int) { filled.add(ChannelKind::RX, named(Slot(new TouchedOwnSlot), L"tx20", 450.0)); }},
    {"AddForeign", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) { filled.add(Slot(new TouchedForeignSlot), L"TXforeign" + std::to_wstring(i)); }},
    {"ClearOtherKindAndAdd", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) {
         filled.store.clear(ChannelKind::RX);
         filled.add(ChannelKind::RX, named(Slot(new TouchedOwnSlot), i % 2 == 0 ? L"RX1" : L"RX2", 450.0));
     }},
    {"RemovalAfterOneKeyChanged", ChannelKind::TX,
     [](Filled& filled) { filled.record(200).set<&channels::FreqSlotFields::sKey>(L"TXchanged"); }, removal},
    {"RemovalAfterAKeyChangedEachTime", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).set<&channels::FreqSlotFields::sKey>(L"TXchanged" + std::to_wstring(i));
         removal(filled, i);
     }},
    {"RemovalAfterAKeySetAgain", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).set<&channels::FreqSlotFields::sKey>(filled.keyOf(200 + i));
         removal(filled, i);
     }},
    {"RemovalAfterDuplicate", ChannelKind::TX, [](Filled& filled) { filled.add(Slot(new TouchedOwnSlot), L"TX20"); },
     removal},
    {"RemovalAmongForeign", ChannelKind::TX,
     [](Filled& filled) { filled.add(Slot(new TouchedForeignSlot), L"TXforeign"); }, removal},
    {"RemovalAfterForeignLeft", ChannelKind::TX,
     [](Filled& filled) {
         filled.add(Slot(new TouchedForeignSlot), L"TXforeign");
         filled.remove(L"TXforeign");
     },
     removal},
    {"RemovalAfterUnprefixedKey", ChannelKind::TX,
     [](Filled& filled) {
         filled.add(Slot(new TouchedOwnSlot), L"IM1");
         filled.store.forgetKey(L"IM1");
     },
     removal},
    {"RemovalAfterPowerChanged", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).set<&channels::FreqSlotFields::dPwrDBM>(30.0 + i);
         removal(filled, i);
     }},
    {"RemovalAfterEdgeChanged", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).setDFreqHi(402.1);
         removal(filled, i);
     }},
    {"RemovalAtTheLowEnd", ChannelKind::TX, [](Filled& filled) { filled.removeAt(0); },
     [](Filled& filled, int i) { filled.removeAt(i - 3); }},
    {"RemovalAtTheHighEnd", ChannelKind::TX, nullptr,
     [](Filled& filled, int i) { filled.removeAt(filled.count + 4 - i); }},
    {"MatchRXAfterRemoval", ChannelKind::RX, nullptr,
     [](Filled& filled, int i) {
         removal(filled, i);
         filled.match();
     }},
    {"MatchRXAfterPowerChanged", ChannelKind::RX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).set<&channels::FreqSlotFields::dPwrDBM>(30.0 + i);
         filled.match();
     }},
    {"MatchRXAfterLabelChanged", ChannelKind::RX, nullptr,
     [](Filled& filled, int i) {
         filled.record(200 + i).set<&channels::FreqSlotFields::sLabel>(L"changed");
         filled.match();
     }},
    {"MatchRXAmongForeign", ChannelKind::RX,
     [](Filled& filled) { filled.add(Slot(new TouchedForeignSlot), L"RXforeign"); },
     [](Filled& filled, int) { EXPECT_GE(filled.store.findMatchRX(filled.record(filled.count - 1)), 0); }},
    {"MatchRXAfterForeignLeft", ChannelKind::RX,
     [](Filled& filled) {
         filled.add(Slot(new TouchedForeignSlot), L"RXforeign");
         filled.remove(L"RXforeign");
     },
     match},
};

INSTANTIATE_TEST_SUITE_P(Steps, StoreGrowthTest, ::testing::ValuesIn(kGrowthRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kv::control
