// The spectrum display: the members that hosts call and the handlers behind its child controls. One class, one source
// file a concern; each group of state below is written by the file named beside it and by no other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "channels/ChannelStore.h"
#include "channels/FreqSlot.h"
#include "control/Children.h"
#include "control/CollectionPainter.h"
#include "control/Marks.h"
#include "control/MouseReport.h"
#include "formenv/FileServices.h"
#include "formenv/Platform.h"
#include "forms/frmTextEditor.h"
#include "util/ErrHand.h"

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

/// What the panel says of the channels of one kind: nothing when the minimum is above the maximum.
struct ChannelSummary {
    std::int32_t count = 0;
    double minimum = 0.0;  ///< MHz
    double maximum = -1.0;
};

class Bandscope {
  public:
    explicit Bandscope(const Services& services);
    ~Bandscope();
    Bandscope(const Bandscope&) = delete;
    Bandscope& operator=(const Bandscope&) = delete;

    // Members of the automation interface, in its order. Frequencies in MHz, powers in dBm, lengths in twips.
    std::int32_t AddTXChnl(const channels::FreqSlotRef& chnl);
    std::int32_t AddRXChnl(const channels::FreqSlotRef& chnl);
    channels::FreqSlotRef GetTXChnl(std::int32_t i) const noexcept { return store_.at(channels::ChannelKind::TX, i); }
    channels::FreqSlotRef GetRXChnl(std::int32_t i) const noexcept { return store_.at(channels::ChannelKind::RX, i); }
    [[nodiscard]] const channels::Extremes& extremes() const noexcept { return store_.extremes(); }
    std::int32_t NumTX() const noexcept { return store_.count(channels::ChannelKind::TX); }
    std::int32_t NumRX() const noexcept { return store_.count(channels::ChannelKind::RX); }
    bool DrawDisplay();
    void setBXLog(bool value) noexcept { look_.bXLog = value; }
    bool bXLog() const noexcept { return look_.bXLog; }
    bool ReDrawChnl(const channels::FreqSlotRef& chnl);
    void ClearDisplay();
    void ClearDisplayLabels();
    void ClearAllChnls();
    void ClearTXChnls();
    void ClearRXChnls();
    void setNGridX(std::int16_t value) noexcept { grid_.nGridX = value; }
    std::int16_t nGridX() noexcept;
    double DisplayCenterFreq();
    void setDisplayCenterFreq(double value);
    double DisplayMinFreq();
    double DisplayMaxFreq();
    void setDisplayMinPwr(double value);
    double DisplayMinPwr();
    void setDisplayMaxPwr(double value);
    double DisplayMaxPwr();
    void setGridColor(raster::OleColor value) noexcept { look_.GridColor = value; }
    raster::OleColor GridColor() const noexcept { return look_.GridColor; }
    void setFreqEndBuffer(double value) noexcept { range_.endBuffer = value; }
    double FreqEndBuffer() noexcept;
    bool ReScaleChannels();
    void DrawInitialDisplay();
    void JustDrawIt();
    void DrawAll();
    void RescaleAll();
    std::int32_t nFindMatchRX(const channels::FreqSlotRef& chnl);
    std::int16_t MinHgt() const noexcept { return layout_.nMinHgt; }
    std::int16_t MinWid() const noexcept { return layout_.nMinWid; }
    void setCursorVal(double value);
    double CursorVal() const noexcept;
    void setLCursorColor(raster::OleColor value) noexcept { look_.lCursorColor = value; }
    raster::OleColor lCursorColor() const noexcept { return look_.lCursorColor; }
    std::wstring DisplayToBMP(double& dHgt, double& dWid, std::wstring& sFName);
    void CopyDisplayToClipboard();
    void setBMouseInfo(bool value);
    void setBChkVisMouseInfo(bool value);
    bool ShowAll() const noexcept { return range_.bShowAll; }
    void setShowAll(bool value);
    bool bLoadingAll() const noexcept { return look_.bLoadingAll; }
    void setBLoadingAll(bool value) noexcept { look_.bLoadingAll = value; }
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

    // The control as a window of its container.
    [[nodiscard]] Children& children() noexcept { return ui_; }
    /// The span of the display, MHz; before there is one the first is above the second. Nothing is scaled by asking.
    [[nodiscard]] std::pair<double, double> displaySpan() const noexcept { return {range_.minFreq, range_.maxFreq}; }
    /// The host's size for the control, twips. Never narrower than `MinWid`.
    void resize(double width, double height);
    void UserControl_Click();
    void ToggleControlsSection();
    /// True while the panel is the strip that a right-click leaves of it.
    [[nodiscard]] bool isCollapsed() const noexcept;
    /// The least height of the control that leaves room for a spectrum, with the panel collapsed or expanded; twips.
    [[nodiscard]] double leastHeight(bool collapsed) const noexcept;
    /// True while the panel changes the control's height by itself. The control's peer may then move it to another
    /// height, in which it lays itself out.
    [[nodiscard]] bool bSizing() const noexcept { return layout_.bSizing; }
    /// The container is done with the control: the report window goes, without a question.
    void closeMouseInfo() noexcept;
    /// The report window, with its text; nothing before it is first needed.
    [[nodiscard]] const forms::frmTextEditor* mouseInfoWindow() const noexcept { return mouseInfo_.window.get(); }
    /// From so many channels of a kind on, these are painted all at once: for tests, whose sets are small.
    void setMany(std::int32_t count) noexcept { drawing_.nMany = count; }
    /// Chooses the movers or the rotary knobs for center and cursor, and sets the chosen ones up. For tests: hosts have
    /// no such member, and every control of theirs keeps the movers that it starts with.
    void setBUseMovers(bool value) {
        look_.bUseMovers = value;
        setUpCursorKnob();
        SetCenterFreqKnob();
    }
    /// The word for the transmit channels; empty before the first one. For tests: no caption shows it.
    [[nodiscard]] const std::wstring& sTXNoun() const noexcept { return sTXNoun_; }

  private:
    // Bandscope.cpp
    void UserControl_Initialize();
    void connectHandlers();
    void LoadSampleChannels();

    // Summary.cpp
    std::int32_t addQuietly(channels::ChannelKind kind, const channels::FreqSlotRef& chnl);
    void chooseNoun(const std::wstring& sLabel);
    void noteSummary(channels::ChannelKind kind, const ChannelSummary& summary);
    void ShowTXLabels(const std::wstring& sLabel);
    void ShowRXLabels();
    void cmdDrawTX_Click();
    void cmdDrawRX_Click();
    void addTestFrequencies();

    // RangeScaling.cpp
    bool ScaleDisplay();
    /// Derives what is still unset of the range; true when the display has a usable range then.
    bool deriveRange();
    bool applyScale();
    void applyVerticalScale(double minPwr);
    bool hasUsableRange() const noexcept;
    void applyHorizontalScale();
    void SetDisplayRange(double dMin, double dMax);
    void showWholeSpan();
    void tellRangeAlreadyShown();
    void putCursorOnCenter();
    void shiftRangeOntoCenter();
    void showAround(double center, double halfSpan);
    void zoomTo(double minimum, double maximum);
    void unsetRange() noexcept;

    // GridStep.cpp
    void SetGridRange();
    void SetGridKnob();
    double GridStepX();
    void setGridStepX(double value) noexcept {
        grid_.step = value;
        grid_.chosen = true;
    }
    /// Tells on the grid knob how far apart the lines are.
    void showGridStep();
    void applyChosenStep();
    void deriveGridStep();
    void selectGridRange();
    void drawUnlessDrawing();
    void stepChosenByHand();
    void cboGridRange_Click();
    void tdKnGrid_ValueChanged(double dNewVal);
    void tdKnGrid_TurnEnd();
    void rememberBeforeTurn() noexcept;
    void takeGridTurnBack();

    // CenterCursorKnobs.cpp
    void setUpCursorKnob();
    void SetCenterFreqKnob();
    void rescaleKnobsToRange();
    void resetKnobRanges();
    /// Shows the center of the range on the knob, also while no center is set.
    void showCenter();
    void setShownCursor(double value);
    void applyNewCenter(double value);
    void cmdCenterCursor_Click();
    void chkViewAllxx_Click();
    void tdKnMovCenter_ValueChanged(double d);
    void tdKnMovCenter_TurnEnd();
    void tdKnMovCursor_ValueChanged(double d);
    void tellRangeChanged();
    std::wstring knobFormat();

    // CollectionDrawing.cpp
    void DrawDisplayTX();
    void DrawDisplayRX();
    void drawCollection(channels::ChannelKind kind, std::int16_t& flag, std::int32_t& kChnl);
    void refreshCollection(channels::ChannelKind kind);
    /// What painting a kind's channels all at once needs; nothing when they have to be drawn one by one.
    std::optional<PaintedView> paintable(channels::ChannelKind kind, bool onlyFrequencies);
    void DrawChnl(channels::FreqSlot& channel);

    // SpectrumDrawing.cpp
    void drawOnce();
    /// `DrawDisplay`; without a range, which draws nothing, it clears what is left of an earlier one.
    void drawOrClear();
    /// What the knobs show of the range that has just been drawn.
    void showOnKnobs();
    void DrawGrid();
    void paintGrid(double minFreq, double maxFreq, double minPwr, double maxPwr);
    void DrawFreqLbls();
    void drawFreqLabel(double x);
    void DrawCursorLine(double frequency, raster::OleColor color);
    const std::wstring& FreqLblFormat();

    // Layout.cpp
    void arrangePanel();
    void UserControl_Resize(std::int16_t& flag);
    void toggleControlsSection(std::int16_t& flag);
    void fraControl_MouseDown(int button, double x, double y);
    void fraControl_MouseMove(double x, double y);
    void placeChildren(std::uint64_t generation, std::int16_t& flag);
    bool yieldedTo(std::uint64_t generation);
    void changeHeight(bool expand);

    // MouseInfo.cpp
    void picSpectrum_MouseMove(int button, int shift, double x, double y);
    void picSpectrum_DblClick(double x, double y);
    void picUnits_MouseMove(int button, int shift, double x, double y);
    void chkShowMouse_Click();
    /// Reads out and reports what is at a place of the picture.
    void pointAt(double x, double y);
    void ShowMouseInfo(double x, double y);
    void BuildMouseReport(double x, double y);
    void showReport();

    // BoxDrag.cpp
    [[nodiscard]] bool isDragging() const noexcept;
    void picSpectrum_MouseDown(int button);
    void picSpectrum_MouseUp(int button, double x);
    bool giveUpDrag();
    void dragTo(int button, double x);
    void endDrag();
    [[nodiscard]] double insidePicture(double x) const noexcept;

    // Keyboard.cpp
    [[nodiscard]] bool wantsKey(int code) const noexcept;
    bool picSpectrum_KeyDown(int code, int shift);
    void steer(int code, int shift);
    double cursorOrCenter();
    void panTo(double center);
    void zoomAround(double span);
    void cursorTo(double frequency);
    void cursorToChannel(double side);
    void toggleReport();
    void markSpan();
    /// Ends a span that was begun by key; false when there is none.
    bool dropSpan();

    /// Runs `body`; an error in it goes to the error reporter with the procedure's name, context text and step flag.
    bool reported(const wchar_t* procedure, const std::wstring& detail, std::int16_t& flag,
                  const std::function<void()>& body);
    /// The same without a message to the user: for an export, whose result tells the host, and for a resize, which the
    /// host or a dragging user repeats and which no message box may hold up.
    bool noted(const wchar_t* procedure, std::int16_t& flag, const std::function<void()>& body);

    struct Look {  // Bandscope.cpp
        bool bXLog = true;
        bool bLoadingAll = false;
        raster::OleColor lCursorColor = 0;
        raster::OleColor GridColor = raster::system_color::kButtonFace;
        bool bUseMovers = true;
    };
    struct Range {  // RangeScaling.cpp; MHz and dBm
        double minFreq = channels::FREQ_UNSET;
        double maxFreq = -channels::FREQ_UNSET;
        double center = 0.0;
        double minPwr = channels::FREQ_UNSET;
        double maxPwr = -channels::FREQ_UNSET;
        double endBuffer = -1.0;  ///< negative: not set
        bool bShowAll = false;
        /// What `chkViewAllxx` was ticked over; MHz, a minimum above the maximum for none.
        std::pair<double, double> beforeViewAll{channels::FREQ_UNSET, -channels::FREQ_UNSET};
    };
    struct Grid {                 // GridStep.cpp
        std::int16_t nGridX = 0;  ///< divisions; below 1 means the usual 20
        double step = 0.0;        ///< MHz; not above 0: to be derived from the range
        bool chosen = false;      ///< by the user, on the knob or in the box
        /// The display as a turn of the grid knob found it.
        struct Before {
            double minFreq = channels::FREQ_UNSET;
            double maxFreq = -channels::FREQ_UNSET;
            double step = 0.0;
            bool chosen = false;
        };
        Before beforeTurn;
    };
    struct Drawing {  // SpectrumDrawing.cpp
        bool bDrawing = false;
        bool bAgain = false;  ///< a drawing was asked for under a running one, which may end outdated
        std::pair<double, double> drawnSpan{channels::FREQ_UNSET,
                                            -channels::FREQ_UNSET};  ///< MHz, of the drawing that runs
        std::wstring FreqLblFormat;
        std::int32_t nMany = 400;  ///< channels of a kind from which painting all at once is the faster way
    };
    struct LayoutState {  // Layout.cpp; twips
        std::int16_t nCtlFullHgt = 0;
        std::int16_t nMinWid = 0;
        std::int16_t nMinHgt = 0;
        bool bSizing = false;
        bool bKeptHeight = false;  ///< the panel collapsed, and the container did not change the control's height
        double dLblHalfWid = 300.0;
        std::uint64_t generation = 0;  ///< counts resizes, so that an overtaken one stops
    };
    struct Mouse {                      // MouseInfo.cpp
        double x = channels::kInvalid;  ///< MHz
        double y = channels::kInvalid;  ///< dBm
    };
    struct MouseInfo {  // MouseInfo.cpp
        MouseReport report;
        std::unique_ptr<forms::frmTextEditor> window;  ///< made when it is first needed
        bool isSetUp = false;                          ///< not once the user has closed it
    };
    struct Drag {                        ///< BoxDrag.cpp; frequencies in MHz
        std::wstring mode;               ///< "BOX" while a box is dragged, else empty
        double start = 0.0;              ///< where the drag began
        bool givenUp = false;            ///< no new drag before the button is let go
        std::optional<double> spanFrom;  ///< where a span was begun by key
    };

    Services services_;
    Children ui_;
    Marks marks_{ui_.picSpectrum};
    channels::ChannelStore store_;
    ChannelSummary txSummary_;
    ChannelSummary rxSummary_;
    CollectionPainter painter_;
    std::wstring sTXNoun_;  ///< chosen once a store, by Summary.cpp
    std::wstring sKnobFormat_;
    Look look_;
    Range range_;
    Grid grid_;
    Drawing drawing_;
    LayoutState layout_;
    Mouse mouse_;
    MouseInfo mouseInfo_;
    Drag drag_;
};

}  // namespace kv::control
