// A channel whose record is an object of the host.
#pragma once

#include "channels/FreqSlot.h"
#include "kvBandscope.h"

namespace kv::automation {

class HostChannel : public channels::FreqSlot {
  public:
    /// The host's object, counted for the caller.
    virtual _FreqSlot* shareWithHost() noexcept = 0;

    channels::DrawRecord drawRecord() override {
        return {dFreq(), dFreqLo(), dFreqHi(), dPwrDBM(), lColor(), lColorLine(), iFillStyle(), bVisible(), bDrawn()};
    }

  protected:
    ~HostChannel() = default;
};

}  // namespace kv::automation
