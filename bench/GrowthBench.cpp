// How the time of a step grows with the number of channels, where something is not as usual: foreign records, keys that
// meet or change, kinds that are cleared, records that change before each step. Each benchmark measures a step with few
// and with many channels in one run.
//   few_us, many_us   medians of one step
//   worst_us          the longest one with many channels
//   exponent          log(many / few) / log(number of channels with many / with few)
//   times_normal      many_us compared with the usual case of the same step
// A step of all channels (adding them) should have an exponent near 1, any other one near 0. KV_GROWTH_DIVISOR=8 in the
// environment makes all numbers of channels smaller by this factor.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

#include "bench/Benchmarks.h"
#include "bench/Growth.h"
#include "bench/HeadlessControl.h"

namespace kv::bench {

namespace {

using channels::ChannelKind;

// Removals.

constexpr std::size_t kRemovals = 9;
constexpr std::size_t kFewHoles = 256;  // that a list keeps, and as many as an eighth of its places

template <class First, class Before>
Cost removals(std::size_t count, First first, Before before) {
    FilledStore filled(ChannelKind::TX, count);
    first(filled);
    return each(
        kRemovals, [&](std::size_t i) { before(*filled.records[nth(i + kRemovals, count)], i); },
        [&](std::size_t i) { removeByKey(filled.store, ChannelKind::TX, keyOf(ChannelKind::TX, nth(i, count) + 1)); });
}
void asItIs(FilledStore&) {}
void unchanged(channels::FreqSlotBase&, std::size_t) {}

Cost removeUsual(std::size_t count) {
    return removals(count, asItIs, unchanged);
}
Cost removeAfterKeyChanged(std::size_t count) {
    return removals(count, asItIs, [](channels::FreqSlotBase& slot, std::size_t i) {
        slot.set<&channels::FreqSlotFields::sKey>(L"TXchanged" + std::to_wstring(i));
    });
}
Cost removeAfterOneKeyChanged(std::size_t count) {
    return removals(
        count,
        [count](FilledStore& filled) {
            filled.records[nth(99, count)]->set<&channels::FreqSlotFields::sKey>(L"TXchanged");
        },
        unchanged);
}
Cost removeAfterKeySetAgain(std::size_t count) {
    return removals(count, asItIs, [](channels::FreqSlotBase& slot, std::size_t) {
        slot.set<&channels::FreqSlotFields::sKey>(slot.sKey());
    });
}
Cost removeAfterDuplicate(std::size_t count) {
    return removals(
        count,
        [](FilledStore& filled) {
            addQuietly(filled.store, ChannelKind::TX, ownSlot(keyOf(ChannelKind::TX, filled.records.size())));
        },
        unchanged);
}
Cost removeAmongForeign(std::size_t count) {
    return removals(
        count, [](FilledStore& filled) { addQuietly(filled.store, ChannelKind::TX, foreignSlot(L"TXforeign")); },
        unchanged);
}
Cost removeAfterForeignLeft(std::size_t count) {
    return removals(
        count,
        [](FilledStore& filled) {
            addQuietly(filled.store, ChannelKind::TX, foreignSlot(L"TXforeign"));
            removeByKey(filled.store, ChannelKind::TX, L"TXforeign");
        },
        unchanged);
}
Cost removeAfterUnprefixedKey(std::size_t count) {
    return removals(
        count,
        [](FilledStore& filled) {
            addQuietly(filled.store, ChannelKind::TX, ownSlot(L"IM1"));
            // As the control does for a prefix that names no kind: only the key goes.
            filled.store.forgetKey(L"IM1");
        },
        unchanged);
}
Cost removeAfterPowerChanged(std::size_t count) {
    return removals(count, asItIs, [](channels::FreqSlotBase& slot, std::size_t) {
        slot.set<&channels::FreqSlotFields::dPwrDBM>(-50.0);
    });
}
Cost removeAfterEdgeChanged(std::size_t count) {
    return removals(count, asItIs, [](channels::FreqSlotBase& slot, std::size_t) { slot.setDFreqHi(150.0); });
}
Cost removeAtTheEdge(std::size_t count) {
    FilledStore filled(ChannelKind::TX, count);
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), 0U);
    std::partial_sort(order.begin(), order.begin() + kRemovals, order.end(), [&](std::size_t a, std::size_t b) {
        return filled.records[a]->dFreqLo() < filled.records[b]->dFreqLo();
    });
    return each(kRemovals, nothing, [&](std::size_t i) {
        removeByKey(filled.store, ChannelKind::TX, keyOf(ChannelKind::TX, order[i] + 1));
    });
}

/// The removal that closes the holes of a list that holds one record many times.
Cost closeHolesOfOneRecord(std::size_t count) {
    channels::ChannelStore store;
    const AnySlot record = ownSlot(L"TX1");
    for (std::size_t i = 0; i < count; ++i)
        addQuietly(store, ChannelKind::TX, record);
    const auto removeFirst = [&] { static_cast<void>(store.closeGap(ChannelKind::TX, 0)); };
    return each(
        3,
        [&](std::size_t) {
            const std::size_t places = store.list(ChannelKind::TX).places();
            while (store.list(ChannelKind::TX).holes().count() < kFewHoles + places / 8)
                removeFirst();
        },
        [&](std::size_t) { removeFirst(); });
}

// Equal receive channels.

template <class First, class Before>
Cost matches(std::size_t count, First first, Before before) {
    FilledStore filled(ChannelKind::RX, count);
    first(filled);
    AnySlot wanted(new SimpleSlot);
    wanted->fields() = std::as_const(*filled.records[count - 1]).fields();
    benchmark::DoNotOptimize(filled.store.findMatchRX(*wanted));
    return each(
        kRemovals, [](std::size_t) {},
        [&](std::size_t i) {
            before(filled, nth(i, count - 1));
            benchmark::DoNotOptimize(filled.store.findMatchRX(*wanted));
        });
}
void none(FilledStore&, std::size_t) {}

Cost matchUsual(std::size_t count) {
    return matches(count, asItIs, none);
}
Cost matchAfterRemoval(std::size_t count) {
    return matches(count, asItIs, [](FilledStore& filled, std::size_t at) {
        removeByKey(filled.store, ChannelKind::RX, keyOf(ChannelKind::RX, at + 1));
    });
}
Cost matchAfterPowerChanged(std::size_t count) {
    return matches(count, asItIs, [](FilledStore& filled, std::size_t at) {
        filled.records[at]->set<&channels::FreqSlotFields::dPwrDBM>(-50.0);
    });
}
Cost matchAmongForeign(std::size_t count) {
    return matches(
        count, [](FilledStore& filled) { addQuietly(filled.store, ChannelKind::RX, foreignSlot(L"RXforeign")); }, none);
}
Cost matchAfterForeignLeft(std::size_t count) {
    return matches(
        count,
        [](FilledStore& filled) {
            addQuietly(filled.store, ChannelKind::RX, foreignSlot(L"RXforeign"));
            removeByKey(filled.store, ChannelKind::RX, L"RXforeign");
        },
        none);
}

// Refresh of the whole control.

Cost refreshes(std::size_t count, bool hidden, SetKind kind) {
    const ChannelSet& set = channelSet(kind, count);
    HeadlessControl control;
    const std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count, kind);
    for (const AnySlot& record : records)
        control.scope.AddTXChnl(reference(record));
    control.showRange(set);
    control.scope.DrawDisplay();
    control.scope.RemoveChnlByKey(keyOf(ChannelKind::TX, count / 2));
    return each(
        3,
        [&](std::size_t) {
            // Drawn, then hidden: Refresh has to take them off.
            for (const AnySlot& record : records)
                record->set<&channels::FreqSlotFields::bVisible>(true);
            control.scope.DrawDisplay();
            for (std::size_t i = 0; hidden && i < count; i += 2)
                records[i]->set<&channels::FreqSlotFields::bVisible>(false);
        },
        [&](std::size_t) { control.scope.Refresh(); });
}
Cost refreshUsual(std::size_t count) {
    return refreshes(count, false, SetKind::Narrow);
}
Cost refreshHidden(std::size_t count) {
    return refreshes(count, true, SetKind::Narrow);
}
Cost refreshWideUsual(std::size_t count) {
    return refreshes(count, false, SetKind::Wide);
}
Cost refreshWideHidden(std::size_t count) {
    return refreshes(count, true, SetKind::Wide);
}

struct Row {
    const char* name;
    Scenario measured;
    Scenario usual;
    std::size_t few = 64'000;
    std::size_t many = 495'000;
};

constexpr std::size_t kFewForeign = 16'000;
constexpr std::size_t kManyForeign = 128'000;
constexpr std::size_t kFewRepeated = 4'000;
constexpr std::size_t kManyRepeated = 32'000;

constexpr Row kRows[] = {
    {"AddRXWithoutKey", addUnkeyed, addKeyed},
    {"AddRXWithTakenKey", addTaken, addKeyed},
    {"AddRXWithUnreadableBand", addUnreadable, addKeyed},
    {"AddAllForeign", addForeign, addOwn, kFewForeign, kManyForeign},
    {"AddEvery100thForeign", addForeignNowAndThen, addOwn, kFewForeign, kManyForeign},
    {"AddSameKeysAfterClear", addSameKeysAgain, addOwn},
    {"Reload20RXBesideTX", reloadFewRX, loadFewRXFirst},
    {"ClearTXAndAdd10UntilAll", clearAndAddTen, addOwn},
    {"ClearTXAndAdd10BesideRX", clearAndAddTenBeside, addTenBeside},
    {"RemoveAfterOneKeyChanged", removeAfterOneKeyChanged, removeUsual},
    {"RemoveAfterAKeyChangedEachTime", removeAfterKeyChanged, removeUsual},
    {"RemoveAfterAKeySetAgainEachTime", removeAfterKeySetAgain, removeUsual},
    {"RemoveAfterOneDuplicate", removeAfterDuplicate, removeUsual},
    {"RemoveAmongOneForeign", removeAmongForeign, removeUsual},
    {"RemoveAfterForeignLeft", removeAfterForeignLeft, removeUsual},
    {"RemoveAfterUnprefixedKey", removeAfterUnprefixedKey, removeUsual},
    {"RemoveAfterPowerChanged", removeAfterPowerChanged, removeUsual},
    {"RemoveAfterEdgeChanged", removeAfterEdgeChanged, removeUsual},
    {"RemoveAtEdgeOfRange", removeAtTheEdge, removeUsual},
    {"CloseHolesOfOneRecord", closeHolesOfOneRecord, removeUsual, kFewRepeated, kManyRepeated},
    {"MatchRXAfterRemoval", matchAfterRemoval, matchUsual},
    {"MatchRXAfterPowerChanged", matchAfterPowerChanged, matchUsual},
    {"MatchRXAmongOneForeign", matchAmongForeign, matchUsual},
    {"MatchRXAfterForeignLeft", matchAfterForeignLeft, matchUsual},
    {"RefreshEvery2ndHidden", refreshHidden, refreshUsual},
    {"RefreshEvery2ndWideHidden", refreshWideHidden, refreshWideUsual},
    {"AddAllUsual", addOwn, addPlain},
    {"AddAllPlain", addPlain, addPlain},
    {"RemoveUsual", removeUsual, removeUsual},
    {"MatchRXUsual", matchUsual, matchUsual},
};

std::size_t divisor() {
    const char* const text = std::getenv("KV_GROWTH_DIVISOR");
    return text ? std::max<std::size_t>(1, std::strtoul(text, nullptr, 10)) : 1;
}

void grow(benchmark::State& state, const Row& row) {
    const std::size_t few = row.few / divisor();
    const std::size_t many = row.many / divisor();
    for (auto _ : state) {
        const Cost ofFew = row.measured(few);
        const Cost ofMany = row.measured(many);
        const Cost usual = row.measured == row.usual ? ofMany : row.usual(many);
        state.SetIterationTime(ofMany.median);
        state.counters["few_us"] = ofFew.median * 1e6;
        state.counters["many_us"] = ofMany.median * 1e6;
        state.counters["worst_us"] = ofMany.worst * 1e6;
        state.counters["exponent"] =
            std::log(ofMany.median / ofFew.median) / std::log(static_cast<double>(many) / static_cast<double>(few));
        state.counters["usual_us"] = usual.median * 1e6;
        state.counters["times_normal"] = ofMany.median / usual.median;
    }
}

}  // namespace

void enlistGrowth() {
    for (const Row& row : kRows) {
        const std::string name = std::string("Growth/") + row.name;
        benchmark::RegisterBenchmark(name.c_str(), [&row](benchmark::State& state) { grow(state, row); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    }
}

}  // namespace kv::bench
