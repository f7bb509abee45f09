#include "control/Marker.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "raster/Twips.h"
#include "util/NumberFormat.h"

namespace kv::control {

namespace {

struct Unit {
    const wchar_t* name;
    double perMHz;
};
constexpr std::array<Unit, 3> kUnits{{{L" MHz", 1.0}, {L" kHz", 1e3}, {L" Hz", 1e6}}};
constexpr int kMostDecimals = 9;
constexpr int kReadOutGap = 4;  // pixels between the line and its read-out, at 96 dots per inch

/// Decimals of a unit in which one pixel is `resolution`.
int decimalsFor(double resolution) {
    if (!(resolution > 0.0))
        return 0;
    return std::clamp(static_cast<int>(std::ceil(-std::log10(resolution) - 1e-9)), 0, kMostDecimals);
}

}  // namespace

std::wstring differenceText(double difference, double resolution) {
    const double pixel = std::isfinite(resolution) ? std::abs(resolution) : 0.0;
    const double size = difference != 0.0 ? std::abs(difference) : pixel;
    for (const Unit& unit : kUnits) {
        const int decimals = decimalsFor(pixel * unit.perMHz);
        const double step = std::pow(10.0, -decimals);
        const bool isLast = &unit == &kUnits.back();
        // As it will be shown: 999.9996 kHz with two decimals is 1 MHz.
        if (!isLast && std::round(size * unit.perMHz / step) * step < 1.0)
            continue;
        const std::wstring format =
            decimals == 0 ? L"0" : L"0." + std::wstring(static_cast<std::size_t>(decimals), L'0');
        const std::wstring digits = util::formatNumber(std::abs(difference) * unit.perMHz, format);
        const bool isZero = digits.find_first_of(L"123456789") == std::wstring::npos;
        return (isZero ? L"" : difference < 0.0 ? L"-" : L"+") + digits + unit.name;
    }
    return {};
}

Marker::Marker(const formenv::PictureBox& picture, DisplayRange& range, Marks& marks, formenv::Label& readout)
    : picture_(picture), range_(range), marks_(marks), readout_(readout) {
    readout_.setVisible(false);
    readout_.setBackColor(raster::system_color::kToolTipBackground);
    readout_.setForeColor(raster::system_color::kToolTipText);
}

void Marker::show(double cursor, raster::OleColor color) {
    marks_.takeMarkerOff();
    if (visible_ && range_.hasSpan())
        marks_.drawMarker({frequency_, range_.DisplayMinPwr(), range_.DisplayMaxPwr(), color});
    showDistance(cursor);
}

std::wstring Marker::distanceText(double cursor) const {
    if (!visible_ || !(cursor > 0.0) || !range_.hasSpan())
        return {};
    const double resolution = picture_.scaleWidth() / std::max(picture_.pixelSize().width, 1);
    return L"Cursor - marker: " + differenceText(cursor - frequency_, resolution);
}

void Marker::showDistance(double cursor) {
    const std::wstring text = distanceText(cursor);
    readout_.setCaption(text);
    readout_.setVisible(!text.empty());
    if (!text.empty())
        placeReadout();
}

// Beside the line, where there is room. While the line is out of sight, at the edge on its side.
void Marker::placeReadout() {
    formenv::Platform& platform = picture_.platform();
    const int dpi = platform.dpi();
    const raster::PixelSize text = platform.textSize(readout_.caption(), readout_.font());
    const int gap = raster::twipsToPixels(kReadOutGap * raster::kTwipsPerInch / 96.0, dpi);
    const int width = text.width + 2 * gap;
    const int room = picture_.pixelSize().width - width;
    const int line = picture_.pixelX(frequency_);
    const int left = std::clamp(line + gap <= room ? line + gap : line - gap - width, 0, std::max(room, 0));
    readout_.move({raster::pixelsToTwips(left, dpi), raster::pixelsToTwips(gap, dpi), raster::pixelsToTwips(width, dpi),
                   raster::pixelsToTwips(text.height + gap, dpi)});
}

}  // namespace kv::control
