// The channels that were hidden since they were drawn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "channels/ChannelStore.h"
#include "control/CollectionPainter.h"

namespace kv::control {

/// Resets the marks `bDrawn` of the hidden channels that refreshing takes off the picture, for as long as it lasts and,
/// after `keep`, for good. A channel that is in the list twice is taken off once: the copy of its later record loses
/// its mark.
class HiddenChannels {
  public:
    /// Those at the places up to, without, `last`. Throws std::bad_alloc.
    HiddenChannels(const channels::ChannelStore& store, channels::ChannelKind kind, const PaintedView& view,
                   std::size_t last);
    ~HiddenChannels();
    HiddenChannels(const HiddenChannels&) = delete;
    HiddenChannels& operator=(const HiddenChannels&) = delete;

    /// The channels have been taken off the picture.
    void keep() noexcept { channels_.clear(); }

  private:
    void addBlock(std::size_t block, std::size_t last);

    const channels::ChannelStore& store_;
    channels::ChannelKind kind_;
    const PaintedView& view_;
    std::vector<channels::FreqSlot*> channels_;
};

}  // namespace kv::control
