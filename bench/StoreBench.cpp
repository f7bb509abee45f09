// The channel store by itself: what removing costs besides the redraw that follows it.
#include <benchmark/benchmark.h>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/PlainLoops.h"
#include "bench/StoreSteps.h"
#include "channels/ChannelStore.h"

namespace kv::bench {

namespace {

using channels::ChannelKind;
using channels::ChannelStore;

constexpr std::size_t kRemovals = 1000;

void removals(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::vector<AnySlot> records = makeRecords(ChannelKind::TX, count);
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < count; ++i)
        keys.push_back(keyOf(ChannelKind::TX, i + 1));
    Times times;
    for (auto _ : state) {
        ChannelStore store;
        for (const AnySlot& record : records)
            addQuietly(store, ChannelKind::TX, record);
        state.SetIterationTime(times.measure([&] {
            for (std::size_t i = 0; i < kRemovals; ++i)
                removeByKey(store, ChannelKind::TX, keys[nth(i, count)]);
        }));
    }
    const double plain = plainRemovalSeconds(count, kRemovals);
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["plain_ms"] = plain * 1e3;
    state.counters["times_plain"] = times.median() / plain;
}

}  // namespace

void enlistStore(std::size_t count) {
    benchmark::RegisterBenchmark("StoreRemove1000/narrow", removals)
        ->Arg(static_cast<std::int64_t>(count))
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
}

}  // namespace kv::bench
