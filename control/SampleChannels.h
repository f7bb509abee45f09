// The channels that the control makes by itself: what a click on an empty control shows, and those of a development
// aid.
#pragma once

#include <vector>

#include "channels/ChannelKind.h"
#include "channels/FreqSlot.h"

namespace kv::control {

struct SampleChannel {
    channels::ChannelKind kind;
    channels::FreqSlotRef channel;
};

/// The end buffer that suits the sample channels, MHz.
inline constexpr double kSampleEndBuffer = 5.0;

/// A band with repeater pairs, strong and weak carriers, wide and narrow ones, overlapping ones, and the third-order
/// products that the two strongest make.
[[nodiscard]] std::vector<SampleChannel> makeSampleChannels(const channels::FreqSlotFactory& newFreqSlot);

/// Three transmit and two receive channels without keys, for the button Command3.
[[nodiscard]] std::vector<SampleChannel> makeTestChannels(const channels::FreqSlotFactory& newFreqSlot);

}  // namespace kv::control
