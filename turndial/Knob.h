// The knobs of the panel: their values and settings, driven by member name. Setting a value from the program raises no
// event; turning does.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "formenv/Widget.h"

namespace kv::turndial {

/// A place on a knob's scale where turning stops.
struct KnobStop {
    std::wstring sLabel;
    double dValue = 0.0;
};

/// What a turning knob and a nudge knob share.
class KnobBase : public formenv::Widget {
  public:
    KnobBase(formenv::Widget* parent, std::wstring name)
        : Widget(formenv::WidgetKind::Custom, parent, std::move(name)) {}

    [[nodiscard]] double dVal() const noexcept { return dVal_; }
    void setDVal(double value);
    [[nodiscard]] const std::wstring& sCaption() const noexcept { return caption(); }
    void setSCaption(std::wstring caption) { setCaption(std::move(caption)); }

    std::wstring sFormat;  ///< number format of the read-out
    bool bShowValue = false;

    /// Paints the knob again after its settings changed.
    void Refresh() { tellPeer(formenv::Change::Picture); }

    /// While turning, with the new value (a nudge knob: the signed amount), and once at the end of a turn.
    std::function<void(double dNewVal)> onValueChanged;
    std::function<void()> onTurnEnd;

  private:
    double dVal_ = 0.0;
};

/// A turning knob with a range, a step and, when stops were added, a scale of stops.
class tdKnob final : public KnobBase {
  public:
    using KnobBase::KnobBase;

    double dMinVal = 0.0;
    double dMaxVal = 100.0;
    double dStep = 1.0;
    std::int16_t iKnobStyle = 0;
    bool bOption1 = false;
    bool bOption2 = false;  ///< the value moves from stop to stop
    bool bOption3 = false;

    /// `bFirst` starts a fresh list.
    void AddStop(bool bFirst, std::wstring sLabel, double dValue);
    [[nodiscard]] const std::vector<KnobStop>& stops() const noexcept { return stops_; }

    /// True while the user holds the knob.
    [[nodiscard]] bool bMouseDown() const noexcept { return bMouseDown_; }
    void holdByUser(bool held) noexcept { bMouseDown_ = held; }

  private:
    std::vector<KnobStop> stops_;
    bool bMouseDown_ = false;
};

/// A nudge knob: it reports turns as positive or negative amounts.
class tdKnMover final : public KnobBase {
  public:
    using KnobBase::KnobBase;
};

}  // namespace kv::turndial
