// The child controls, in the order of the Tab key.
#pragma once

#include "formenv/Menu.h"
#include "formenv/PictureBox.h"
#include "formenv/Platform.h"
#include "formenv/Widget.h"
#include "turndial/Knob.h"

namespace kv::control {

struct Children {
    explicit Children(formenv::Platform& platform)
        : picUnits(platform, &fraPic, L"picUnits"), picSpectrum(platform, &picUnits, L"picSpectrum") {}

    formenv::Widget userControl{formenv::WidgetKind::UserControl, nullptr, L"kvBandscope"};

    // The control's menu. Nothing opens it: the background is the host's to set.
    formenv::Menu mnuConfig{nullptr, L"mnuConfig", L"Configuration"};
    formenv::Menu mnuConfigBColor{&mnuConfig, L"mnuConfigBColor", L"Display Background Color"};

    formenv::Frame fraPic{&userControl, L"fraPic"};
    formenv::PictureBox picUnits;
    formenv::PictureBox picSpectrum;
    /// How far the cursor is from the marker.
    formenv::Label lblMarker{&picSpectrum, L"lblMarker"};

    formenv::Frame fraControl{&userControl, L"fraControl"};
    turndial::tdKnMover tdKnMovCenter{&fraControl, L"tdKnMovCenter"};
    turndial::tdKnMover tdKnMovCursor{&fraControl, L"tdKnMovCursor"};
    turndial::tdKnob tdKnCenter{&fraControl, L"tdKnCenter"};
    turndial::tdKnob tdKnCursor{&fraControl, L"tdKnCursor"};
    turndial::tdKnob tdKnGrid{&fraControl, L"tdKnGrid"};
    formenv::Button cmdCenterCursor{&fraControl, L"cmdCenterCursor"};
    formenv::Label lblGridRange{&fraControl, L"lblGridRange"};
    formenv::ComboBox cboGridRange{&fraControl, L"cboGridRange"};
    formenv::CheckBox chkShowMouse{&fraControl, L"chkShowMouse"};
    formenv::CheckBox chkViewAllxx{&fraControl, L"chkViewAllxx"};
    formenv::CheckBox chkOrder{&fraControl, L"chkOrder"};
    formenv::Button cmdDrawTX{&fraControl, L"cmdDrawTX"};
    formenv::Button cmdDrawRX{&fraControl, L"cmdDrawRX"};
    formenv::Button cmdClear{&fraControl, L"cmdClear"};

    formenv::Label lblNumTX{&fraControl, L"lblNumTX"};
    formenv::Label lblTXRange{&fraControl, L"lblTXRange"};
    formenv::Label lblNumRX{&fraControl, L"lblNumRX"};
    formenv::Label lblRXRange{&fraControl, L"lblRXRange"};
    formenv::Label lblNumOther{&fraControl, L"lblNumOther"};
    formenv::Label lblFMHz{&fraControl, L"lblFMHz"};
    formenv::Label lblFromCenter{&fraControl, L"lblFromCenter"};
    formenv::Label lblPwrdBm{&fraControl, L"lblPwrdBm"};

    // Development aids: they work, but stay hidden.
    formenv::Label Label1{&fraControl, L"Label1"};
    formenv::Button cmdDebug0{&fraControl, L"cmdDebug"};
    formenv::Button cmdDebug1{&fraControl, L"cmdDebug"};
    formenv::Button Command1{&fraControl, L"Command1"};
    formenv::Button Command2{&fraControl, L"Command2"};
    formenv::Button Command3{&fraControl, L"Command3"};
    formenv::Button Command4{&fraControl, L"Command4"};
    formenv::TextBox Text1{&fraControl, L"Text1"};
    formenv::TextBox Text2{&fraControl, L"Text2"};
    formenv::TextBox Text3{&fraControl, L"Text3"};
    formenv::TextBox Text4{&fraControl, L"Text4"};
    formenv::TextBox Text5{&fraControl, L"Text5"};
};

}  // namespace kv::control
