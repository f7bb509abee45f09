// Which benchmarks there are. Those of one set stand together, so that it is loaded once.
#include <benchmark/benchmark.h>

#include <cstdio>

#include "bench/Benchmarks.h"
#include "bench/Surroundings.h"

int main(int argc, char** argv) {
    using namespace kv::bench;
    [[maybe_unused]] const Surroundings surroundings;
    for (const SetKind kind : {SetKind::Narrow, SetKind::Wide, SetKind::Site}) {
        for (const std::size_t count : {20U, 1'000U, 10'000U, 100'000U, 495'000U, 1'000'000U})
            enlistDrawing(kind, count);
    }
    enlistCliffs(495'000U);
    enlistOverlays(495'000U);
    for (const SetKind kind : {SetKind::Narrow, SetKind::Site}) {
        for (const std::size_t count : {20U, 1'000U, 10'000U, 100'000U, 495'000U, 1'000'000U})
            enlistHosting(kind, count);
    }
    for (const std::size_t count : {1'000U, 10'000U, 100'000U, 495'000U, 1'000'000U})
        enlistStore(count);
    enlistHits();
    enlistGrowth();
    enlistSizes();
    enlistLive();
#ifdef _WIN32
    enlistFixed();
    enlistBatches();
#endif
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
