// Where the children stand: the panel's arrangement, the arithmetic of a resize, and the panel's collapse to a strip.
// All lengths are twips.
#include <cmath>

#include "control/Bandscope.h"
#include "util/RuntimeError.h"

namespace kv::control {

namespace {

constexpr double kMargin = 60.0;
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

constexpr double kStartWidth = 9000.0;
constexpr double kStartHeight = 6600.0;
constexpr double kPanelHeight = 1470.0;

// The panel is composed on a raster of 15 twips, one pixel at 96 dpi.
constexpr double kUnit = 15.0;

void put(formenv::Widget& widget, double left, double top, double width, double height) {
    widget.move({left * kUnit, top * kUnit, width * kUnit, height * kUnit});
}

void putButton(formenv::Button& button, const wchar_t* caption, double top) {
    button.setCaption(caption);
    put(button, 508, top, 72, 22);
}

}  // namespace

void Bandscope::arrangePanel() {
    ui_.userControl.move({0.0, 0.0, kStartWidth, kStartHeight});
    ui_.fraControl.move({kMargin, kStartHeight - kMargin - kPanelHeight, kStartWidth - 2.0 * kMargin, kPanelHeight});
    ui_.fraControl.setCaption(L"-");

    ui_.picUnits.setBackColor(formenv::system_color::kButtonFace);
    ui_.picSpectrum.setBackColor(formenv::system_color::kWindowBackground);
    // Ticks and rubber band: a grey that shows on light and on dark backgrounds.
    ui_.picSpectrum.setForeColor(0x00808080);

    put(ui_.lblNumTX, 14, 24, 180, 15);
    put(ui_.lblTXRange, 14, 40, 180, 15);
    put(ui_.lblNumRX, 14, 60, 180, 15);
    put(ui_.lblRXRange, 14, 76, 180, 15);
    put(ui_.lblFMHz, 204, 24, 180, 15);
    put(ui_.lblFromCenter, 204, 40, 180, 15);
    put(ui_.lblPwrdBm, 204, 60, 180, 15);
    put(ui_.lblNumOther, 204, 76, 180, 15);
    for (formenv::Label* label : {&ui_.lblTXRange, &ui_.lblRXRange, &ui_.lblNumTX, &ui_.lblNumRX})
        label->setVisible(false);

    ui_.lblGridRange.setCaption(L"Grid Step");
    put(ui_.lblGridRange, 394, 24, 48, 15);
    put(ui_.cboGridRange, 444, 20, 54, 120);
    ui_.chkShowMouse.setCaption(L"Show Mouse Info");
    put(ui_.chkShowMouse, 394, 48, 106, 17);
    ui_.chkViewAllxx.setCaption(L"View All");
    ui_.chkViewAllxx.setToolTip(L"View entire range of frequencies");
    put(ui_.chkViewAllxx, 394, 71, 58, 17);
    ui_.chkOrder.setCaption(L"Order");
    put(ui_.chkOrder, 454, 71, 50, 17);
    putButton(ui_.cmdDrawTX, L"Draw TX", 18);
    putButton(ui_.cmdDrawRX, L"DrawRX", 43);
    putButton(ui_.cmdClear, L"Clear", 68);
    ui_.cmdCenterCursor.setToolTip(L"Move cursor to center frequency");
    ui_.cmdCenterCursor.setVisible(false);

    ui_.Label1.setCaption(L"2175 x 2535 kn FOR DEBUGGING");
    ui_.Command1.setCaption(L"Resize Test");
    ui_.Command2.setCaption(L"Redraw Test");
    ui_.Command3.setCaption(L"Add Test Freqs");
    ui_.Command4.setCaption(L"Labels Test");
    ui_.Text4.setCaption(L"grid step");
    ui_.Text5.setCaption(L"c freq");
    for (formenv::Widget* aid :
         std::initializer_list<formenv::Widget*>{&ui_.Command1, &ui_.Command2, &ui_.Command3, &ui_.Command4, &ui_.Text1,
                                                 &ui_.Text2, &ui_.Text3, &ui_.Text4, &ui_.Text5}) {
        put(*aid, 0, 0, 72, 22);
        aid->setVisible(false);
    }
}

void Bandscope::resize(double width, double height) {
    std::int16_t flag = 100;
    reported(L"UserControl_Resize", L"", flag, [&] {
        ui_.userControl.move({ui_.userControl.left(), ui_.userControl.top(), width, height});
        UserControl_Resize();
    });
}

void Bandscope::UserControl_Resize() {
    formenv::Widget& control = ui_.userControl;
    if (control.width() < layout_.nMinWid) {
        control.setWidth(layout_.nMinWid);
        UserControl_Resize();
        return;
    }
    placeChildren(++layout_.generation);
}

/// Lets pending events run; true when one of them resized the control again, which makes this pass stale.
bool Bandscope::yieldedTo(std::uint64_t generation) {
    services_.platform.pumpEvents();
    return layout_.generation != generation;
}

void Bandscope::placeChildren(std::uint64_t generation) {
    const double width = ui_.userControl.width();
    formenv::Frame& pic = ui_.fraPic;
    formenv::Frame& panel = ui_.fraControl;
    pic.move({kMargin, 0.0, width - kMargin - kMargin, pic.height()});
    if (!layout_.bSizing) {
        pic.setHeight(ui_.userControl.height() - kMargin - panel.height() - kMargin);
        if (yieldedTo(generation))
            return;
    }
    panel.move({kMargin, pic.top() + pic.height() + kMargin, pic.width(), panel.height()});
    if (yieldedTo(generation))
        return;
    formenv::PictureBox& units = ui_.picUnits;
    units.move({kUnitsLeft, kUnitsTop, pic.width() - kUnitsLeft - kUnitsRightAllowance,
                pic.height() - kUnitsTop - kUnitsBottomAllowance});
    if (yieldedTo(generation))
        return;
    DisplayMaxFreq();
    layout_.dLblHalfWid = units.textWidth(FreqLblFormat()) / 2.0;
    formenv::PictureBox& spectrum = ui_.picSpectrum;
    const double left = layout_.dLblHalfWid > 0.0 ? layout_.dLblHalfWid : kLabelHalfWidthFallback;
    spectrum.move({left, kSpectrumTop, units.width() - left - layout_.dLblHalfWid,
                   units.height() - kSpectrumTop - kSpectrumBottomAllowance});
    if (yieldedTo(generation))
        return;
    if (!(range_.maxFreq < range_.minFreq))
        DisplayMaxFreq();
}

void Bandscope::ToggleControlsSection() {
    formenv::Frame& panel = ui_.fraControl;
    const bool expand = panel.height() <= kCollapsedHeight;
    panel.setHeight(expand ? layout_.nCtlFullHgt : kCollapsedHeight);
    panel.setCaption(expand ? L"-" : L"+");
    if (look_.bUseMovers) {
        ui_.tdKnMovCursor.setVisible(expand);
        ui_.tdKnMovCenter.setVisible(expand);
    } else {
        ui_.tdKnCursor.setVisible(expand);
        ui_.tdKnCenter.setVisible(expand);
    }
    ui_.tdKnGrid.setVisible(expand);
    ui_.lblNumTX.setVisible(expand);
    ui_.lblNumRX.setVisible(expand);
    layout_.bSizing = true;
    resize(ui_.userControl.width(), panel.top() + panel.height() + kMargin);
    layout_.bSizing = false;
    services_.platform.pumpEvents();
    services_.platform.pumpEvents();
    services_.events.ChgHeight(static_cast<std::int16_t>(std::lround(ui_.userControl.height())));
}

void Bandscope::fraControl_MouseDown(int button, double x, double y) {
    if (button != formenv::mouse_button::kRight || x > kToggleRight || y > kToggleBottom)
        return;
    std::int16_t flag = 100;
    reported(L"ToggleControlsSection", L"", flag, [&] { ToggleControlsSection(); });
}

void Bandscope::fraControl_MouseMove(double x, double y) {
    if (x > kToggleRight || y > kToggleBottom)
        ui_.fraControl.setToolTip(L"");
    else
        ui_.fraControl.setToolTip(ui_.fraControl.height() <= kTooltipSwitch
                                      ? L"Right-Click to expand controls section."
                                      : L"Right-Click to collapse controls section.");
}

}  // namespace kv::control
