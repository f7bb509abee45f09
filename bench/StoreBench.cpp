// The channel store by itself: what removing costs besides the redraw that follows it.
#include <benchmark/benchmark.h>

#include <unordered_map>

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
constexpr int kRounds = 25;  // of a store so small that one round says little

/// The plain loop, which also forgets the key and releases the record.
double plainSecondsWithRecords(const std::vector<AnySlot>& records, const std::vector<std::wstring>& keys, int rounds) {
    const std::size_t count = records.size();
    Times times;
    for (int round = 0; round < rounds; ++round) {
        std::vector<channels::FreqSlot*> list;
        std::unordered_map<std::wstring, std::int32_t> index;
        for (std::size_t i = 0; i < count; ++i) {
            records[i]->retain();
            list.push_back(records[i].get());
            index.emplace(keys[i], static_cast<std::int32_t>(i));
        }
        times.measure([&] {
            for (std::size_t i = 0; i < kRemovals; ++i) {
                const auto found = index.find(keys[nth(i, count)]);
                const auto at = static_cast<std::size_t>(found->second) % list.size();
                channels::FreqSlot* const gone = list[at];
                index.erase(found);
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(at));
                gone->release();
            }
        });
        for (channels::FreqSlot* const left : list)
            left->release();
    }
    return times.median();
}

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
    const int rounds = count > kRemovals ? 1 : kRounds;
    const double plain = plainRemovalSeconds(count, kRemovals, rounds);
    const double withRecords = plainSecondsWithRecords(records, keys, rounds);
    state.counters["median_ms"] = times.median() * 1e3;
    state.counters["plain_ms"] = plain * 1e3;
    state.counters["times_plain"] = times.median() / plain;
    state.counters["with_records_ms"] = withRecords * 1e3;
    state.counters["times_with_records"] = times.median() / withRecords;
}

}  // namespace

void enlistStore(std::size_t count) {
    benchmark::RegisterBenchmark("StoreRemove1000/narrow", removals)
        ->Arg(static_cast<std::int64_t>(count))
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(count > kRemovals ? 1 : kRounds);
}

}  // namespace kv::bench
