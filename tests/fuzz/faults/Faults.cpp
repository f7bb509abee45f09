#include "tests/fuzz/faults/Faults.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

struct Plan {
    bool active = false;
    long failing = std::numeric_limits<long>::max();
    bool toTheEnd = false;
    long seen = 0;
    int spared = 0;
};

// The tests run in one thread.
Plan plan;
long live = 0;

bool hasToFail() noexcept {
    if (!plan.active || plan.spared > 0)
        return false;
    ++plan.seen;
    return plan.toTheEnd ? plan.seen >= plan.failing : plan.seen == plan.failing;
}

void* allocated(std::size_t size) {
    void* const block = hasToFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (!block)
        throw std::bad_alloc();
    ++live;
    return block;
}

void freed(void* block) noexcept {
    if (!block)
        return;
    --live;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return allocated(size);
}
void* operator new[](std::size_t size) {
    return allocated(size);
}
void operator delete(void* block) noexcept {
    freed(block);
}
void operator delete[](void* block) noexcept {
    freed(block);
}
void operator delete(void* block, std::size_t) noexcept {
    freed(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    freed(block);
}

namespace kv::fuzz {

Faults::Faults(long n, Lasting lasting) noexcept {
    plan = {true, n, lasting == Lasting::ToTheEnd, 0, 0};
}

Faults::~Faults() {
    plan.active = false;
}

bool Faults::happened() const noexcept {
    return plan.seen >= plan.failing;
}

long Faults::count() noexcept {
    return plan.seen;
}

Spared::Spared() noexcept {
    ++plan.spared;
}

Spared::~Spared() {
    --plan.spared;
}

long liveBlocks() noexcept {
    return live;
}

}  // namespace kv::fuzz
