// The range that the picture shows: its frequencies, its center, its powers and the step of its grid. Arithmetic only;
// what follows the range is told through `RangeView`.
#pragma once

#include <cstdint>
#include <utility>

#include "channels/ChannelStore.h"
#include "channels/Sentinels.h"

namespace kv::control {

/// What follows the range: the scale of the picture (MHz across, dBm upwards) and the knob that shows the center.
class RangeView {
  public:
    virtual ~RangeView() = default;
    virtual void setScaleLeft(double frequency) = 0;
    virtual void setScaleWidth(double span) = 0;
    virtual void setScaleTop(double power) = 0;
    /// The lowest minus the highest power, never 0.
    virtual void setScaleHeight(double height) = 0;
    virtual void centerChanged() = 0;
};

/// Frequencies and steps in MHz, powers in dBm. A value that the host has not set is derived from the channels when it
/// is first read. Reading a value applies it to the picture's scale as well, so that a picture which is drawn after the
/// getters were called has the range that they returned. Numbers that are not finite end in RuntimeError 6.
class DisplayRange {
  public:
    DisplayRange(const channels::ChannelStore& store, RangeView& view) noexcept : store_(store), view_(view) {}
    DisplayRange(const DisplayRange&) = delete;
    DisplayRange& operator=(const DisplayRange&) = delete;

    /// 100 until it is set; a negative value unsets it.
    double FreqEndBuffer() noexcept;
    void setFreqEndBuffer(double value) noexcept { endBuffer_ = value; }
    /// Sets the end buffer and returns what was set before, negative for nothing.
    double exchangeFreqEndBuffer(double value) noexcept { return std::exchange(endBuffer_, value); }

    double DisplayMinFreq();
    double DisplayMaxFreq();
    double DisplayCenterFreq();
    /// A value that is not above 0 becomes the middle of the range.
    void setDisplayCenterFreq(double value);
    double DisplayMinPwr();
    void setDisplayMinPwr(double value);
    double DisplayMaxPwr();
    void setDisplayMaxPwr(double value);

    /// The lowest and highest frequency as they are, underived; the first is above the second while there is none.
    [[nodiscard]] std::pair<double, double> span() const noexcept { return {minFreq_, maxFreq_}; }
    [[nodiscard]] double minFreq() const noexcept { return minFreq_; }
    [[nodiscard]] double maxFreq() const noexcept { return maxFreq_; }
    /// The center as it is; not above 0 while none is set.
    [[nodiscard]] double center() const noexcept { return center_; }
    /// The lowest frequency is below the highest.
    [[nodiscard]] bool hasSpan() const noexcept { return maxFreq_ > minFreq_; }
    [[nodiscard]] bool contains(double frequency) const noexcept {
        return frequency >= minFreq_ && frequency <= maxFreq_;
    }
    /// There is a span, and the powers of the channels have one.
    [[nodiscard]] bool isUsable() const noexcept;
    /// Every bound of the range has been set or derived.
    [[nodiscard]] bool isComplete() const noexcept;

    /// Derives what is still unset of the frequencies; true when the range is usable then.
    bool derive();
    /// Derives what is unset and applies the whole scale; false, with the powers left unset, without a span.
    bool applyScale();
    /// Shifts the range onto the center, if one was set elsewhere, then applies the scale.
    bool ScaleDisplay();
    /// Moves the range, with its span kept, so that the center that was set is its middle.
    void shiftOntoCenter();

    /// Frequencies, center and step back to unset.
    void unset() noexcept;
    void unsetCenter() noexcept { center_ = 0.0; }
    /// `dMin` to `dMax` with the end buffer at both ends. The end buffer is halved until it is at most a third of
    /// the span.
    void SetDisplayRange(double dMin, double dMax);
    /// The same for bounds of a host: one that is not above 0 is that of the channels. The center becomes unset, and
    /// the picture gets the scale of the channels, which it keeps when the bounds give no range, as reversed ones do.
    /// False, with nothing changed, when there are no channels to take a missing bound from.
    bool showBetween(double dFMin, double dFMax);
    /// Exactly `minimum` to `maximum`. False, with nothing changed, for less than 1e-6 MHz and for a range that ends at
    /// 0 MHz or below, which would count as unset.
    bool setExactly(double minimum, double maximum);

    /// Remembers the range for `returnFromViewAll`.
    void rememberForViewAll() noexcept { beforeViewAll_ = span(); }
    /// Back to the remembered range, with the center and the step derived from it; false when there was no range.
    bool returnFromViewAll();

    // The grid.
    /// Divisions; 20 until it is set, and for values below 1.
    std::int16_t nGridX() noexcept;
    void setNGridX(std::int16_t value) noexcept { nGridX_ = value; }
    /// The step of knobs and nudges: the chosen one, else the range divided by `nGridX`, which is kept.
    double GridStepX();
    /// The step as it is; not above 0 while it is to be derived.
    [[nodiscard]] double step() const noexcept { return step_; }
    /// A step that the user chose.
    void setGridStepX(double value) noexcept;
    void deriveGridStep();
    /// Makes the range as wide as the chosen step demands, around the center.
    void applyChosenStep();
    /// The distance of the lines that are drawn. The number of lines is always `nGridX`, whichever step was chosen.
    [[nodiscard]] double drawnStep() { return (maxFreq_ - minFreq_) / nGridX(); }
    /// The user chose the step at which the lines are drawn.
    [[nodiscard]] bool isDrawnStepChosen();

    /// Remembers range and step at the beginning of a turn of the grid knob. The value of the knob alone could not
    /// bring a derived step back, because no stop of the knob has it.
    void rememberForTurn() noexcept { beforeTurn_ = {minFreq_, maxFreq_, step_, chosen_}; }
    void takeTurnBack() noexcept;

  private:
    struct Turn {
        double minFreq = channels::FREQ_UNSET;
        double maxFreq = -channels::FREQ_UNSET;
        double step = 0.0;
        bool chosen = false;
    };

    void applyHorizontalScale();
    void applyVerticalScale(double minPwr);
    void showAround(double center, double halfSpan);

    const channels::ChannelStore& store_;
    RangeView& view_;
    double minFreq_ = channels::FREQ_UNSET;
    double maxFreq_ = -channels::FREQ_UNSET;
    double center_ = 0.0;
    double minPwr_ = channels::FREQ_UNSET;
    double maxPwr_ = -channels::FREQ_UNSET;
    double endBuffer_ = -1.0;
    std::pair<double, double> beforeViewAll_{channels::FREQ_UNSET, -channels::FREQ_UNSET};
    std::int16_t nGridX_ = 0;
    double step_ = 0.0;
    bool chosen_ = false;
    Turn beforeTurn_;
};

}  // namespace kv::control
