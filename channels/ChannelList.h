// The channels of one kind in their order, with a counted reference to each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "channels/FreqSlot.h"
#include "channels/RankedBits.h"
#include "util/Prefetch.h"

namespace kv::channels {

/// A channel keeps its place for as long as it is in the list, whatever is removed before it; a removed one leaves a
/// hole. Its index is its place without the holes before it. What is derived from the channels is kept by place, so
/// that a removal moves nothing.
///
/// A member that removes a channel returns the reference: releasing it may run the host's code, so the caller releases
/// it when everything is in order.
class ChannelList {
  public:
    ChannelList() = default;
    ChannelList(const ChannelList&) = delete;
    ChannelList& operator=(const ChannelList&) = delete;
    ~ChannelList();

    /// Without the holes.
    [[nodiscard]] std::size_t size() const noexcept { return slots_.size() - holes_.count(); }
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }
    /// By index, from 0 to size - 1.
    [[nodiscard]] FreqSlot* operator[](std::size_t index) const noexcept { return slots_[placeOf(index)]; }

    /// With the holes.
    [[nodiscard]] std::size_t places() const noexcept { return slots_.size(); }
    /// Null in a hole.
    [[nodiscard]] FreqSlot* at(std::size_t place) const noexcept { return slots_[place]; }
    /// Starts loading the record at `place`, which may be a hole or beyond the end, because it is needed soon. The
    /// records are scattered over the memory.
    void prefetch(std::size_t place) const noexcept {
        if (place >= slots_.size())
            return;
        // The visible and drawn marks are among the first bytes of a record, which may lie in two cache lines.
        constexpr std::size_t kFirstBytes = 32;
        const auto* const record = reinterpret_cast<const char*>(slots_[place]);
        util::prefetch(record);
        util::prefetch(record + kFirstBytes - 1);
    }
    [[nodiscard]] std::size_t placeOf(std::size_t index) const noexcept { return holes_.positionOfClear(index); }
    [[nodiscard]] std::int32_t indexOf(std::size_t place) const noexcept {
        return static_cast<std::int32_t>(holes_.clearBefore(place));
    }
    [[nodiscard]] const RankedBits& holes() const noexcept { return holes_; }

    void append(const FreqSlotRef& channel);
    /// Undoes the last `append`.
    [[nodiscard]] FreqSlotRef takeBack() noexcept;
    /// Leaves a hole. Throws std::bad_alloc and changes nothing.
    [[nodiscard]] FreqSlotRef remove(std::size_t place);
    /// So many holes that it is better to close them.
    [[nodiscard]] bool hasManyHoles() const noexcept;
    /// Gives all channels new places, in the same order: `moved(from, to)` is called for each that moves.
    template <class Moved>
    void closeHoles(Moved&& moved) noexcept {
        std::size_t to = 0;
        for (std::size_t from = 0; from < slots_.size(); ++from) {
            if (!slots_[from])
                continue;
            if (from != to) {
                slots_[to] = slots_[from];
                moved(from, to);
            }
            ++to;
        }
        slots_.resize(to);
        holes_ = {};
    }
    /// Calls `leaving` with each channel, and then releases them all, which may run the host's code.
    template <class Leaving>
    void clear(Leaving&& leaving) noexcept {
        for (FreqSlot* const channel : slots_) {
            if (channel)
                leaving(*channel);
        }
        for (FreqSlot*& slot : slots_) {
            if (FreqSlot* const channel = std::exchange(slot, nullptr))
                channel->release();
        }
    }
    void swap(ChannelList& other) noexcept {
        slots_.swap(other.slots_);
        std::swap(holes_, other.holes_);
    }

  private:
    std::vector<FreqSlot*> slots_;  ///< by place
    RankedBits holes_;
};

}  // namespace kv::channels
