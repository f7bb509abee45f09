// The child controls: where they are, what they say, how the knobs are set up, and the panel's collapse to a strip. All
// lengths are twips.
#pragma once

#include <cstdint>
#include <string>

#include "control/Children.h"
#include "control/Formats.h"
#include "control/SummaryLabels.h"

namespace kv::control {

class Panel {
  public:
    explicit Panel(formenv::Platform& platform);
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    [[nodiscard]] Children& parts() noexcept { return ui_; }
    [[nodiscard]] const Children& parts() const noexcept { return ui_; }
    [[nodiscard]] SummaryLabels& summary() noexcept { return summary_; }
    [[nodiscard]] const SummaryLabels& summary() const noexcept { return summary_; }

    /// The start of a control's life: takes its present size as the least one and its panel as the expanded one.
    void initialize();

    // The knobs.
    /// The center and the cursor are on the movers; otherwise they are on the rotary knobs.
    [[nodiscard]] bool bUseMovers() const noexcept { return bUseMovers_; }
    void setBUseMovers(bool value) noexcept { bUseMovers_ = value; }
    void setUpCursorKnob();
    /// `center` in MHz.
    void SetCenterFreqKnob(double center);
    void SetGridRange();
    void SetGridKnob();
    /// Gives the rotary knobs the range `minimum` to `maximum` (MHz), in steps of two grid divisions.
    void rescaleKnobs(double minimum, double maximum, std::int16_t divisions);
    /// Gives the rotary knobs the range that they have before there is a display range.
    void resetKnobRanges();
    void showCenter(double center);
    void showCursor(double frequency);
    /// MHz.
    [[nodiscard]] double CursorVal() const noexcept;
    /// Shows the step (MHz) on the grid knob, with the unit whose stops reach around it.
    void selectGridRange(double step);
    /// The text in place of the grid knob's value; empty for the value itself.
    void showGridStepText(const std::wstring& text) { ui_.tdKnGrid.setSValText(text); }
    [[nodiscard]] const std::wstring& knobFormat() const noexcept { return sKnobFormat_; }

    // The size of the control.
    [[nodiscard]] std::int16_t MinHgt() const noexcept { return nMinHgt_; }
    [[nodiscard]] std::int16_t MinWid() const noexcept { return nMinWid_; }
    /// The least height of the control that leaves room for a spectrum.
    [[nodiscard]] double leastHeight(bool collapsed) const noexcept;
    /// The container gave the control another size.
    void takeSize(double width, double height);
    /// Gives a control that is too narrow its least width; true when it was.
    bool widenToLeast();
    /// Begins another layout; an earlier one that is still going on is overtaken by it.
    std::uint64_t beginLayout() noexcept { return ++generation_; }
    [[nodiscard]] bool isOvertaken(std::uint64_t layout) const noexcept { return layout != generation_; }

    // The steps of a layout, in their order.
    void placeDisplay();
    /// The display's height follows from the control's, except while the panel changes the control's height.
    [[nodiscard]] bool displayFollowsHeight() const noexcept { return !bSizing_; }
    void sizeDisplay();
    void placeControls();
    void placeLabelStrip();
    /// Leaves room for half of a label, in this number format, on both sides of the spectrum.
    void measureLabels(const std::wstring& format);
    void placeSpectrum();

    // The collapse.
    /// Only the strip that a right-click leaves of the panel is there.
    [[nodiscard]] bool isCollapsed() const noexcept;
    [[nodiscard]] bool bSizing() const noexcept { return bSizing_; }
    void showSection(bool expand);
    /// A point of the panel that collapses and expands it.
    [[nodiscard]] static bool isToggle(double x, double y) noexcept;
    void showToolTipAt(double x, double y);

    /// The time in which the panel changes the control's height by its own, expanded or collapsed.
    class HeightChange {
      public:
        HeightChange(Panel& panel, bool expand) noexcept;
        ~HeightChange();
        HeightChange(const HeightChange&) = delete;
        HeightChange& operator=(const HeightChange&) = delete;
        /// Adjusts the control's height to the panel's, unless the container kept the height when the panel collapsed.
        void fitHeight();
        /// The container keeps the control's height, so that the display takes the room of the panel or returns it.
        [[nodiscard]] bool isKept() const noexcept { return kept_; }

      private:
        Panel& panel_;
        bool expand_;
        bool wasSizing_;
        bool kept_;
    };

  private:
    Children ui_;
    SummaryLabels summary_{ui_};
    bool bUseMovers_ = true;
    std::wstring sKnobFormat_ = kKnobFormat;
    std::int16_t nCtlFullHgt_ = 0;
    std::int16_t nMinWid_ = 0;
    std::int16_t nMinHgt_ = 0;
    bool bSizing_ = false;
    bool bKeptHeight_ = false;  ///< the panel collapsed, and the container did not change the control's height
    double dLblHalfWid_ = 300.0;
    std::uint64_t generation_ = 0;
};

}  // namespace kv::control
