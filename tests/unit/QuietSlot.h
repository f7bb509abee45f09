// Records in plain memory, with and without reports of their changes.
#pragma once

#include "channels/FreqSlot.h"

namespace kv::control {

/// Counts its references. The store treats it as a record of a foreign class, which reports no changes.
class CountedSlot : public channels::FreqSlotBase {
  public:
    void retain() noexcept final { ++references_; }
    /// Out of line for the same reason as PlainSlot's.
    [[gnu::noinline]] void release() noexcept final {
        if (--references_ == 0)
            delete this;
    }

  protected:
    virtual ~CountedSlot() = default;

  private:
    int references_ = 0;
};

/// Reports its changes, like the control's own class: reading it runs no code of a host.
class QuietSlot : public CountedSlot {
  public:
    [[nodiscard]] const channels::FreqSlotFields* peek() const noexcept override { return &fields(); }
};

}  // namespace kv::control
