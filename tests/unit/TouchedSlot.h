// Records that count how often they are touched: what a step costs, on every machine alike.
#pragma once

#include <string>

#include "channels/FreqSlot.h"

namespace kv::control {

/// Counts the calls of all members, and of references, that the store and the display use on any of these records.
class TouchedSlot : public channels::FreqSlotBase {
  public:
    void retain() noexcept final { (++touches, ++references_); }
    [[gnu::noinline]] void release() noexcept final {
        ++touches;
        if (--references_ == 0)
            delete this;
    }

    double dFreq() override { return (++touches, FreqSlotBase::dFreq()); }
    double dFreqAlt() override { return (++touches, FreqSlotBase::dFreqAlt()); }
    double dBW() override { return (++touches, FreqSlotBase::dBW()); }
    double dFreqHi() override { return (++touches, FreqSlotBase::dFreqHi()); }
    double dFreqLo() override { return (++touches, FreqSlotBase::dFreqLo()); }
    double dPwrDBM() override { return (++touches, FreqSlotBase::dPwrDBM()); }
    std::wstring sLabel() override { return (++touches, FreqSlotBase::sLabel()); }
    std::wstring sFreqUnits() override { return (++touches, FreqSlotBase::sFreqUnits()); }
    std::wstring sKey() override { return (++touches, FreqSlotBase::sKey()); }
    bool bVisible() override { return (++touches, FreqSlotBase::bVisible()); }
    channels::DrawRecord drawRecord() override { return (++touches, FreqSlotBase::drawRecord()); }

    static inline int touches = 0;

  protected:
    virtual ~TouchedSlot() = default;

  private:
    int references_ = 0;
};

/// Of the control's own class.
class TouchedOwnSlot final : public TouchedSlot {
  public:
    [[nodiscard]] bool watch(channels::RecordWatcher& watcher, std::int32_t place) override {
        return (++touches, FreqSlotBase::watch(watcher, place));
    }
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return (++touches, &fields()); }
};

/// Of a class of the host's.
class TouchedForeignSlot final : public TouchedSlot {};

}  // namespace kv::control
