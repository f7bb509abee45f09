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

using AnySlot = util::Ref<channels::FreqSlotBase>;

[[nodiscard]] inline channels::FreqSlotRef reference(const AnySlot& slot) {
    return channels::FreqSlotRef(slot.get());
}

/// Fills a new record with the channel and the key of a number.
inline AnySlot filled(AnySlot slot, const Channel& channel, std::size_t number) {
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
    return slot;
}

[[nodiscard]] inline AnySlot makeSimpleSlot(const Channel& channel, std::size_t number) {
    return filled(AnySlot(new SimpleSlot), channel, number);
}

}  // namespace kv::bench
