// A record of the control's own class without automation around it.
#pragma once

#include "bench/ChannelSets.h"
#include "channels/FreqSlot.h"

namespace kv::bench {

class SimpleSlot final : public channels::FreqSlotBase {
  public:
    void retain() noexcept override { ++references_; }
    void release() noexcept override {
        if (--references_ == 0)
            delete this;
    }
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }

  private:
    int references_ = 0;
};

[[nodiscard]] inline channels::FreqSlotRef makeSimpleSlot(const Channel& channel, std::size_t number) {
    auto* const slot = new SimpleSlot;
    const channels::FreqSlotRef held(slot);
    channels::FreqSlotFields& fields = slot->fields();
    fields.dFreq = channel.dFreq;
    fields.dBW = channel.dBW;
    fields.dFreqLo = channel.dFreqLo;
    fields.dFreqHi = channel.dFreqHi;
    fields.dPwrDBM = channel.dPwrDBM;
    fields.lColor = channel.lColor;
    fields.lColorLine = channel.lColorLine;
    fields.sLabel = channel.sLabel;
    fields.sKey = Channel::key(number);
    return held;
}

}  // namespace kv::bench
