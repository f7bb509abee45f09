// Leads the cursor and the marker to the channels.
#pragma once

#include "channels/ChannelStore.h"
#include "formenv/PictureBox.h"

namespace kv::control {

/// Frequencies in MHz. Throws what reading a channel throws.
class Snapping {
  public:
    /// Both have to live longer.
    Snapping(const channels::ChannelStore& store, const formenv::PictureBox& picture) noexcept
        : store_(store), picture_(picture) {}
    Snapping(const Snapping&) = delete;
    Snapping& operator=(const Snapping&) = delete;

    [[nodiscard]] bool isOn() const noexcept { return on_; }
    void turn(bool on) noexcept { on_ = on; }

    /// The nearest center or edge of a visible channel within 6 pixels of `frequency`; `frequency` when there is none
    /// or snapping is off.
    [[nodiscard]] double at(double frequency) const;
    /// The same for a step from one frequency to another. What is not ahead is passed over, because a small step would
    /// never leave a channel otherwise.
    [[nodiscard]] double ahead(double from, double to) const;

  private:
    template <class IsAllowed>
    double nearest(double frequency, IsAllowed&& isAllowed) const;

    const channels::ChannelStore& store_;
    const formenv::PictureBox& picture_;
    bool on_ = false;
};

}  // namespace kv::control
