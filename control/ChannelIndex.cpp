#include "control/ChannelIndex.h"

#include <string>

#include "util/ConvertFreq.h"

namespace kv::control {

void forEachChannelAt(const ChannelStore& store, ChannelKind kind, double x, double tolerance,
                      const std::function<bool(std::int32_t index)>& found) {
    for (std::int32_t i = 0; const FreqSlotRef channel = store.at(kind, i); ++i) {
        const std::wstring units = channel->sFreqUnits();
        bool bErr = false;
        const double low = util::ConvertFreq(units, L"MHz", channel->dFreqLo(), bErr);
        const double high = util::ConvertFreq(units, L"MHz", channel->dFreqHi(), bErr);
        if (low <= x + tolerance && high >= x - tolerance && !found(i))
            return;
    }
}

}  // namespace kv::control
