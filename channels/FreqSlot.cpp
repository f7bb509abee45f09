#include "channels/FreqSlot.h"

#include "util/RuntimeError.h"

namespace kv::channels {

namespace {

// One for all stores and apartments of the process, because a record does not know which stores hold it.
std::atomic<std::uint64_t> revision;
std::atomic<std::uint64_t> keys;

}  // namespace

std::uint64_t recordRevision() noexcept {
    return revision.load(std::memory_order_relaxed);
}

std::uint64_t keyRevision() noexcept {
    return keys.load(std::memory_order_relaxed);
}

ImComponent FreqSlotBase::imComponent(std::int32_t i) {
    return component(i);
}

ImComponent& FreqSlotBase::component(std::int32_t i) {
    if (i < 0 || static_cast<std::size_t>(i) >= fields_.components.size())
        throw util::RuntimeError(util::error_number::kSubscriptOutOfRange);
    return fields_.components[static_cast<std::size_t>(i)];
}

void FreqSlotBase::setNIMComps(std::int16_t count) {
    if (count < 0)
        throw util::RuntimeError(util::error_number::kInvalidProcedureCall);
    fields_.components.resize(static_cast<std::size_t>(count));
}

// A copy that misses the mark of a visible record only sets it once more. Any other change matters.
void FreqSlotBase::setBDrawn(bool value) {
    const bool matters = fields_.bDrawn != value && !(value && fields_.bVisible);
    fields_.bDrawn = value;
    if (matters)
        changed();
}

void FreqSlotBase::moveRevision() noexcept {
    revision.fetch_add(1, std::memory_order_relaxed);
}

void FreqSlotBase::moveKeyRevision() noexcept {
    keys.fetch_add(1, std::memory_order_relaxed);
    moveRevision();
}

}  // namespace kv::channels
