#include "control/View.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "channels/ChannelIndex.h"
#include "control/Bandscope.h"
#include "control/Refuse.h"

namespace kv::control {

using channels::ChannelKind;
using channels::FreqSlotRef;

namespace {

/// The shortest text that reads back as the number, with a decimal point whatever the locale.
std::wstring text(double value) {
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), written.ptr};
}

}  // namespace

void View::show(const wchar_t* member, double minimum, double maximum) {
    if (std::isfinite(minimum) && std::isfinite(maximum) && std::isfinite(maximum - minimum) &&
        scope_.showExactly(minimum, maximum))
        return;
    refuse(std::wstring(member) + L": " + text(minimum) + L" to " + text(maximum) +
           L" MHz cannot be shown. The maximum must be above 0 MHz and at least 0.000001 MHz above the minimum.");
}

std::pair<double, double> View::shownRange(const wchar_t* member) {
    const double minimum = scope_.DisplayMinFreq();
    const double maximum = scope_.DisplayMaxFreq();
    if (!(minimum < maximum))
        refuse(std::wstring(member) + L": there is no range yet. Add channels or call ShowRange first.");
    return {minimum, maximum};
}

void View::showRange(double minimum, double maximum) {
    show(L"ShowRange", minimum, maximum);
}

void View::zoomBy(double factor, double around) {
    if (!(factor > 0.0) || !std::isfinite(factor))
        refuse(L"ZoomBy: the factor is " + text(factor) + L". It must be a number above 0; 2 shows half the span.");
    if (!std::isfinite(around))
        refuse(L"ZoomBy: the frequency is " + text(around) + L". It must be a number of MHz, or 0 for the middle.");
    const auto [minimum, maximum] = shownRange(L"ZoomBy");
    const double fixed = around != 0.0 ? around : minimum + (maximum - minimum) / 2.0;
    show(L"ZoomBy", fixed - (fixed - minimum) / factor, fixed + (maximum - fixed) / factor);
}

void View::panBy(double distance) {
    const auto [minimum, maximum] = shownRange(L"PanBy");
    show(L"PanBy", minimum + distance, maximum + distance);
}

std::vector<FreqSlotRef> View::hitTest(double frequency, double tolerance) const {
    if (!std::isfinite(frequency))
        refuse(L"HitTest: the frequency is " + text(frequency) + L". It must be a number of MHz.");
    if (!(tolerance >= 0.0) || !std::isfinite(tolerance))
        refuse(L"HitTest: the tolerance is " + text(tolerance) + L". It must be a number of MHz, 0 or above.");
    std::vector<FreqSlotRef> hits;
    const channels::ChannelStore& store = scope_.store();
    for (const ChannelKind kind : {ChannelKind::RX, ChannelKind::TX}) {
        channels::forEachChannelAt(store, kind, frequency, tolerance, [&](std::int32_t index) {
            hits.push_back(store.at(kind, index));
            return true;
        });
    }
    return hits;
}

std::int32_t View::add(ChannelKind kind, const std::vector<FreqSlotRef>& added) {
    const bool isTX = kind == ChannelKind::TX;
    const auto count = [&] { return isTX ? scope_.NumTX() : scope_.NumRX(); };
    const std::int32_t before = count();
    for (const FreqSlotRef& channel : added) {
        if (isTX) {
            scope_.AddTXChnl(channel);
        } else {
            scope_.AddRXChnl(channel);
        }
    }
    return count() - before;
}

double View::renderTimeMs() const noexcept {
    return scope_.renderTimeMs();
}

void View::beginUpdate() noexcept {
    scope_.beginUpdate();
}

void View::endUpdate() {
    if (!scope_.endUpdate())
        refuse(L"EndUpdate: there is no update to end. Call BeginUpdate once for each EndUpdate.");
}

bool View::back() {
    return scope_.navigation().goBack();
}

bool View::forward() {
    return scope_.navigation().goForward();
}

bool View::canGoBack() const noexcept {
    return scope_.navigation().history().canGoBack();
}

bool View::canGoForward() const noexcept {
    return scope_.navigation().history().canGoForward();
}

double View::marker() const noexcept {
    return scope_.marker().frequency();
}

void View::setMarker(double frequency) {
    if (!(frequency > 0.0) || !std::isfinite(frequency))
        refuse(L"Marker: the frequency is " + text(frequency) + L". It must be a number of MHz above 0.");
    scope_.setMarker(frequency, scope_.marker().isVisible());
}

bool View::isMarkerVisible() const noexcept {
    return scope_.marker().isVisible();
}

void View::setMarkerVisible(bool visible) {
    scope_.setMarker(visible && !(marker() > 0.0) ? scope_.cursorOrCenter() : marker(), visible);
}

bool View::wheelZoom() const noexcept {
    return scope_.navigation().wheelZoom();
}

void View::setWheelZoom(bool value) noexcept {
    scope_.navigation().setWheelZoom(value);
}

bool View::snapToChannels() const noexcept {
    return scope_.snapping().isOn();
}

void View::setSnapToChannels(bool value) noexcept {
    scope_.snapping().turn(value);
}

const Overlays& View::overlays() const noexcept {
    return scope_.overlays();
}

void View::setOverlays(const Overlays& value) {
    scope_.setOverlays(value);
}

}  // namespace kv::control
