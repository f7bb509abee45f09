// The channels of one kind in their order, with a counted reference to each.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "channels/FreqSlot.h"

namespace kv::channels {

/// Like a vector of references, but closing a gap moves plain pointers. A member that removes a channel returns the
/// reference: releasing it may run the host's code, so the caller releases it when the list is in order.
class ChannelList {
  public:
    ChannelList() = default;
    ChannelList(const ChannelList&) = delete;
    ChannelList& operator=(const ChannelList&) = delete;
    ~ChannelList() {
        for (FreqSlot* const channel : channels_)
            channel->release();
    }

    [[nodiscard]] std::size_t size() const noexcept { return channels_.size(); }
    [[nodiscard]] bool empty() const noexcept { return channels_.empty(); }
    [[nodiscard]] FreqSlot* operator[](std::size_t index) const noexcept { return channels_[index]; }

    void append(const FreqSlotRef& channel) {
        channels_.push_back(channel.get());
        channel->retain();
    }
    [[nodiscard]] FreqSlotRef replace(std::size_t index, const FreqSlotRef& channel) noexcept {
        channel->retain();
        return FreqSlotRef::adopt(std::exchange(channels_[index], channel.get()));
    }
    [[nodiscard]] FreqSlotRef take(std::size_t index) noexcept {
        FreqSlotRef channel = FreqSlotRef::adopt(channels_[index]);
        channels_.erase(channels_.begin() + static_cast<std::ptrdiff_t>(index));
        return channel;
    }
    void swap(ChannelList& other) noexcept { channels_.swap(other.channels_); }

  private:
    std::vector<FreqSlot*> channels_;
};

}  // namespace kv::channels
