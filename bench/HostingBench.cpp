// What a host does with the channels. Times are those of the whole set or the whole thousand.
#include <benchmark/benchmark.h>

#include <functional>
#include <initializer_list>
#include <utility>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/PlainLoops.h"
#include "bench/Rig.h"

namespace kv::bench {

namespace {

void add(benchmark::State& state, SetKind kind, void (Rig::*adding)(), double extra) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    Times times;
    for (auto _ : state) {
        rig->makeRecords(set);
        state.SetIterationTime(times.measure([&] { ((*rig).*adding)(); }));
        rig->clear();
    }
    const double plain = plainAddSeconds(set);
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["plain_ms"] = plain * 1e3;
    if (extra > 0.0)
        state.counters["empty_call_ms"] = extra * 1e3;
    state.counters["times_plain"] = times.median() / (plain + extra);
}

void addEarly(benchmark::State& state, SetKind kind) {
    add(state, kind, &Rig::addAll, 0.0);
}

void addByName(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    rig->makeRecords(set);
    Times empty;
    for (int round = 0; round < 3; ++round)
        empty.measure([&] { rig->callEmptyByName(); });
    add(state, kind, &Rig::addAllByName, empty.median());
}

void memory(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const std::unique_ptr<Rig> rig = makeRig();
        const auto count = static_cast<double>(set.channels.size());
        const std::size_t before = privateBytes();
        rig->makeRecords(set);
        const std::size_t made = privateBytes();
        rig->addAll();
        rig->showRange(set);
        rig->drawDisplay();
        const std::size_t drawn = privateBytes();
        state.counters["record_bytes"] = static_cast<double>(made - before) / count;
        state.counters["control_bytes"] = static_cast<double>(drawn - made) / count;
        state.SetIterationTime(1e-3);
    }
}

void find(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    rig->makeRecords(set);
    rig->addAll();
    Times times;
    for (auto _ : state) {
        state.SetIterationTime(times.measure([&] {
            for (std::size_t i = 0; i < 1000; ++i)
                benchmark::DoNotOptimize(rig->find(Channel::key(i * 7919 % set.channels.size() + 1)));
        }));
    }
    state.counters["median_ms"] = times.median() * 1e3;
}

/// Each removal redraws the display, as it does for hosts.
void removeThousand(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    rig->makeRecords(set);
    Times redraws;
    Times times;
    for (auto _ : state) {
        rig->addAll();
        rig->showRange(set);
        for (int i = 0; i < 9; ++i)
            redraws.measure([&] { rig->drawDisplay(); });
        state.SetIterationTime(times.measure([&] {
            for (std::size_t i = 0; i < 1000; ++i)
                rig->remove(Channel::key((i * 7919 + 17) % set.channels.size() + 1));
        }));
        rig->clear();
    }
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["thousand_redraws_ms"] = redraws.median() * 1e6;
}

void clear(benchmark::State& state, SetKind kind) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    rig->makeRecords(set);
    Times times;
    for (auto _ : state) {
        rig->addAll();
        state.SetIterationTime(times.measure([&] { rig->clear(); }));
    }
    state.counters["median_ms"] = times.median() * 1e3;
}

constexpr std::size_t kThousand = 1000;

}  // namespace

void enlistHosting(SetKind kind, std::size_t count) {
    for (const auto& [name, function] :
         std::initializer_list<std::pair<const char*, Function>>{{"Add", addEarly},
                                                                 {"AddByName", addByName},
                                                                 {"Memory", memory},
                                                                 {"Find1000", find},
                                                                 {"Remove1000", removeThousand},
                                                                 {"Clear", clear}}) {
        const std::string_view step = name;
        if (count < kThousand && (step == "Find1000" || step == "Remove1000"))
            continue;
        enlist(name, function, kind, count)->Iterations(step == "Memory" || step == "Remove1000" ? 1 : 3);
    }
}

}  // namespace kv::bench
