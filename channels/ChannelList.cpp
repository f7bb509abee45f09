#include "channels/ChannelList.h"

namespace kv::channels {

namespace {

constexpr std::size_t kFewHoles = 256;

}  // namespace

ChannelList::~ChannelList() {
    for (FreqSlot* const channel : slots_) {
        if (channel)
            channel->release();
    }
}

void ChannelList::append(const FreqSlotRef& channel) {
    slots_.push_back(channel.get());
    channel->retain();
}

// The last channel has no hole behind it.
FreqSlotRef ChannelList::takeBack() noexcept {
    FreqSlotRef channel = FreqSlotRef::adopt(slots_.back());
    slots_.pop_back();
    return channel;
}

FreqSlotRef ChannelList::remove(std::size_t place) {
    holes_.set(place);
    return FreqSlotRef::adopt(std::exchange(slots_[place], nullptr));
}

bool ChannelList::hasManyHoles() const noexcept {
    return holes_.count() > kFewHoles + slots_.size() / 8;
}

}  // namespace kv::channels
