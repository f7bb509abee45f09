// Allocations that fail on purpose, in a test program whose operator new counts them.
#pragma once

namespace kv::fuzz {

/// While it lives, the n-th allocation fails, counted from 1. With `ToTheEnd` so does each later one.
class Faults {
  public:
    enum class Lasting { Once, ToTheEnd };

    Faults(long n, Lasting lasting) noexcept;
    ~Faults();
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    /// The n-th allocation was reached.
    [[nodiscard]] bool happened() const noexcept;
    /// The allocations since the beginning, spared ones not counted.
    [[nodiscard]] static long count() noexcept;
};

/// While it lives, no allocation fails: for what a test itself needs in the middle of a call.
class Spared {
  public:
    Spared() noexcept;
    ~Spared();
    Spared(const Spared&) = delete;
    Spared& operator=(const Spared&) = delete;
};

/// The blocks that were allocated and not freed.
[[nodiscard]] long liveBlocks() noexcept;

}  // namespace kv::fuzz
