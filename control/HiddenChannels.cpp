#include "control/HiddenChannels.h"

#include <algorithm>

namespace kv::control {

HiddenChannels::HiddenChannels(const channels::ChannelStore& store, channels::ChannelKind kind, const PaintedView& view,
                               std::size_t last)
    : store_(store), kind_(kind), view_(view) {
    constexpr std::size_t kBlock = channels::ChannelSnapshot::kBlock;
    const std::vector<channels::ChannelSnapshot::Block>& blocks = store.snapshot(kind).blocks();
    const std::size_t end = (last + kBlock - 1) / kBlock;
    std::size_t most = 0;
    for (std::size_t block = 0; block < end; ++block)
        most += blocks[block].hasHiddenButDrawn ? kBlock : 0;
    // All memory first, so that nothing can fail between two marks.
    channels_.reserve(most);
    for (std::size_t block = 0; block < end; ++block) {
        if (blocks[block].hasHiddenButDrawn)
            addBlock(block, last);
    }
}

void HiddenChannels::addBlock(std::size_t block, std::size_t last) {
    channels::ChannelSnapshot& snapshot = store_.snapshot(kind_);
    snapshot.forHiddenButDrawn(block, [&](std::size_t place) { snapshot.prefetch(place); });
    snapshot.forHiddenButDrawn(block, [&](std::size_t place) {
        // A foreign one has been told when it was read.
        if (place >= last || !snapshot.isHiddenButDrawn(place) || !view_.reaches(snapshot.records()[place]) ||
            snapshot.foreign().contains(place))
            return;
        channels::FreqSlot* const channel = store_.list(kind_).at(place);
        if (channel->bDrawn()) {
            channel->setBDrawn(false);
            channels_.push_back(channel);
        } else {
            snapshot.forgetDrawn(place);
        }
    });
}

HiddenChannels::~HiddenChannels() {
    for (channels::FreqSlot* const channel : channels_)
        channel->setBDrawn(true);
}

}  // namespace kv::control
