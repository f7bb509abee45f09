// What the mouse reads out over the spectrum and the label strip.
#include "control/Bandscope.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

constexpr wchar_t kPointerFormat[] = L"0.00000";

/// "2.50000+ MHz from center": the magnitude, then the side.
std::wstring distanceText(double offset) {
    return util::formatNumber(offset < 0.0 ? -offset : offset, kPointerFormat) + (offset < 0.0 ? L"-" : L"+") +
           L" MHz from center";
}

}  // namespace

void Bandscope::picSpectrum_MouseMove(int /*button*/, int /*shift*/, double x, double y) {
    std::int16_t flag = 100;
    reported(L"picSpectrum_MouseMove", L"", flag, [&] {
        mouse_ = {x, y};
        ui_.lblFMHz.setVisible(true);
        ui_.lblFromCenter.setVisible(true);
        // Without a range the picture has no frequencies yet, whatever its coordinates say.
        const bool shown = x > 0.0 && hasUsableRange();
        ui_.lblFMHz.setCaption(shown ? util::formatNumber(x, kPointerFormat) + L" MHz" : std::wstring());
        ui_.lblFromCenter.setCaption(shown ? distanceText(x - DisplayCenterFreq()) : std::wstring());
    });
}

void Bandscope::picSpectrum_DblClick() {
    std::int16_t flag = 100;
    reported(L"picSpectrum_DblClick", L"", flag, [&] {
        setDisplayCenterFreq(mouse_.x);
        flag = 200;
        DrawDisplay();
        flag = 300;
        services_.events.ChgFreqRange(DisplayMinFreq(), DisplayMaxFreq());
    });
}

/// Over the strip only the distance is read out, at the frequency that stands above the pointer.
void Bandscope::picUnits_MouseMove(int /*button*/, int /*shift*/, double x, double /*y*/) {
    std::int16_t flag = 100;
    reported(L"picUnits_MouseMove", L"", flag, [&] {
        const formenv::PictureBox& picture = ui_.picSpectrum;
        const double frequency = picture.scaleLeft() + (x - picture.left()) * picture.scaleWidth() / picture.width();
        ui_.lblFromCenter.setVisible(true);
        ui_.lblFromCenter.setCaption(hasUsableRange() && frequency > 0.0 ? distanceText(frequency - DisplayCenterFreq())
                                                                         : std::wstring());
    });
}

void Bandscope::setBMouseInfo(bool value) {
    ui_.chkShowMouse.setValue(value ? 1 : 0);
}

void Bandscope::setBChkVisMouseInfo(bool value) {
    ui_.chkShowMouse.setVisible(value);
}

}  // namespace kv::control
