// What the child controls are connected to, the mouse, and the size of the control.
#include <algorithm>
#include <cmath>

#include "control/Bandscope.h"
#include "formenv/ShiftKeys.h"

namespace kv::control {

using channels::ChannelKind;

namespace shift_key = formenv::shift_key;

namespace {

/// To the nearest number, a half to the even one, as the conversion to a whole number rounds. A height beyond 16 bits,
/// as of a window over several screens, becomes the largest one: the host has to hear of the change all the same.
std::int16_t toInteger16(double value) {
    return static_cast<std::int16_t>(std::clamp(std::nearbyint(value), -32768.0, 32767.0));
}

}  // namespace

void Bandscope::connectHandlers() {
    knobs_.connect();
    connectPictures();
    ui_.userControl.onClick = [this] { UserControl_Click(); };
    ui_.cmdClear.onClick = [this] { reported(L"cmdClear_Click", [this](Step&) { ClearDisplay(); }); };
    ui_.chkShowMouse.onClick = [this] { chkShowMouse_Click(); };
    ui_.cmdDrawTX.onClick = [this] { drawButton_Click(ChannelKind::TX); };
    ui_.cmdDrawRX.onClick = [this] { drawButton_Click(ChannelKind::RX); };
    ui_.chkViewAllxx.onClick = [this] { chkViewAllxx_Click(); };
    ui_.chkOrder.onClick = [this] { reported(L"chkOrder_Click", [this](Step&) { drawOrClear(); }); };
    ui_.Command2.onClick = [this] { DrawDisplay(); };
    ui_.Command3.onClick = [this] { reported(L"Command3_Click", [this](Step&) { addTestFrequencies(); }); };
    ui_.Command4.onClick = [this] { reported(L"Command4_Click", [this](Step&) { drawLabelsAlone(); }); };
    ui_.fraControl.onMouseDown = [this](int b, int, double x, double y) { fraControl_MouseDown(b, x, y); };
    ui_.fraControl.onMouseMove = [this](int, int, double x, double y) {
        reported(L"fraControl_MouseMove", [=, this](Step&) { panel_.showToolTipAt(x, y); });
    };
}

void Bandscope::connectPictures() {
    ui_.picSpectrum.onMouseMove = [this](int b, int, double x, double) { picSpectrum_MouseMove(b, x); };
    ui_.picSpectrum.onMouseDown = [this](int b, int, double, double) { picSpectrum_MouseDown(b); };
    ui_.picSpectrum.onMouseUp = [this](int b, int shift, double x, double) { picSpectrum_MouseUp(b, shift, x); };
    ui_.picSpectrum.onWheel = [this](int delta, int shift, double x) { return picSpectrum_Wheel(delta, shift, x); };
    for (formenv::PictureBox* picture : {&ui_.picSpectrum, &ui_.picUnits}) {
        picture->onBack = [this] {
            reported(L"GoBack", [this](Step&) { goBack(); });
            return true;
        };
        picture->onForward = [this] {
            reported(L"GoForward", [this](Step&) { goForward(); });
            return true;
        };
    }
    ui_.picSpectrum.onMouseLost = [this] { giveUpDrag(); };
    ui_.picSpectrum.onKeyDown = [this](int key, int shift) { return keyboard_.picSpectrum_KeyDown(key, shift); };
    ui_.picSpectrum.wantsKey = [this](int key) { return keyboard_.wantsKey(key); };
    ui_.picSpectrum.wantsAltKey = [this](int key) { return keyboard_.wantsAltKey(key); };
    ui_.picSpectrum.takesFocus = true;
    ui_.picSpectrum.onDblClick = [this](int, int, double x, double) { picSpectrum_DblClick(x); };
    ui_.picUnits.onMouseMove = [this](int b, int, double x, double) { picUnits_MouseMove(b, x); };
    ui_.picUnits.onMouseDown = [this](int b, int, double x, double) {
        reported(L"picUnits_MouseDown", [&](Step&) { navigation_.scalePressed(b, x); });
    };
    ui_.picUnits.onMouseUp = [this](int b, int, double, double) {
        reported(L"picUnits_MouseUp", [&](Step&) { navigation_.scaleReleased(b); });
    };
    ui_.picUnits.onMouseLost = [this] { reported(L"picUnits_MouseLost", [&](Step&) { navigation_.scaleLost(); }); };
}

void Bandscope::drawButton_Click(ChannelKind kind) {
    const bool tx = kind == ChannelKind::TX;
    reported(tx ? L"cmdDrawTX_Click" : L"cmdDrawRX_Click", [&](Step& step) {
        if (store_.count(kind) < 1) {
            services_.platform.messageBox(tx ? L"No TX channels to draw." : L"No RX channels to draw.", L"",
                                          formenv::MessageIcon::None, formenv::MessageButtons::Ok);
            return;
        }
        step = 200;
        const Marks::Aside aside(marks_);
        if (tx) {
            DrawDisplayTX();
        } else {
            DrawDisplayRX();
        }
    });
}

void Bandscope::drawLabelsAlone() {
    const Marks::Aside aside(marks_);
    painter_.DrawFreqLbls();
}

void Bandscope::picSpectrum_MouseMove(int buttons, double x) {
    reported(L"picSpectrum_MouseMove", [&](Step& step) {
        pointer_.pointAt(x);
        step = 200;
        pointer_.drag().movedTo(buttons, x);
    });
}

void Bandscope::picSpectrum_MouseDown(int button) {
    reported(L"picSpectrum_MouseDown", [&](Step&) { pointer_.drag().pressed(button); });
}

void Bandscope::picSpectrum_MouseUp(int button, int shift, double x) {
    if (button != formenv::mouse_button::kLeft)
        return;
    reported(L"picSpectrum_MouseUp", [&](Step& step) {
        const bool isClick = pointer_.drag().isPressed();
        const std::optional<BoxDrag::Span> span = pointer_.drag().released(x);
        step = 300;
        if (span) {
            const RangeAction action(navigation_.history(), range_.span());
            zoomTo(span->first, span->second);
        } else if (isClick && shift == shift_key::kCtrl && range_.isUsable() && range_.contains(x)) {
            setMarker(snapping_.at(x), true);
        }
    });
}

bool Bandscope::picSpectrum_Wheel(int delta, int shift, double x) {
    const RangeAction action(navigation_.history(), range_.span());
    return navigation_.wheel(delta, shift, x);
}

bool Bandscope::giveUpDrag() {
    if (navigation_.isPanning()) {
        reported(L"picUnits_MouseLost", [&](Step&) { navigation_.giveUpPan(); });
        return true;
    }
    if (!pointer_.drag().isDragging())
        return false;
    reported(L"picSpectrum_MouseLost", [&](Step&) { pointer_.drag().giveUp(); });
    return true;
}

void Bandscope::picSpectrum_DblClick(double x) {
    reported(L"picSpectrum_DblClick", [&](Step& step) {
        // Without a range the picture has no frequency to recenter on.
        if (!range_.isUsable())
            return;
        const RangeAction action(navigation_.history(), range_.span());
        setDisplayCenterFreq(x);
        step = 200;
        DrawDisplay();
        step = 300;
        rangeChosen();
    });
}

void Bandscope::picUnits_MouseMove(int buttons, double x) {
    reported(L"picUnits_MouseMove", [&](Step& step) {
        navigation_.scaleMoved(buttons, x);
        step = 200;
        pointer_.pointAtStrip(x);
    });
}

void Bandscope::chkShowMouse_Click() {
    reported(L"chkShowMouse_Click", [&](Step&) { pointer_.showReport(); });
}

void Bandscope::setBMouseInfo(bool value) {
    ui_.chkShowMouse.setValue(value ? 1 : 0);
    reported(L"bMouseInfo", [&](Step&) { pointer_.showReport(); });
}

void Bandscope::resize(double width, double height) {
    noted(L"UserControl_Resize", [&](Step& step) {
        panel_.takeSize(width, height);
        UserControl_Resize(step);
    });
}

void Bandscope::UserControl_Resize(Step& step) {
    if (panel_.widenToLeast()) {
        UserControl_Resize(step);
        return;
    }
    placeChildren(step);
}

// Wherever events run, one of them may resize the control again, which makes this pass outdated.
void Bandscope::placeChildren(Step& step) {
    const std::uint64_t layout = panel_.beginLayout();
    const auto isOvertaken = [&] {
        services_.platform.pumpEvents();
        return panel_.isOvertaken(layout);
    };
    step = 200;
    panel_.placeDisplay();
    step = 300;
    if (panel_.displayFollowsHeight()) {
        panel_.sizeDisplay();
        if (isOvertaken())
            return;
    }
    step = 400;
    panel_.placeControls();
    if (isOvertaken())
        return;
    step = 500;
    panel_.placeLabelStrip();
    if (isOvertaken())
        return;
    step = 600;
    DisplayMaxFreq();
    step = 700;
    panel_.measureLabels(painter_.FreqLblFormat());
    step = 800;
    {
        // At another size the marks are on other pixels; the old ones could not be removed any more.
        const Marks::Aside aside(marks_);
        panel_.placeSpectrum();
    }
    if (isOvertaken())
        return;
    step = 900;
    if (!(range_.maxFreq() < range_.minFreq()))
        DisplayMaxFreq();
}

void Bandscope::fraControl_MouseDown(int button, double x, double y) {
    if (button == formenv::mouse_button::kRight && Panel::isToggle(x, y))
        ToggleControlsSection();
}

void Bandscope::ToggleControlsSection() {
    reported(L"ToggleControlsSection", [&](Step& step) { toggleControlsSection(step); });
}

void Bandscope::toggleControlsSection(Step& step) {
    const bool expand = panel_.isCollapsed();
    step = expand ? 100 : 200;
    panel_.showSection(expand);
    step = 300;
    changeHeight(expand);
    step = 400;
    services_.platform.pumpEvents();
    ui_.userControl.update();
    services_.platform.pumpEvents();
    step = 500;
    services_.events.ChgHeight(toInteger16(ui_.userControl.height()));
}

// Where the container keeps the control's height, the picture takes the room of the panel or gives it back. It is drawn
// again, because the host is told of no new size and would not do it.
void Bandscope::changeHeight(bool expand) {
    bool kept = false;
    {
        Panel::HeightChange change(panel_, expand);
        noted(L"UserControl_Resize", [&](Step& step) {
            change.fitHeight();
            UserControl_Resize(step);
        });
        kept = change.isKept();
    }
    if (kept)
        JustDrawIt();
}

}  // namespace kv::control
