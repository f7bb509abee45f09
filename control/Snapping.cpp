#include "control/Snapping.h"

#include <cmath>

#include "channels/ChannelIndex.h"

namespace kv::control {

namespace {

constexpr int kSnapReach = 6;  // pixels

}  // namespace

template <class IsAllowed>
double Snapping::nearest(double frequency, IsAllowed&& isAllowed) const {
    const double reach = std::abs(picture_.scaleWidth()) * kSnapReach / std::max(picture_.pixelSize().width, 1);
    double found = frequency;
    double distance = reach;
    const auto consider = [&](double candidate) {
        if (std::abs(candidate - frequency) > distance || !isAllowed(candidate))
            return;
        found = candidate;
        distance = std::abs(candidate - frequency);
    };
    for (const channels::ChannelKind kind : {channels::ChannelKind::RX, channels::ChannelKind::TX}) {
        channels::forEachChannelAt(store_, kind, frequency, reach, [&](std::int32_t index) {
            const channels::FreqSlotRef channel = store_.at(kind, index);
            if (!channel)
                return false;
            const channels::DrawRecord record = channel->visibleRecord();
            if (record.bVisible) {
                consider(record.dFreq);
                consider(record.dFreqLo);
                consider(record.dFreqHi);
            }
            return true;
        });
    }
    return found;
}

double Snapping::at(double frequency) const {
    return on_ ? nearest(frequency, [](double) { return true; }) : frequency;
}

double Snapping::ahead(double from, double to) const {
    if (!on_)
        return to;
    return nearest(to, [&](double candidate) { return to > from ? candidate > from : candidate < from; });
}

}  // namespace kv::control
