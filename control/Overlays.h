// What a host can have drawn over the finished spectrum: power axis, legend and labels of the channels.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "channels/ChannelStore.h"
#include "control/BoxTops.h"
#include "formenv/PictureBox.h"

namespace kv::control {

/// All are off at the start. They belong to the drawings of the whole display and are drawn after channels and grid,
/// before the marks. A channel that is drawn alone later is drawn over them.
class Overlays {
  public:
    [[nodiscard]] bool hasPowerAxis() const noexcept { return source_.powerAxis; }
    void setPowerAxis(bool value) noexcept { source_.powerAxis = value; }
    [[nodiscard]] bool hasLegend() const noexcept { return source_.legend; }
    void setLegend(bool value) noexcept { source_.legend = value; }
    [[nodiscard]] bool hasChannelLabels() const noexcept { return source_.channelLabels; }
    void setChannelLabels(bool value) noexcept { source_.channelLabels = value; }

    /// What the overlays depend on, beside picture, scale and the records as they are drawn.
    struct Source {
        bool powerAxis = false;
        bool legend = false;
        bool channelLabels = false;
        std::array<std::uint64_t, 2> labels{};  ///< versions, as far as labels are read
        friend bool operator==(const Source&, const Source&) = default;
    };
    [[nodiscard]] Source source(const channels::ChannelStore& store) const noexcept;

    /// Draws on any picture whose scale is that of the spectrum; `tops` are the boxes on it. Channels of the host's own
    /// classes are read first. Then `beforeStrokes` is called, if anything is drawn. If the host's code has given the
    /// picture another scale or size meanwhile, nothing is drawn. Throws std::bad_alloc.
    void draw(formenv::PictureBox& picture, const channels::ChannelStore& store, const BoxTops& tops,
              const std::function<void()>& beforeStrokes = {}) const;

  private:
    Source source_;  ///< without the versions
};

}  // namespace kv::control
