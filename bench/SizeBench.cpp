// Times and memory by the number of channels, up to two million of the narrow set.
#include "bench/Benchmarks.h"
#include "bench/HeadlessControl.h"
#include "bench/Median.h"
#include "bench/Rig.h"
#include "bench/StoreSteps.h"

namespace kv::bench {

namespace {

using channels::ChannelKind;

constexpr int kRounds = 9;

template <class Step>
double medianMs(int rounds, Step step) {
    Times times;
    for (int i = 0; i < rounds; ++i)
        times.measure([&] { step(i); });
    return times.median() * 1e3;
}

/// One row of the table: the steps of a host one after the other, in milliseconds.
void steps(benchmark::State& state) {
    const ChannelSet& set = channelSet(SetKind::Narrow, static_cast<std::size_t>(state.range(0)));
    const std::size_t count = set.channels.size();
    const double middle = (set.lowest + set.highest) / 2.0;
    for (auto _ : state) {
        const std::unique_ptr<Rig> rig = makeRig();
        rig->makeRecords(set);
        rig->showRange(set);
        state.counters["add_ms"] = medianMs(1, [&](int) { rig->addAllByName(); });
        state.counters["first_draw_ms"] = medianMs(1, [&](int) { rig->drawDisplay(); });
        state.counters["pan_ms"] = medianMs(kRounds, [&](int i) { rig->panTo(middle + (i % 2 != 0 ? 0.7 : -0.7)); });
        rig->showRange(set);
        state.counters["change_and_draw_ms"] = medianMs(kRounds, [&](int i) {
            rig->setPower(nth(static_cast<std::size_t>(i), count) + 1, -60.0);
            rig->drawDisplay();
        });
        rig->showMouseInfo(true);
        for (int i = 0; i < 3; ++i)
            rig->moveMouseTo(set.densest + i * 1e-6);
        state.counters["move_ms"] = medianMs(kRounds, [&](int i) { rig->moveMouseTo(set.densest + i % 2 * 1e-6); });
        rig->showMouseInfo(false);
        state.counters["removal_and_draw_ms"] =
            medianMs(kRounds, [&](int i) { rig->remove(Channel::key(nth(static_cast<std::size_t>(i), count) + 1)); });
        state.counters["export_ms"] = medianMs(kRounds, [&](int) { rig->exportPicture(); });
        state.counters["clear_ms"] = medianMs(1, [&](int) { rig->clear(); });
        state.SetIterationTime(1e-3);
    }
}

/// Bytes a channel that the control takes, after each of the uses for which it keeps something. What it keeps in the
/// host's records is part of `record_bytes`; `extra_bytes` of them are no members of the interface.
void memory(benchmark::State& state, ChannelKind kind) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const ChannelSet& set = channelSet(SetKind::Narrow, count);
    for (auto _ : state) {
        HeadlessControl control;
        std::size_t last = privateBytes();
        const auto grown = [&last, count] {
            const std::size_t now = privateBytes();
            const double bytes = (static_cast<double>(now) - static_cast<double>(last)) / static_cast<double>(count);
            last = now;
            return bytes;
        };
        const std::vector<AnySlot> records = makeRecords(kind, count);
        state.counters["record_bytes"] = grown();
        for (const AnySlot& record : records) {
            if (kind == ChannelKind::TX)
                control.scope.AddTXChnl(reference(record));
            else
                control.scope.AddRXChnl(reference(record));
        }
        const double added = grown();
        control.showRange(set);
        control.scope.DrawDisplay();
        const double drawn = grown();
        control.scope.setBMouseInfo(true);
        for (int i = 0; i < 3; ++i)
            control.moveMouseTo(set.densest + i * 1e-6);
        const double moved = grown();
        if (kind == ChannelKind::RX)
            benchmark::DoNotOptimize(control.scope.nFindMatchRX(reference(records.back())));
        const double matched = grown();
        state.counters["added_bytes"] = added;
        state.counters["drawn_bytes"] = drawn;
        state.counters["moved_bytes"] = moved;
        state.counters["matched_bytes"] = matched;
        state.counters["control_bytes"] = added + drawn + moved + matched;
        state.counters["extra_bytes"] =
            static_cast<double>(sizeof(channels::FreqSlotBase) - sizeof(channels::FreqSlotFields) - sizeof(void*));
        state.SetIterationTime(1e-3);
    }
}

}  // namespace

void enlistSizes() {
    for (const std::int64_t count : {1'000, 10'000, 100'000, 495'000, 1'000'000, 2'000'000})
        benchmark::RegisterBenchmark("Table", steps)->Arg(count)->UseManualTime()->Iterations(1);
    for (const ChannelKind kind : {ChannelKind::TX, ChannelKind::RX}) {
        const char* const name = kind == ChannelKind::TX ? "IndexMemory/TX" : "IndexMemory/RX";
        benchmark::RegisterBenchmark(name, [kind](benchmark::State& state) { memory(state, kind); })
            ->Arg(495'000)
            ->Arg(1'000'000)
            ->UseManualTime()
            ->Iterations(1);
    }
}

}  // namespace kv::bench
