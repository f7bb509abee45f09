// The channel store by itself: what removing costs besides the redraw that follows it.
#include <benchmark/benchmark.h>

#include <cstring>
#include <unordered_map>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/SimpleSlot.h"
#include "channels/ChannelStore.h"

namespace kv::bench {

namespace {

using channels::ChannelKind;
using channels::ChannelStore;

constexpr std::size_t kRemovals = 1000;

std::size_t nth(std::size_t i, std::size_t count) {
    return (i * 7919 + 17) % count;
}

/// What removing is compared with: a look-up in a hash map and a move of the pointers behind.
double plainRemovalSeconds(std::size_t count) {
    std::vector<void*> pointers(count);
    std::unordered_map<std::wstring, std::int32_t> index;
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < count; ++i) {
        keys.push_back(Channel::key(i + 1));
        index.emplace(keys.back(), static_cast<std::int32_t>(i));
    }
    Times times;
    times.measure([&] {
        for (std::size_t i = 0; i < kRemovals; ++i) {
            const auto at = static_cast<std::size_t>(index.find(keys[nth(i, count)])->second) % pointers.size();
            std::memmove(pointers.data() + at, pointers.data() + at + 1, (pointers.size() - at - 1) * sizeof(void*));
            pointers.pop_back();
        }
    });
    benchmark::DoNotOptimize(pointers.data());
    return times.median();
}

void removals(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ChannelSet& set = channelSet(SetKind::Narrow, count);
    std::vector<channels::FreqSlotRef> records;
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < count; ++i) {
        records.push_back(makeSimpleSlot(set.channels[i], i + 1));
        keys.push_back(Channel::key(i + 1));
    }
    Times times;
    for (auto _ : state) {
        ChannelStore store;
        std::int32_t index = 0;
        for (const channels::FreqSlotRef& record : records)
            store.add(ChannelKind::TX, record, index);
        state.SetIterationTime(times.measure([&] {
            for (std::size_t i = 0; i < kRemovals; ++i) {
                const std::wstring& key = keys[nth(i, count)];
                if (store.findByKey(ChannelKind::TX, key)) {
                    if (store.closeGap(ChannelKind::TX, key))
                        state.SkipWithError("a key was not known");
                    store.forgetKey(key);
                    store.RecalcTXFreqRange();
                    store.RecalcRXFreqRange();
                    store.RecalcFreqRange();
                }
            }
        }));
    }
    const double plain = plainRemovalSeconds(count);
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
