// The knobs of the panel: their values and settings, and turning them. Setting a value from the program raises no
// event; turning does.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "formenv/Widget.h"
#include "raster/Smooth.h"
#include "turndial/KnobInput.h"
#include "turndial/KnobPainting.h"
#include "turndial/KnobScale.h"

namespace kv::turndial {

/// The common part of a turning knob and a nudge knob. See `KnobControl` for how users turn them, and for the events.
class KnobBase : public formenv::Widget, public KnobControl {
  public:
    KnobBase(formenv::Widget* parent, std::wstring name)
        : Widget(formenv::WidgetKind::Custom, parent, std::move(name)) {}

    /// The name of the knob's class, which is also its window class.
    [[nodiscard]] virtual const wchar_t* className() const noexcept = 0;

    [[nodiscard]] double dVal() const noexcept { return dVal_; }
    void setDVal(double value);
    [[nodiscard]] const std::wstring& sCaption() const noexcept { return caption(); }
    void setSCaption(std::wstring caption) { setCaption(std::move(caption)); }

    std::wstring sFormat;     ///< number format of the read-out; empty: as many digits as the value has, at most 12
    bool bShowValue = false;  ///< shows the read-out

    /// The text in the read-out.
    [[nodiscard]] std::wstring sValText() const { return valText_.empty() ? readOut() : valText_; }
    /// Shows `text` in place of the number until the value changes, in a quieter color, because it is not the knob's
    /// own value. An empty text shows the number again.
    void setSValText(std::wstring text);

    /// Paints the knob again after its settings changed.
    void Refresh() { tellPeer(formenv::Change::Picture); }

    /// While turning: a turning knob's new value; a nudge knob's +1 or -1, once a detent.
    std::function<void(double dNewVal)> onValueChanged;
    /// Once at the end of a turn.
    std::function<void()> onTurnEnd;
    /// A turn begins; a turn was canceled and the knob is restored. For programs whose own state did not agree with the
    /// knob before the turn.
    std::function<void()> onTurnBegin;
    std::function<void()> onGivenUp;

    void mouseDown(int x, int y, Modifiers modifiers) final;
    void mouseMove(int x, int y, Modifiers modifiers) final;
    void mouseUp(int x, int y, Modifiers modifiers) final;
    void wheel(int delta, Modifiers modifiers) final;
    bool keyDown(Key key, Modifiers modifiers) final;
    void keyUp(Key key) final;
    [[nodiscard]] bool wantsKey(Key key) const final;
    void focus(bool has) final;
    void hover(bool over) final;
    void captureLost() final;
    void cancel() final;
    [[nodiscard]] bool holdsMouse() const final { return hold_ == Hold::Mouse; }
    void paint(const raster::PixelBuffer& buffer, raster::TextPainter& text, int dpi, const KnobPalette& palette) final;

  protected:
    /// While Control is held, a mouse movement turns the knob by this part of its usual amount.
    static constexpr double kFine = 0.1;

    /// Stores the state that a canceled turn restores.
    virtual void turnBegins() = 0;
    /// The mouse button was pressed; the pointer moved while no button was held.
    virtual void press(raster::SmoothPoint at) = 0;
    virtual void point(raster::SmoothPoint at) = 0;
    /// The pointer moved while the button is held, pixels at 96 dots an inch and the present picture's pixels.
    virtual void drag(raster::SmoothPoint from, raster::SmoothPoint to, double pixelsUp, bool fine) = 0;
    virtual void turnBy(int detents, bool fine) = 0;
    virtual void turnToEnd(bool last) = 0;
    /// Undoes the turn that was just canceled.
    virtual void takeBack() = 0;
    [[nodiscard]] virtual bool hasEnds() const noexcept = 0;
    [[nodiscard]] virtual int page() const noexcept = 0;
    [[nodiscard]] virtual std::wstring readOut() const;
    virtual void paintBody(const KnobPicture& picture, const raster::SmoothBox& area) = 0;

    /// Raises ValueChanged. False when the handler, or an event during it, has ended the turn.
    bool tell(double value);

    /// The read-out is a text that the program set.
    [[nodiscard]] bool isReadOutBorrowed() const noexcept { return !valText_.empty(); }

  private:
    enum class Hold { None, Mouse, Key, Wheel };

    void begin(Hold hold);
    /// Ends the running turn without an event.
    void letGo();
    void endTurn();

    double dVal_ = 0.0;
    std::wstring valText_;
    Hold hold_ = Hold::None;
    unsigned turn_ = 0;   ///< changes with every turn, so that code can detect that a handler has ended its turn
    bool told_ = false;   ///< the running turn has raised ValueChanged
    bool moved_ = false;  ///< the pointer has moved away from where the button was pressed
    Key heldKey_ = Key::Other;
    int wheelRest_ = 0;  ///< of a notch
    raster::SmoothPoint last_;
    bool focus_ = false;
    bool hover_ = false;
    int dpi_ = kUsualDpi;
};

/// A turning knob with a range and a step or, when stops were added, a scale of stops.
class tdKnob final : public KnobBase {
  public:
    using KnobBase::KnobBase;
    [[nodiscard]] const wchar_t* className() const noexcept override { return L"tdKnob"; }

    double dMinVal = 0.0;
    double dMaxVal = 100.0;
    /// One detent: what a wheel notch or an arrow key turns by. Not above 0: a hundredth of the range. It means nothing
    /// on a scale of stops.
    double dStep = 1.0;
    /// How the value is shown on a range: 0 as an arc from the low end, 1 as an arc from the middle, 2 by the pointer
    /// alone. Any other number is shown as 0.
    std::int16_t iKnobStyle = 0;
    /// The mouse turns the knob smoothly between the detents. Otherwise it clicks from detent to detent.
    bool bOption1 = false;
    /// The value moves from stop to stop. Without it, or without stops, the scale is the range.
    bool bOption2 = false;
    /// The scale is endless: past one end it continues at the other.
    bool bOption3 = false;

    /// The read-out of a value between or beyond the stops when there is no number format; empty: the number.
    std::function<std::wstring(double value)> textOffStops;

    /// `bFirst` starts a fresh list.
    void AddStop(bool bFirst, std::wstring sLabel, double dValue);
    [[nodiscard]] const std::vector<KnobStop>& stops() const noexcept { return stops_; }

    /// True while the user holds the knob by the mouse.
    [[nodiscard]] bool bMouseDown() const noexcept { return heldByUser_ || holdsMouse(); }
    /// Makes the knob held by the user, or not, as a press and a release do.
    void holdByUser(bool held) noexcept { heldByUser_ = held; }

    /// The scale at the press while the mouse holds the knob, otherwise the present one.
    [[nodiscard]] KnobScale scale() const;

  private:
    void turnBegins() override;
    void press(raster::SmoothPoint at) override;
    void point(raster::SmoothPoint /*at*/) override {}
    void drag(raster::SmoothPoint from, raster::SmoothPoint to, double pixelsUp, bool fine) override;
    void turnBy(int detents, bool fine) override;
    void turnToEnd(bool last) override;
    void takeBack() override;
    [[nodiscard]] bool hasEnds() const noexcept override { return true; }
    [[nodiscard]] int page() const noexcept override;
    [[nodiscard]] std::wstring readOut() const override;
    void paintBody(const KnobPicture& picture, const raster::SmoothBox& area) override;
    [[nodiscard]] bool hasStops() const noexcept { return bOption2 && !stops_.empty(); }
    [[nodiscard]] KnobScale presentScale() const;
    void turnTo(double value);

    std::vector<KnobStop> stops_;
    bool heldByUser_ = false;
    KnobScale heldScale_;
    double startValue_ = 0.0;
    double turnedTo_ = 0.0;  ///< the last value of the running turn
    bool turned_ = false;    ///< it is no longer the start value
    double place_ = 0.0;     ///< on the scale, as the mouse has moved it
    bool byRim_ = false;
    DialPlace dial_;
};

/// A nudge knob: it reports turns as positive or negative amounts, one detent at a time, and leaves it to the program
/// what a detent means. Its value is the program's and only shown.
class tdKnMover final : public KnobBase {
  public:
    using KnobBase::KnobBase;
    [[nodiscard]] const wchar_t* className() const noexcept override { return L"tdKnMover"; }

  private:
    void turnBegins() override;
    void press(raster::SmoothPoint at) override;
    void point(raster::SmoothPoint at) override;
    void drag(raster::SmoothPoint from, raster::SmoothPoint to, double pixelsUp, bool fine) override;
    void turnBy(int detents, bool fine) override;
    void turnToEnd(bool /*last*/) override {}
    void takeBack() override;
    [[nodiscard]] bool hasEnds() const noexcept override { return false; }
    [[nodiscard]] int page() const noexcept override { return 10; }
    void paintBody(const KnobPicture& picture, const raster::SmoothBox& area) override;
    void roll(int detents);

    int net_ = 0;        ///< detents of the running turn, up less down
    double rest_ = 0.0;  ///< of a detent
    int roll_ = 0;       ///< detents that the wheel has rolled, round and round
    int pointed_ = 0;    ///< the arrow under the pointer: -1 left, 1 right, 0 none
    bool byArrow_ = false;
    WheelPlace wheel_;
};

}  // namespace kv::turndial
