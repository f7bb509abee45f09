#include "control/Panel.h"

#include "control/Arrangement.h"

namespace kv::control {

namespace {

constexpr double kCollapsedHeight = 315.0;
constexpr double kToggleRight = 400.0;
constexpr double kToggleBottom = 315.0;
constexpr double kTooltipSwitch = 325.0;
constexpr double kUnitsLeft = 75.0;
constexpr double kUnitsTop = 165.0;
constexpr double kUnitsRightAllowance = 60.0 + 15.0;
constexpr double kUnitsBottomAllowance = 60.0 + 105.0;
constexpr double kSpectrumTop = 60.0;
constexpr double kSpectrumBottomAllowance = 300.0;
constexpr double kLabelHalfWidthFallback = 60.0;

}  // namespace

Panel::Panel(formenv::Platform& platform) : ui_(platform) {
    arrangeParts(ui_);
}

void Panel::initialize() {
    ui_.Label1.setVisible(false);
    ui_.Label1.setCaption(L"");
    ui_.cmdDebug0.setVisible(false);
    ui_.cmdDebug1.setVisible(false);
    nCtlFullHgt_ = static_cast<std::int16_t>(ui_.fraControl.height());
    bSizing_ = false;
    SetGridRange();
    for (formenv::Label* label : {&ui_.lblTXRange, &ui_.lblRXRange, &ui_.lblFromCenter, &ui_.lblPwrdBm, &ui_.lblFMHz,
                                  &ui_.lblNumOther, &ui_.lblNumRX, &ui_.lblNumTX})
        label->setBackColor(raster::system_color::kButtonFace);
    dLblHalfWid_ = 300.0;
    nMinWid_ = static_cast<std::int16_t>(ui_.userControl.width());
    nMinHgt_ = static_cast<std::int16_t>(ui_.userControl.height());
    ui_.picSpectrum.setUserScaleMode();
}

double Panel::leastHeight(bool collapsed) const noexcept {
    return kPanelMargin + (collapsed ? kCollapsedHeight : nCtlFullHgt_) + kPanelMargin + kUnitsTop +
           kUnitsBottomAllowance + kSpectrumTop + kSpectrumBottomAllowance;
}

void Panel::takeSize(double width, double height) {
    if (height != ui_.userControl.height())
        bKeptHeight_ = false;
    ui_.userControl.move({ui_.userControl.left(), ui_.userControl.top(), width, height});
}

bool Panel::widenToLeast() {
    if (!(ui_.userControl.width() < nMinWid_))
        return false;
    ui_.userControl.setWidth(nMinWid_);
    return true;
}

void Panel::placeDisplay() {
    ui_.fraPic.move({kPanelMargin, 0.0, ui_.userControl.width() - kPanelMargin - kPanelMargin, ui_.fraPic.height()});
}

void Panel::sizeDisplay() {
    ui_.fraPic.setHeight(ui_.userControl.height() - kPanelMargin - ui_.fraControl.height() - kPanelMargin);
}

void Panel::placeControls() {
    const formenv::Frame& pic = ui_.fraPic;
    ui_.fraControl.move({kPanelMargin, pic.top() + pic.height() + kPanelMargin, pic.width(), ui_.fraControl.height()});
    placeReadouts(ui_, pic.width());
}

void Panel::placeLabelStrip() {
    const formenv::Frame& pic = ui_.fraPic;
    ui_.picUnits.move({kUnitsLeft, kUnitsTop, pic.width() - kUnitsLeft - kUnitsRightAllowance,
                       pic.height() - kUnitsTop - kUnitsBottomAllowance});
}

void Panel::measureLabels(const std::wstring& format) {
    dLblHalfWid_ = ui_.picUnits.textWidth(format) / 2.0;
}

void Panel::placeSpectrum() {
    const formenv::PictureBox& units = ui_.picUnits;
    const double left = dLblHalfWid_ > 0.0 ? dLblHalfWid_ : kLabelHalfWidthFallback;
    ui_.picSpectrum.move({left, kSpectrumTop, units.width() - left - dLblHalfWid_,
                          units.height() - kSpectrumTop - kSpectrumBottomAllowance});
}

bool Panel::isCollapsed() const noexcept {
    return ui_.fraControl.height() <= kCollapsedHeight;
}

void Panel::showSection(bool expand) {
    ui_.fraControl.setHeight(expand ? nCtlFullHgt_ : kCollapsedHeight);
    ui_.fraControl.setCaption(expand ? L"-" : L"+");
    if (bUseMovers_) {
        ui_.tdKnMovCursor.setVisible(expand);
        ui_.tdKnMovCenter.setVisible(expand);
    } else {
        ui_.tdKnCursor.setVisible(expand);
        ui_.tdKnCenter.setVisible(expand);
    }
    ui_.tdKnGrid.setVisible(expand);
    ui_.lblNumTX.setVisible(expand);
    ui_.lblNumRX.setVisible(expand);
}

bool Panel::isToggle(double x, double y) noexcept {
    return x <= kToggleRight && y <= kToggleBottom;
}

void Panel::showToolTipAt(double x, double y) {
    if (!isToggle(x, y)) {
        ui_.fraControl.setToolTip(L"");
    } else {
        ui_.fraControl.setToolTip(ui_.fraControl.height() <= kTooltipSwitch
                                      ? L"Right-Click to expand controls section."
                                      : L"Right-Click to collapse controls section.");
    }
}

Panel::HeightChange::HeightChange(Panel& panel, bool expand) noexcept
    : panel_(panel), expand_(expand), wasSizing_(panel.bSizing_), kept_(expand && panel.bKeptHeight_) {
    panel_.bSizing_ = true;
}

Panel::HeightChange::~HeightChange() {
    panel_.bSizing_ = wasSizing_;
    panel_.bKeptHeight_ = kept_ && !expand_;
}

void Panel::HeightChange::fitHeight() {
    if (!kept_) {
        formenv::Widget& control = panel_.ui_.userControl;
        const formenv::Frame& frame = panel_.ui_.fraControl;
        const double wanted = frame.top() + frame.height() + kPanelMargin;
        control.setHeight(wanted);
        kept_ = control.height() != wanted;
    }
    panel_.bSizing_ = !kept_;
}

}  // namespace kv::control
