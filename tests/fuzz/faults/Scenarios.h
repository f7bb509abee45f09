// What a control does while something fails.
#pragma once

#include <span>

#include "tests/fuzz/faults/World.h"

namespace kv::fuzz {

struct Scenario {
    const char* name;
    void (*prepare)(World& world);
    void (*act)(World& world);
};

[[nodiscard]] std::span<const Scenario> scenarios() noexcept;

}  // namespace kv::fuzz
