// What each file of benchmarks enlists.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "bench/ChannelSets.h"

namespace kv::bench {

using Function = void (*)(benchmark::State&, SetKind);

/// A benchmark of one step for one set, which times itself.
inline benchmark::internal::Benchmark* enlist(const char* step, Function function, SetKind kind, std::size_t count) {
    const std::string name = std::string(step) + "/" + nameOf(kind);
    return benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { function(state, kind); })
        ->Arg(static_cast<std::int64_t>(count))
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// Drawing, panning, zooming, moving the mouse and the first picture of a set.
void enlistDrawing(SetKind kind, std::size_t count);
/// Unusual records and settings.
void enlistCliffs(std::size_t count);
/// Power axis, legend and channel labels.
void enlistOverlays(std::size_t count);
/// Adding, finding, removing and clearing, as a host does it.
void enlistHosting(SetKind kind, std::size_t count);
/// The list of hits of the sample host.
void enlistHits();
/// Steps that must not become slow with unusual channels.
void enlistGrowth();
/// Times and memory by the number of channels.
void enlistSizes();
/// Drawing and moving the mouse after some records have changed.
void enlistLive();
/// Adding many channels in one call by name; on Windows only.
void enlistBatches();
/// The store by itself, without the drawing that follows a removal.
void enlistStore(std::size_t count);
/// What drawing and pointing cost with few channels; on Windows only.
void enlistFixed();

}  // namespace kv::bench
