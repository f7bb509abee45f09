#include "control/Arrangement.h"

#include <cmath>
#include <initializer_list>

namespace kv::control {

namespace {

constexpr double kStartWidth = 10800.0;
constexpr double kStartHeight = 7200.0;
constexpr double kPanelHeight = 2280.0;

// The panel is composed on a raster of 15 twips, one pixel at 96 dpi. The strip that is left of the collapsed panel
// holds no control.
constexpr double kUnit = 15.0;
constexpr double kTextHeight = 15.0;
constexpr double kKnobTop = 21.0;
constexpr double kKnobHeight = 122.0;

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

// The left column is wide enough for a range of two frequencies with seven digits before the point.
constexpr double kColumnLeft = 11.0;
constexpr double kColumnWidth = 169.0;

// The room to the right of all other parts, from the width on in which large read-outs fit.
constexpr double kRightLeft = 722.0;
constexpr double kRightMargin = 10.0;
constexpr double kLeastRightWidth = 220.0;

/// The summary of the channels.
void arrangeSummary(Children& ui) {
    put(ui.lblNumTX, kColumnLeft, 25, kColumnWidth, kTextHeight);
    put(ui.lblTXRange, kColumnLeft, 40, kColumnWidth, kTextHeight);
    put(ui.lblNumRX, kColumnLeft, 59, kColumnWidth, kTextHeight);
    put(ui.lblRXRange, kColumnLeft, 74, kColumnWidth, kTextHeight);
    put(ui.lblPwrdBm, kColumnLeft, 125, 100, kTextHeight);
    put(ui.lblNumOther, kColumnLeft + 104, 125, 56, kTextHeight);
    for (formenv::Label* label : {&ui.lblTXRange, &ui.lblRXRange, &ui.lblNumTX, &ui.lblNumRX})
        label->setVisible(false);
}

void arrangeKnobs(Children& ui) {
    // Both knobs of a pair are in the same place; one of the two is shown.
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

void putReadout(formenv::Label& label, double left, double top, double width, double height, double points) {
    put(label, left, top, width, height);
    raster::Font font = label.font();
    font.points = points;
    label.setFont(font);
}

}  // namespace

void placeReadouts(Children& ui, double panelWidth) {
    const double rightWidth = std::floor(panelWidth / kUnit) - kRightLeft - kRightMargin;
    if (rightWidth < kLeastRightWidth) {
        const double points = raster::Font().points;
        putReadout(ui.lblFMHz, kColumnLeft, 95, kColumnWidth, kTextHeight, points);
        putReadout(ui.lblFromCenter, kColumnLeft, 110, kColumnWidth, kTextHeight, points);
    } else {
        putReadout(ui.lblFMHz, kRightLeft, 44, rightWidth, 30, 16.0);
        putReadout(ui.lblFromCenter, kRightLeft, 78, rightWidth, 20, 10.0);
    }
}

void arrangeParts(Children& ui) {
    ui.userControl.move({0.0, 0.0, kStartWidth, kStartHeight});
    // Its place and width follow from the first layout.
    ui.fraControl.setHeight(kPanelHeight);
    ui.fraControl.setCaption(L"-");

    ui.picUnits.setBackColor(raster::system_color::kButtonFace);
    ui.picSpectrum.setBackColor(raster::system_color::kWindowBackground);
    // Ticks and rubber band: a gray that shows on light and on dark backgrounds.
    ui.picSpectrum.setForeColor(0x00808080);

    arrangeSummary(ui);
    placeReadouts(ui, kStartWidth - 2.0 * kPanelMargin);
    arrangeKnobs(ui);
    arrangeChoices(ui);

    ui.Label1.setCaption(L"2175 x 2535 kn FOR DEBUGGING");
    ui.Command1.setCaption(L"Resize Test");
    ui.Command2.setCaption(L"Redraw Test");
    ui.Command3.setCaption(L"Add Test Freqs");
    ui.Command4.setCaption(L"Labels Test");
    ui.Text4.setText(L"grid step");
    ui.Text5.setText(L"c freq");
    for (formenv::Widget* aid :
         std::initializer_list<formenv::Widget*>{&ui.Command1, &ui.Command2, &ui.Command3, &ui.Command4, &ui.Text1,
                                                 &ui.Text2, &ui.Text3, &ui.Text4, &ui.Text5}) {
        put(*aid, 0, 0, 72, 22);
        aid->setVisible(false);
    }
}

}  // namespace kv::control
