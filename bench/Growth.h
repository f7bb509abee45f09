// Steps whose time is measured with few and with many channels.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "bench/ForeignSlot.h"
#include "bench/Median.h"
#include "bench/StoreSteps.h"

namespace kv::bench {

/// Seconds of one step.
struct Cost {
    double median = 0.0;
    double worst = 0.0;
};
/// Prepares a store of so many channels and takes the step some times.
using Scenario = Cost (*)(std::size_t count);

template <class Prepare, class Step>
Cost each(std::size_t rounds, Prepare prepare, Step step) {
    Times times;
    double worst = 0.0;
    for (std::size_t i = 0; i < rounds; ++i) {
        prepare(i);
        worst = std::max(worst, times.measure([&] { step(i); }));
    }
    return {times.median(), worst};
}

inline void nothing(std::size_t) {}

inline AnySlot oneMore(AnySlot slot, const std::wstring& key) {
    slot = filled(std::move(slot), channelSet(SetKind::Narrow, 64).channels.front(), 1);
    slot->fields().sKey = key;
    return slot;
}
/// One more record of the control's own class, with a key.
inline AnySlot ownSlot(const std::wstring& key) {
    return oneMore(AnySlot(new SimpleSlot), key);
}
inline AnySlot foreignSlot(const std::wstring& key) {
    return oneMore(AnySlot(new ForeignSlot), key);
}

// Beside many TX channels with keys: one addition of an RX channel.
[[nodiscard]] Cost addKeyed(std::size_t count);
[[nodiscard]] Cost addUnkeyed(std::size_t count);
[[nodiscard]] Cost addTaken(std::size_t count);
[[nodiscard]] Cost addUnreadable(std::size_t count);
// Adding all channels.
[[nodiscard]] Cost addPlain(std::size_t count);  ///< the simplest loop that does the same
[[nodiscard]] Cost addOwn(std::size_t count);
[[nodiscard]] Cost addForeign(std::size_t count);
[[nodiscard]] Cost addForeignNowAndThen(std::size_t count);
[[nodiscard]] Cost addSameKeysAgain(std::size_t count);
// Kinds that are cleared and loaded again, one round.
[[nodiscard]] Cost reloadFewRX(std::size_t count);
[[nodiscard]] Cost loadFewRXFirst(std::size_t count);
[[nodiscard]] Cost clearAndAddTen(std::size_t count);
[[nodiscard]] Cost clearAndAddTenBeside(std::size_t count);
[[nodiscard]] Cost addTenBeside(std::size_t count);

}  // namespace kv::bench
