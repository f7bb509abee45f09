// A record whose reading runs nobody's code, as those of the control's own class.
#pragma once

#include "channels/FreqSlot.h"

namespace kv::control {

class QuietSlot final : public channels::FreqSlotBase {
  public:
    void retain() noexcept override { ++references_; }
    /// Out of line for the same reason as PlainSlot's.
    [[gnu::noinline]] void release() noexcept override {
        if (--references_ == 0)
            delete this;
    }
    channels::FreqSlotFields* watch() noexcept override { return watchFields(); }
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }

  private:
    int references_ = 0;
};

}  // namespace kv::control
