// Moving through the spectrum by wheel, by a drag of the frequency scale, and back and forward through the ranges that
// the user has left.
#pragma once

#include <optional>
#include <utility>

#include "control/DisplayRange.h"
#include "control/RangeHistory.h"
#include "formenv/PictureBox.h"
#include "util/ErrHand.h"

namespace kv::control {

/// MHz; ten times what the coarsest grid step spans. Users zoom out no further.
inline constexpr double kWidestZoom = 1e8;

/// What these ask of the display. Frequencies in MHz.
class NavigationActions {
  public:
    virtual ~NavigationActions() = default;
    /// Draws and tells the host.
    virtual void panTo(double center) = 0;
    virtual void zoomTo(double minimum, double maximum) = 0;
    /// Draws; the host is told later.
    virtual void applyNewCenter(double center) = 0;
    /// Shows exactly this range. False, with nothing changed, for a range that cannot be shown.
    virtual bool showExactly(double minimum, double maximum) = 0;
    virtual void tellRangeChanged() = 0;
};

class Navigation {
  public:
    /// All have to live longer.
    Navigation(NavigationActions& actions, DisplayRange& range, const formenv::PictureBox& picture,
               util::ErrorReporter& errors) noexcept
        : actions_(actions), range_(range), picture_(picture), errors_(errors) {}
    Navigation(const Navigation&) = delete;
    Navigation& operator=(const Navigation&) = delete;

    /// The wheel was turned by `delta` 120ths of a notch, away from the user when above 0, with the pointer at `x` MHz.
    /// `shift`: 1 pans by a grid division for each notch, 2 zooms finely. Parts of a notch add up. False when the wheel
    /// is not used here.
    bool wheel(int delta, int shift, double x);
    [[nodiscard]] bool wheelZoom() const noexcept { return wheelZoom_; }
    void setWheelZoom(bool value) noexcept { wheelZoom_ = value; }

    /// The frequency scale is dragged; `x` in twips. The picture follows, and the host is told at the end.
    void scalePressed(int button, double x);
    void scaleMoved(int buttons, double x);
    void scaleReleased(int button);
    /// Ends the drag where it is.
    void scaleLost();
    [[nodiscard]] bool isPanning() const noexcept { return pan_.has_value(); }
    /// Ends the drag where it began; false when there is none.
    bool giveUpPan();

    [[nodiscard]] RangeHistory& history() noexcept { return history_; }
    [[nodiscard]] const RangeHistory& history() const noexcept { return history_; }
    /// Shows the range from before the last step. False when there is none, or none that can be shown.
    bool goBack();
    bool goForward();

  private:
    struct Pan {
        double from = 0.0;    ///< twips
        double center = 0.0;  ///< MHz, at the start
        bool moved = false;
    };
    void zoomAround(double x, double factor);
    void endPan();
    bool go(std::optional<RangeHistory::Range> (RangeHistory::*step)(const RangeHistory::Range&));

    NavigationActions& actions_;
    DisplayRange& range_;
    const formenv::PictureBox& picture_;
    util::ErrorReporter& errors_;
    RangeHistory history_;
    std::optional<Pan> pan_;
    int turned_ = 0;  ///< 120ths of a notch that have not been used
    bool wheelZoom_ = true;
};

}  // namespace kv::control
