// The mouse over the spectrum and the label strip: what it reads out, the report of what is under it, and the
// double-click that recentres. The drag that zooms is in BoxDrag.cpp.
#include <utility>

#include "channels/ChannelIndex.h"
#include "control/Bandscope.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

constexpr wchar_t kPointerFormat[] = L"0.00000";
constexpr wchar_t kReportCaption[] = L"Mouse Information";
// A channel counts as under the pointer from this far away on, so that one of a pixel's width can be hit.
constexpr double kReach = 1.5;  // pixels

/// "2.50000+ MHz from center": the magnitude, then the side.
std::wstring distanceText(double offset) {
    return util::signedNumberText(util::formatNumber(offset, L""), kPointerFormat, 0, 0) + L" MHz from center";
}

}  // namespace

void Bandscope::picSpectrum_MouseMove(int button, int /*shift*/, double x, double y) {
    std::int16_t flag = 100;
    reported(L"picSpectrum_MouseMove", L"", flag, [&] {
        mouse_ = {x, y};
        pointAt(x, y);
        flag = 200;
        dragTo(button, x);
    });
}

void Bandscope::pointAt(double x, double y) {
    ui_.lblFMHz.setVisible(true);
    ui_.lblFromCenter.setVisible(true);
    // Without a range the picture has no frequencies yet, whatever its coordinates say.
    const bool shown = x > 0.0 && hasUsableRange();
    ui_.lblFMHz.setCaption(shown ? util::formatNumber(x, kPointerFormat) + L" MHz" : std::wstring());
    ui_.lblFromCenter.setCaption(shown ? distanceText(x - DisplayCenterFreq()) : std::wstring());
    if (shown)
        ShowMouseInfo(x, y);
}

void Bandscope::picSpectrum_DblClick(double x, double y) {
    std::int16_t flag = 100;
    reported(L"picSpectrum_DblClick", L"", flag, [&] {
        // Without a range the picture has no frequency to recenter on.
        if (!hasUsableRange())
            return;
        mouse_ = {x, y};
        setDisplayCenterFreq(x);
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

void Bandscope::chkShowMouse_Click() {
    std::int16_t flag = 100;
    reported(L"chkShowMouse_Click", L"", flag, [&] { ShowMouseInfo(channels::kInvalid, channels::kInvalid); });
}

void Bandscope::setBMouseInfo(bool value) {
    ui_.chkShowMouse.setValue(value ? 1 : 0);
    std::int16_t flag = 100;
    reported(L"bMouseInfo", L"", flag, [&] { ShowMouseInfo(channels::kInvalid, channels::kInvalid); });
}

void Bandscope::setBChkVisMouseInfo(bool value) {
    ui_.chkShowMouse.setVisible(value);
}

void Bandscope::ShowMouseInfo(double x, double y) {
    if (ui_.chkShowMouse.value() == 0) {
        if (mouseInfo_.window)
            mouseInfo_.window->Hide();
        return;
    }
    // Without a position there is nothing to report, and an older report would tell of another place.
    if (x > 0.0)
        BuildMouseReport(x, y);
    else
        mouseInfo_.report.begin(L"");
    showReport();
}

/// The window is made when it is first needed, and again after the user closed it.
void Bandscope::showReport() {
    if (!mouseInfo_.window) {
        mouseInfo_.window =
            std::make_unique<forms::frmTextEditor>(services_.platform, services_.files, services_.errors);
        // However the user leaves the window, the box tells that there is none.
        mouseInfo_.window->onHideMe = [this] { ui_.chkShowMouse.setValue(0); };
        mouseInfo_.window->onUnload = [this] {
            ui_.chkShowMouse.setValue(0);
            mouseInfo_.isSetUp = false;
        };
    }
    forms::frmTextEditor& window = *mouseInfo_.window;
    if (std::exchange(mouseInfo_.isSetUp, true))
        window.setText(mouseInfo_.report.text());
    else
        window.InitForm(kReportCaption, L"Close", false, false, false, mouseInfo_.report.text(), true,
                        services_.files.placementFile());
    if (!window.isVisible())
        window.Show();
}

void Bandscope::closeMouseInfo() noexcept {
    mouseInfo_.isSetUp = false;
    mouseInfo_.window.reset();
}

void Bandscope::BuildMouseReport(double x, double /*y*/) {
    std::int16_t flag = 100;
    reported(L"BuildMouseReport", L"", flag, [&] {
        const formenv::PictureBox& picture = ui_.picSpectrum;
        const double reach = kReach * picture.scaleWidth() / picture.pixelSize().width;
        flag = 200;
        MouseReport& report = mouseInfo_.report;
        report.begin(ui_.lblFMHz.caption());
        for (const channels::ChannelKind kind : {channels::ChannelKind::RX, channels::ChannelKind::TX}) {
            flag = kind == channels::ChannelKind::RX ? 300 : 400;
            channels::forEachChannelAt(store_, kind, x, reach, [&](std::int32_t index) {
                // Reading the channel may have cleared the store.
                if (const channels::FreqSlotRef channel = store_.at(kind, index))
                    report.add(kind, *channel);
                // Over thousands of products the rest would be read for nothing.
                return !report.isFull();
            });
            if (report.isFull())
                return;
        }
    });
}

}  // namespace kv::control
