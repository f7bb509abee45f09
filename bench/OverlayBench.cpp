// What power axis, legend and channel labels add to a pan, compared with pans without them in the same run.
#include <benchmark/benchmark.h>

#include <initializer_list>

#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "bench/Rig.h"

namespace kv::bench {

namespace {

constexpr int kRounds = 31;
constexpr int kPans = 4;  // in a row, of which the first is not measured

void pan(Rig& rig, const ChannelSet& set, int round) {
    const double step = (set.highest - set.lowest) / 137.0;
    rig.panTo((set.lowest + set.highest) / 2.0 + step * (round % 3 - 1));
}

/// Pans with and without the overlays take turns, so that other work of the machine meets both.
void measure(benchmark::State& state, SetKind kind, const Overlaid& overlays) {
    const ChannelSet& set = channelSet(kind, static_cast<std::size_t>(state.range(0)));
    const std::unique_ptr<Rig> rig = makeRig();
    rig->makeRecords(set);
    rig->addAll();
    rig->showRange(set);
    Times without;
    Times with;
    int round = 0;
    const auto panSome = [&](const Overlaid& shown, Times& times) {
        rig->showOverlays(shown);
        pan(*rig, set, ++round);
        double sum = 0.0;
        for (int i = 1; i < kPans; ++i)
            sum += times.measure([&] { pan(*rig, set, ++round); });
        return sum;
    };
    for (auto _ : state) {
        panSome({}, without);
        state.SetIterationTime(panSome(overlays, with) / (kPans - 1));
    }
    const double plain = without.median();
    const double overlaid = with.median();
    state.counters["pan_ms"] = plain * 1e3;
    state.counters["median_ms"] = overlaid * 1e3;
    state.counters["times_pan"] = overlaid / plain;
}

void none(benchmark::State& state, SetKind kind) {
    measure(state, kind, {});
}
void powerAxis(benchmark::State& state, SetKind kind) {
    measure(state, kind, {.powerAxis = true});
}
void legend(benchmark::State& state, SetKind kind) {
    measure(state, kind, {.legend = true});
}
void channelLabels(benchmark::State& state, SetKind kind) {
    measure(state, kind, {.channelLabels = true});
}
void all(benchmark::State& state, SetKind kind) {
    measure(state, kind, {.powerAxis = true, .legend = true, .channelLabels = true});
}

}  // namespace

void enlistOverlays(std::size_t count) {
    for (const SetKind kind : {SetKind::Narrow, SetKind::Wide, SetKind::Site}) {
        for (const auto& [name, function] :
             std::initializer_list<std::pair<const char*, Function>>{{"OverlayNone", none},
                                                                     {"OverlayPowerAxis", powerAxis},
                                                                     {"OverlayLegend", legend},
                                                                     {"OverlayChannelLabels", channelLabels},
                                                                     {"OverlayAll", all}}) {
            enlist(name, function, kind, count)->Iterations(kRounds);
        }
    }
}

}  // namespace kv::bench
