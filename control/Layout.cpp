// Where the children stand: the panel's arrangement, the arithmetic of a resize, and the panel's collapse to a strip.
// All lengths are twips.
#include <algorithm>
#include <cmath>

#include "control/Bandscope.h"
#include "util/Raised.h"

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

constexpr double kStartWidth = 10800.0;
constexpr double kStartHeight = 7200.0;
constexpr double kPanelHeight = 2280.0;

// The panel is composed on a raster of 15 twips, one pixel at 96 dpi. Nothing stands in the strip that is left of it
// when it is collapsed.
constexpr double kUnit = 15.0;
constexpr double kTextHeight = 15.0;
constexpr double kKnobTop = 21.0;
constexpr double kKnobHeight = 122.0;

/// Half to even, as the conversion to a whole number does. A height beyond 16 bits, as of a window over several
/// screens, becomes the largest one: the host has to hear of the change all the same.
std::int16_t toInteger16(double value) {
    return static_cast<std::int16_t>(std::clamp(std::nearbyint(value), -32768.0, 32767.0));
}

void put(formenv::Widget& widget, double left, double top, double width, double height) {
    widget.move({left * kUnit, top * kUnit, width * kUnit, height * kUnit});
}

void putButton(formenv::Button& button, const wchar_t* caption, double left, double top) {
    button.setCaption(caption);
    put(button, left, top, 54, 23);
}

void putCheck(formenv::CheckBox& box, const wchar_t* caption, double left, double top, double width) {
    box.setCaption(caption);
    put(box, left, top, width, 17);
}

/// What is there, then what the pointer reads out.
void arrangeReadouts(Children& ui) {
    // Wide enough for a range of two frequencies with seven digits before the point.
    constexpr double kLeft = 11.0;
    constexpr double kWidth = 169.0;
    put(ui.lblNumTX, kLeft, 25, kWidth, kTextHeight);
    put(ui.lblTXRange, kLeft, 40, kWidth, kTextHeight);
    put(ui.lblNumRX, kLeft, 59, kWidth, kTextHeight);
    put(ui.lblRXRange, kLeft, 74, kWidth, kTextHeight);
    put(ui.lblFMHz, kLeft, 95, kWidth, kTextHeight);
    put(ui.lblFromCenter, kLeft, 110, kWidth, kTextHeight);
    put(ui.lblPwrdBm, kLeft, 125, 100, kTextHeight);
    put(ui.lblNumOther, kLeft + 104, 125, 56, kTextHeight);
    for (formenv::Label* label : {&ui.lblTXRange, &ui.lblRXRange, &ui.lblNumTX, &ui.lblNumRX})
        label->setVisible(false);
}

void arrangeKnobs(Children& ui) {
    // Each kind of a pair stands in the same place; one of the two is shown.
    for (formenv::Widget* knob : std::initializer_list<formenv::Widget*>{&ui.tdKnMovCenter, &ui.tdKnCenter})
        put(*knob, 180, kKnobTop, 114, kKnobHeight);
    for (formenv::Widget* knob : std::initializer_list<formenv::Widget*>{&ui.tdKnMovCursor, &ui.tdKnCursor})
        put(*knob, 300, kKnobTop, 114, kKnobHeight);
    put(ui.tdKnGrid, 446, kKnobTop, 138, kKnobHeight);
    put(ui.cmdCenterCursor, 416, 70, 22, 22);
    ui.cmdCenterCursor.glyph = formenv::Glyph::ToCenter;
    ui.cmdCenterCursor.setToolTip(L"Move cursor to center frequency");
}

void arrangeChoices(Children& ui) {
    constexpr double kLeft = 594.0;
    constexpr double kSecond = 652.0;
    ui.lblGridRange.setCaption(L"Grid Step");
    put(ui.lblGridRange, kLeft, 28, 52, kTextHeight);
    put(ui.cboGridRange, kSecond, 24, 54, 120);
    putCheck(ui.chkShowMouse, L"Show Mouse Info", kLeft, 50, 112);
    putCheck(ui.chkViewAllxx, L"View All", kLeft, 69, 58);
    ui.chkViewAllxx.setToolTip(L"View entire range of frequencies");
    putCheck(ui.chkOrder, L"Order", kSecond + 7, 69, 51);
    putButton(ui.cmdDrawTX, L"Draw TX", kLeft, 92);
    putButton(ui.cmdDrawRX, L"DrawRX", kSecond, 92);
    putButton(ui.cmdClear, L"Clear", kSecond, 119);
}

}  // namespace

void Bandscope::arrangePanel() {
    ui_.userControl.move({0.0, 0.0, kStartWidth, kStartHeight});
    ui_.fraControl.move({kMargin, kStartHeight - kMargin - kPanelHeight, kStartWidth - 2.0 * kMargin, kPanelHeight});
    ui_.fraControl.setCaption(L"-");

    ui_.picUnits.setBackColor(raster::system_color::kButtonFace);
    ui_.picSpectrum.setBackColor(raster::system_color::kWindowBackground);
    // Ticks and rubber band: a grey that shows on light and on dark backgrounds.
    ui_.picSpectrum.setForeColor(0x00808080);

    arrangeReadouts(ui_);
    arrangeKnobs(ui_);
    arrangeChoices(ui_);

    ui_.Label1.setCaption(L"2175 x 2535 kn FOR DEBUGGING");
    ui_.Command1.setCaption(L"Resize Test");
    ui_.Command2.setCaption(L"Redraw Test");
    ui_.Command3.setCaption(L"Add Test Freqs");
    ui_.Command4.setCaption(L"Labels Test");
    ui_.Text4.setText(L"grid step");
    ui_.Text5.setText(L"c freq");
    for (formenv::Widget* aid :
         std::initializer_list<formenv::Widget*>{&ui_.Command1, &ui_.Command2, &ui_.Command3, &ui_.Command4, &ui_.Text1,
                                                 &ui_.Text2, &ui_.Text3, &ui_.Text4, &ui_.Text5}) {
        put(*aid, 0, 0, 72, 22);
        aid->setVisible(false);
    }
}

void Bandscope::resize(double width, double height) {
    std::int16_t flag = 100;
    noted(L"UserControl_Resize", flag, [&] {
        if (height != ui_.userControl.height())
            layout_.bKeptHeight = false;
        ui_.userControl.move({ui_.userControl.left(), ui_.userControl.top(), width, height});
        UserControl_Resize(flag);
    });
}

double Bandscope::leastHeight(bool collapsed) const noexcept {
    return kMargin + (collapsed ? kCollapsedHeight : layout_.nCtlFullHgt) + kMargin + kUnitsTop +
           kUnitsBottomAllowance + kSpectrumTop + kSpectrumBottomAllowance;
}

void Bandscope::UserControl_Resize(std::int16_t& flag) {
    formenv::Widget& control = ui_.userControl;
    if (control.width() < layout_.nMinWid) {
        control.setWidth(layout_.nMinWid);
        UserControl_Resize(flag);
        return;
    }
    placeChildren(++layout_.generation, flag);
}

/// Lets pending events run; true when one of them resized the control again, which makes this pass stale.
bool Bandscope::yieldedTo(std::uint64_t generation) {
    services_.platform.pumpEvents();
    return layout_.generation != generation;
}

void Bandscope::placeChildren(std::uint64_t generation, std::int16_t& flag) {
    flag = 200;
    const double width = ui_.userControl.width();
    formenv::Frame& pic = ui_.fraPic;
    formenv::Frame& panel = ui_.fraControl;
    pic.move({kMargin, 0.0, width - kMargin - kMargin, pic.height()});
    flag = 300;
    if (!layout_.bSizing) {
        pic.setHeight(ui_.userControl.height() - kMargin - panel.height() - kMargin);
        if (yieldedTo(generation))
            return;
    }
    flag = 400;
    panel.move({kMargin, pic.top() + pic.height() + kMargin, pic.width(), panel.height()});
    if (yieldedTo(generation))
        return;
    flag = 500;
    formenv::PictureBox& units = ui_.picUnits;
    units.move({kUnitsLeft, kUnitsTop, pic.width() - kUnitsLeft - kUnitsRightAllowance,
                pic.height() - kUnitsTop - kUnitsBottomAllowance});
    if (yieldedTo(generation))
        return;
    flag = 600;
    DisplayMaxFreq();
    flag = 700;
    layout_.dLblHalfWid = units.textWidth(FreqLblFormat()) / 2.0;
    flag = 800;
    formenv::PictureBox& spectrum = ui_.picSpectrum;
    const double left = layout_.dLblHalfWid > 0.0 ? layout_.dLblHalfWid : kLabelHalfWidthFallback;
    // At another size the marks stand on other pixels; the old ones could not be taken away any more.
    {
        const Marks::Aside aside(marks_);
        spectrum.move({left, kSpectrumTop, units.width() - left - layout_.dLblHalfWid,
                       units.height() - kSpectrumTop - kSpectrumBottomAllowance});
    }
    if (yieldedTo(generation))
        return;
    flag = 900;
    if (!(range_.maxFreq < range_.minFreq))
        DisplayMaxFreq();
}

bool Bandscope::isCollapsed() const noexcept {
    return ui_.fraControl.height() <= kCollapsedHeight;
}

/// Adjusts the control's height to the panel's. Where the container keeps the control's height, the picture takes the
/// room of the panel or gives it back. It is drawn again, because the host is told of no new size and would not do it.
void Bandscope::changeHeight(bool expand) {
    formenv::Widget& control = ui_.userControl;
    const formenv::Frame& panel = ui_.fraControl;
    bool kept = expand && layout_.bKeptHeight;
    {
        const util::Raised sizing(layout_.bSizing);
        std::int16_t flag = 100;
        noted(L"UserControl_Resize", flag, [&] {
            if (!kept) {
                const double wanted = panel.top() + panel.height() + kMargin;
                control.setHeight(wanted);
                kept = control.height() != wanted;
            }
            layout_.bSizing = !kept;
            UserControl_Resize(flag);
        });
    }
    layout_.bKeptHeight = kept && !expand;
    if (kept)
        JustDrawIt();
}

void Bandscope::ToggleControlsSection() {
    std::int16_t flag = 100;
    reported(L"ToggleControlsSection", L"", flag, [&] { toggleControlsSection(flag); });
}

void Bandscope::toggleControlsSection(std::int16_t& flag) {
    formenv::Frame& panel = ui_.fraControl;
    const bool expand = isCollapsed();
    flag = expand ? 100 : 200;
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
    flag = 300;
    changeHeight(expand);
    flag = 400;
    services_.platform.pumpEvents();
    ui_.userControl.update();
    services_.platform.pumpEvents();
    flag = 500;
    services_.events.ChgHeight(toInteger16(ui_.userControl.height()));
}

void Bandscope::fraControl_MouseDown(int button, double x, double y) {
    if (button != formenv::mouse_button::kRight || x > kToggleRight || y > kToggleBottom)
        return;
    ToggleControlsSection();
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
