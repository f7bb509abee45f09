// The start and end of a control's life, and what a fresh control shows when it is clicked.
#include "control/Bandscope.h"

#include <string>

#include "util/Product.h"

namespace kv::control {

using formenv::MessageButtons;
using formenv::MessageIcon;

Bandscope::Bandscope(const Services& services) : services_(services), ui_(services.platform) {
    arrangePanel();
    std::int16_t flag = 100;
    reported(L"UserControl_Initialize", L"", flag, [&] { UserControl_Initialize(); });
    connectHandlers();
    noted(L"UserControl_Resize", flag, [&] { UserControl_Resize(flag); });
}

Bandscope::~Bandscope() = default;

bool Bandscope::reported(const wchar_t* procedure, const std::wstring& detail, std::int16_t& flag,
                         const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (...) {
        services_.errors.ErrHand(flag, procedure, detail, util::currentError());
        return false;
    }
}

bool Bandscope::noted(const wchar_t* procedure, std::int16_t& flag, const std::function<void()>& body) {
    try {
        body();
        return true;
    } catch (...) {
        services_.errors.ErrNote(flag, procedure, L"", util::currentError());
        return false;
    }
}

void Bandscope::UserControl_Initialize() {
    look_.bUseMovers = true;
    ui_.Label1.setVisible(false);
    ui_.Label1.setCaption(L"");
    ui_.cmdDebug0.setVisible(false);
    ui_.cmdDebug1.setVisible(false);
    layout_.nCtlFullHgt = static_cast<std::int16_t>(ui_.fraControl.height());
    layout_.bSizing = false;
    SetGridRange();
    for (formenv::Label* label : {&ui_.lblTXRange, &ui_.lblRXRange, &ui_.lblFromCenter, &ui_.lblPwrdBm, &ui_.lblFMHz,
                                  &ui_.lblNumOther, &ui_.lblNumRX, &ui_.lblNumTX})
        label->setBackColor(raster::system_color::kButtonFace);
    layout_.dLblHalfWid = 300.0;
    layout_.nMinWid = static_cast<std::int16_t>(ui_.userControl.width());
    layout_.nMinHgt = static_cast<std::int16_t>(ui_.userControl.height());
    ui_.picSpectrum.setUserScaleMode();
    // The fields themselves stand at their start values already, each beside its declaration.
    setUpCursorKnob();
    SetCenterFreqKnob();
    SetGridKnob();
}

void Bandscope::connectHandlers() {
    ui_.userControl.onClick = [this] { UserControl_Click(); };
    ui_.cboGridRange.onClick = [this] { cboGridRange_Click(); };
    ui_.tdKnGrid.onValueChanged = [this](double d) { tdKnGrid_ValueChanged(d); };
    ui_.tdKnGrid.onTurnEnd = [this] { tdKnGrid_TurnEnd(); };
    ui_.tdKnGrid.onTurnBegin = [this] { rememberBeforeTurn(); };
    ui_.tdKnGrid.onGivenUp = [this] { takeGridTurnBack(); };
    ui_.tdKnCenter.onValueChanged = [this](double d) { applyNewCenter(d); };
    ui_.tdKnCenter.onTurnEnd = [this] {
        // Each new center gave the knob its start range; under the hand it could not be rescaled.
        rescaleKnobsToRange();
        tellRangeChanged();
    };
    ui_.tdKnMovCenter.onValueChanged = [this](double d) { tdKnMovCenter_ValueChanged(d); };
    ui_.tdKnMovCenter.onTurnEnd = [this] { tdKnMovCenter_TurnEnd(); };
    ui_.tdKnCursor.onValueChanged = [this](double d) { setShownCursor(d); };
    ui_.tdKnMovCursor.onValueChanged = [this](double d) { tdKnMovCursor_ValueChanged(d); };
    ui_.tdKnMovCursor.onTurnEnd = [this] { setShownCursor(ui_.tdKnMovCursor.dVal()); };
    ui_.cmdCenterCursor.onClick = [this] { cmdCenterCursor_Click(); };
    ui_.cmdClear.onClick = [this] { ClearDisplay(); };
    ui_.chkShowMouse.onClick = [this] { chkShowMouse_Click(); };
    ui_.cmdDrawTX.onClick = [this] { cmdDrawTX_Click(); };
    ui_.cmdDrawRX.onClick = [this] { cmdDrawRX_Click(); };
    ui_.chkViewAllxx.onClick = [this] { chkViewAllxx_Click(); };
    ui_.chkOrder.onClick = [this] { drawOrClear(); };
    ui_.Command2.onClick = [this] { DrawDisplay(); };
    ui_.Command3.onClick = [this] { addTestFrequencies(); };
    ui_.Command4.onClick = [this] {
        const Marks::Aside aside(marks_);
        DrawFreqLbls();
    };
    ui_.picSpectrum.onMouseMove = [this](int b, int s, double x, double y) { picSpectrum_MouseMove(b, s, x, y); };
    ui_.picSpectrum.onMouseDown = [this](int b, int, double, double) { picSpectrum_MouseDown(b); };
    ui_.picSpectrum.onMouseUp = [this](int b, int, double x, double) { picSpectrum_MouseUp(b, x); };
    ui_.picSpectrum.onMouseLost = [this] { giveUpDrag(); };
    ui_.picSpectrum.onKeyDown = [this](int key, int shift) { return picSpectrum_KeyDown(key, shift); };
    ui_.picSpectrum.wantsKey = [this](int key) { return wantsKey(key); };
    ui_.picSpectrum.takesFocus = true;
    ui_.picSpectrum.onDblClick = [this](int, int, double x, double y) { picSpectrum_DblClick(x, y); };
    ui_.picUnits.onMouseMove = [this](int b, int s, double x, double y) { picUnits_MouseMove(b, s, x, y); };
    ui_.fraControl.onMouseDown = [this](int b, int, double x, double y) { fraControl_MouseDown(b, x, y); };
    ui_.fraControl.onMouseMove = [this](int, int, double x, double y) { fraControl_MouseMove(x, y); };
}

void Bandscope::DrawAll() {
    services_.platform.messageBox(
        L"DrawAll function no longer supported.\r\n\r\nPlease email the KVTechSup.TXT file to:\r\n\r\n" +
            util::product::supportContact() +
            L" along with a description of what you were trying to do when this error occurred.",
        L"Incorrect Function Call", MessageIcon::Information, MessageButtons::Ok);
}

void Bandscope::setLColorLblBack(raster::OleColor value) {
    ui_.picUnits.setBackColor(value);
    JustDrawIt();
}

void Bandscope::setLColorLblFore(raster::OleColor value) {
    ui_.picUnits.setForeColor(value);
    JustDrawIt();
}

void Bandscope::setLColorSpecBack(raster::OleColor value) {
    // Another background erases the picture.
    ui_.picSpectrum.setBackColor(value);
    marks_.forget();
    JustDrawIt();
}

void Bandscope::UserControl_Click() {
    if (NumTX() >= 1 || NumRX() >= 1)
        return;
    std::int16_t flag = 100;
    reported(L"UserControl_Click", L"", flag, [&] { LoadSampleChannels(); });
}

}  // namespace kv::control
