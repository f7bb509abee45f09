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
        channels::DrawRecord record;
        record.dFreq = dFreq();
        readRest(record);
        record.bVisible = bVisible();
        record.bDrawn = bDrawn();
        return record;
    }
    channels::DrawRecord visibleRecord() override {
        channels::DrawRecord record;
        record.bVisible = bVisible();
        if (!record.bVisible)
            return record;
        record.dFreq = dFreq();
        if (record.dFreq > 0.0)
            readRest(record);
        return record;
    }

  protected:
    ~HostChannel() = default;

  private:
    void readRest(channels::DrawRecord& record) {
        record.dFreqLo = dFreqLo();
        record.dFreqHi = dFreqHi();
        record.dPwrDBM = dPwrDBM();
        record.lColor = lColor();
        record.lColorLine = lColorLine();
        record.iFillStyle = iFillStyle();
    }
};

}  // namespace kv::automation
