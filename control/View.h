// What hosts can do with the display beyond the members of the control: exact ranges, hits, and channels in one call.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "channels/ChannelKind.h"
#include "channels/FreqSlot.h"

namespace kv::control {

class Bandscope;
class Overlays;

/// Frequencies in MHz. A wrong argument ends in RuntimeError 5, whose text contains the value and what is allowed.
/// Nothing has changed then. No member raises an event.
class View {
  public:
    explicit View(Bandscope& scope) noexcept : scope_(scope) {}

    /// Shows exactly this range and draws.
    void showRange(double minimum, double maximum);
    /// 2 shows half the span. `around` keeps its place in the picture; 0 is the middle of the range.
    void zoomBy(double factor, double around);
    void panBy(double distance);
    /// The channels whose band is within `tolerance` of `frequency`, in the order of the mouse report. Throws also what
    /// reading a channel throws.
    [[nodiscard]] std::vector<channels::FreqSlotRef> hitTest(double frequency, double tolerance) const;
    /// Adds the channels as the members for single channels do. Returns how many were added.
    std::int32_t add(channels::ChannelKind kind, const std::vector<channels::FreqSlotRef>& added);
    /// Duration of the last drawing, milliseconds; 0 before the first one.
    [[nodiscard]] double renderTimeMs() const noexcept;

    /// Drawings of the whole display wait from a beginning to its end.
    void beginUpdate() noexcept;
    void endUpdate();

    /// The range before the user's last change of it, and forward again. False when there is none.
    bool back();
    bool forward();
    [[nodiscard]] bool canGoBack() const noexcept;
    [[nodiscard]] bool canGoForward() const noexcept;

    /// MHz; 0 before it was set.
    [[nodiscard]] double marker() const noexcept;
    void setMarker(double frequency);
    [[nodiscard]] bool isMarkerVisible() const noexcept;
    /// A marker that was never set appears at the cursor.
    void setMarkerVisible(bool visible);
    [[nodiscard]] bool wheelZoom() const noexcept;
    void setWheelZoom(bool value) noexcept;
    [[nodiscard]] bool snapToChannels() const noexcept;
    void setSnapToChannels(bool value) noexcept;

    /// What is drawn over the spectrum. Setting it draws the display, also if nothing changes.
    [[nodiscard]] const Overlays& overlays() const noexcept;
    void setOverlays(const Overlays& value);

  private:
    [[nodiscard]] std::pair<double, double> shownRange(const wchar_t* member);
    void show(const wchar_t* member, double minimum, double maximum);

    Bandscope& scope_;
};

}  // namespace kv::control
