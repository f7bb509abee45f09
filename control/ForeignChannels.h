// The channels that are objects of the host, in a drawing that paints all channels of a kind at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>

#include "channels/ChannelStore.h"
#include "control/CollectionPainter.h"

namespace kv::control {

/// How far the channels of a kind can be painted at once.
struct ForeignRead {
    std::size_t last;           ///< the places up to, without, this one
    std::size_t stoppedAt;      ///< the place of the channel at which reading ended, if it did not come to the end
    std::exception_ptr failed;  ///< what that channel threw
};

/// Reads each channel at the places up to, without, `last`, and tells it whether it is drawn, in the order and with the
/// calls of drawing one by one: a member is asked once, and of a hidden channel no more than that it is hidden. This
/// runs the host's code. Reading ends when that changes the list of the channels or draws them, and at a channel whose
/// fill style ends the drawing.
[[nodiscard]] ForeignRead readForeignChannels(const channels::ChannelStore& store, channels::ChannelKind kind,
                                              const PaintedView& view, std::size_t last);

}  // namespace kv::control
