// Hints for memory that is needed soon.
#pragma once

namespace kv::util {

/// Starts loading the cache line at `address`, which need not be valid, so that a loop over scattered objects does not
/// wait for each of them in turn.
inline void prefetch(const void* address) noexcept {
    __builtin_prefetch(address);
}

}  // namespace kv::util
