#include "control/Pointer.h"

#include "channels/Sentinels.h"
#include "control/Formats.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

/// "2.50000+ MHz from center": the magnitude, then the side.
std::wstring distanceText(double offset) {
    return util::signedNumberText(util::formatNumber(offset, L""), kPointerFormat, 0, 0) + L" MHz from center";
}

}  // namespace

void Pointer::pointAt(double x) {
    readouts_.lblFMHz.setVisible(true);
    readouts_.lblFromCenter.setVisible(true);
    const bool shown = x > 0.0 && range_.isUsable();
    readouts_.lblFMHz.setCaption(shown ? util::formatNumber(x, kPointerFormat) + L" MHz" : std::wstring());
    readouts_.lblFromCenter.setCaption(shown ? distanceText(x - range_.DisplayCenterFreq()) : std::wstring());
    // The report is headed by the read-out, so that both tell the same frequency with the same digits.
    if (shown)
        report_.ShowMouseInfo(x, readouts_.lblFMHz.caption());
}

void Pointer::pointAtStrip(double x) {
    const double frequency = picture_.scaleLeft() + (x - picture_.left()) * picture_.scaleWidth() / picture_.width();
    readouts_.lblFromCenter.setVisible(true);
    readouts_.lblFromCenter.setCaption(
        range_.isUsable() && frequency > 0.0 ? distanceText(frequency - range_.DisplayCenterFreq()) : std::wstring());
}

void Pointer::showReport() {
    report_.ShowMouseInfo(channels::kInvalid, {});
}

}  // namespace kv::control
