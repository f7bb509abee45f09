// The spectrum display: the members that hosts call and the handlers behind the child controls. It holds the order of
// the steps, the trapping of errors and the events; what a step does is in the part that owns the state of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "channels/ChannelStore.h"
#include "channels/FreqSlot.h"
#include "control/DisplayRange.h"
#include "control/HeldDrawings.h"
#include "control/Keyboard.h"
#include "control/Knobs.h"
#include "control/Marker.h"
#include "control/Marks.h"
#include "control/Navigation.h"
#include "control/Overlays.h"
#include "control/Panel.h"
#include "control/PictureCopy.h"
#include "control/PictureExport.h"
#include "control/Pointer.h"
#include "control/RenderTime.h"
#include "control/Snapping.h"
#include "control/SpectrumPainter.h"
#include "formenv/FileServices.h"
#include "formenv/Platform.h"
#include "util/ErrHand.h"
#include "util/Trapped.h"

namespace kv::control {

/// The events of the control, as its host hears them.
class HostEvents {
  public:
    virtual ~HostEvents() = default;
    virtual void ChgGridRange() = 0;
    virtual void ChgHeight(std::int16_t iHgt) = 0;            ///< twips
    virtual void ChgFreqRange(double dMin, double dMax) = 0;  ///< MHz
};

struct Services {
    formenv::Platform& platform;
    HostEvents& events;
    util::ErrorReporter& errors;
    formenv::FileServices& files;
    channels::FreqSlotFactory newFreqSlot;
};

class Bandscope final : private RangeView, private KnobActions, private KeyActions, private NavigationActions {
  public:
    explicit Bandscope(const Services& services);
    ~Bandscope() override;
    Bandscope(const Bandscope&) = delete;
    Bandscope& operator=(const Bandscope&) = delete;

    // Members of the automation interface, in its order. Frequencies in MHz, powers in dBm, lengths in twips.
    std::int32_t AddTXChnl(const channels::FreqSlotRef& chnl) { return addQuietly(channels::ChannelKind::TX, chnl); }
    std::int32_t AddRXChnl(const channels::FreqSlotRef& chnl) { return addQuietly(channels::ChannelKind::RX, chnl); }
    channels::FreqSlotRef GetTXChnl(std::int32_t i) const noexcept { return store_.at(channels::ChannelKind::TX, i); }
    channels::FreqSlotRef GetRXChnl(std::int32_t i) const noexcept { return store_.at(channels::ChannelKind::RX, i); }
    [[nodiscard]] const channels::Extremes& extremes() const noexcept { return store_.extremes(); }
    std::int32_t NumTX() const noexcept { return store_.count(channels::ChannelKind::TX); }
    std::int32_t NumRX() const noexcept { return store_.count(channels::ChannelKind::RX); }
    bool DrawDisplay();
    void setBXLog(bool value) noexcept { bXLog_ = value; }
    bool bXLog() const noexcept { return bXLog_; }
    bool ReDrawChnl(const channels::FreqSlotRef& chnl);
    void ClearDisplay();
    void ClearDisplayLabels() { painter_.clearLabels(); }
    void ClearAllChnls();
    void ClearTXChnls();
    void ClearRXChnls();
    void setNGridX(std::int16_t value) noexcept { range_.setNGridX(value); }
    std::int16_t nGridX() noexcept { return range_.nGridX(); }
    double DisplayCenterFreq() { return range_.DisplayCenterFreq(); }
    void setDisplayCenterFreq(double value) { range_.setDisplayCenterFreq(value); }
    double DisplayMinFreq() { return range_.DisplayMinFreq(); }
    double DisplayMaxFreq() { return range_.DisplayMaxFreq(); }
    void setDisplayMinPwr(double value) { range_.setDisplayMinPwr(value); }
    double DisplayMinPwr() { return range_.DisplayMinPwr(); }
    void setDisplayMaxPwr(double value) { range_.setDisplayMaxPwr(value); }
    double DisplayMaxPwr() { return range_.DisplayMaxPwr(); }
    void setGridColor(raster::OleColor value) noexcept { painter_.setGridColor(value); }
    raster::OleColor GridColor() const noexcept { return painter_.GridColor(); }
    void setFreqEndBuffer(double value) noexcept { range_.setFreqEndBuffer(value); }
    double FreqEndBuffer() noexcept { return range_.FreqEndBuffer(); }
    bool ReScaleChannels();
    void DrawInitialDisplay();
    void JustDrawIt();
    void DrawAll();
    void RescaleAll();
    std::int32_t nFindMatchRX(const channels::FreqSlotRef& chnl);
    std::int16_t MinHgt() const noexcept { return panel_.MinHgt(); }
    std::int16_t MinWid() const noexcept { return panel_.MinWid(); }
    void setCursorVal(double value);
    double CursorVal() const noexcept override { return panel_.CursorVal(); }
    void setLCursorColor(raster::OleColor value) noexcept { lCursorColor_ = value; }
    raster::OleColor lCursorColor() const noexcept { return lCursorColor_; }
    std::wstring DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName) {
        return export_.DisplayToBMP(dHgt, dWid, sFName);
    }
    void CopyDisplayToClipboard() { export_.CopyDisplayToClipboard(); }
    void setBMouseInfo(bool value);
    void setBChkVisMouseInfo(bool value) { ui_.chkShowMouse.setVisible(value); }
    bool ShowAll() const noexcept { return bShowAll_; }
    void setShowAll(bool value);
    bool bLoadingAll() const noexcept { return bLoadingAll_; }
    void setBLoadingAll(bool value) noexcept { bLoadingAll_ = value; }
    channels::FreqSlotRef GetTXbyKey(const std::wstring& sKey) const;
    channels::FreqSlotRef GetRXbyKey(const std::wstring& sKey) const;
    channels::FreqSlotRef GetChnlByKey(const std::wstring& sKey) const;
    void Refresh();
    void DrawByRange(double dFMin, double dFMax);
    void DrawNewCenterFreq();
    void RemoveChnlByKey(const std::wstring& sID);
    void setLColorLblBack(raster::OleColor value);
    void setLColorLblFore(raster::OleColor value);
    void setLColorSpecBack(raster::OleColor value);

    // For View.
    [[nodiscard]] const Overlays& overlays() const noexcept { return overlays_; }
    /// Switches overlays on or off and draws the display as `JustDrawIt` does.
    void setOverlays(const Overlays& value);
    /// Shows exactly this range, in MHz, with its middle as center, its own grid step, and no event. False, with
    /// nothing changed, if `DisplayRange::setExactly` refuses it.
    bool showExactly(double minimum, double maximum) override;
    [[nodiscard]] Navigation& navigation() noexcept { return navigation_; }
    [[nodiscard]] const Marker& marker() const noexcept { return marker_; }
    /// Draws the marker at a frequency (MHz), or takes it off.
    void setMarker(double frequency, bool visible);
    /// Where the marker appears, MHz; 0 without a cursor and without a range.
    [[nodiscard]] double cursorOrCenter();
    [[nodiscard]] Snapping& snapping() noexcept { return snapping_; }
    /// From a `beginUpdate` to its `endUpdate`, the drawings of the whole display wait; the outermost end does the one
    /// that was asked for last. An end without a beginning does nothing and returns false.
    void beginUpdate() noexcept { held_.begin(); }
    bool endUpdate();
    [[nodiscard]] const channels::ChannelStore& store() const noexcept { return store_; }
    /// Duration of the last drawing by `JustDrawIt` or `DrawDisplay`, milliseconds; 0 before the first one.
    [[nodiscard]] double renderTimeMs() const noexcept { return renderTime_.milliseconds(); }

    /// For pictures of the display that are drawn once more.
    [[nodiscard]] Shown shown() noexcept {
        return {ui_.picUnits, ui_.picSpectrum, painter_, marks_, overlays_, store_, range_};
    }
    [[nodiscard]] formenv::Platform& platform() noexcept { return services_.platform; }
    [[nodiscard]] formenv::FileServices& files() noexcept { return services_.files; }

    // The control as a window of its container.
    [[nodiscard]] Children& children() noexcept { return ui_; }
    /// The span of the display, MHz; before there is one the first is above the second. Asking scales nothing.
    [[nodiscard]] std::pair<double, double> displaySpan() const noexcept { return range_.span(); }
    /// The host's size for the control, twips. Never narrower than `MinWid`.
    void resize(double width, double height);
    void UserControl_Click();
    void ToggleControlsSection() override;
    /// True while the panel is the strip that a right-click leaves of it.
    [[nodiscard]] bool isCollapsed() const noexcept { return panel_.isCollapsed(); }
    /// The least height of the control that leaves room for a spectrum, with the panel collapsed or expanded; twips.
    [[nodiscard]] double leastHeight(bool collapsed) const noexcept { return panel_.leastHeight(collapsed); }
    /// True while the panel changes the control's height by itself. The control's peer may then move it to another
    /// height, in which it lays itself out.
    [[nodiscard]] bool bSizing() const noexcept { return panel_.bSizing(); }
    /// The container is done with the control: the report window is destroyed without a question.
    void closeMouseInfo() noexcept { pointer_.report().close(); }
    /// The report window, with its text; nothing before it is first needed.
    [[nodiscard]] const forms::frmTextEditor* mouseInfoWindow() const noexcept { return pointer_.report().window(); }
    /// From this number of channels of a kind on, they are painted all at once: for tests, whose sets are small.
    void setMany(std::int32_t count) noexcept { painter_.setMany(count); }
    /// Chooses the movers or the rotary knobs for center and cursor, and sets the chosen ones up. For tests: hosts have
    /// no such member, and every control of theirs keeps the movers that it starts with.
    void setBUseMovers(bool value);
    /// The word for the transmit channels; empty before the first one. For tests: no caption shows it.
    [[nodiscard]] std::wstring_view sTXNoun() const noexcept { return panel_.summary().sTXNoun(); }

  private:
    using Step = util::Step;

    void UserControl_Initialize();
    void connectHandlers();
    void connectPictures();
    void LoadSampleChannels();
    void addTestFrequencies();

    std::int32_t addQuietly(channels::ChannelKind kind, const channels::FreqSlotRef& chnl);
    void removeByKey(const std::wstring& sID, Step& step);
    void recalculateRanges();
    void showSummaries();

    // The scale of the picture follows the range.
    void setScaleLeft(double frequency) override { ui_.picSpectrum.setScaleLeft(frequency); }
    void setScaleWidth(double span) override { ui_.picSpectrum.setScaleWidth(span); }
    void setScaleTop(double power) override { ui_.picSpectrum.setScaleTop(power); }
    void setScaleHeight(double height) override { ui_.picSpectrum.setScaleHeight(height); }
    void centerChanged() override { panel_.SetCenterFreqKnob(range_.center()); }

    void drawDisplay(Step& step);
    void drawInSteps(Step& step);
    void drawOnce();
    void drawInOrder(Step& step);
    /// `DrawDisplay`; without a range, which draws nothing, it clears what is left of an earlier one.
    void drawOrClear();
    void DrawDisplayTX() { drawCollection(channels::ChannelKind::TX, L"DrawDisplayTX"); }
    void DrawDisplayRX() { drawCollection(channels::ChannelKind::RX, L"DrawDisplayRX"); }
    /// `Later` is for a drawing that calls `SpectrumPainter::showHeldBack` at its end.
    enum class Showing { AtOnce, Later };
    void drawCollection(channels::ChannelKind kind, const wchar_t* procedure, Showing showing = Showing::AtOnce);
    void DrawGrid();
    void DrawCursorLine(double frequency, raster::OleColor color);
    /// Lets pending events run, then removes the marks that they drew: a later stroke over them would show.
    void pumpEventsAndTakeMarksOff();

    void drawByRange(double dFMin, double dFMax, Step& step);
    void showWholeSpan();
    void tellRangeAlreadyShown();

    // The handlers.
    void chkViewAllxx_Click();
    void chkShowMouse_Click();
    void drawLabelsAlone();
    void drawButton_Click(channels::ChannelKind kind);
    void picSpectrum_MouseDown(int button);
    void picSpectrum_MouseMove(int buttons, double x);
    void picSpectrum_MouseUp(int button, int shift, double x);
    void picSpectrum_DblClick(double x);
    bool picSpectrum_Wheel(int delta, int shift, double x);
    void picUnits_MouseMove(int buttons, double x);
    void fraControl_MouseDown(int button, double x, double y);

    // What the knobs and the keys ask for.
    void showCursorAt(double frequency) override;
    void drawCursorAt(double frequency) override;
    void moveCursorTo(double from, double to) override;
    void beginRangeAction() override { navigation_.history().begin(range_.span()); }
    void giveUpRangeAction() override { navigation_.history().giveUp(); }
    [[nodiscard]] double snappedAhead(double from, double to) override { return snapping_.ahead(from, to); }
    void toggleMarker() override;
    bool goBack() override { return goByHand(&Navigation::goBack); }
    bool goForward() override { return goByHand(&Navigation::goForward); }
    bool goByHand(bool (Navigation::*step)());
    void showMarker();
    void refresh(Step& step);
    /// The user has chosen a range: a step to go back to, and an event.
    void rangeChosen();
    void applyNewCenter(double center) override;
    void panTo(double center) override;
    /// What was asked for under a running drawing starts none inside it; that one is repeated at its end.
    void drawUnlessDrawing() override;
    void drawUnlessCurrent() override;
    void tellRangeChanged() override;
    void tellGridRangeChanged() override;
    void zoomTo(double minimum, double maximum) override;
    void showAllChannels() override;
    bool giveUpDrag() override;

    void UserControl_Resize(Step& step);
    void placeChildren(Step& step);
    void toggleControlsSection(Step& step);
    void changeHeight(bool expand);

    template <class Body>
    bool reported(const wchar_t* procedure, Body&& body, std::wstring_view detail = {}) {
        return util::reported(services_.errors, procedure, std::forward<Body>(body), detail);
    }
    template <class Body>
    bool noted(const wchar_t* procedure, Body&& body) {
        return util::noted(services_.errors, procedure, std::forward<Body>(body));
    }

    Services services_;
    Panel panel_{services_.platform};
    Children& ui_ = panel_.parts();
    channels::ChannelStore store_;
    DisplayRange range_{store_, *this};
    Marks marks_{ui_.picSpectrum};
    Overlays overlays_;
    SpectrumPainter painter_{ui_.picSpectrum, ui_.picUnits, store_, range_, marks_, overlays_};
    Pointer pointer_{{services_.platform, services_.files, services_.errors},
                     ui_.picSpectrum,
                     {ui_.lblFMHz, ui_.lblFromCenter, ui_.chkShowMouse},
                     store_,
                     range_,
                     marks_};
    Snapping snapping_{store_, ui_.picSpectrum};
    Marker marker_{ui_.picSpectrum, range_, marks_, ui_.lblMarker};
    HeldDrawings held_;
    Navigation navigation_{*this, range_, ui_.picSpectrum, services_.errors};
    Knobs knobs_{*this, panel_, range_, services_.errors};
    Keyboard keyboard_{*this, pointer_, navigation_, range_, store_, ui_.chkShowMouse, services_.errors};
    PictureExport export_{services_.platform, services_.files, services_.errors, ui_.picUnits, ui_.picSpectrum};
    bool bXLog_ = true;
    bool bLoadingAll_ = false;
    bool bShowAll_ = false;
    raster::OleColor lCursorColor_ = 0;
    RenderTime renderTime_;
};

}  // namespace kv::control
