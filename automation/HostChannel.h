// A channel whose record belongs to the host.
#pragma once

#include "control/FreqSlot.h"
#include "kvBandscope.h"

namespace kv::automation {

class HostChannel : public control::FreqSlot {
  public:
    /// The host's view of the channel, counted for the caller.
    virtual _FreqSlot* shareWithHost() noexcept = 0;

    control::DrawRecord drawRecord() override {
        return {dFreq(), dFreqLo(), dFreqHi(), dPwrDBM(), lColor(), lColorLine(), iFillStyle(), bVisible(), bDrawn()};
    }

  protected:
    ~HostChannel() = default;
};

}  // namespace kv::automation
