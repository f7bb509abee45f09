// Finding, sorting and filtering the products that hit receivers: 495,000 products of a plan against 200 receivers.
#include "bench/Benchmarks.h"
#include "bench/Median.h"
#include "host/hits/HitFinder.h"
#include "host/hits/HitRows.h"
#include "host/plan/Plan.h"

namespace kv::bench {

namespace {

constexpr int kReceivers = 200;

/// The transmitters of the crowded site, and receivers on every sixteenth channel of its raster of 7.5 kHz.
host::Plan crowdedSite() {
    host::Plan plan = host::loadPlan(std::filesystem::path(KV_SOURCE_DIR) / "examples" / "plans" / "site-100.csv");
    for (int i = 0; i < kReceivers; ++i) {
        host::PlanChannel receiver;
        receiver.key = L"RX" + std::to_wstring(i);
        receiver.label = receiver.key;
        receiver.frequencyHz = 150'000'000 + 120'000 * i;
        receiver.bandwidthHz = 11'250;
        plan.channels.push_back(receiver);
    }
    return plan;
}

void findAll(host::HitFinder& finder) {
    while (finder.step() == host::HitFinder::State::kFinding) {
    }
}

/// Times a step on a finder that has found all hits.
template <class Step>
void run(benchmark::State& state, Step step) {
    const host::Plan plan = crowdedSite();
    for (auto unused : state) {
        Times times;
        step(plan, times);
        state.SetIterationTime(times.least());
    }
}

void firstRows(benchmark::State& state) {
    run(state, [](const host::Plan& plan, Times& times) {
        times.measure([&] {
            host::HitFinder finder(plan, {});
            finder.step();
            benchmark::DoNotOptimize(finder.hits().data());
        });
    });
}

void allHits(benchmark::State& state) {
    std::size_t hits = 0;
    double longest = 0.0;
    run(state, [&](const host::Plan& plan, Times& times) {
        times.measure([&] {
            host::HitFinder finder(plan, {});
            while (finder.state() == host::HitFinder::State::kFinding) {
                const Stopwatch watch;
                finder.step();
                longest = std::max(longest, watch.seconds());
            }
            hits = finder.hits().size();
        });
    });
    state.counters["hits"] = static_cast<double>(hits);
    state.counters["longest step ms"] = longest * 1e3;
}

void sorting(benchmark::State& state, host::HitColumn column) {
    run(state, [&](const host::Plan& plan, Times& times) {
        host::HitFinder finder(plan, {});
        findAll(finder);
        host::HitRows rows(finder);
        times.measure([&] { rows.sort(column, false); });
    });
}

void filtering(benchmark::State& state) {
    run(state, [](const host::Plan& plan, Times& times) {
        host::HitFinder finder(plan, {});
        findAll(finder);
        host::HitRows rows(finder);
        rows.sort(host::HitColumn::kFrequency, false);
        times.measure([&] { rows.filter({3, 0.0, L"RX1"}); });
    });
}

}  // namespace

void enlistHits() {
    const auto enlist = [](const char* name, auto function) {
        benchmark::RegisterBenchmark(name, function)->UseManualTime()->Unit(benchmark::kMillisecond);
    };
    enlist("Hits/first rows", firstRows);
    enlist("Hits/all", allHits);
    enlist("Hits/sort by frequency", [](benchmark::State& state) { sorting(state, host::HitColumn::kFrequency); });
    enlist("Hits/sort by formula", [](benchmark::State& state) { sorting(state, host::HitColumn::kFormula); });
    enlist("Hits/sort by receiver", [](benchmark::State& state) { sorting(state, host::HitColumn::kReceiver); });
    enlist("Hits/filter", filtering);
}

}  // namespace kv::bench
