// What each file of benchmarks enlists.
#pragma once

#include "bench/ChannelSets.h"

namespace kv::bench {

/// Drawing, panning, zooming, moving the mouse and the first picture of a set.
void enlistDrawing(SetKind kind, std::size_t count);
/// Adding, finding, removing and clearing, as a host does it.
void enlistHosting(SetKind kind, std::size_t count);
/// The store by itself, without the drawing that follows a removal.
void enlistStore(std::size_t count);

}  // namespace kv::bench
