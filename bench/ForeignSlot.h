// A record of a host's own class: it reports no changes, and the store reads it through its members. The members that
// are called are counted.
#pragma once

#include <cstdint>
#include <string>

#include "channels/FreqSlot.h"

namespace kv::bench {

class ForeignSlot final : public channels::FreqSlotBase {
  public:
    void retain() noexcept override { ++references_; }
    void release() noexcept override {
        if (--references_ == 0)
            delete this;
    }

    double dFreq() override { return (++calls, FreqSlotBase::dFreq()); }
    double dFreqAlt() override { return (++calls, FreqSlotBase::dFreqAlt()); }
    double dBW() override { return (++calls, FreqSlotBase::dBW()); }
    double dFreqHi() override { return (++calls, FreqSlotBase::dFreqHi()); }
    double dFreqLo() override { return (++calls, FreqSlotBase::dFreqLo()); }
    double dPwrDBM() override { return (++calls, FreqSlotBase::dPwrDBM()); }
    std::wstring sLabel() override { return (++calls, FreqSlotBase::sLabel()); }
    std::wstring sFreqUnits() override { return (++calls, FreqSlotBase::sFreqUnits()); }
    std::wstring sBWUnits() override { return (++calls, FreqSlotBase::sBWUnits()); }
    std::wstring sKey() override { return (++calls, FreqSlotBase::sKey()); }
    bool bVisible() override { return (++calls, FreqSlotBase::bVisible()); }
    /// Nine members for a class of the host's.
    channels::DrawRecord drawRecord() override { return (calls += 9, FreqSlotBase::drawRecord()); }
    void setDFreqHi(double value) override { (++calls, FreqSlotBase::setDFreqHi(value)); }
    void setDFreqLo(double value) override { (++calls, FreqSlotBase::setDFreqLo(value)); }
    void setSFreqUnits(const std::wstring& value) override { (++calls, FreqSlotBase::setSFreqUnits(value)); }
    void setSBWUnits(const std::wstring& value) override { (++calls, FreqSlotBase::setSBWUnits(value)); }
    void setBDrawn(bool value) override { (++calls, FreqSlotBase::setBDrawn(value)); }
    void setIFillStyle(std::int16_t value) override { (++calls, FreqSlotBase::setIFillStyle(value)); }

    static inline std::uint64_t calls = 0;

  private:
    int references_ = 0;
};

}  // namespace kv::bench
